// SPDX-License-Identifier: BSD-3-Clause
#include "cli/platform/Interruption.h"

#include <gtest/gtest.h>

#include <windows.h>

using namespace std::chrono_literals;

/// Not by a program of its own: without a window, a program that a test starts shares no console
/// with it, and so cannot be sent the key.
TEST(Interruption, isRequestedByCtrlC) {
    FreeConsole();
    EXPECT_NE(AllocConsole(), 0) << GetLastError();
    cli::Interruption interruption;
    EXPECT_FALSE(interruption.wait(0ms));
    ASSERT_NE(GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0), 0) << GetLastError();
    EXPECT_TRUE(interruption.wait(20s));
    EXPECT_TRUE(interruption.wait(0ms)) << "from then on always";
}
