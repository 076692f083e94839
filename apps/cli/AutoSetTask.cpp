// SPDX-License-Identifier: BSD-3-Clause
#include "cli/AutoSetTask.h"

#include "cli/Arguments.h"
#include "cli/AutoSetReport.h"
#include "cli/CameraLimit.h"
#include "cli/Failure.h"
#include "engine/CameraHandler.h"

namespace cli {

namespace {

void autoSet(Cameras& cameras, const AutoSetTask& task) {
    const double cameraMargin = task.margins.cameraPercent / 100;
    if (task.camera) {
        task.camera->adjustPacketSize(task.adjustsPacketSize);
        autoSetCamera(*task.camera, cameraMargin);
    } else {
        cameras.controller().autoSetInterface(task.interface->name.toStdString(),
                                              task.interface->index, task.adjustsPacketSize,
                                              task.margins.interfacePercent / 100, cameraMargin);
    }
}

CameraList affected(const AutoSetTask& task) {
    return task.camera ? CameraList{task.camera} : task.interface->cameras;
}

QJsonObject runTask(Cameras& cameras, const AutoSetTask& task) {
    const CameraList list = affected(task);
    const QJsonArray before = bandwidthsOf(list);
    for (const auto& camera : list) {
        if (camera->isOpened() && !camera->isLocked())
            camera->switchBandwidthLimitOn();
    }
    autoSet(cameras, task);
    const auto bitsPerSecond = static_cast<double>(
        cameras.controller().getInterfaceSpeed(task.interface->name.toStdString()));
    QJsonObject result{
        {QStringLiteral("interface"), task.interface->name},
        {QStringLiteral("bitsPerSecond"), bitsPerSecond},
        {QStringLiteral("bandwidthBytesPerSecond"), sumOfLimits(task.interface->cameras)},
        {QStringLiteral("interfaceMarginPercent"), task.margins.interfacePercent},
        {QStringLiteral("cameraMarginPercent"), task.margins.cameraPercent},
        {QStringLiteral("cameras"), describeAutoSet(list, before)},
    };
    addSharing(result, *task.interface);
    return result;
}

} // namespace

std::vector<AutoSetTask> autoSetTasks(Cameras& cameras, const ChosenInterfaces& chosen,
                                      const std::shared_ptr<CameraHandler>& camera,
                                      const Arguments& arguments) {
    std::vector<AutoSetTask> tasks;
    for (const HostInterface* interface : chosen.interfaces)
        tasks.push_back({interface, camera, marginsFor(arguments, cameras, *interface),
                         arguments.has(QStringLiteral("adjust-packet-size"))});
    return tasks;
}

QJsonArray runAutoSet(Cameras& cameras, const std::vector<AutoSetTask>& tasks, bool isList) {
    QJsonArray results;
    for (const AutoSetTask& task : tasks) {
        const QString error = divisionObstacle(cameras, *task.interface, !task.camera);
        if (!error.isEmpty() && !isList)
            throw Failure(error);
        results.append(error.isEmpty()
                           ? runTask(cameras, task)
                           : QJsonObject{{QStringLiteral("interface"), task.interface->name},
                                         {QStringLiteral("error"), error}});
    }
    // Behind the last, since interfaces may share their link.
    for (const AutoSetTask& task : tasks)
        cameras.warnOfExcess(*task.interface, task.margins.interfacePercent);
    return results;
}

} // namespace cli
