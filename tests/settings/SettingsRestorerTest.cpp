// SPDX-License-Identifier: BSD-3-Clause
#include "settings/SettingsRestorer.h"
#include "engine/CameraHandler.h"
#include "engine/MakeSystemController.h"
#include "engine/SystemController.h"
#include "features/FeatureController.h"
#include "settings/SettingsReader.h"
#include "settings/UserSet.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/FaultyCameras.h"

#include <gmock/gmock.h>

using namespace settings;
using testing::HasSubstr;

namespace {

bool never() {
    return false;
}

/// A simulated camera whose sensor has 64 x 64 pixels.
class RestoredCamera : public testing::Test {
protected:
    RestoredCamera() { open(); }

    void open() {
        m_camera.reset();
        m_interfaces.clear();
        m_controller = makeSystemController(m_cameras.system);
        m_interfaces = m_controller->enumerate();
        ASSERT_FALSE(m_interfaces.empty());
        m_camera = m_interfaces[0][0]->getFeatureController();
    }

    /// The camera has the settings of the factory afterwards.
    void powerCycle() {
        m_camera.reset();
        m_interfaces.clear();
        m_controller.reset();
        EXPECT_EQ(m_cameras.system.Shutdown(), OrvErrorSuccess);
        EXPECT_EQ(m_cameras.system.Startup(L"" FAULT_SCENARIO), OrvErrorSuccess);
        open();
    }

    void set(const char* feature, const FeatureValue& value) const {
        EXPECT_TRUE(m_camera->setFeatureValue(cameraModule, feature, value)) << feature;
    }
    FeatureValue get(const char* feature) const {
        return m_camera->getFeatureValue(cameraModule, feature);
    }

    /// Settings that depend on others: ranges, modes, selectors.
    void change() const {
        set("BinningHorizontal", std::int64_t{2});
        set("Width", std::int64_t{8});
        set("OffsetX", std::int64_t{24});
        set("ExposureTime", 1234.5);
        set("AcquisitionFrameRateEnable", true);
        set("AcquisitionFrameRate", 7.5);
        set("DeviceLinkThroughputLimit", std::int64_t{3'000'000});
        set("LineSelector", std::string("Line1"));
        set("LineMode", std::string("Output"));
        set("LineSelector", std::string("Line2"));
        set("GainSelector", std::string("AnalogAll"));
        set("Gain", 2.3);
    }

    /// A selector that was left elsewhere, or commands that were not ended, would hide faults.
    void expectAtRest(const char* selected, std::uint64_t call) const {
        EXPECT_EQ(get("DeviceRegistersValid"), FeatureValue(true)) << "call " << call;
        EXPECT_EQ(get("LineSelector"), FeatureValue(std::string(selected))) << "call " << call;
    }

