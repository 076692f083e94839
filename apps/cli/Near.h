// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QString>
#include <QStringList>

namespace cli {

/// How many letters must be inserted, removed, replaced or swapped with their neighbour to make one
/// text of the other. Case counts for nothing.
int editDistance(const QString& a, const QString& b);

/// Those of \p known that \p wanted may have been meant to be, the nearest first, at most three.
QStringList nearNames(const QString& wanted, const QStringList& known);

/// "Did you mean "a" or "b"?" with a blank in front; empty when nothing is near.
QString didYouMean(const QString& wanted, const QStringList& known);

} // namespace cli
