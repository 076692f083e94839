// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/FeatureContainer.h"
#include "sdk/WrapperDeclarations.h"

#include <memory>
#include <vector>

/// Base of every wrapper whose SDK object carries features.
///
/// Wrappers forward to their SDK object and turn its buffers and arrays into standard containers.
/// Results are the SDK's; on an error, lists are empty and texts are left as they were. Never
/// throws, never logs. Thread-safe as far as the SDK's object is.
class OrvFeatureContainerWrapper {
public:
    OrvFeatureContainerWrapper() = default;
    virtual ~OrvFeatureContainerWrapper();

    OrvFeatureContainerWrapper(const OrvFeatureContainerWrapper&) = delete;
    OrvFeatureContainerWrapper& operator=(const OrvFeatureContainerWrapper&) = delete;

    /// Lets the SDK fill \p feature, which the caller has made (around an empty SDK pointer).
    virtual OrvErrorType GetFeatureByName(const char* name,
                                          std::shared_ptr<OrvFeatureWrapper>& feature) const;
    virtual OrvErrorType
    GetFeatures(std::vector<std::shared_ptr<OrvFeatureWrapper>>& features) const;
    /// The SDK object, as its base.
    virtual std::shared_ptr<OrvCPP::FeatureContainer> GetFeatureContainer() const = 0;
};
