// SPDX-License-Identifier: BSD-3-Clause
#include "cli/Near.h"

#include <QPair>
#include <QVector>

#include <algorithm>
#include <vector>

namespace cli {

int editDistance(const QString& first, const QString& second) {
    const QString a = first.toCaseFolded();
    const QString b = second.toCaseFolded();
    const auto width = static_cast<std::size_t>(b.size()) + 1;
    // Row i has the distances of a's first i letters from all beginnings of b.
    std::vector<std::vector<int>> rows(static_cast<std::size_t>(a.size()) + 1,
                                       std::vector<int>(width));
    for (std::size_t j = 0; j < width; ++j)
        rows[0][j] = static_cast<int>(j);
    for (std::size_t i = 1; i < rows.size(); ++i) {
        rows[i][0] = static_cast<int>(i);
        for (std::size_t j = 1; j < width; ++j) {
            const auto at = [&](std::size_t back) {
                return a[static_cast<int>(i - back)];
            };
            const auto bt = [&](std::size_t back) {
                return b[static_cast<int>(j - back)];
            };
            rows[i][j] = std::min({rows[i - 1][j] + 1, rows[i][j - 1] + 1,
                                   rows[i - 1][j - 1] + (at(1) == bt(1) ? 0 : 1)});
            if (i > 1 && j > 1 && at(1) == bt(2) && at(2) == bt(1))
                rows[i][j] = std::min(rows[i][j], rows[i - 2][j - 2] + 1);
        }
    }
    return rows.back().back();
}

QStringList nearNames(const QString& wanted, const QStringList& known) {
    constexpr int most = 3;
    constexpr int shortestPart = 3;
    const int farthest = std::max(1, wanted.size() / 3);
    QVector<QPair<int, QString>> found;
    for (const QString& name : known) {
        const int distance = editDistance(wanted, name);
        const bool isPart =
            wanted.size() >= shortestPart && name.contains(wanted, Qt::CaseInsensitive);
        if (distance <= farthest || isPart)
            found.append({isPart ? std::min(distance, farthest) : distance, name});
    }
    std::stable_sort(found.begin(), found.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    QStringList names;
    for (const auto& entry : qAsConst(found)) {
        if (names.size() < most && !names.contains(entry.second))
            names.append(entry.second);
    }
    return names;
}

QString didYouMean(const QString& wanted, const QStringList& known) {
    const QStringList names = nearNames(wanted, known);
    if (names.isEmpty())
        return {};
    return QStringLiteral(" Did you mean \"%1\"?").arg(names.join(QStringLiteral("\" or \"")));
}

} // namespace cli
