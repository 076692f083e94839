// SPDX-License-Identifier: BSD-3-Clause
#include "platform/Sysfs.h"

#include <algorithm>
#include <charconv>
#include <fstream>

namespace platform {

std::string sysfsAttribute(const std::filesystem::path& file) {
    std::ifstream stream(file);
    std::string line;
    std::getline(stream, line);
    line.erase(line.find_last_not_of(" \t\r\n") + 1);
    return line;
}

std::optional<std::uint64_t> sysfsNumber(const std::filesystem::path& file) {
    const std::string line = sysfsAttribute(file);
    const char* const end = line.data() + line.size();
    std::uint64_t number = 0;
    const auto parsed = std::from_chars(line.data(), end, number);
    if (parsed.ec != std::errc() || parsed.ptr != end)
        return std::nullopt;
    return number;
}

std::vector<std::string> lowerAdapters(const std::filesystem::path& folder) {
    const std::string prefix = lowerAdapterPrefix;
    std::vector<std::string> names;
    std::error_code error;
    // The adapter may go away meanwhile, which ends the loop.
    std::filesystem::directory_iterator entry(folder, error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        if (name.rfind(prefix, 0) == 0)
            names.push_back(name.substr(prefix.size()));
    }
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace platform
