// SPDX-License-Identifier: BSD-3-Clause
#include "engine/SavedLimit.h"

#include "engine/CameraHandler.h"
#include "features/RepeatedCall.h"
#include "logging/Log.h"

SavedLimit::SavedLimit(const CameraHandler& camera)
    : m_camera(cameraDisplayText(camera.getCameraInfo())), m_limit(camera.getFeatureController()) {
    if (!succeedsRepeatedly([this] { return m_limit.find(); }))
        return;
    // First: a limit that is off must not be changed unless it can be switched off again.
    if (m_limit.hasSwitch() &&
        !succeedsRepeatedly([this] { return (m_switch = m_limit.readSwitch()).has_value(); }))
        return;
    succeedsRepeatedly([this] { return (m_value = m_limit.readValue()).has_value(); });
}

std::optional<std::int64_t> SavedLimit::present() const {
    return m_value ? m_limit.readValue() : std::nullopt;
}

void SavedLimit::switchOn() {
    if (m_value && m_switch)
        m_limit.switchOn();
}

bool SavedLimit::write(std::int64_t bytesPerSecond) {
    return m_value && succeedsRepeatedly([&] {
               return m_limit.write(bytesPerSecond) && m_limit.readValue() == bytesPerSecond;
           });
}

bool SavedLimit::putBack() {
    // The value first, since a limit that is off cannot be written.
    const bool isBack = putValueBack();
    const bool isSwitchedBack = putSwitchBack();
    if (!isBack || !isSwitchedBack)
        logError(m_camera + ": Cannot put the bandwidth limit back to " +
                 std::to_string(m_value.value_or(0)) + ".");
    return isBack && isSwitchedBack;
}

bool SavedLimit::putValueBack() {
    return !m_value || succeedsRepeatedly([&] {
        return m_limit.readValue() == m_value ||
               (m_limit.write(*m_value) && m_limit.readValue() == m_value);
    });
}

bool SavedLimit::putSwitchBack() {
    return !m_value || !m_switch || succeedsRepeatedly([&] {
        return m_limit.readSwitch() == m_switch ||
               (m_limit.writeSwitch(*m_switch) && m_limit.readSwitch() == m_switch);
    });
}
