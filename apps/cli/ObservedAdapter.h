// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "cli/ObservedInterface.h"
#include "observer/AdapterObserver.h"
#include "observer/CaptureFile.h"

#include <QString>
#include <QStringList>

#include <chrono>
#include <cstdint>
#include <memory>

namespace cli {

/// One network adapter, with a thread that takes its packets.
class ObservedAdapter : public ObservedInterface {
public:
    /// Begins at once, and keeps packets in the \p record, if there is one. Throws a Failure for a
    /// wrong name, and where this program may not open packet sockets.
    static std::unique_ptr<ObservedAdapter> open(const QString& name,
                                                 std::unique_ptr<observer::PacketRecord> record);

    /// Frames that were lost or incomplete until the last interval or result.
    virtual std::uint64_t lostFrames() const = 0;
    virtual observer::CapturedAdapter recorded() = 0;
    /// See observer::PacketRecord::completeSince().
    virtual std::chrono::nanoseconds recordedSince() const = 0;
};

/// Names of the network adapters that are up and have an IPv4 address. Reentrant.
QStringList adaptersThatAreUp();

} // namespace cli