    CapturedLog m_log;
    FaultyCameras m_cameras;
    std::shared_ptr<SystemController> m_controller;
    std::vector<CameraList> m_interfaces;
    std::shared_ptr<FeatureController> m_camera;
};

TEST_F(RestoredCamera, hasAllSettingsAgainInAnyOrder) {
    change();
    const ReadSettings saved = readSettings(m_camera, never);
    EXPECT_EQ(saved.problems, std::vector<std::string>());
    expectAtRest("Line2", 0);
    std::vector<std::string> order;
    for (const SavedFeature& feature : saved.features)
        order.push_back(feature.name);
    const auto first = [&](const char* name) {
        return std::find(order.begin(), order.end(), name);
    };
    EXPECT_LT(first("Gain"), first("Gamma")) << "the order of the description";
    for (const bool isReversed : {false, true}) {
        powerCycle();
        auto features = saved.features;
        if (isReversed)
            std::reverse(features.begin(), features.end());
        const RestoredSettings expected = compareSettings(m_camera, features, never);
        EXPECT_EQ(expected.differences.size(), 11U);
        const RestoredSettings restored = restoreSettings(m_camera, features, never);
        EXPECT_TRUE(restored.isComplete());
        EXPECT_EQ(restored.changed, 11);
        expectAtRest("Line2", 0);
        EXPECT_EQ(get("OffsetX"), FeatureValue(std::int64_t{24}));
        EXPECT_EQ(get("AcquisitionFrameRate"), FeatureValue(7.5));
        set("LineSelector", std::string("Line1"));
        EXPECT_EQ(get("LineMode"), FeatureValue(std::string("Output")));
    }
}

TEST_F(RestoredCamera, savesOnlyWhatCanBeWrittenBack) {
    set("ExposureAuto", std::string("Continuous"));
    for (const SavedFeature& feature : readSettings(m_camera, never).features) {
        EXPECT_NE(feature.name, "ExposureTime") << "the camera decides it";
        EXPECT_NE(feature.name, "AcquisitionFrameRate") << "it is off";
        EXPECT_NE(feature.name, "DeviceTemperature");
        EXPECT_NE(feature.name, "UserSetSelector") << "it is no setting";
        EXPECT_NE(feature.name, "AcquisitionStart");
    }
}

TEST_F(RestoredCamera, tellsWhyAValueDiffers) {
    const struct {
        SavedFeature saved;
        const char* reason;
    } cases[] = {
        {{"Width", OrvFeatureDataInt, {}, std::int64_t{128}}, "it takes 8 to 64 now"},
        {{"Gamma", OrvFeatureDataFloat, {}, 2.5}, "it takes 0.4 to 2.4 now"},
        {{"Gamma", OrvFeatureDataInt, {}, std::int64_t{1}}, "it has another type"},
        {{"Width", OrvFeatureDataInt, {}, std::int64_t{9}}, "the camera refused it "},
        {{"PixelFormat", OrvFeatureDataEnum, {}, std::string("RGB8")}, "entry is not available"},
        {{"AcquisitionFrameRate", OrvFeatureDataFloat, {}, 3.0}, "it cannot be written now"},
        {{"Nothing", OrvFeatureDataInt, {}, std::int64_t{1}}, "the camera has no such feature"},
        {{"LineMode",
          OrvFeatureDataEnum,
          {{"LineSelector", std::string("Line3")}},
          std::string("Input")},
         "LineSelector cannot be set to Line3: "},
    };
    for (const auto& each : cases) {
        const RestoredSettings restored = restoreSettings(m_camera, {each.saved}, never);
        ASSERT_EQ(restored.differences.size(), 1U) << each.reason;
        EXPECT_THAT(restored.differences[0].reason, HasSubstr(each.reason));
        EXPECT_FALSE(restored.isComplete());
        expectAtRest("Line0", 0);
    }
    const SavedFeature within{"Gain", OrvFeatureDataFloat, {}, 0.04};
    EXPECT_TRUE(compareSettings(m_camera, {within}, never).isComplete()) << "half a step is 0.05";
    const SavedFeature beyond{"Gain", OrvFeatureDataFloat, {}, 0.06};
    EXPECT_FALSE(compareSettings(m_camera, {beyond}, never).isComplete());
}

TEST_F(RestoredCamera, isCompleteOrReportedWhicheverCallFails) {
    change();
    const auto saved = readSettings(m_camera, never).features;
    powerCycle();
    const auto restore = [&](std::uint64_t failingCall) {
        set("OffsetX", std::int64_t{0});
        set("Width", std::int64_t{32});
        set("LineSelector", std::string("Line0"));
        RestoredSettings restored;
        const std::uint64_t calls = m_cameras.callsOf(
            [&] { restored = restoreSettings(m_camera, saved, never); }, failingCall);
        // A call that fails once is repeated.
        EXPECT_EQ(restored.problems, std::vector<std::string>()) << failingCall;
        EXPECT_TRUE(restored.isComplete()) << failingCall;
        expectAtRest("Line2", failingCall);
        EXPECT_EQ(compareSettings(m_camera, saved, never).differences.size(), 0U);
        return calls;
    };
    // Steps without a common divisor with the calls of one feature.
    EXPECT_GT(FaultyCameras::failEachCall(restore, 1, 11), 2000U);
}

TEST_F(RestoredCamera, isReadCompletelyWhicheverCallFails) {
    const std::size_t count = readSettings(m_camera, never).features.size();
    const auto read = [&](std::uint64_t failingCall) {
        ReadSettings found;
        const std::uint64_t calls =
            m_cameras.callsOf([&] { found = readSettings(m_camera, never); }, failingCall);
        EXPECT_EQ(found.problems, std::vector<std::string>()) << failingCall;
        EXPECT_EQ(found.features.size(), count) << failingCall;
        expectAtRest("Line0", failingCall);
        return calls;
    };
    EXPECT_GT(FaultyCameras::failEachCall(read, 1, 7), 1000U);
}

TEST_F(RestoredCamera, isAtRestAfterAnInterruption) {
    change();
    const auto saved = readSettings(m_camera, never).features;
    powerCycle();
    for (int allowed = 0;; allowed += 17) {
        int left = allowed;
        const RestoredSettings restored =
            restoreSettings(m_camera, saved, [&] { return left-- <= 0; });
        EXPECT_EQ(get("DeviceRegistersValid"), FeatureValue(true)) << allowed;
        if (restored.isComplete())
            break;
        EXPECT_THAT(restored.problems, testing::Contains("It was interrupted."));
        EXPECT_EQ(restored.changed, 0) << "not all was compared";
        ASSERT_LT(allowed, 5000);
    }
    EXPECT_TRUE(compareSettings(m_camera, saved, never).isComplete());
}

TEST_F(RestoredCamera, reportsACameraThatDisappears) {
    const auto saved = readSettings(m_camera, never).features;
    set("Width", std::int64_t{32});
    int left = 30;
    const RestoredSettings restored = restoreSettings(m_camera, saved, [&] {
        if (--left == 0)
            m_cameras.simulation.SetCameraPlugged("DEV_G001", false);
        return false;
    });
    EXPECT_FALSE(restored.isComplete());
    EXPECT_GT(restored.differences.size(), 50U);
    EXPECT_EQ(restored.differences.back().present, std::nullopt);
}

TEST_F(RestoredCamera, startsWithTheUserSetInWhichItsSettingsAre) {
    EXPECT_EQ(storeInUserSet(m_camera, "UserSet9"),
              "there is no user set \"UserSet9\". There is: Default, UserSet1, UserSet2");
    EXPECT_THAT(storeInUserSet(m_camera, "Default"), HasSubstr("nothing can be stored"));
    change();
    const auto saved = readSettings(m_camera, never).features;
    EXPECT_EQ(storeInUserSet(m_camera, "UserSet1"), "");
    EXPECT_EQ(get("UserSetSelector"), FeatureValue(std::string("Default")));
    m_cameras.simulation.SetCameraPlugged("DEV_G001", false);
    m_cameras.simulation.SetCameraPlugged("DEV_G001", true);
    open();
    EXPECT_EQ(compareSettings(m_camera, saved, never).differences.size(), 0U);
    EXPECT_TRUE(m_camera->runCommand(cameraModule, "UserSetLoad", 1000));
    EXPECT_EQ(get("Width"), FeatureValue(std::int64_t{64})) << "the settings of the factory";
}

} // namespace
