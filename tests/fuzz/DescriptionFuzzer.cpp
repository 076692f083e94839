// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/core/DescriptionCheck.h"

#include <cstdlib>
#include <vector>

/// A GenICam description.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::vector<char> text(data, data + size);
    const std::string fault = orv::descriptionFault(text.data(), text.size());
    if (fault.find('\n') != std::string::npos || fault.size() > 1000)
        std::abort();
    return 0;
}
