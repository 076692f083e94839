// SPDX-License-Identifier: BSD-3-Clause
#pragma once

namespace OrvCPP {

class Camera;
class Feature;
class FeatureContainer;
class Frame;
class ICameraFactory;
class ICameraListObserver;
class IFeatureObserver;
class IFrameObserver;
class IInterfaceListObserver;
class Interface;
class LocalDevice;
class OrvSystem;
class Stream;
class TransportLayer;

} // namespace OrvCPP
