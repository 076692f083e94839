// SPDX-License-Identifier: BSD-3-Clause
#include "cli/CameraLimit.h"
#include "cli/Cameras.h"
#include "cli/Commands.h"
#include "cli/SettingsFile.h"
#include "cli/platform/Interruption.h"
#include "engine/CameraHandler.h"
#include "logging/Log.h"
#include "settings/SettingsDocument.h"
#include "settings/SettingsReader.h"
#include "settings/UserSet.h"

#include <QDateTime>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>

namespace cli {

namespace {

const QLatin1String toCameraOption("to-camera");

CameraList chosenCameras(const Cameras& cameras, const QStringList& wanted) {
    CameraList chosen;
    for (const QString& name : wanted)
        chosen.push_back(cameras.findCamera(name));
    if (!wanted.isEmpty())
        return chosen;
    for (const HostInterface& interface : cameras.interfaces())
        chosen.insert(chosen.end(), interface.cameras.begin(), interface.cameras.end());
    if (chosen.empty())
        throw Failure(QStringLiteral("There is no camera."));
    return chosen;
}

settings::SavedDivision divisionOf(const Cameras& all, const HostInterface& interface) {
    settings::SavedDivision division;
    division.interfaceName = interface.name.toStdString();
    division.interfaceId = interface.id.toStdString();
    division.bitsPerSecond =
        static_cast<std::int64_t>(all.controller().getInterfaceSpeed(division.interfaceName));
    for (const auto& camera : interface.cameras) {
        settings::SavedShare share{camera->getCameraInfo().cameraId, std::nullopt};
        const QJsonValue limit = camera->isOpened() ? bandwidthLimit(*camera) : QJsonValue();
        if (limit.isDouble())
            share.limitBytesPerSecond = static_cast<std::int64_t>(limit.toDouble());
        division.shares.push_back(share);
    }
    return division;
}

/// Those of the file that is to be written; none when it is new or no settings file.
std::vector<settings::SavedCamera> formerCameras(const QString& file) {
    if (file == QLatin1String(standardStream) || !QFileInfo::exists(file))
        return {};
    try {
        return readSettingsFile(file).cameras;
    } catch (const Failure&) {
        return {};
    }
}

/// Reads cameras into one settings file, and counts what goes wrong.
class Saving {
public:
    explicit Saving(Context& context) : m_context(context) {
        m_settings.savedAt = QDateTime::currentDateTimeUtc().toString(Qt::ISODate).toStdString();
    }

    void add(const CameraHandler& camera) {
        const CameraInfo info = camera.getCameraInfo();
        const settings::ReadSettings read = settings::readSettings(
            camera.getFeatureController(), [this] { return m_context.interruption.isRequested(); });
        m_context.checkInterruption();
        for (const std::string& problem : read.problems)
            warn(camera, problem);
        // A camera to which the user gave no name is called by its model.
        const std::string name = info.cameraName == info.modelName ? "" : info.cameraName;
        m_settings.cameras.push_back(
            {info.cameraId, name, info.modelName, info.serialNumber, read.features});
    }

    /// Takes a camera that cannot be read now over from the former file, by its serial number.
    void keepFormer(const CameraHandler& camera, const std::vector<settings::SavedCamera>& former) {
        const CameraInfo info = camera.getCameraInfo();
        const auto found =
            std::find_if(former.begin(), former.end(), [&](const settings::SavedCamera& each) {
                return !info.serialNumber.empty() && each.serialNumber == info.serialNumber &&
                       each.model == info.modelName;
            });
        if (found == former.end())
            return;
        warn(camera, "Its former settings stay in the file.");
        m_kept.push_back(*found);
    }

    void addDivisions(const Cameras& all, const CameraList& chosen) {
        for (const HostInterface& interface : all.interfaces()) {
            const bool isConcerned = std::any_of(
                interface.cameras.begin(), interface.cameras.end(), [&](const auto& camera) {
                    return std::find(chosen.begin(), chosen.end(), camera) != chosen.end();
                });
            if (isConcerned)
                m_settings.divisions.push_back(divisionOf(all, interface));
        }
    }

