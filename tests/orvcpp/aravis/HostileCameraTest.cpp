// SPDX-License-Identifier: BSD-3-Clause
// Cameras that would end or stall a program which believes them.
#include "tests/orvcpp/aravis/DescriptionTexts.h"
#include "tests/orvcpp/aravis/FakeCameraFixture.h"
#include "tests/support/CapturedLog.h"

#include <functional>
#include <future>
#include <sstream>

namespace {

using namespace testing;
using namespace cameras;
using descriptions::described;
using fakecamera::FakeCameraProcess;
using std::chrono::milliseconds;

/// Longest time that a camera may cost.
constexpr milliseconds costLimit{3000};

/// What the opening of a fake camera with these options answers and logs.
std::pair<OrvErrorType, std::string> openWith(const std::vector<std::string>& options) {
    const FakeCameraProcess fake(fakecamera::onlyAddress, options);
    const CapturedLog log;
    const cameras::Started started;
    const auto camera = find("FC0001");
    const OrvErrorType error = camera ? camera->Open(OrvAccessModeFull) : OrvErrorUnknown;
    return {error, log.text()};
}

TEST(HostileCamera, isRefusedForItsDescriptionAndNamedInTheLog) {
    const FileTree files;
    int number = 0;
    const auto file = [&](const std::string& nodes) {
        return std::vector<std::string>{"--genicam",
                                        files.write(std::to_string(++number), described(nodes))};
    };
    const auto bytes = descriptions::archive("F.xml", described("<Category Name='Root'/>"));
    std::ostringstream url;
    url << "Local:F.zip;10000;" << std::hex << bytes.size();
    const auto archive = [&](char endOfSize) {
        std::string content(bytes.begin(), bytes.end());
        content[content.size() - 7] = endOfSize;
        const auto path = files.write(std::to_string(++number), content);
        return std::vector<std::string>{"--genicam", path, "--genicam-url", url.str()};
    };
    const std::string root = "<Category Name='Root'><pFeature>A</pFeature></Category>";
    // Options and fault; none where the camera is good.
    const std::pair<std::vector<std::string>, std::string> cases[] = {
        {file(root + "<Integer Name='A'><pValue>B</pValue></Integer>"
                     "<IntSwissKnife Name='B'><pVariable Name='X'>A</pVariable></IntSwissKnife>"),
         R"(the value of node "A" depends on itself)"},
        {file(root + "<IntReg Name='A'><Address>0</Address><Length>-1</Length></IntReg>"),
         R"(the register "A" has -1 bytes)"},
        {{"--genicam-url", "Local:F.xml;10000;FFFFFFFFFFFFFFFF"}, "its place is \"Local:F.xml;"},
        {{"--genicam-url", "Local:F.xml;10000;FFFFFFFF"}, "it has 4294967295 bytes"},
        {{"--genicam-url", "File:///dev/zero"}, "its place is \"File:///dev/zero\""},
        {archive('\xFF'), "the archive's directory is broken"},
        {archive('\0'), ""},
        // Its description takes 6 s.
        {{"--answer-delay", "60"}, ""},
    };
    for (const auto& [options, fault] : cases) {
        const auto [error, log] = openWith(options);
        EXPECT_EQ(error, fault.empty() ? OrvErrorSuccess : OrvErrorFeaturesUnavailable) << fault;
        const std::string line = "DEV_02FC7F000002: The camera's description cannot be used: ";
        EXPECT_THAT(log, HasSubstr(fault.empty() ? "" : line + fault));
    }
}

/// A camera that stalls, and one that does not.
struct BadAndGood {
    explicit BadAndGood(std::vector<std::string> options) : bad("127.0.0.2", options) {}

    FakeCameraProcess bad;
    FakeCameraProcess good{"127.0.0.3", {"--serial", "GOOD"}};
    cameras::Started started;
    std::shared_ptr<sdk::Camera> stuck = find("FC0001");
    std::shared_ptr<sdk::Camera> honest = find("GOOD");
};

std::pair<OrvErrorType, Clock::duration> timedOpen(sdk::Camera& camera) {
    const auto begun = Clock::now();
    const OrvErrorType error = camera.Open(OrvAccessModeFull);
    return {error, Clock::now() - begun};
}

TEST(HostileCamera, thatOnlyAsksForTimeCostsItselfSecondsAndOthersNothing) {
    for (const std::vector<std::string>& options :
         {std::vector<std::string>{"--pending", "60000"}, {"--answer-delay", "7000"}}) {
        const BadAndGood cameras(options);
        ASSERT_TRUE(cameras.stuck && cameras.honest);
        auto opening = std::async(std::launch::async, timedOpen, std::ref(*cameras.stuck));
        std::this_thread::sleep_for(milliseconds(100));
        EXPECT_THAT(timedOpen(*cameras.honest), Pair(OrvErrorSuccess, Lt(milliseconds(1000))));
        EXPECT_THAT(opening.get(), Pair(Ne(OrvErrorSuccess), Lt(costLimit)));
        OrvAccessModeType modes = OrvAccessModeUnknown;
        EXPECT_EQ(cameras.stuck->GetPermittedAccess(modes), OrvErrorNotFound);
    }
}

TEST(HostileCamera, thatStallsInTheLibraryDelaysOthersAsLongAsItsOwnCall) {
    // The library asks it for the description when it begins to stall.
    const BadAndGood cameras({"--pending", "1500", "--pending-after", "40"});
    ASSERT_TRUE(cameras.stuck && cameras.honest);
    auto opening = std::async(std::launch::async, timedOpen, std::ref(*cameras.stuck));
    std::this_thread::sleep_for(milliseconds(200));
    EXPECT_EQ(cameras.honest->Open(OrvAccessModeFull), OrvErrorBusy);
    EXPECT_THAT(opening.get(), Pair(OrvErrorTimeout, Lt(costLimit)));
    EXPECT_TRUE(sdk::eventually([&] {
        std::this_thread::sleep_for(milliseconds(500));
        return cameras.honest->Open(OrvAccessModeFull) == 0;
    }));
}

using StallingCamera = cameras::OneCamera;

TEST_F(StallingCamera, endsAllItsCallsWithinSeconds) {
    const auto width = sdk::feature(*camera, "Width");
    ASSERT_EQ(sdk::set(*camera, "TestPendingTime", std::int64_t{2000}), OrvErrorSuccess);
    const auto begun = Clock::now();
    EXPECT_EQ(sdk::start(*camera, std::make_shared<sdk::Receiver>(camera)), OrvErrorTimeout);
    for (int i = 0; i < 20; ++i)
        EXPECT_EQ(sdk::readInteger(*width), OrvErrorTimeout);
    EXPECT_LT(Clock::now() - begun, costLimit);
    EXPECT_EQ(find("FC0001"), camera) << "it is there";
}

TEST(LibraryMessages, nameTheCameraOnceInTheLog) {
    const FileTree files;
    testing::internal::CaptureStderr();
    const auto [error, log] =
        openWith({"--genicam", files.write("d.xml", described("<Integer Name='A'>&k;</Integer>"))});
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_THAT(log, HasSubstr("DEV_02FC7F000002: The camera library reports: "));
}

} // namespace
