// SPDX-License-Identifier: BSD-3-Clause
#include "cli/RestoredCamera.h"

#include "engine/CameraHandler.h"
#include "settings/CameraSearch.h"
#include "settings/SettingsDocument.h"

namespace cli {

namespace {

QString text(const std::string& given) {
    return QString::fromStdString(given);
}

QString exact(const FeatureValue& value) {
    return text(settings::exactText(value));
}

QJsonObject toJson(const settings::Difference& difference) {
    QJsonObject object{{QStringLiteral("feature"), text(settings::labelOf(difference.saved))},
                       {QStringLiteral("saved"), settings::toJson(difference.saved.value)},
                       {QStringLiteral("present"), difference.present
                                                       ? settings::toJson(*difference.present)
                                                       : QJsonValue(QJsonValue::Null)}};
    if (!difference.reason.empty())
        object[QStringLiteral("reason")] = text(difference.reason);
    return object;
}

QString headline(const RestoredCamera& camera) {
    if (!camera.result)
        return QStringLiteral("%1: %2\n").arg(text(camera.saved.id), text(camera.reason));
    if (camera.result->isInterrupted)
        return QStringLiteral("%1: not all settings restored\n").arg(text(camera.id));
    const auto different = static_cast<int>(camera.result->differences.size());
    const QString count =
        different == 0 ? QStringLiteral("all as saved") : QStringLiteral("%1 not").arg(different);
    return QStringLiteral("%1: %2 settings restored, %3\n")
        .arg(text(camera.id))
        .arg(camera.result->changed)
        .arg(count);
}

QString problemLines(const settings::RestoredSettings& result) {
    QString lines;
    for (const std::string& problem : result.problems)
        lines += QStringLiteral("  %1\n").arg(text(problem));
    return lines;
}

} // namespace

RestoredCamera restoreCamera(const CameraNames& present, const settings::SavedCamera& saved,
                             bool isDryRun, const std::function<bool()>& isCancelled) {
    RestoredCamera restored{saved, {}, {}, std::nullopt};
    const std::vector<CameraInfo> cameras = present.cameras();
    const settings::FoundCamera found = settings::findSavedCamera(saved, cameras);
    restored.reason = found.reason;
    if (!found.index)
        return restored;
    restored.id = cameras[*found.index].cameraId;
    const std::shared_ptr<CameraHandler> camera = present.open(restored.id);
    if (!camera || !camera->isOpened()) {
        restored.reason = camera ? camera->getWarningText() : "it has gone";
        return restored;
    }
    const auto& run = isDryRun ? settings::compareSettings : settings::restoreSettings;
    restored.result = run(camera->getFeatureController(), saved.features, isCancelled);
    return restored;
}

QJsonObject toJson(const RestoredCamera& camera) {
    QJsonObject object{{QStringLiteral("savedId"), text(camera.saved.id)},
                       {QStringLiteral("serialNumber"), text(camera.saved.serialNumber)},
                       {QStringLiteral("model"), text(camera.saved.model)},
                       {QStringLiteral("id"), text(camera.id)},
                       {QStringLiteral("isRestored"), camera.isComplete()}};
    if (!camera.result) {
        object[QStringLiteral("error")] = text(camera.reason);
        return object;
    }
    QJsonArray differences;
    for (const settings::Difference& difference : camera.result->differences)
        differences.append(toJson(difference));
    QJsonArray problems;
    for (const std::string& problem : camera.result->problems)
        problems.append(text(problem));
    object[QStringLiteral("foundBy")] = text(camera.reason);
    object[QStringLiteral("isInterrupted")] = camera.result->isInterrupted;
    object[QStringLiteral("changed")] = camera.result->changed;
    object[QStringLiteral("differences")] = differences;
    object[QStringLiteral("problems")] = problems;
    return object;
}

QString restoredText(const RestoredCamera& camera) {
    QString lines = headline(camera);
    if (!camera.result)
        return lines;
    for (const settings::Difference& difference : camera.result->differences) {
        const QString present =
            difference.present ? exact(*difference.present) : QStringLiteral("unknown");
        lines += QStringLiteral("  %1: %2 saved, %3 now: %4\n")
                     .arg(text(settings::labelOf(difference.saved)), exact(difference.saved.value),
                          present, text(difference.reason));
    }
    return lines + problemLines(*camera.result);
}

QString differenceText(const RestoredCamera& camera) {
    if (!camera.result)
        return headline(camera);
    QString lines;
    for (const settings::Difference& difference : camera.result->differences) {
        const QString label = text(settings::labelOf(difference.saved));
        if (difference.present)
            lines += QStringLiteral("-%1 = %2\n").arg(label, exact(*difference.present));
        lines += QStringLiteral("+%1 = %2").arg(label, exact(difference.saved.value));
        if (!difference.reason.empty())
            lines += QStringLiteral("    (not now: %1)").arg(text(difference.reason));
        lines += QLatin1Char('\n');
    }
    if (!lines.isEmpty())
        lines = QStringLiteral("--- %1\n+++ saved\n").arg(text(camera.id)) + lines;
    else if (!camera.result->isInterrupted)
        lines = QStringLiteral("%1: all as saved\n").arg(text(camera.id));
    return lines + problemLines(*camera.result);
}

} // namespace cli
