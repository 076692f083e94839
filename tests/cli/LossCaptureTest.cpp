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
    LossCapture capture(QString::fromStdString((folder / "lost.pcapng").string()), [&begun] {
        ++begun;
        return std::vector<observer::CapturedAdapter>();
    });
    std::uint64_t losses = 0;
    const auto awaits = [&](const char* member) {
        return QTest::qWaitFor([&] {
            capture.note(losses, 0ns);
            return capture.document().contains(QLatin1String(member));
        });
    };
    capture.note(++losses, 0ns);
    EXPECT_EQ(begun, 1);
    EXPECT_TRUE(awaits("writtenAfterSeconds"));
    capture.note(++losses, 0ns);
    EXPECT_EQ(begun, 1) << "the record has all packets since";
    std::filesystem::remove_all(folder);
    capture.note(losses, std::chrono::system_clock::now().time_since_epoch());
    EXPECT_EQ(begun, 2);
    EXPECT_TRUE(awaits("error"));
    std::filesystem::create_directory(folder);
    capture.finish();
    EXPECT_EQ(begun, 3);
    EXPECT_TRUE(std::filesystem::exists(folder / "lost.pcapng"));
    EXPECT_THROW(LossCapture(QStringLiteral("/dev/null"), {}), Failure);
}

} // namespace
