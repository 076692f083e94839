// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QString>
#include <QStringList>

namespace cli {

/// Width of sentences on a wide terminal, and in files, in characters.
constexpr int longestLine = 100;

/// \p text in lines of at most \p width characters, where its words permit it. The first begins
/// with \p mark, the others with as many blanks.
QStringList wrappedLines(const QString& text, const QString& mark, int width);

} // namespace cli
