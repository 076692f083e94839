// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/Forward.h"
#include "OrvCPP/OrvExport.h"
#include "OrvCPP/OrvTypes.h"

#include <cstdint>
#include <memory>

namespace OrvCPP {

/// Base of every SDK object that carries features. Thread-safe.
class ORVCPP_API FeatureContainer {
public:
    virtual ~FeatureContainer() = default;

    /// OrvErrorNotFound when there is no such feature; \p feature is then left as it is.
    virtual OrvErrorType GetFeatureByName(const char* name,
                                          std::shared_ptr<Feature>& feature) const = 0;
    /// Array and count, asked for twice, as described at Feature.
    virtual OrvErrorType GetFeatures(std::shared_ptr<Feature>* features,
                                     std::uint32_t& count) const = 0;
};

} // namespace OrvCPP
