// SPDX-License-Identifier: BSD-3-Clause
#include "tests/support/RetriedTests.h"

#include <unistd.h>

#include <cstdio>

/// run-again COMMAND [ARGUMENTS...]: runs a test program that measures time as
/// runAgainAfterStalls() does, on Linux under Wine: there, the program itself cannot.
int main(int count, char** arguments) {
    if (count < 2) {
        std::fputs("Usage: run-again COMMAND [ARGUMENTS...]\n", stderr);
        return 2;
    }
    return runAgainAfterStalls([&] {
        execv(arguments[1], arguments + 1);
        std::perror(arguments[1]);
        return 126;
    });
}
