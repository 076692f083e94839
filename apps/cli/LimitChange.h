// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "cli/InterfaceChoice.h"

#include <QJsonObject>
#include <QString>

namespace cli {

class Arguments;
class Interruption;

/// Divides the interfaces by Auto Set. Returns "method" ("autoSet"), "cameras" with "id", "name",
/// "bandwidthBytesPerSecondBefore", "bandwidthBytesPerSecond" (null without a limit) and "note" of
/// all cameras, and "errors", a list of sentences about interfaces that were not divided. The
/// options are the margins of divisionOptions(), and --adjust-packet-size.
QJsonObject changeByAutoSet(Cameras& cameras, const ChosenInterfaces& chosen,
                            const Arguments& arguments);

/// The same by a plan ("plan"), see PlannedLink. Throws a Failure when the program is to end; no
/// limit is changed then.
QJsonObject changeByPlan(Cameras& cameras, const ChosenInterfaces& chosen,
                         const Arguments& arguments, Interruption& interruption);

/// A changed division with "kept" or "putBack" as text: "the limits of Auto Set, which were put
/// back."
QString limitsText(const QJsonObject& change);

} // namespace cli
