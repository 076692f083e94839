// SPDX-License-Identifier: BSD-3-Clause
#include "cli/HostFindings.h"

#include "cli/Cameras.h"
#include "cli/Context.h"
#include "doctor/HostCollector.h"
#include "doctor/LinkCollector.h"

namespace cli {

doctor::HostEvidence collectEvidence(Context& context) {
    Cameras& cameras = context.openCameras();
    doctor::HostEvidence evidence;
    std::vector<doctor::InterfaceCameras> interfaces;
    for (const HostInterface& interface : cameras.interfaces())
        interfaces.push_back({interface.cameras, interface.otherTraffic});
    evidence.links = doctor::readLinks(cameras.controller(), interfaces);
    evidence.cameras = cameras.countReal();
    if (cameras.areSimulated()) {
        evidence.unread = "The cameras are simulated: adapters, addresses, memory and processors "
                          "of this host were not checked.";
        return evidence;
    }
    // Cameras send test packets to the program that controls them.
    context.closeCameras();
    doctor::HostCollector().read(evidence);
    return evidence;
}

QJsonObject describeFinding(const doctor::Finding& finding) {
    QJsonObject object{
        {QStringLiteral("severity"), QString::fromLatin1(doctor::nameOf(finding.severity))},
        {QStringLiteral("check"), QString::fromStdString(finding.check)},
        {QStringLiteral("subject"), QString::fromStdString(finding.subject)},
        {QStringLiteral("text"), QString::fromStdString(finding.text)},
    };
    if (!finding.evidence.empty())
        object[QStringLiteral("evidence")] = QString::fromStdString(finding.evidence);
    if (!finding.cure.empty())
        object[QStringLiteral("cure")] = QString::fromStdString(finding.cure);
    return object;
}

} // namespace cli
