// SPDX-License-Identifier: BSD-3-Clause
#include "tests/support/OwnNetwork.h"

#include "platform/UdpSocket.h"

#include <fcntl.h>
#include <net/if.h>
#include <sched.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>

namespace fakecamera {

namespace {

/// Without rights a program needs a user namespace, in which it is root.
bool becomeRootOfOwnUsers() {
    const std::string user = std::to_string(geteuid());
    const std::string group = std::to_string(getegid());
    if (unshare(CLONE_NEWUSER) != 0)
        return false;
    std::ofstream("/proc/self/setgroups") << "deny";
    std::ofstream("/proc/self/uid_map") << "0 " << user << " 1";
    std::ofstream("/proc/self/gid_map") << "0 " << group << " 1";
    return true;
}

} // namespace

bool enterOwnNetwork() {
    if (unshare(CLONE_NEWNET) != 0 && !(becomeRootOfOwnUsers() && unshare(CLONE_NEWNET) == 0))
        return false;
    const platform::UdpSocket socket;
    ifreq loopback{};
    std::strcpy(loopback.ifr_name, "lo");
    loopback.ifr_flags = IFF_UP | IFF_RUNNING;
    return ioctl(socket.handle(), SIOCSIFFLAGS, &loopback) == 0;
}

void waitForHostNetwork() {
    const std::filesystem::path file =
        std::filesystem::temp_directory_path() / "spanlet-fake-cameras.lock";
    // Never closed: the lock ends with the program.
    const int lock = open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
    if (lock < 0 || flock(lock, LOCK_EX) != 0)
        std::cerr << "Cannot lock " << file << ": tests that run at the same time disturb it.\n";
}

} // namespace fakecamera
