// SPDX-License-Identifier: BSD-3-Clause
#include "cli/LossFindings.h"

#include "cli/WrappedText.h"

#include <QJsonObject>

#include <algorithm>

namespace cli {

QJsonArray lossFindings(const InterfaceEvidence& evidence) {
    QJsonArray findings;
    for (const LossFinding& finding : findLosses(evidence)) {
        QJsonObject object{
            {QStringLiteral("place"), QString::fromLatin1(nameOf(finding.place))},
            {QStringLiteral("evidence"), QString::fromStdString(finding.evidence)},
            {QStringLiteral("repaired"), finding.isRepaired},
        };
        if (!finding.camera.empty())
            object[QStringLiteral("camera")] = QString::fromStdString(finding.camera);
        if (!finding.cure.empty())
            object[QStringLiteral("cure")] = QString::fromStdString(finding.cure);
        findings.append(object);
    }
    return findings;
}

QStringList lossLines(const QJsonArray& findings, bool explainsAll, int width) {
    const int room = std::min(width, longestLine);
    QStringList lines;
    for (const QJsonValue& finding : findings) {
        const bool isRepaired = finding[QStringLiteral("repaired")].toBool();
        if (isRepaired && !explainsAll)
            continue;
        const QString camera = finding[QStringLiteral("camera")].toString();
        const QString who = camera.isEmpty() ? QStringLiteral("All cameras") : camera;
        const QString place = finding[QStringLiteral("place")].toString();
        lines += wrappedLines(QStringLiteral("%1: %2%3. %4")
                                  .arg(who, place,
                                       isRepaired ? QStringLiteral(", no frame lost") : QString(),
                                       finding[QStringLiteral("evidence")].toString()),
                              QStringLiteral("  "), room);
        const QString cure = finding[QStringLiteral("cure")].toString();
        if (!cure.isEmpty())
            lines += wrappedLines(cure, QStringLiteral("    -> "), room);
    }
    if (!lines.isEmpty())
        lines.prepend(QStringLiteral("Where frames were lost:"));
    else if (explainsAll)
        lines.append(QStringLiteral("No frame was lost, and no packet had to be sent again."));
    return lines;
}

} // namespace cli
