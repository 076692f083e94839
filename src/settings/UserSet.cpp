// SPDX-License-Identifier: BSD-3-Clause
#include "settings/UserSet.h"

#include "features/FeatureController.h"
#include "features/OptionalFeatures.h"

namespace settings {

namespace {

/// Cameras write to flash memory.
constexpr double savingMilliseconds = 10'000;
constexpr const char* selector = "UserSetSelector";
constexpr const char* save = "UserSetSave";

std::string availableSets(const FeatureInfo& info) {
    std::string names;
    for (const FeatureValue& value : info.availableValues)
        names += (names.empty() ? "" : ", ") + toText(value);
    return names;
}

/// The feature that names the set with which the camera starts; empty when there is none.
std::string startFeature(const FeatureController& camera) {
    // The second name is that of SFNC before version 2.
    for (const char* name : {"UserSetDefault", "UserSetDefaultSelector"}) {
        if (camera.hasFeature(cameraModule, name))
            return name;
    }
    return {};
}

/// Requires that the set is selected.
std::string saveSelected(FeatureController& camera, const std::string& userSet) {
    if (!camera.getFeatureOutline(cameraModule, save).writable)
        return "nothing can be stored in the user set \"" + userSet + "\"";
    if (!camera.runCommand(cameraModule, save, savingMilliseconds))
        return "UserSetSave failed";
    const std::string start = startFeature(camera);
    if (start.empty())
        return "it cannot be told with which user set to start";
    if (!camera.setFeatureValue(cameraModule, start, userSet) ||
        camera.readFeatureValue(cameraModule, start) != FeatureValue(userSet))
        return start + " did not take \"" + userSet + "\"";
    return {};
}

} // namespace

std::string storeInUserSet(const std::shared_ptr<FeatureController>& camera,
                           const std::string& userSet) {
    for (const char* needed : {selector, save}) {
        if (!camera->hasFeature(cameraModule, needed))
            return std::string("the camera has no ") + needed;
    }
    const auto former = camera->readFeatureValue(cameraModule, selector);
    if (!former || !camera->setFeatureValue(cameraModule, selector, userSet))
        return "there is no user set \"" + userSet +
               "\". There is: " + availableSets(camera->getFeatureInfo(cameraModule, selector));
    std::string problem = saveSelected(*camera, userSet);
    if (!camera->setFeatureValue(cameraModule, selector, *former) && problem.empty())
        problem = std::string(selector) + " cannot be set back";
    return problem;
}

} // namespace settings
