// SPDX-License-Identifier: BSD-3-Clause
#include "OrvCPP/OrvSystem.h"

#include "orvcpp/Configuration.h"
#include "orvcpp/core/System.h"

namespace OrvCPP {

OrvSystem& OrvSystem::GetInstance() {
    static orv::System system(&orv::makeProviders);
    return system;
}

} // namespace OrvCPP
