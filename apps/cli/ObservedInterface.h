// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QJsonObject>
#include <QStringList>

#include <chrono>

namespace cli {

/// A network adapter or a USB bus whose streams are watched. Bound to one thread.
class ObservedInterface {
public:
    ObservedInterface() = default;
    virtual ~ObservedInterface() = default;
    ObservedInterface(const ObservedInterface&) = delete;
    ObservedInterface& operator=(const ObservedInterface&) = delete;

    /// An interface of docs/schemas/benchmark.json: rates of the time since the interval before,
    /// and of the whole time with the places where frames were lost.
    virtual QJsonObject interval() = 0;
    virtual QJsonObject result() = 0;
    /// Lines for the user about what has happened to the interface since the last call.
    virtual QStringList takeNotices() = 0;
    /// To be called before the results of all interfaces, which are complete after latency().
    virtual void endCount() {}
    virtual std::chrono::milliseconds latency() const { return std::chrono::milliseconds(0); }
};

} // namespace cli
