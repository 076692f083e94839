// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/GObjects.h"
#include "tests/orvcpp/aravis/FakeCameraFixture.h"

#include <future>

namespace {

using namespace cameras;
using fakecamera::FakeCameraProcess;
using orv::aravis::GObjectPtr;

/// Takes control of the fake camera as another application does.
GObjectPtr<ArvDevice> controlByOther() {
    const GObjectPtr<GInetAddress> own(g_inet_address_new_from_string("127.0.0.1"));
    const GObjectPtr<GInetAddress> camera(g_inet_address_new_from_string(fakecamera::onlyAddress));
    GObjectPtr<ArvDevice> device(arv_gv_device_new(own.get(), camera.get(), nullptr));
    EXPECT_TRUE(arv_gv_device_is_controller(ARV_GV_DEVICE(device.get())));
    return device;
}

TEST(Discovery, findsIdentityAdapterAndTwinsOfOneSerialNumber) {
    const FakeCameraProcess one("127.0.0.2", {"--serial", "S1", "--user-id", "left"});
    const FakeCameraProcess twin("127.0.0.3", {"--serial", "S1"});
    const Started started;
    const auto found = sdk::cameras();
    ASSERT_EQ(found.size(), 2U);
    EXPECT_TRUE(sdk::camera("DEV_02FC7F000003"));
    const auto camera = sdk::camera("DEV_02FC7F000002");
    EXPECT_EQ(sdk::text(*camera, &OrvCPP::Camera::GetName), "left");
    EXPECT_EQ(sdk::text(*camera, &OrvCPP::Camera::GetModel), "Fake GigE");
    EXPECT_EQ(sdk::text(*camera, &OrvCPP::Camera::GetSerialNumber), "S1");
    const auto interface = sdk::ask(*camera, &OrvCPP::Camera::GetInterface);
    EXPECT_EQ(sdk::text(*interface, &OrvCPP::Interface::GetID), "lo");
    EXPECT_EQ(sdk::get<std::int64_t>(*interface, "GevInterfaceSubnetIPAddress"), 0x7F000001);
    EXPECT_EQ(sdk::get<std::int64_t>(*interface, "GevInterfaceMTU"), 65536);

    // They can be opened at the same time.
    for (int round = 0; round < 5; ++round) {
        std::vector<std::future<OrvErrorType>> opened;
        for (const auto& each : found)
            opened.push_back(
                std::async(std::launch::async, [each] { return each->Open(OrvAccessModeFull); }));
        for (std::size_t i = 0; i < found.size(); ++i) {
            ASSERT_EQ(opened[i].get(), OrvErrorSuccess);
            EXPECT_EQ(sdk::get<std::int64_t>(*found[i], "Width"), 1024);
            EXPECT_EQ(found[i]->Close(), OrvErrorSuccess);
        }
    }
}

TEST(Discovery, keepsACameraThatGetsAnotherAddress) {
    FakeCameraProcess before("127.0.0.2");
    const Started started;
    const auto camera = find("FC0001");
    ASSERT_TRUE(camera);
    before.kill();
    const FakeCameraProcess after("127.0.0.3", {"--mac", std::to_string(0x7F000002)});
    EXPECT_TRUE(sdk::eventually(
        [&] { return sdk::id(*camera, true) == "GEV:02:fc:7f:00:00:02@127.0.0.3"; }));
    EXPECT_EQ(find("FC0001"), camera);
    EXPECT_EQ(sdk::id(*camera), "DEV_02FC7F000002");
    EXPECT_EQ(camera->Open(OrvAccessModeFull), OrvErrorSuccess);
}

TEST(Access, isExclusiveAcrossProgramsAndLostToOneThatTakesOver) {
    FakeCameraProcess fake(fakecamera::onlyAddress);
    const Started started;
    const auto camera = find("FC0001");
    ASSERT_TRUE(camera);
    auto other = controlByOther();
    EXPECT_EQ(sdk::ask(*camera, &OrvCPP::Camera::GetPermittedAccess), OrvAccessModeRead);
    EXPECT_EQ(camera->Open(OrvAccessModeFull), OrvErrorInvalidAccess);
    ASSERT_EQ(camera->Open(OrvAccessModeRead), OrvErrorSuccess);
    EXPECT_EQ(sdk::getText(*camera, "DeviceModelName"), "Fake GigE");
    EXPECT_EQ(sdk::set(*camera, "Width", std::int64_t{512}), OrvErrorInvalidAccess);
    ASSERT_EQ(camera->Close(), OrvErrorSuccess);
    other.reset();

    ASSERT_EQ(camera->Open(OrvAccessModeFull), OrvErrorSuccess);
    const auto width = sdk::feature(*camera, "Width");
    fake.kill();
    fake.restart();
    other = controlByOther();
    EXPECT_TRUE(sdk::eventually([&] { return sdk::readInteger(*width) == OrvErrorNotFound; }));
    EXPECT_EQ(camera->Close(), OrvErrorSuccess);
    EXPECT_TRUE(sdk::eventually([] { return find("FC0001") != nullptr; }));
    EXPECT_EQ(camera->Open(OrvAccessModeFull), OrvErrorInvalidAccess);
}

} // namespace
