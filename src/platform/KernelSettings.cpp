// SPDX-License-Identifier: BSD-3-Clause
#include "platform/KernelSettings.h"

#include "platform/Sysfs.h"

#include <algorithm>
#include <map>
#include <system_error>
#include <utility>

namespace platform {

namespace fs = std::filesystem;

std::optional<std::uint64_t> reversePathFilter(const std::string& adapter, const fs::path& root) {
    // A name must not lead out of the folder.
    if (adapter.empty() || adapter.find('/') != std::string::npos)
        return std::nullopt;
    const fs::path folder = root / "proc/sys/net/ipv4/conf";
    const auto ofAll = sysfsNumber(folder / "all/rp_filter");
    const auto own = sysfsNumber(folder / adapter / "rp_filter");
    return ofAll && own ? std::optional(std::max(*ofAll, *own)) : std::nullopt;
}

bool FrequencyControl::isSlowest() const {
    return governor == "powersave" && driver != "intel_pstate" && driver != "amd-pstate-epp";
}

std::vector<FrequencyControl> frequencyControls(const fs::path& root) {
    std::map<std::pair<std::string, std::string>, std::size_t> counts;
    std::error_code error;
    const fs::path folder = root / "sys/devices/system/cpu";
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        const fs::path settings = entry->path() / "cpufreq";
        const std::string governor = sysfsAttribute(settings / "scaling_governor");
        if (!governor.empty())
            ++counts[{sysfsAttribute(settings / "scaling_driver"), governor}];
    }
    std::vector<FrequencyControl> controls;
    for (const auto& [names, processors] : counts)
        controls.push_back({names.first, names.second, processors});
    return controls;
}

} // namespace platform
