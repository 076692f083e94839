// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <memory>
#include <vector>

class CameraHandler;

/// Cameras of one host interface, in the SDK's order.
using CameraList = std::vector<std::shared_ptr<CameraHandler>>;
