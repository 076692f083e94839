// SPDX-License-Identifier: BSD-3-Clause
#include "cli/LossFindings.h"

#include <QJsonObject>

#include <algorithm>

namespace cli {

namespace {

/// On a wide terminal, and in files.
constexpr int longestLine = 100;

/// \p text in lines that begin with blanks, the first one with \p mark.
QStringList wrapped(const QString& text, const QString& mark, int width) {
    QStringList lines;
    QString line = mark;
    bool isEmpty = true;
    for (const QString& word : text.split(QLatin1Char(' '))) {
        if (!isEmpty && line.size() + 1 + word.size() > width) {
            lines.append(line);
            line = QString(mark.size(), QLatin1Char(' '));
            isEmpty = true;
        }
        line += (isEmpty ? QString() : QStringLiteral(" ")) + word;
        isEmpty = false;
    }
    return lines << line;
}

} // namespace

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
        lines +=
            wrapped(QStringLiteral("%1: %2%3. %4")
                        .arg(who, place, isRepaired ? QStringLiteral(", no frame lost") : QString(),
                             finding[QStringLiteral("evidence")].toString()),
                    QStringLiteral("  "), room);
        const QString cure = finding[QStringLiteral("cure")].toString();
        if (!cure.isEmpty())
            lines += wrapped(cure, QStringLiteral("    -> "), room);
    }
    if (!lines.isEmpty())
        lines.prepend(QStringLiteral("Where frames were lost:"));
    else if (explainsAll)
        lines.append(QStringLiteral("No frame was lost, and no packet had to be sent again."));
    return lines;
}

} // namespace cli
