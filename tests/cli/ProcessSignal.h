// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "tests/cli/SpanletProcess.h"

#include <gtest/gtest.h>

#include <signal.h>

/// Sends a POSIX signal to a program, and fails where it has ended: kill() would send it to all
/// processes of the test's group.
inline void sendSignal(const SpanletProcess& spanlet, int signal) {
    ASSERT_GT(spanlet.id(), 0) << "spanlet has ended";
    ::kill(static_cast<pid_t>(spanlet.id()), signal);
}
