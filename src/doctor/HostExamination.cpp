// SPDX-License-Identifier: BSD-3-Clause
#include "doctor/HostExamination.h"

#include "doctor/HostChecks.h"

#include <algorithm>

namespace doctor {

const char* nameOf(Severity severity) {
    switch (severity) {
    case Severity::Error:
        return "error";
    case Severity::Warning:
        return "warning";
    case Severity::Hint:
        return "hint";
    case Severity::Unknown:
        return "unknown";
    case Severity::Ok:
        break;
    }
    return "ok";
}

namespace {

/// Adds the cameras that could not be opened and of which no check has found the reason.
void checkOpened(const HostEvidence& evidence, Findings& findings) {
    for (const LinkEvidence& link : evidence.links) {
        for (const StreamingCamera& camera : link.cameras) {
            const bool isExplained =
                std::any_of(findings.begin(), findings.end(), [&](const Finding& finding) {
                    return finding.severity == Severity::Error &&
                           (finding.subject == camera.id ||
                            finding.evidence.find(camera.id) != std::string::npos);
                });
            if (!camera.isOpened && !isExplained)
                findings.push_back({Severity::Error, "open", camera.id,
                                    "The camera could not be opened.", camera.warning, ""});
        }
    }
}

} // namespace

Findings examine(const HostEvidence& evidence) {
    Findings findings;
    checkLinks(evidence, findings);
    if (evidence.unread.empty()) {
        checkAddresses(evidence, findings);
        checkPaths(evidence, findings);
        checkAdapters(evidence, findings);
        checkComputer(evidence, findings);
    } else {
        findings.push_back({Severity::Unknown, "host", "this host", evidence.unread, "", ""});
    }
    checkOpened(evidence, findings);
    std::stable_sort(findings.begin(), findings.end(), [](const Finding& one, const Finding& two) {
        return one.severity < two.severity;
    });
    return findings;
}

} // namespace doctor
