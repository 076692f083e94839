// SPDX-License-Identifier: BSD-3-Clause
#include "platform/HostCommands.h"
#include "platform/InstalledData.h"

#include <dlfcn.h>
#include <link.h>

namespace platform {

namespace {

/// The shared library that has this code; empty when the program itself does.
std::filesystem::path libraryFile() {
    Dl_info symbol{};
    void* library = nullptr;
    const bool isKnown = ::dladdr1(reinterpret_cast<const void*>(&installedDataFolder), &symbol,
                                   &library, RTLD_DL_LINKMAP) != 0;
    return isKnown ? static_cast<const link_map*>(library)->l_name : "";
}

} // namespace

std::filesystem::path installedDataFolder() {
    const std::filesystem::path library = libraryFile();
    if (!library.empty())
        return (library.parent_path() / SPANLET_DATA_FROM_PLUGIN).lexically_normal();
    const std::filesystem::path program = programFile();
    if (program.empty())
        return {};
    return (program.parent_path() / SPANLET_DATA_FROM_PROGRAMS).lexically_normal();
}

} // namespace platform
