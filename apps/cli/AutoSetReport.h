// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "cli/Cameras.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

namespace cli {

/// The cameras' limits in bytes per second; null for one that is not open or has no limit.
QJsonArray bandwidthsOf(const CameraList& cameras);

/// The result of Auto Set for each camera; \p before are the limits before it.
QJsonArray describeAutoSet(const CameraList& cameras, const QJsonArray& before);

/// The "status" of a camera in these results for a person: "less than needed".
QString autoSetStatusText(const QString& status);

/// Whether at least one camera is open, and every open camera that takes part was given a limit.
/// \p result has the rows of describeAutoSet() as its "cameras".
bool isAutoSet(const QJsonObject& result);

/// The "error" where there is one, else the interface, the sum of the limits of all its cameras
/// beside its speed, and the table of the cameras that were set.
QString autoSetText(const QJsonObject& result);

} // namespace cli
