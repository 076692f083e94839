// SPDX-License-Identifier: BSD-3-Clause
#include "cli/LossCapture.h"
#include "cli/Failure.h"
#include "tests/support/FileTree.h"

#include <gtest/gtest.h>
#include <qtestsupport_core.h>

#include <chrono>
#include <filesystem>

namespace {

using namespace cli;
using namespace std::chrono_literals;

TEST(LossCapture, writesLossesBeforeTheirPacketsAreForgottenAndAgainAfterAnError) {
    const FileTree files;
    const std::filesystem::path folder = files.root() / "captures";
    std::filesystem::create_directory(folder);
    int begun = 0;
    const auto packets = [&begun] {
        ++begun;
        return std::vector<observer::CapturedAdapter>();
    };
    std::chrono::nanoseconds now = 1000s;
    LossCapture capture(QString::fromStdString((folder / "lost.pcapng").string()), packets,
                        [&now] { return now; });
    std::uint64_t losses = 0;
    const auto note = [&](std::chrono::nanoseconds recorded) {
        capture.note(losses, now - recorded);
        now += 1s;
    };
    const auto awaits = [&](const char* member) {
        return QTest::qWaitFor([&] {
            capture.note(losses, 0ns);
            return capture.document().contains(QLatin1String(member));
        });
    };
    ++losses;
    note(60s);
    EXPECT_EQ(begun, 1);
    EXPECT_TRUE(awaits("writtenAfterSeconds"));
    EXPECT_FALSE(capture.document().contains(QLatin1String("partial")));
    // Packets after 998 s, noted at 1002 s.
    note(60s);
    ++losses;
    note(5s);
    EXPECT_EQ(begun, 1) << "the record will have all packets at the next call";
    std::filesystem::remove_all(folder);
    note(5500ms);
    EXPECT_EQ(begun, 2) << "at the next call, it will not";
    ++losses;
    EXPECT_TRUE(awaits("error"));
    note(5s);
    EXPECT_EQ(begun, 2) << "it is not tried again at once";
    capture.finish();
    EXPECT_EQ(begun, 3);
    std::filesystem::create_directory(folder);
    capture.finish();
    EXPECT_EQ(begun, 4);
    EXPECT_TRUE(capture.document().contains(QLatin1String("partial"))) << "of the older losses";
    EXPECT_TRUE(std::filesystem::exists(folder / "lost.pcapng"));
    EXPECT_THROW(LossCapture(QStringLiteral("/dev/null"), {}), Failure);
}

} // namespace
