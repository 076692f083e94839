// SPDX-License-Identifier: BSD-3-Clause
#include "sdk/OrvCameraWrapper.h"
#include "sdk/OrvInterfaceWrapper.h"
#include "sdk/OrvSystemWrapper.h"
#include "sdk/OrvTransportLayerWrapper.h"
#include "sdk/SimulatedHost.h"
#include "tests/sdk/VirtualPosition.h"
#include "tests/support/MockOrvSystem.h"

#include <QtGlobal>
#include <gmock/gmock.h>

namespace {

using namespace testing;

using System = OrvSystemWrapper;

template <class... Methods> std::vector<int> positions(Methods... methods) {
    return {virtualPosition(methods)...};
}

TEST(SystemWrapper, declaresItsOperationsInOrder) {
    EXPECT_THAT(
        positions(&System::GetInstance, &System::QueryVersion, qOverload<>(&System::Startup),
                  qOverload<const wchar_t*>(&System::Startup), &System::Shutdown,
                  &System::GetInterfaces, &System::GetInterfaceByID, &System::GetCameras,
                  &System::GetCameraByID, &System::RegisterCameraListObserver,
                  &System::UnregisterCameraListObserver, &System::RegisterInterfaceListObserver,
                  &System::UnregisterInterfaceListObserver, &System::RegisterCameraFactory,
                  &System::UnregisterCameraFactory, &System::GetTransportLayers,
                  &System::GetTransportLayerByID, &System::CreateCameraHandler),
        testing::ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18));
}

TEST(SystemWrapper, handsArgumentsToTheSdkUnchanged) {
    StrictMock<MockOrvSystem> system;
    System wrapper(system);
    OrvVersionInfo version;
    const wchar_t* path = L"x.json";
    std::shared_ptr<OrvCPP::Camera> camera;
    std::shared_ptr<OrvCPP::Interface> interface;
    std::shared_ptr<OrvCPP::TransportLayer> layer;
    std::vector<std::shared_ptr<OrvInterfaceWrapper>> interfaces;
    std::vector<std::shared_ptr<OrvCameraWrapper>> cameras;
    std::vector<std::shared_ptr<OrvTransportLayerWrapper>> layers;
    const std::shared_ptr<OrvCPP::ICameraListObserver> cameraObserver;
    const std::shared_ptr<OrvCPP::IInterfaceListObserver> interfaceObserver;
    const std::shared_ptr<OrvCPP::ICameraFactory> factory;

    EXPECT_EQ(&wrapper.GetInstance(), &system);
    EXPECT_EQ(&System().GetInstance(), &OrvCPP::OrvSystem::GetInstance()) << "by default";
    int code = 0;
// The arguments that the SDK receives, and those of the wrapper.
#define FORWARDS(Operation, received, given)                                                       \
    EXPECT_CALL(system, Operation received).WillOnce(Return(--code));                              \
    EXPECT_EQ(wrapper.Operation given, code)

    FORWARDS(QueryVersion, (Ref(version)), (version));
    FORWARDS(Startup, (), ());
    FORWARDS(Startup, (path), (path));
    FORWARDS(Shutdown, (), ());
    FORWARDS(GetInterfaces, (nullptr, _), (interfaces));
    FORWARDS(GetCameras, (nullptr, _), (cameras));
    FORWARDS(GetTransportLayers, (nullptr, _), (layers));
    FORWARDS(GetInterfaceByID, (StrEq("if"), Ref(interface)), ("if", interface));
    FORWARDS(GetCameraByID, (StrEq("cam"), Ref(camera)), ("cam", camera));
    FORWARDS(GetTransportLayerByID, (StrEq("tl"), Ref(layer)), ("tl", layer));
    FORWARDS(RegisterCameraListObserver, (Ref(cameraObserver)), (cameraObserver));
    FORWARDS(UnregisterCameraListObserver, (Ref(cameraObserver)), (cameraObserver));
    FORWARDS(RegisterInterfaceListObserver, (Ref(interfaceObserver)), (interfaceObserver));
    FORWARDS(UnregisterInterfaceListObserver, (Ref(interfaceObserver)), (interfaceObserver));
    FORWARDS(RegisterCameraFactory, (Ref(factory)), (factory));
    FORWARDS(UnregisterCameraFactory, (), ());
#undef FORWARDS
}

TEST(SimulatedHost, isEmptyForASystemOfRealCameras) {
    const NiceMock<MockOrvSystem> system;
    EXPECT_THAT(simulatedHost(system).adapters, IsEmpty());
    EXPECT_THAT(simulatedHost(system).usbNodes, IsEmpty());
}

} // namespace
