// SPDX-License-Identifier: BSD-3-Clause
#include "settings/PersistenceCommands.h"

#include "features/FeatureController.h"
#include "features/OptionalFeatures.h"
#include "features/RepeatedCall.h"

#include <utility>

namespace settings {

namespace {

constexpr double commandMilliseconds = 1000;

} // namespace

PersistenceCommands::PersistenceCommands(std::shared_ptr<FeatureController> camera,
                                         Persistence kind)
    : m_camera(std::move(camera)),
      m_name(kind == Persistence::Reading ? "DeviceFeaturePersistence"
                                          : "DeviceRegistersStreaming") {
    // Without the second command the camera could not be brought back.
    if (!m_camera->hasFeature(cameraModule, m_name + "Start") ||
        !succeedsRepeatedly([&] { return m_camera->hasFeature(cameraModule, m_name + "End"); }))
        return;
    m_isOpen = true;
    m_isBegun = run(m_name + "Start");
}

std::string PersistenceCommands::end() {
    if (!std::exchange(m_isOpen, false))
        return {};
    // Also after a first command that failed: the camera may have obeyed it without an answer.
    if (!run(m_name + "End"))
        return !m_isBegun
                   ? std::string()
                   : m_name +
                         "End failed: the camera may not apply its settings until it is restarted";
    const auto valid = readIfPresent(*m_camera, cameraModule, "DeviceRegistersValid");
    if (valid && *valid == FeatureValue(false))
        return "the camera reports that its settings are not consistent (DeviceRegistersValid)";
    return {};
}

bool PersistenceCommands::run(const std::string& command) {
    return succeedsRepeatedly(
        [&] { return m_camera->runCommand(cameraModule, command, commandMilliseconds); });
}

} // namespace settings
