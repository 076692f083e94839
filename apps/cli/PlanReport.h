// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "cli/PlannedLink.h"

#include <QJsonObject>
#include <QString>

namespace cli {

/// The plan of a link beside what Auto Set would do, as docs/schemas/plan.json describes it.
QJsonObject describePlan(const PlannedLink& link);
/// What is special about one of the "cameras" of that document: "locked, kept".
QString planNote(const QJsonObject& camera);
/// That document as text.
QString planText(const QJsonObject& link);

} // namespace cli