    void storeInUserSet(const CameraHandler& camera, const std::string& userSet) {
        m_context.checkInterruption();
        const std::string problem =
            settings::storeInUserSet(camera.getFeatureController(), userSet);
        if (!problem.empty())
            warn(camera, problem);
    }

    void warn(const CameraHandler& camera, const std::string& problem) {
        logWarning(cameraDisplayText(camera.getCameraInfo()) + ": " + problem);
        m_problems.append(
            QJsonObject{{QStringLiteral("camera"), cameraId(camera)},
                        {QStringLiteral("problem"), QString::fromStdString(problem)}});
    }

    const settings::SavedSettings& settings() const { return m_settings; }
    QJsonObject document() const {
        settings::SavedSettings all = m_settings;
        all.cameras.insert(all.cameras.end(), m_kept.begin(), m_kept.end());
        return settings::toDocument(all);
    }
    const QJsonArray& problems() const { return m_problems; }

private:
    Context& m_context;
    settings::SavedSettings m_settings;
    std::vector<settings::SavedCamera> m_kept;
    QJsonArray m_problems;
};

Report reportOf(const Saving& saving, const QString& file, const QJsonObject& document) {
    Report report;
    report.isSuccess = saving.problems().isEmpty();
    if (file == QLatin1String(standardStream)) {
        report.document = document;
        report.text = QString::fromUtf8(QJsonDocument(document).toJson());
        return report;
    }
    QJsonArray cameras;
    for (const settings::SavedCamera& camera : saving.settings().cameras) {
        const auto count = static_cast<int>(camera.features.size());
        const QString id = QString::fromStdString(camera.id);
        cameras.append(QJsonObject{{QStringLiteral("id"), id}, {QStringLiteral("saved"), count}});
        report.text += QStringLiteral("%1: %2 settings saved\n").arg(id).arg(count);
    }
    report.document = QJsonObject{{QStringLiteral("file"), file},
                                  {QStringLiteral("cameras"), cameras},
                                  {QStringLiteral("problems"), saving.problems()}};
    return report;
}

Report runSave(Context& context) {
    const QStringList operands = context.arguments.operands();
    const QString userSet = context.arguments.value(toCameraOption);
    Cameras& cameras = context.openCameras();
    const CameraList chosen = chosenCameras(cameras, operands.mid(1));
    if (operands.size() > 1)
        std::for_each(chosen.begin(), chosen.end(),
                      [](const auto& camera) { requireOpened(*camera); });
    Saving saving(context);
    const auto former = formerCameras(operands.constFirst());
    for (const auto& camera : chosen) {
        if (camera->isOpened()) {
            saving.add(*camera);
            continue;
        }
        saving.warn(*camera, camera->getWarningText());
        saving.keepFormer(*camera, former);
    }
    saving.addDivisions(cameras, chosen);
    const QJsonObject document = saving.document();
    if (operands.constFirst() != QLatin1String(standardStream))
        writeSettingsFile(operands.constFirst(), QJsonDocument(document).toJson());
    for (const auto& camera : chosen) {
        if (!userSet.isEmpty() && camera->isOpened())
            saving.storeInUserSet(*camera, userSet.toStdString());
    }
    return reportOf(saving, operands.constFirst(), document);
}

} // namespace

Command saveCommand() {
    Command command;
    command.name = QStringLiteral("save");
    command.summary = QStringLiteral(
        "Save the settings of cameras, all of them by default, to a file for \"spanlet restore\", "
        "as well as the division of their interfaces; - is the standard output. Saved are the "
        "features that a camera calls streamable, for each value of their selectors, and its "
        "bandwidth limit. The camera must not stream meanwhile.");
    command.operands = QStringLiteral("FILE [CAMERA]...");
    command.fewestOperands = 1;
    command.mostOperands = 1000;
    command.options = {
        {toCameraOption,
         QStringLiteral("Store the settings in this user set of each camera, too, and make it the "
                        "one with which the camera starts."),
         QStringLiteral("user set")}};
    command.examples =
        QStringList{QStringLiteral("save cameras.json --config :oversubscribed"),
                    QStringLiteral("save - GEV-21017 GEV-21018"),
                    QStringLiteral("save cameras.json GEV-21017 --to-camera UserSet1")};
    command.run = runSave;
    return command;
}

} // namespace cli
