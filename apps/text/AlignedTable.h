// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QStringList>
#include <QVector>

/// Rows of cells as lines of text with aligned columns, as the programs print them. Thread-safe.
///
/// The first row has the headings; a line of hyphens follows it. All rows have a cell per column.
/// \p isNumber is true for each column to be aligned to the right. No line ends with a space.
QStringList alignedTable(const QVector<QStringList>& rows, const QVector<bool>& isNumber);
