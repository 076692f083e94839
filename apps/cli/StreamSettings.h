// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QJsonObject>

class CameraHandler;

namespace cli {

/// What decides on the data that an open camera sends, as far as it has these features:
/// "firmware", "address", "packetSizeBytes", "packetDelayTicks" (of the camera's timestamp),
/// "pixelFormat", "width", "height", "exposureMicroseconds" and "framesPerSecond" (what it
/// reports, or is set to). Asks the camera.
QJsonObject streamSettings(const CameraHandler& camera);

} // namespace cli
