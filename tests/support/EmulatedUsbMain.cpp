// SPDX-License-Identifier: BSD-3-Clause
// Starts the program anew behind the library that shows it a test's devices below /sys and /dev.
#include <gmock/gmock.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include <linux/capability.h>
#include <sys/prctl.h>
#include <unistd.h>

namespace {

/// Puts \p value before what a variable of the environment has, as lists of options and libraries
/// are written.
void prepend(const char* variable, const std::string& value) {
    const char* before = getenv(variable);
    setenv(variable, (before == nullptr ? value : value + ':' + before).c_str(), 1);
}

} // namespace

int main(int argc, char** argv) {
    const std::string library = "libumockdev-preload.so.0";
    const char* preloaded = getenv("LD_PRELOAD");
    if (preloaded == nullptr || std::string(preloaded).find(library) == std::string::npos) {
        prepend("LD_PRELOAD", library);
        // Lets the address sanitizer's library be the second one; by default it must be the first.
        prepend("ASAN_OPTIONS", "verify_asan_link_order=0");
        // The permissions of files hold for root, too.
        prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE, 0, 0, 0);
        execv("/proc/self/exe", argv);
        perror("/proc/self/exe");
        return 1;
    }
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
