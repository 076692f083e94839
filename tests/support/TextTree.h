// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QAbstractItemModel>
#include <QStringList>

#include <string>

/// The rows of a model as text, two blanks of indent per level, " | " between columns, a dash for
/// a cell that shows nothing (left out at the end of a row).
inline std::string textTree(const QAbstractItemModel& model, const QModelIndex& parent = {},
                            int level = 0) {
    std::string text;
    for (int row = 0; row < model.rowCount(parent); ++row) {
        QStringList cells;
        for (int column = 0; column < model.columnCount(parent); ++column) {
            const QString cell = model.index(row, column, parent).data().toString();
            cells.append(cell.isEmpty() ? QStringLiteral("-") : cell);
        }
        while (cells.size() > 1 && cells.last() == QLatin1String("-"))
            cells.removeLast();
        text += std::string(static_cast<std::size_t>(2 * level), ' ') +
                cells.join(QStringLiteral(" | ")).toStdString() + "\n" +
                textTree(model, model.index(row, 0, parent), level + 1);
    }
    return text;
}
