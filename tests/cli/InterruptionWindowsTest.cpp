// SPDX-License-Identifier: BSD-3-Clause
#include "cli/platform/Interruption.h"

#include <gtest/gtest.h>

#include <windows.h>

using namespace std::chrono_literals;

/// Tests the class in this process: a program that it started without a window would have no
/// console in common with it, through which to send Ctrl+C.
TEST(Interruption, isRequestedByCtrlC) {
    FreeConsole();
    EXPECT_NE(AllocConsole(), 0) << GetLastError();
    cli::Interruption interruption;
    EXPECT_FALSE(interruption.wait(0ms));
    ASSERT_NE(GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0), 0) << GetLastError();
    EXPECT_TRUE(interruption.wait(20s));
    EXPECT_TRUE(interruption.wait(0ms)) << "from then on always";
}
