// SPDX-License-Identifier: BSD-3-Clause
#include "sdk/OrvFeatureContainerWrapper.h"

#include "sdk/OrvFeatureWrapper.h"
#include "sdk/SdkQuery.h"

OrvFeatureContainerWrapper::~OrvFeatureContainerWrapper() = default;

OrvErrorType
OrvFeatureContainerWrapper::GetFeatureByName(const char* name,
                                             std::shared_ptr<OrvFeatureWrapper>& feature) const {
    const auto container = GetFeatureContainer();
    if (!container)
        return noObject;
    if (!feature)
        return OrvErrorBadParameter;
    return container->GetFeatureByName(name, feature->GetHandle());
}

OrvErrorType OrvFeatureContainerWrapper::GetFeatures(
    std::vector<std::shared_ptr<OrvFeatureWrapper>>& features) const {
    return SdkQuery::wrappers<OrvCPP::Feature>(GetFeatureContainer().get(), features,
                                               &OrvCPP::FeatureContainer::GetFeatures);
}
