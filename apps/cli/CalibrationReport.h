// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "cli/Calibration.h"

#include <QJsonObject>
#include <QString>

namespace cli {

/// The result as a member of "links" in docs/schemas/calibrate.json. \p isSaved: whether the
/// capacity was kept.
QJsonObject describeCalibration(const CalibratedLink& link, bool isSaved);
/// The text of such a member, with lines of at most \p width characters where their words permit
/// it.
QString calibrationText(const QJsonObject& link, int width);

} // namespace cli
