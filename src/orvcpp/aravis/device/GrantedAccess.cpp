// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/device/GrantedAccess.h"

namespace orv::aravis {

OrvAccessModeType grantedBy(const gige::GvcpAnswer& privilege) {
    switch (gige::controlState(privilege)) {
    case gige::ControlState::Exclusive:
        return OrvAccessModeNone;
    case gige::ControlState::Controlled:
        return OrvAccessModeRead;
    case gige::ControlState::Free:
    case gige::ControlState::Unknown:
        break;
    }
    return allModes;
}

} // namespace orv::aravis
