// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "cli/CameraNames.h"
#include "settings/SettingsRestorer.h"

#include <QJsonObject>
#include <QString>

#include <functional>
#include <optional>
#include <string>

namespace cli {

/// What has become of a saved camera.
struct RestoredCamera {
    settings::SavedCamera saved;
    /// ID of the present camera; empty when it was not found.
    std::string id;
    /// By what it was found; else why it was not, or could not be opened.
    std::string reason;
    /// Nothing when the camera was not opened.
    std::optional<settings::RestoredSettings> result;

    bool isComplete() const { return result && result->isComplete(); }
};

/// Finds the camera among the present ones, opens it, writes its settings and closes it.
/// \p isDryRun: only compares them. Ends early when \p isCancelled.
RestoredCamera restoreCamera(const CameraNames& present, const settings::SavedCamera& saved,
                             bool isDryRun, const std::function<bool()>& isCancelled);

QJsonObject toJson(const RestoredCamera& camera);
/// A line about the camera, and lines about what differs.
QString restoredText(const RestoredCamera& camera);
/// What would change, like the output of the program diff; empty when nothing would.
QString differenceText(const RestoredCamera& camera);

} // namespace cli
