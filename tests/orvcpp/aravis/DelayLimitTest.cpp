// SPDX-License-Identifier: BSD-3-Clause
// A throughput limit for cameras that have only a packet delay.
#include "tests/orvcpp/aravis/FakeCameraFixture.h"

#include <fstream>
#include <iterator>

namespace {

using namespace sdk;
using namespace testing;

const std::string limitName = "DeviceLinkThroughputLimit";
const std::string modeName = "DeviceLinkThroughputLimitMode";
const std::string delayName = "GevSCPD";

class DelayLimit : public Test {
protected:
    explicit DelayLimit(std::vector<std::string> options = {}) {
        options.insert(options.end(), {"--throughput-limit", "0", "--frame-rate", "100"});
        m_fake = std::make_unique<fakecamera::FakeCameraProcess>(fakecamera::onlyAddress, options);
        m_started = std::make_unique<cameras::Started>();
        camera = cameras::find("FC0001");
        EXPECT_TRUE(camera && camera->Open(OrvAccessModeFull) == OrvErrorSuccess);
    }

    std::int64_t number(const std::string& name) const {
        return get<std::int64_t>(*camera, name.c_str());
    }
    OrvErrorType write(const std::string& name, std::int64_t value) const {
        return set(*camera, name.c_str(), value);
    }
    std::vector<std::string> names() const {
        std::vector<std::string> found;
        for (const auto& each : sdk::list<Feature>(*camera, &OrvCPP::Camera::GetFeatures))
            found.push_back(text(*each, &Feature::GetName));
        return found;
    }

