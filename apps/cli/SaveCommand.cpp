// SPDX-License-Identifier: BSD-3-Clause
#include "cli/CameraLimit.h"
#include "cli/Cameras.h"
#include "cli/Commands.h"
#include "cli/OutputFile.h"
#include "cli/SettingsFile.h"
#include "cli/platform/Interruption.h"
#include "engine/CameraHandler.h"
#include "logging/Log.h"
#include "settings/CameraSearch.h"
#include "settings/SettingsDocument.h"
#include "settings/SettingsReader.h"
#include "settings/UserSet.h"

#include <QDateTime>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <optional>

namespace cli {

namespace {

const QLatin1String toCameraOption("to-camera");

CameraList chosenCameras(const Cameras& cameras, const QStringList& wanted) {
    CameraList chosen;
    for (const QString& name : wanted) {
        const auto camera = cameras.findCamera(name);
        if (std::find(chosen.begin(), chosen.end(), camera) == chosen.end())
            chosen.push_back(camera);
    }
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

/// What the file that is to be written has; nothing when it is new or no settings file.
settings::SavedSettings formerSettings(const QString& file, Interruption& interruption) {
    if (file == QLatin1String(standardStream) || !QFileInfo(file).isFile())
        return {};
    try {
        return readSettingsFile(file, interruption);
    } catch (const Failure&) {
        return {};
    }
}

std::vector<CameraInfo> allInfos(const Cameras& cameras) {
    std::vector<CameraInfo> infos;
    for (const HostInterface& interface : cameras.interfaces())
        for (const auto& camera : interface.cameras)
            infos.push_back(camera->getCameraInfo());
    return infos;
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
            warn(info, problem);
        m_saved.push_back(info);
        // A camera to which the user gave no name is called by its model.
        const std::string name = info.cameraName == info.modelName ? "" : info.cameraName;
        m_settings.cameras.push_back(
            {info.cameraId, name, info.modelName, info.serialNumber, read.features});
    }

    /// Takes over what the file had of cameras and interfaces that are not saved now: call it
    /// after add() and addDivisions().
    void keep(const settings::SavedSettings& former) {
        for (const settings::SavedCamera& camera : former.cameras) {
            if (!settings::findSavedCamera(camera, m_saved).index)
                m_kept.push_back(camera);
        }
        const auto& now = m_settings.divisions;
        for (const settings::SavedDivision& division : former.divisions) {
            const auto isSame = [&](const settings::SavedDivision& each) {
                return each.interfaceName == division.interfaceName;
            };
            if (std::none_of(now.begin(), now.end(), isSame))
                m_settings.divisions.push_back(division);
        }
    }

    /// All cameras were to be saved.
    void warnOfKept(const std::vector<CameraInfo>& present) {
        for (const settings::SavedCamera& camera : m_kept) {
            const settings::FoundCamera found = settings::findSavedCamera(camera, present);
            CameraInfo info;
            info.cameraId = camera.id;
            info.modelName = camera.model;
            info.serialNumber = camera.serialNumber;
            warn(info, "Its former settings stay in the file" +
                           (found.index ? "." : ", since " + found.reason + '.'));
        }
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
            warn(camera.getCameraInfo(), problem);
    }

    void warn(const CameraInfo& camera, const std::string& problem) {
        logWarning(cameraDisplayText(camera) + ": " + problem);
        m_problems.append(
            QJsonObject{{QStringLiteral("camera"), QString::fromStdString(camera.cameraId)},
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
    std::vector<CameraInfo> m_saved;
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
    if (context.arguments.has(toCameraOption) && userSet.isEmpty())
        throw Failure(QStringLiteral("--to-camera takes the name of a user set."),
                      ExitCode::WrongUse);
    Cameras& cameras = context.openCameras();
    const CameraList chosen = chosenCameras(cameras, operands.mid(1));
    if (operands.size() > 1)
        std::for_each(chosen.begin(), chosen.end(),
                      [](const auto& camera) { requireOpened(*camera); });
    const QString& file = operands.constFirst();
    std::optional<OutputFile> output;
    if (file != QLatin1String(standardStream))
        output.emplace(file);
    Saving saving(context);
    const settings::SavedSettings former = formerSettings(file, context.interruption);
    for (const auto& camera : chosen) {
        if (camera->isOpened())
            saving.add(*camera);
        else
            saving.warn(camera->getCameraInfo(), camera->getWarningText());
    }
    saving.addDivisions(cameras, chosen);
    saving.keep(former);
    if (operands.size() == 1)
        saving.warnOfKept(allInfos(cameras));
    const QJsonObject document = saving.document();
    if (output)
        output->write(QJsonDocument(document).toJson());
    for (const auto& camera : chosen) {
        if (!userSet.isEmpty() && camera->isOpened())
            saving.storeInUserSet(*camera, userSet.toStdString());
    }
    return reportOf(saving, file, document);
}

} // namespace

Command saveCommand() {
    Command command;
    command.name = QStringLiteral("save");
    command.summary = QStringLiteral(
        "Save the settings of cameras, all of them by default, to a file for \"spanlet restore\", "
        "as well as the division of their interfaces; - is the standard output. Saved are the "
        "features that a camera calls streamable, for each value of their selectors, and its "
        "bandwidth limit. A file that exists keeps the settings of other cameras. The camera must "
        "not stream meanwhile.");
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
