// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "cli/DivisionOptions.h"

#include <QJsonArray>

#include <memory>
#include <vector>

namespace cli {

/// What Auto Set is to do on one interface.
struct AutoSetTask {
    const HostInterface* interface;
    /// The camera to set; null when the interface is divided.
    std::shared_ptr<CameraHandler> camera;
    Margins margins;
    bool adjustsPacketSize;
};

/// A task for each interface, with the margins that the options give. \p camera as in the task.
std::vector<AutoSetTask> autoSetTasks(Cameras& cameras, const ChosenInterfaces& chosen,
                                      const std::shared_ptr<CameraHandler>& camera,
                                      const Arguments& arguments);

/// Runs Auto Set, and returns an object for each task, see autoSetText(). A task that cannot be
/// done has an "error" and leaves the others alone; unless \p isList it throws a Failure.
QJsonArray runAutoSet(Cameras& cameras, const std::vector<AutoSetTask>& tasks, bool isList);

} // namespace cli
