// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

namespace cli {

/// The streams that network adapters of this host receive, whichever program receives them. Opens
/// no camera and sends nothing. Bound to one thread.
class ObservedAdapters {
public:
    /// Begins at once. Without \p names, all adapters that are up and have an IPv4 address. With a
    /// \p captureFile, writes headers of packets there when frames were lost. Throws a Failure for
    /// a wrong name or file, and where this program may not open packet sockets.
    ObservedAdapters(const QStringList& names, const std::optional<QString>& captureFile);
    ~ObservedAdapters();
    ObservedAdapters(const ObservedAdapters&) = delete;
    ObservedAdapters& operator=(const ObservedAdapters&) = delete;

    /// Documents as runBenchmark() makes them: rates of the time since the interval before, and of
    /// the whole time with the places where frames were lost.
    QJsonObject interval();
    QJsonObject result(bool isInterrupted);

private:
    class Adapter;
    struct State;

    const std::unique_ptr<State> m_state;
};

} // namespace cli
