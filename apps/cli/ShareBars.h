// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QJsonObject>
#include <QStringList>

namespace cli {

/// \p table, the lines of benchmarkLines() for \p interface, with a bar behind each camera and the
/// total: the share of the payload's rate in the link's speed, or in the sum of all where the speed
/// is unknown. The bars are at most 40 characters wide; there is none where \p lineWidth leaves
/// less than 13. \p hasBlocks: they are made of block characters (Unicode), else of ASCII.
QStringList withShareBars(const QStringList& table, const QJsonObject& interface, int lineWidth,
                          bool hasBlocks);

} // namespace cli
