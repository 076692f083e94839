// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "cli/Table.h"

#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <limits>

namespace cli {

/// Of an output that may have lines of any length.
inline constexpr int anyWidth = std::numeric_limits<int>::max();

/// The figures of an interface's cameras and their total as lines of a table, headings first.
/// \p interface is one of the objects that interfacesOf() returns. Drops the less important
/// columns when the table is wider than \p width characters, but none when that does not help.
QStringList benchmarkLines(const QJsonObject& interface, int width = anyWidth);

/// The same as cells, with all columns.
TableCells benchmarkCells(const QJsonObject& interface);

/// The result of runBenchmark() as text: for each interface its name, the duration, the table, and
/// where frames were lost; with \p explainsAll also where packets were that came again.
QString benchmarkText(const QJsonObject& benchmark, int width = anyWidth, bool explainsAll = false);

} // namespace cli
