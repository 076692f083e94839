// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "engine/CameraList.h"

#include <QJsonArray>
#include <QJsonValue>

class CameraHandler;

namespace cli {

/// The bandwidth limit of an open camera in bytes per second; null for a camera that has none.
QJsonValue bandwidthLimit(const CameraHandler& camera);

/// Sum of the limits of the open cameras, in bytes per second. A camera whose limit is switched off
/// counts with what it reports that it sends.
double sumOfLimits(const CameraList& cameras);

/// \p rows with the text "unlimited" in place of limits that are null, for a table.
QJsonArray withUnlimited(const QJsonArray& rows);

} // namespace cli
