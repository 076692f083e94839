// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <ostream>
#include <vector>

/// The SDK running with the one camera of a provider: 320 x 200 pixels, Mono8, 100 frames per
/// second or more. Shut down by the destructor.
class ProvidedCamera {
public:
    virtual ~ProvidedCamera() = default;
    virtual void unplug() = 0;
    virtual void plug() = 0;
};

/// A provider and a technology for which the shared suite runs.
struct ProviderCase {
    const char* name;
    std::uint64_t firstFrameId;
    /// StatFrameUnderrun after a few lost frames; Aravis counts their packets.
    std::int64_t underruns;
    std::function<std::unique_ptr<ProvidedCamera>()> start;
};

inline void PrintTo(const ProviderCase& provider, std::ostream* out) {
    *out << provider.name;
}

/// The cases of this test program.
std::vector<ProviderCase> providerCases();
