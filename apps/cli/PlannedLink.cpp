// SPDX-License-Identifier: BSD-3-Clause
#include "cli/PlannedLink.h"

#include "cli/CameraLimit.h"
#include "cli/Failure.h"
#include "cli/platform/Interruption.h"
#include "engine/CameraHandler.h"
#include "engine/SafetyMargins.h"
#include "engine/SendingRates.h"
#include "logging/Log.h"
#include "logging/ThreadLogStream.h"

#include <algorithm>
#include <iostream>
#include <utility>

namespace cli {

namespace {

/// So often new frames are looked for.
constexpr std::chrono::milliseconds samplingPeriod{2};

bool shareLink(const HostInterface& a, const HostInterface& b) {
    return &a == &b || a.sharing.contains(b.name);
}

bool isIn(const ChosenInterfaces& chosen, const HostInterface& interface) {
    const auto& all = chosen.interfaces;
    return std::find(all.begin(), all.end(), &interface) != all.end();
}

double otherBytes(const Cameras& cameras, const ChosenInterfaces& planned) {
    double sum = 0;
    for (const HostInterface& interface : cameras.interfaces()) {
        if (!shareLink(*planned.interfaces.front(), interface))
            continue;
        sum += interface.otherTraffic;
        if (!isIn(planned, interface))
            sum += sumOfLimits(interface.cameras);
    }
    return sum;
}

void prepareLink(PlannedLink& link, Cameras& cameras, const Arguments& arguments) {
    const HostInterface& first = *link.interfaces.interfaces.front();
    link.margins = marginsFor(arguments, cameras, first);
    link.error = divisionObstacle(cameras, first, true);
    if (!link.error.isEmpty())
        return;
    const std::uint64_t bitsPerSecond =
        cameras.controller().getInterfaceSpeed(first.name.toStdString());
    link.bitsPerSecond = static_cast<double>(bitsPerSecond);
    link.otherBytes = otherBytes(cameras, link.interfaces);
    link.usableBytes =
        usableBytesPerSecond(bitsPerSecond, link.margins.interfacePercent) - link.otherBytes;
    link.plan =
        std::make_unique<LinkPlan>(link.interfaces.cameras(), link.margins.cameraPercent / 100);
}

void checkInterruption(Interruption& interruption) {
    if (interruption.isRequested())
        throw Failure(QStringLiteral("Interrupted: no limit was changed."));
}

void measure(LinkPlan& plan, std::chrono::duration<double> seconds, Interruption& interruption) {
    using std::chrono::steady_clock;
    SendingRates rates(plan.camerasToMeasure());
    const auto end = steady_clock::now() + seconds;
    while (steady_clock::now() < end) {
        if (interruption.wait(samplingPeriod))
            return;
        rates.sample();
    }
    plan.noteMeasurement(rates);
}

void compareWithAutoSet(const PlannedLink& link, SystemController& controller) {
    // Auto Set explains its decisions, which are not taken here.
    const Logging::ThreadLogStream silenced(std::cout, LogMessageType::StdOut);
    link.plan->compareWithAutoSet([&] {
        for (const HostInterface* interface : link.interfaces.interfaces)
            controller.autoSetInterface(interface->name.toStdString(), interface->index, false,
                                        link.margins.interfacePercent / 100,
                                        link.margins.cameraPercent / 100);
    });
}

void warnOfUnknown(const LinkPlan& plan) {
    for (const PlannedCamera& camera : plan.cameras()) {
        const std::string name = camera.handler->getCameraInfo().cameraId;
        if (camera.role == PlanRole::NotOpened)
            logWarning(name + ": It could not be opened; what it sends is not counted.");
        else if (camera.role == PlanRole::Fixed && camera.needBytes <= 0)
            logWarning(name + ": It has no limit and sent nothing; it is not counted.");
        else if (camera.role == PlanRole::Planned && camera.needBytes <= 0)
            logWarning(name + ": Its need is not known; it may get its highest limit.");
    }
}

} // namespace

const PlannedCamera* findPlanned(const LinkPlan& plan, const QString& id) {
    const auto& cameras = plan.cameras();
    const auto found = std::find_if(cameras.begin(), cameras.end(), [&](const auto& camera) {
        return cameraId(*camera.handler) == id;
    });
    return found == cameras.end() ? nullptr : &*found;
}

std::vector<ChosenInterfaces> linksOf(const ChosenInterfaces& chosen) {
    std::vector<ChosenInterfaces> links;
    for (const HostInterface* interface : chosen.interfaces) {
        const auto same =
            std::find_if(links.begin(), links.end(), [&](const ChosenInterfaces& link) {
                return shareLink(*link.interfaces.front(), *interface);
            });
        ChosenInterfaces& link = same == links.end() ? links.emplace_back() : *same;
        link.interfaces.push_back(interface);
        link.isList = link.interfaces.size() > 1;
    }
    return links;
}

std::vector<PlannedLink> plannedLinks(Cameras& cameras, const ChosenInterfaces& chosen,
                                      const Arguments& arguments) {
    std::vector<PlannedLink> links;
    for (ChosenInterfaces& interfaces : linksOf(chosen))
        links.emplace_back().interfaces = std::move(interfaces);
    for (PlannedLink& link : links)
        prepareLink(link, cameras, arguments);
    return links;
}

void findNeeds(LinkPlan& plan, Cameras& cameras, std::chrono::duration<double> seconds,
               Interruption& interruption) {
    plan.findNeeds([&] { return interruption.isRequested(); });
    checkInterruption(interruption);
    if (seconds.count() > 0 && !plan.camerasToMeasure().empty()) {
        cameras.warnOfLimits();
        measure(plan, seconds, interruption);
        checkInterruption(interruption);
    }
}

void surveyLink(PlannedLink& link, Cameras& cameras, std::chrono::duration<double> seconds,
                Interruption& interruption) {
    findNeeds(*link.plan, cameras, seconds, interruption);
    compareWithAutoSet(link, cameras.controller());
    if (!link.plan->putBack())
        throw Failure(QStringLiteral("%1: A limit could not be put back, see the messages above.")
                          .arg(link.interfaces.names()));
    checkInterruption(interruption);
    warnOfUnknown(*link.plan);
}

} // namespace cli
