// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/device/GrantedAccess.h"

#include <gmock/gmock.h>

#include <utility>
#include <vector>

namespace {

using namespace orv::aravis;

TEST(GrantedAccess, isWhatThePrivilegeRegisterLeaves) {
    constexpr unsigned all = OrvAccessModeFull | OrvAccessModeRead;
    const auto granted = [](std::uint16_t status, std::vector<std::uint8_t> data) {
        return static_cast<unsigned>(grantedBy({status, std::move(data)}));
    };
    EXPECT_EQ(granted(0, {0, 0, 0, 0}), all);
    EXPECT_EQ(granted(0, {0, 0, 0, 2}), OrvAccessModeRead);
    EXPECT_EQ(granted(0, {0, 0, 0, 6}), OrvAccessModeRead) << "control that may be taken over";
    EXPECT_EQ(granted(0, {0, 0, 0, 3}), OrvAccessModeNone);
    EXPECT_EQ(granted(0x8006, {}), OrvAccessModeNone) << "refused: somebody has it to himself";
    EXPECT_EQ(granted(0x8001, {}), all) << "not to be read: opening will show";
}

} // namespace
