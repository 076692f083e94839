// SPDX-License-Identifier: BSD-3-Clause
// Cameras that would end or stall a program which believes them.
#include "tests/orvcpp/aravis/DescriptionTexts.h"
#include "tests/orvcpp/aravis/FakeCameraFixture.h"
#include "tests/support/CapturedLog.h"

#include <future>

namespace {

using namespace testing;
using cameras::Clock;
using cameras::find;
using descriptions::described;
using fakecamera::FakeCameraProcess;
using std::chrono::milliseconds;

/// Longest time that a camera may cost.
constexpr milliseconds costLimit{3000};

struct Outcome {
    OrvErrorType error;
    std::string log;
};

/// Opens a fake camera with these options.
Outcome openWith(const std::vector<std::string>& options) {
    const FakeCameraProcess fake(fakecamera::onlyAddress, options);
    CapturedLog log;
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
    const auto archive = [&files](std::size_t at) {
        auto bytes = descriptions::archive("F.xml", described(""));
        bytes[bytes.size() - at] = 0xFF;
        const auto path = files.write("d.zip", {bytes.begin(), bytes.end()});
        char url[64];
        std::snprintf(url, sizeof url, "Local:F.zip;10000;%zx", bytes.size());
        return std::vector<std::string>{"--genicam", path, "--genicam-url", url};
    };
    const std::string root = "<Category Name='Root'><pFeature>A</pFeature></Category>";
    const std::pair<std::vector<std::string>, std::string> cases[] = {
        {file(root + "<Integer Name='A'><pValue>B</pValue></Integer>"
                     "<IntSwissKnife Name='B'><pVariable Name='X'>A</pVariable></IntSwissKnife>"),
         R"(the value of node "A" depends on itself)"},
        {file(root + "<IntReg Name='A'><Address>0</Address><Length>-1</Length></IntReg>"),
         R"(the register "A" has -1 bytes)"},
        {{"--genicam-url", "Local:F.xml;10000;FFFFFFFFFFFFFFFF"}, "its place is \"Local:F.xml;"},
        {{"--genicam-url", "Local:F.xml;10000;FFFFFFFF"}, "it has 4294967295 bytes"},
        {{"--genicam-url", "File:///dev/zero"}, "its place is \"File:///dev/zero\""},
        {archive(6), "directory is broken"},
    };
    for (const auto& [options, fault] : cases) {
        const Outcome outcome = openWith(options);
        EXPECT_EQ(outcome.error, OrvErrorFeaturesUnavailable) << fault;
        EXPECT_THAT(outcome.log, HasSubstr("DEV_02FC7F000002: The camera's description cannot be "
                                           "used: "));
        EXPECT_THAT(outcome.log, HasSubstr(fault));
    }
}

TEST(HostileCamera, isOpenedFromAnArchiveAndSlowly) {
    const FileTree files;
    const auto bytes = descriptions::archive("F.xml", described("<Category Name='Root'/>"));
    char url[64];
    std::snprintf(url, sizeof url, "Local:F.zip;10000;%zx", bytes.size());
    const auto path = files.write("d.zip", {bytes.begin(), bytes.end()});
    EXPECT_EQ(openWith({"--genicam", path, "--genicam-url", url}).error, OrvErrorSuccess);
    // Its description takes 6 s.
    EXPECT_EQ(openWith({"--answer-delay", "60"}).error, OrvErrorSuccess);
}

TEST(HostileCamera, thatOnlyAsksForTimeCostsItselfSecondsAndOthersNothing) {
    for (const std::vector<std::string>& options :
         {std::vector<std::string>{"--serial", "BAD", "--pending", "60000"},
          std::vector<std::string>{"--serial", "BAD", "--answer-delay", "7000"}}) {
        const FakeCameraProcess bad("127.0.0.2", options);
        const FakeCameraProcess good("127.0.0.3", {"--serial", "GOOD"});
        const cameras::Started started;
        const auto stuck = find("BAD");
        const auto honest = find("GOOD");
        ASSERT_TRUE(stuck && honest);
        const auto timed = [](const std::shared_ptr<OrvCPP::Camera>& camera) {
            const auto begun = Clock::now();
            const OrvErrorType error = camera->Open(OrvAccessModeFull);
            return std::pair(error, Clock::now() - begun);
        };
        auto opening = std::async(std::launch::async, [&] { return timed(stuck); });
        std::this_thread::sleep_for(milliseconds(100));
        EXPECT_THAT(timed(honest), Pair(OrvErrorSuccess, Lt(milliseconds(1000))));
        EXPECT_THAT(opening.get(), Pair(Ne(OrvErrorSuccess), Lt(costLimit)));
    }
}

TEST(HostileCamera, thatStallsInTheLibraryDelaysOthersAsLongAsItsOwnCall) {
    // The library asks it for the description when it begins to stall.
    const FakeCameraProcess bad("127.0.0.2",
                                {"--serial", "BAD", "--pending", "1500", "--pending-after", "40"});
    const FakeCameraProcess good("127.0.0.3", {"--serial", "GOOD"});
    const cameras::Started started;
    const auto stuck = find("BAD");
    const auto honest = find("GOOD");
    ASSERT_TRUE(stuck && honest);
    const auto begun = Clock::now();
    auto opening = std::async(std::launch::async, [&] { return stuck->Open(OrvAccessModeFull); });
    std::this_thread::sleep_for(milliseconds(200));
    EXPECT_EQ(honest->Open(OrvAccessModeFull), OrvErrorBusy);
    EXPECT_EQ(opening.get(), OrvErrorTimeout);
    EXPECT_LT(Clock::now() - begun, costLimit);
    EXPECT_TRUE(sdk::eventually([&] {
        std::this_thread::sleep_for(milliseconds(500));
        return honest->Open(OrvAccessModeFull) == 0;
    }));
}

using StallingCamera = cameras::OneCamera;

TEST_F(StallingCamera, endsAllItsCallsWithinSeconds) {
    const auto width = sdk::feature(*camera, "Width");
    ASSERT_EQ(sdk::set(*camera, "TestPendingTime", std::int64_t{2000}), OrvErrorSuccess);
    const auto begun = Clock::now();
    EXPECT_EQ(sdk::start(*camera, std::make_shared<sdk::Receiver>(camera)), OrvErrorTimeout);
    std::int64_t value = 0;
    for (int i = 0; i < 20; ++i)
        EXPECT_EQ(width->GetValue(value), OrvErrorTimeout);
    EXPECT_LT(Clock::now() - begun, costLimit);
    EXPECT_EQ(find("FC0001"), camera) << "it is there";
}

TEST(LibraryMessages, nameTheCameraOnceInTheLog) {
    const FileTree files;
    testing::internal::CaptureStderr();
    const Outcome outcome =
        openWith({"--genicam", files.write("d.xml", described("<Integer Name='A'>&k;</Integer>"))});
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_THAT(outcome.log, HasSubstr("DEV_02FC7F000002: The camera library reports: "));
}

} // namespace
