// SPDX-License-Identifier: BSD-3-Clause
#include "viewer/LossWatch.h"

#include "session/StreamingLimits.h"

#include <QCoreApplication>

#include <algorithm>
#include <utility>

namespace viewer {

namespace {

/// What nameOf() answers, for translation.
[[maybe_unused]] constexpr const char* placeNames[] = {
    QT_TRANSLATE_NOOP("viewer::LossWatch", "camera"),
    QT_TRANSLATE_NOOP("viewer::LossWatch", "wire"),
    QT_TRANSLATE_NOOP("viewer::LossWatch", "adapter"),
    QT_TRANSLATE_NOOP("viewer::LossWatch", "kernel"),
    QT_TRANSLATE_NOOP("viewer::LossWatch", "path"),
    QT_TRANSLATE_NOOP("viewer::LossWatch", "program"),
    QT_TRANSLATE_NOOP("viewer::LossWatch", "usb"),
    QT_TRANSLATE_NOOP("viewer::LossWatch", "unknown")};

QString translated(const char* text) {
    return QCoreApplication::translate("viewer::LossWatch", text);
}

QString textOf(const LossFinding& finding) {
    const QString text =
        QCoreApplication::translate("viewer::LossWatch", "Where frames were lost: %1. %2")
            .arg(translated(nameOf(finding.place)), QString::fromStdString(finding.evidence));
    return finding.cure.empty()
               ? text
               : text + QStringLiteral("\n\n") + QString::fromStdString(finding.cure);
}

} // namespace

LossWatch::LossWatch(std::string interface, ObservedCamera camera, bool isSimulated)
    : m_interface(std::move(interface)), m_camera(std::move(camera)), m_isSimulated(isSimulated) {
    beginPeriod();
}

void LossWatch::beginPeriod() {
    m_periods.emplace_back(m_interface, std::vector{m_camera}, m_isSimulated).startFromNow();
}

QString LossWatch::findings(LossEvidence& period) const {
    period.noteEnd(std::chrono::milliseconds(0));
    InterfaceEvidence evidence = period.evidence();
    evidence.usbMemoryNeeded = session::usbMegabytesFor(m_camera.isUsb ? 1 : 0);
    if (!m_isSimulated)
        evidence.usbMemory = session::streamingMemory().usbMegabytes;
    const auto findings = findLosses(evidence);
    const auto first = std::find_if(findings.begin(), findings.end(),
                                    [](const LossFinding& finding) { return !finding.isRepaired; });
    return first == findings.end() ? QString() : textOf(*first);
}

const QString& LossWatch::look() {
    // Without new losses the text stays: it would only count the older ones down.
    if (m_periods.back().hasBadFrames())
        m_text = findings(m_periods.front());
    else if (!m_periods.front().hasBadFrames())
        m_text.clear();
    beginPeriod();
    if (m_periods.size() > looks)
        m_periods.pop_front();
    return m_text;
}

} // namespace viewer
