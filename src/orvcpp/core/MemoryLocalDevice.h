// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/core/MemoryContainer.h"

#include "OrvCPP/LocalDevice.h"

namespace orv {

/// The local device of an opened camera. Thread-safe.
class MemoryLocalDevice final : public MemoryContainer<OrvCPP::LocalDevice> {
public:
    explicit MemoryLocalDevice(std::shared_ptr<FeatureModule> module)
        : MemoryContainer(std::move(module)) {}
};

} // namespace orv
