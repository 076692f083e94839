// SPDX-License-Identifier: BSD-3-Clause
#include "cli/WrappedText.h"

namespace cli {

QStringList wrappedLines(const QString& text, const QString& mark, int width) {
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

} // namespace cli
