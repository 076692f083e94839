// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "losses/LossAnalysis.h"

#include <QJsonArray>
#include <QStringList>

namespace cli {

/// Where frames of an interface were lost: objects with "place", "camera" (absent for the whole
/// interface), "evidence", "cure" (absent where none is known) and "repaired".
QJsonArray lossFindings(const InterfaceEvidence& evidence);

/// The findings as lines of at most \p width characters, where their words permit it, with a
/// heading. Without \p explainsAll, only places where frames were lost, and no line when there are
/// none.
QStringList lossLines(const QJsonArray& findings, bool explainsAll, int width);

} // namespace cli
