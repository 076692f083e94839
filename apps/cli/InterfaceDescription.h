// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "cli/Cameras.h"

#include <QJsonObject>

namespace cli {

/// What "list" tells of an interface: its names, its type and speed, its limits and its cameras.
/// Warns when the limits exceed the speed. Asks the cameras.
QJsonObject describeInterface(Cameras& all, const HostInterface& interface);

} // namespace cli
