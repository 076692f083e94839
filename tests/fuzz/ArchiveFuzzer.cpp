// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/device/DescriptionSource.h"

/// A ZIP archive with a description.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    orv::aravis::archiveFault({data, data + size});
    return 0;
}
