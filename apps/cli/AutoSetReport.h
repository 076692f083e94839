// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "cli/Cameras.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

namespace cli {

/// The cameras' limits in bytes per second; no number for one that is not open.
QJsonArray bandwidthsOf(const CameraList& cameras);

/// What Auto Set has done to each camera; \p before are the limits that they had.
QJsonArray describeAutoSet(const CameraList& cameras, const QJsonArray& before);

/// Whether every open camera that takes part has been given a limit, and there is an open one.
/// \p result has these descriptions as its "cameras".
bool isAutoSet(const QJsonObject& result);

/// The "interface" of a result, the sum of the limits beside what it carries, and the cameras.
QString autoSetText(const QJsonObject& result);

} // namespace cli
