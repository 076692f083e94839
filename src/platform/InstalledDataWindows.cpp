// SPDX-License-Identifier: BSD-3-Clause
#include "platform/InstalledData.h"

#include <windows.h>

#include <string>

namespace platform {

std::filesystem::path installedDataFolder() {
    // The longest path that Windows has.
    std::wstring program(32768, L'\0');
    program.resize(
        ::GetModuleFileNameW(nullptr, program.data(), static_cast<DWORD>(program.size())));
    if (program.empty())
        return {};
    return (std::filesystem::path(program).parent_path() / SPANLET_DATA_FROM_PROGRAMS)
        .lexically_normal();
}

} // namespace platform
