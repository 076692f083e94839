// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "platform/NetworkCounters.h"

#include <QJsonObject>
#include <QString>

namespace cli {

/// What an adapter has received by its own counters, which moved by \p moved in \p seconds:
/// "bytesPerSecond" and "packetsPerSecond", and "loadPercent" where the speed in bits per second is
/// known (not 0). Absent: counters that cannot be read. Reentrant.
QJsonObject adapterLoad(const platform::NetworkCounters& moved, double seconds,
                        double bitsPerSecond);

/// Adds what the adapter has discarded: "missedPackets", for which it had no room, and
/// "droppedPackets", which its driver or the kernel dropped behind it. These include packets of
/// protocols that nothing on the host takes.
void addAdapterDrops(QJsonObject& load, const platform::NetworkCounters& moved);

/// The load and the missed packets of an interface's "adapter" to follow its name: ", receives 75.7
/// MB/s (62 %), had no room for 40 packets"; empty without one.
QString loadText(const QJsonObject& interface);

} // namespace cli
