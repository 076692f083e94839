// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/device/SettingsLock.h"

#include "orvcpp/aravis/device/NodeAccess.h"

namespace orv::aravis {

void lockSettings(const FeatureCatalogue& features, bool isLocked) {
    if (const auto feature = features.find("TLParamsLocked"))
        node::set(*feature, std::int64_t{isLocked});
}

} // namespace orv::aravis