    std::unique_ptr<fakecamera::FakeCameraProcess> m_fake;
    std::unique_ptr<cameras::Started> m_started;
    std::shared_ptr<Camera> camera;
};

/// Told of changes of a feature.
struct Watcher : OrvCPP::IFeatureObserver {
    void FeatureChanged(const std::shared_ptr<Feature>& /*feature*/) override { ++calls; }
    int calls = 0;
};

TEST_F(DelayLimit, isMadeOfThePacketDelayAndFollowsThePacketSize) {
    EXPECT_THAT(names(), AllOf(Contains(limitName).Times(1), Contains(modeName).Times(1)));
    const auto feature = sdk::feature(*camera, limitName.c_str());
    EXPECT_THAT(text(*feature, &Feature::GetDescription), HasSubstr("packet delay"));
    EXPECT_EQ(sdk::range<std::int64_t>(*feature).second, 125'000'000);
    EXPECT_EQ(number(limitName), 125'000'000) << "no delay";

    const auto watcher = std::make_shared<Watcher>();
    ASSERT_EQ(sdk::feature(*camera, delayName.c_str())->RegisterObserver(watcher), OrvErrorSuccess);
    ASSERT_EQ(write(limitName, 49'988'000), OrvErrorSuccess);
    EXPECT_EQ(watcher->calls, 1);
    EXPECT_EQ(number(limitName), 49'988'000);
    EXPECT_EQ(number(delayName), 16'807) << "1400 bytes in 28.007 us, of which 11.2 us on the link";
    EXPECT_EQ(write(limitName, 49'988'001), OrvErrorInvalidValue) << "between two steps";
    EXPECT_EQ(write(limitName, 125'012'000), OrvErrorInvalidValue);

    // The limit stays below what was written, whoever changes the packet size.
    ASSERT_EQ(write("GevSCPSPacketSize", 8000), OrvErrorSuccess);
    EXPECT_EQ(number(delayName), 96'039);
    EXPECT_THAT(number(limitName), AllOf(Le(49'988'000), Gt(49'980'000)));
    const auto streams = sdk::list<OrvCPP::Stream>(*camera, &OrvCPP::Camera::GetStreams);
    ASSERT_EQ(sdk::set(*streams.at(0), "GVSPPacketSize", std::int64_t{1400}), OrvErrorSuccess);
    EXPECT_THAT(number(limitName), AllOf(Le(49'988'000), Gt(49'960'000)));
    ASSERT_EQ(sdk::feature(*streams.at(0), "GVSPAdjustPacketSize")->RunCommand(), OrvErrorSuccess);
    EXPECT_GT(number("GevSCPSPacketSize"), 8000);
    EXPECT_THAT(number(limitName), AllOf(Le(49'988'000), Gt(49'960'000)));
}

TEST_F(DelayLimit, followsThePacketSizeAfterOthersHaveChangedIt) {
    ASSERT_EQ(set(*camera, "UserSetSelector", "UserSet1"), OrvErrorSuccess);
    ASSERT_EQ(write(limitName, 49'988'000), OrvErrorSuccess);
    ASSERT_EQ(sdk::feature(*camera, "UserSetSave")->RunCommand(), OrvErrorSuccess);
    ASSERT_EQ(write("GevSCPSPacketSize", 8000), OrvErrorSuccess);
    // Packets of 1400 bytes and their delay.
    ASSERT_EQ(sdk::feature(*camera, "UserSetLoad")->RunCommand(), OrvErrorSuccess);
    EXPECT_EQ(number(limitName), 49'988'000);
    ASSERT_EQ(write("GevSCPSPacketSize", 8000), OrvErrorSuccess);
    EXPECT_THAT(number(limitName), AllOf(Le(49'988'000), Gt(49'960'000)));
}

TEST_F(DelayLimit, isSwitchedOffAndOnAndPutsAForeignDelayBack) {
    ASSERT_EQ(write(delayName, 50'040), OrvErrorSuccess);
    // As after another start: the delay is that of someone else.
    ASSERT_EQ(camera->Close(), OrvErrorSuccess);
    ASSERT_EQ(camera->Open(OrvAccessModeFull), OrvErrorSuccess);
    const std::int64_t found = number(limitName);
    ASSERT_EQ(write(limitName, 12'488'000), OrvErrorSuccess);
    ASSERT_EQ(set(*camera, modeName.c_str(), "Off"), OrvErrorSuccess);
    EXPECT_EQ(number(delayName), 0);
    EXPECT_EQ(number(limitName), 12'488'000);
    EXPECT_EQ(getText(*camera, modeName.c_str()), "Off");
    EXPECT_EQ(write(limitName, found), OrvErrorInvalidAccess);
    ASSERT_EQ(write("GevSCPSPacketSize", 8000), OrvErrorSuccess);
    EXPECT_EQ(number(delayName), 0);
    ASSERT_EQ(write("GevSCPSPacketSize", 1400), OrvErrorSuccess);
    ASSERT_EQ(set(*camera, modeName.c_str(), "On"), OrvErrorSuccess);
    EXPECT_THAT(number(limitName), AllOf(Le(12'488'000), Gt(12'450'000)));
    ASSERT_EQ(write(limitName, found), OrvErrorSuccess);
    EXPECT_EQ(number(delayName), 50'040) << "not rounded to the grid";
}

TEST_F(DelayLimit, tellsTheFrameRateThatTheDelayAllowsAndIsLockedWhileStreaming) {
    EXPECT_NEAR(get<double>(*camera, "AcquisitionFrameRateLimit"), 100, 0.1);
    ASSERT_EQ(write(limitName, 20'000'000), OrvErrorSuccess);
    const auto rate = get<double>(*camera, "AcquisitionFrameRateLimit");
    // 1,048,576 bytes of image, without the headers of 1400 bytes.
    EXPECT_NEAR(rate, 20e6 * 1364 / 1400 / 1'048'576, 0.3);
    const auto receiver = std::make_shared<sdk::Receiver>(camera);
    const std::int64_t before = number("TestFramesSent");
    ASSERT_EQ(sdk::start(*camera, receiver), OrvErrorSuccess);
    const auto begun = cameras::Clock::now();
    EXPECT_FALSE(sdk::ask(*sdk::feature(*camera, limitName.c_str()), &Feature::IsWritable));
    EXPECT_EQ(write(limitName, 30'008'000), OrvErrorInvalidAccess);
    EXPECT_TRUE(sdk::eventually([&] { return number("TestFramesSent") >= before + 20; }));
    const std::chrono::duration<double> seconds = cameras::Clock::now() - begun;
    EXPECT_LT(20 / seconds.count(), rate * 1.1) << "the camera sends as slowly as told";
    camera->StopContinuousImageAcquisition();
    EXPECT_EQ(write(limitName, 30'008'000), OrvErrorSuccess);
}

/// The description of the fake camera with a text in place of another.
std::string description(const std::string& from, const std::string& to) {
    std::ifstream file(FAKE_CAMERA_DESCRIPTION);
    std::string text(std::istreambuf_iterator<char>(file), {});
    const std::size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return text.replace(at, from.size(), to);
}

TEST(DelayLimitOf, aCameraIsMadeOnlyWhereItIsPossibleAndNeeded) {
    const struct {
        const char* limit;
        std::string description;
        bool expected;
    } cases[] = {
        {"1", {}, true},
        {"0", description("<pFeature>GevTimestampTickFrequency</pFeature>", ""), false},
        {"0", description("<pValue>TickFrequencyRegister</pValue>", "<Value>0</Value>"), false},
        {"0", description("<pFeature>GevSCPD</pFeature>", ""), false},
        {"0", description("<pFeature>DeviceLinkSpeed</pFeature>", ""), false},
    };
    const FileTree files;
    for (const auto& [hasLimit, xml, expected] : cases) {
        std::vector<std::string> options{"--throughput-limit", hasLimit};
        if (!xml.empty())
            options.insert(options.end(), {"--genicam", files.write("camera.xml", xml)});
        const fakecamera::FakeCameraProcess fake(fakecamera::onlyAddress, options);
        const cameras::Started started;
        const auto camera = cameras::find("FC0001");
        ASSERT_TRUE(camera && camera->Open(OrvAccessModeFull) == OrvErrorSuccess);
        std::shared_ptr<Feature> found;
        EXPECT_EQ(camera->GetFeatureByName(limitName.c_str(), found),
                  expected ? OrvErrorSuccess : OrvErrorNotFound);
        EXPECT_EQ(camera->GetFeatureByName("AcquisitionFrameRateLimit", found), OrvErrorNotFound);
    }
}

} // namespace
