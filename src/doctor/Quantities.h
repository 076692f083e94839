// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// Numbers and lists in the sentences of findings. Reentrant.
namespace doctor {

/// "2.5 Gbit/s", "480 Mbit/s" of bits per second.
std::string speedText(std::uint64_t bitsPerSecond);
/// "112.5 MB/s" of bytes per second.
std::string rateText(double bytesPerSecond);
/// "A, B and C"
std::string listText(const std::vector<std::string>& words);

} // namespace doctor
