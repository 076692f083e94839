// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/device/DescriptionSource.h"

#include <cstdlib>

/// What a camera says of the place of its description.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string url(data, data + size);
    const auto place = orv::aravis::parseDescriptionUrl(url);
    if (place && place->size > 0xFFFFFFFFU)
        std::abort();
    return 0;
}
