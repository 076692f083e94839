// SPDX-License-Identifier: BSD-3-Clause
#include "cli/ShareBars.h"

#include <QJsonArray>

#include <algorithm>
#include <cmath>

namespace cli {

namespace {

constexpr int widest = 40;
constexpr int narrowest = 13;
/// Between the table and the bars.
constexpr int gap = 2;
/// The headings of the table and the rule below them.
constexpr int headings = 2;

QString bar(double share, int width, bool hasBlocks) {
    const int filled = static_cast<int>(std::lround(std::clamp(share, 0.0, 1.0) * width));
    const QChar full = hasBlocks ? QChar(0x2588) : QLatin1Char('#');
    const QChar empty = hasBlocks ? QChar(0x2591) : QLatin1Char('.');
    return QString(filled, full) + QString(width - filled, empty);
}

} // namespace

QStringList withShareBars(const QStringList& table, const QJsonObject& interface, int lineWidth,
                          bool hasBlocks) {
    const int tableWidth = table[1].size();
    const int width = std::min(lineWidth - tableWidth - gap, widest);
    QJsonArray rows = interface[QStringLiteral("cameras")].toArray();
    const QJsonValue total = interface[QStringLiteral("total")];
    rows.append(total);
    if (width < narrowest || rows.size() + headings != table.size())
        return table;
    const QString rate = QStringLiteral("bytesPerSecond");
    const QString percent = QStringLiteral("linkPercent");
    const bool isOfLink = total.toObject().contains(percent);
    const double sum = std::max(total[rate].toDouble(), 1.0);
    QStringList cells{isOfLink ? QStringLiteral("Share of link") : QStringLiteral("Share of sum"),
                      QString(width, QLatin1Char('-'))};
    for (const QJsonValue& row : rows) {
        const double share = isOfLink ? row[percent].toDouble() / 100 : row[rate].toDouble() / sum;
        cells += bar(share, width, hasBlocks);
    }
    QStringList lines;
    for (int i = 0; i < table.size(); ++i)
        lines += table[i].leftJustified(tableWidth + gap) + cells[i];
    return lines;
}

} // namespace cli
