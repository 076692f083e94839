// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

/// Settings of the Linux kernel that decide how packets are received. Files are below \p root. All
/// functions are reentrant.
namespace platform {

/// Of packets whose way back leads through another adapter, an adapter with this filter takes
/// none (RFC 3704).
constexpr std::uint64_t strictReversePath = 1;

/// The reverse-path filter in effect on an adapter: 0 off, 1 strict, 2 loose. Nothing where the
/// kernel does not tell.
std::optional<std::uint64_t> reversePathFilter(const std::string& adapter,
                                               const std::filesystem::path& root = "/");

/// How the frequency of processors is chosen.
struct FrequencyControl {
    /// "intel_pstate", "acpi-cpufreq".
    std::string driver;
    /// "powersave", "performance", "schedutil".
    std::string governor;
    /// How many processors have both.
    std::size_t processors = 0;

    /// Whether the processors keep their lowest frequency whatever they have to do. Two drivers
    /// have a governor of the same name that follows the load.
    bool isSlowest() const;
};

/// One entry for each pair of driver and governor; none where the kernel controls no frequency, as
/// in a virtual machine.
std::vector<FrequencyControl> frequencyControls(const std::filesystem::path& root = "/");

} // namespace platform
