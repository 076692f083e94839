// SPDX-License-Identifier: BSD-3-Clause
#include "doctor/Quantities.h"

#include <cstdio>

namespace doctor {

std::string speedText(std::uint64_t bitsPerSecond) {
    constexpr std::uint64_t gigabit = 1'000'000'000;
    const bool isFast = bitsPerSecond >= gigabit;
    char text[32];
    std::snprintf(text, sizeof text, "%.4g %s",
                  static_cast<double>(bitsPerSecond) / (isFast ? 1e9 : 1e6),
                  isFast ? "Gbit/s" : "Mbit/s");
    return text;
}

std::string rateText(double bytesPerSecond) {
    char text[32];
    std::snprintf(text, sizeof text, "%.1f MB/s", bytesPerSecond / 1e6);
    return text;
}

std::string listText(const std::vector<std::string>& words) {
    std::string text;
    for (std::size_t i = 0; i < words.size(); ++i)
        text += (i == 0 ? "" : i + 1 == words.size() ? " and " : ", ") + words[i];
    return text;
}

} // namespace doctor
