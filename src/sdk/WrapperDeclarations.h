// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/Forward.h"

class OrvCameraWrapper;
class OrvFeatureContainerWrapper;
class OrvFeatureWrapper;
class OrvFrameWrapper;
class OrvInterfaceWrapper;
class OrvLocalDeviceWrapper;
class OrvStreamWrapper;
class OrvSystemWrapper;
class OrvTransportLayerWrapper;
