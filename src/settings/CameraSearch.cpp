// SPDX-License-Identifier: BSD-3-Clause
#include "settings/CameraSearch.h"

#include <algorithm>

namespace settings {

FoundCamera findSavedCamera(const SavedCamera& saved, const std::vector<CameraInfo>& present) {
    struct Key {
        const char* name;
        const std::string& wanted;
        std::string CameraInfo::*member;
    };
    // Cameras without a name of their own are called by their model.
    const std::string name = saved.name == saved.model ? std::string() : saved.name;
    const Key keys[] = {{"serial number", saved.serialNumber, &CameraInfo::serialNumber},
                        {"name", name, &CameraInfo::cameraName},
                        {"ID", saved.id, &CameraInfo::cameraId}};
    std::string otherModel;
    for (const Key& key : keys) {
        std::vector<std::size_t> found;
        for (std::size_t i = 0; i < present.size(); ++i) {
            if (key.wanted.empty() || present[i].*key.member != key.wanted)
                continue;
            if (present[i].modelName == saved.model)
                found.push_back(i);
            else if (otherModel.empty())
                otherModel = std::string("the camera of this ") + key.name + " is a \"" +
                             present[i].modelName + "\", the settings are of a \"" + saved.model +
                             '"';
        }
        if (found.size() == 1)
            return {found.front(), key.name};
        const auto isItself = [&](std::size_t i) {
            return present[i].cameraId == saved.id;
        };
        // Cameras without serial numbers of their own have the same one.
        if (const auto itself = std::find_if(found.begin(), found.end(), isItself);
            itself != found.end())
            return {*itself, "ID"};
        if (!found.empty())
            return {std::nullopt, std::string("several cameras have its ") + key.name};
    }
    return {std::nullopt, otherModel.empty() ? "it is missing" : otherModel};
}

} // namespace settings
