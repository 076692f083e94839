// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <cstddef>
#include <memory>
#include <optional>

namespace cli {

/// The streams that network adapters and USB buses of this host receive, whichever program receives
/// them. Opens no camera and sends nothing. Bound to one thread.
class ObservedInterfaces {
public:
    /// At 1 Gbit/s and 1500 bytes of a packet, a minute takes 450 MB.
    static constexpr std::size_t defaultRecorded = std::size_t{256} << 20U;

    /// Begins at once. Without \p names, all adapters that are up and have an IPv4 address, and all
    /// USB buses that may be observed. With a \p captureFile, writes headers of packets there when
    /// frames of adapters were lost; they take \p mostRecorded bytes of memory, divided among the
    /// adapters. Throws a Failure for a wrong name or file, and where this
    /// program may not see the packets or transfers.
    ObservedInterfaces(const QStringList& names, const std::optional<QString>& captureFile,
                       std::size_t mostRecorded = defaultRecorded);
    ~ObservedInterfaces();
    ObservedInterfaces(const ObservedInterfaces&) = delete;
    ObservedInterfaces& operator=(const ObservedInterfaces&) = delete;

    /// Lines for the user that are new since the last call: of USB3 Vision cameras that are not
    /// observed, with what to do, unless interfaces were chosen; and of interfaces that were
    /// removed or are there again.
    QStringList takeNotices();
    /// Documents as runBenchmark() makes them: rates of the time since the interval before, and of
    /// the whole time with the places where frames were lost.
    QJsonObject interval();
    QJsonObject result(bool isInterrupted);

private:
    struct State;

    const std::unique_ptr<State> m_state;
};

} // namespace cli
