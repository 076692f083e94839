// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string>

class FeatureController;

/// Name of the network adapter through which a camera streams, by its features; empty where it is
/// not known. Bound to the thread of the camera.
std::string adapterOf(const FeatureController& features);
