// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/GObjects.h"
#include "tests/orvcpp/aravis/FakeCameraFixture.h"

#include <future>

namespace {

using cameras::find;
using cameras::Started;
using fakecamera::FakeCameraProcess;
using orv::aravis::GObjectPtr;
using testing::UnorderedElementsAre;

std::string idOf(const OrvCPP::Camera& camera) {
    return sdk::text([&](char* b, std::uint32_t& n) { return camera.GetID(b, n, false); });
}

OrvAccessModeType permitted(const OrvCPP::Camera& camera) {
    OrvAccessModeType modes = OrvAccessModeUnknown;
    EXPECT_EQ(camera.GetPermittedAccess(modes), OrvErrorSuccess);
    return modes;
}

/// Another application that controls the fake camera.
class OtherProgram {
public:
    OtherProgram()
        : m_own(g_inet_address_new_from_string("127.0.0.1")),
          m_camera(g_inet_address_new_from_string(cameras::address)),
          m_device(arv_gv_device_new(m_own.get(), m_camera.get(), nullptr)) {
        EXPECT_TRUE(arv_gv_device_is_controller(ARV_GV_DEVICE(m_device.get())));
    }

private:
    const GObjectPtr<GInetAddress> m_own;
    const GObjectPtr<GInetAddress> m_camera;
    const GObjectPtr<ArvDevice> m_device;
};

TEST(Discovery, findsIdentityAdapterAndTwinsOfOneSerialNumber) {
    const FakeCameraProcess one("127.0.0.2", {"--serial", "S1", "--user-id", "left"});
    const FakeCameraProcess twin("127.0.0.3", {"--serial", "S1"});
    const Started started;

    std::vector<std::string> ids;
    for (const auto& camera : sdk::cameras())
        ids.push_back(idOf(*camera));
    EXPECT_THAT(ids, UnorderedElementsAre("DEV_02FC7F000002", "DEV_02FC7F000003"));

    const auto camera = sdk::camera("DEV_02FC7F000002");
    EXPECT_EQ(sdk::text(*camera, &OrvCPP::Camera::GetName), "left");
    EXPECT_EQ(sdk::text(*camera, &OrvCPP::Camera::GetModel), "Fake GigE");
    EXPECT_EQ(sdk::text(*camera, &OrvCPP::Camera::GetSerialNumber), "S1");

    std::shared_ptr<OrvCPP::Interface> interface;
    ASSERT_EQ(camera->GetInterface(interface), OrvErrorSuccess);
    EXPECT_EQ(sdk::text(*interface, &OrvCPP::Interface::GetID), "lo");
    EXPECT_EQ(sdk::get<std::int64_t>(*interface, "GevInterfaceSubnetIPAddress"), 0x7F000001);
    EXPECT_EQ(sdk::get<std::int64_t>(*interface, "GevInterfaceMTU"), 65536);
}

TEST(Discovery, keepsACameraThatGetsAnotherAddress) {
    FakeCameraProcess before("127.0.0.2");
    const Started started;
    const auto camera = find("FC0001");
    ASSERT_TRUE(camera);
    before.kill();
    const FakeCameraProcess after("127.0.0.3", {"--mac", std::to_string(0x7F000002)});
    const auto place = [&] {
        return sdk::text([&](char* b, std::uint32_t& n) { return camera->GetID(b, n, true); });
    };
    EXPECT_TRUE(sdk::eventually([&] { return place() == "GEV:02:fc:7f:00:00:02@127.0.0.3"; }));
    EXPECT_EQ(find("FC0001"), camera);
    EXPECT_EQ(idOf(*camera), "DEV_02FC7F000002");
    EXPECT_EQ(camera->Open(OrvAccessModeFull), OrvErrorSuccess);
}

TEST(Access, isExclusiveAcrossPrograms) {
    const FakeCameraProcess fake("127.0.0.2");
    const Started started;
    const auto camera = find("FC0001");
    ASSERT_TRUE(camera);
    const OtherProgram other;
    EXPECT_EQ(permitted(*camera), OrvAccessModeRead);
    EXPECT_EQ(camera->Open(OrvAccessModeFull), OrvErrorInvalidAccess);
    ASSERT_EQ(camera->Open(OrvAccessModeRead), OrvErrorSuccess);
    EXPECT_EQ(sdk::getText(*camera, "DeviceModelName"), "Fake GigE");
    EXPECT_EQ(sdk::set(*camera, "Width", std::int64_t{512}), OrvErrorInvalidAccess);
}

TEST(Access, losesACameraThatAnotherProgramTookOver) {
    FakeCameraProcess fake("127.0.0.2");
    const Started started;
    const auto camera = find("FC0001");
    ASSERT_TRUE(camera);
    ASSERT_EQ(camera->Open(OrvAccessModeFull), OrvErrorSuccess);
    const auto width = sdk::feature(*camera, "Width");
    fake.kill();
    fake.restart();
    const OtherProgram other;
    std::int64_t value = 0;
    EXPECT_TRUE(sdk::eventually([&] { return width->GetValue(value) == OrvErrorNotFound; }));
    EXPECT_EQ(camera->Close(), OrvErrorSuccess);
    EXPECT_TRUE(sdk::eventually([] { return find("FC0001") != nullptr; }));
    EXPECT_EQ(camera->Open(OrvAccessModeFull), OrvErrorInvalidAccess);
}

TEST(Access, opensCamerasAtTheSameTime) {
    const FakeCameraProcess one("127.0.0.2", {"--serial", "1"});
    const FakeCameraProcess other("127.0.0.3", {"--serial", "2"});
    const Started started;
    const auto cameras = sdk::cameras();
    ASSERT_EQ(cameras.size(), 2U);
    for (int round = 0; round < 5; ++round) {
        std::vector<std::future<OrvErrorType>> opened;
        for (const auto& camera : cameras)
            opened.push_back(std::async(std::launch::async,
                                        [camera] { return camera->Open(OrvAccessModeFull); }));
        for (std::size_t i = 0; i < cameras.size(); ++i) {
            ASSERT_EQ(opened[i].get(), OrvErrorSuccess);
            EXPECT_EQ(sdk::get<std::int64_t>(*cameras[i], "Width"), 1024);
            EXPECT_EQ(cameras[i]->Close(), OrvErrorSuccess);
        }
    }
}

} // namespace
