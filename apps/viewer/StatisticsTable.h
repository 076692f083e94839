// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

namespace viewer {

/// Rows as lines of text with aligned columns: the first \p textColumns to the left, the others to
/// the right. The first row is the heading, and is underlined. Ends with a line break.
QString alignedTable(const QVector<QStringList>& rows, int textColumns);

} // namespace viewer
