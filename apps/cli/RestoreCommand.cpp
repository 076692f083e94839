// SPDX-License-Identifier: BSD-3-Clause
#include "cli/Commands.h"
#include "cli/NameChoice.h"
#include "cli/RestoreWatch.h"
#include "cli/RestoredCamera.h"
#include "cli/SettingsFile.h"
#include "cli/Table.h"
#include "cli/Terminal.h"
#include "cli/platform/Interruption.h"

#include <QDateTime>
#include <QFileInfo>
#include <QJsonArray>

#include <utility>

namespace cli {

namespace {

const QLatin1String dryRunOption("dry-run");
const QLatin1String watchOption("watch");
/// Cameras are searched for once a second.
constexpr std::chrono::milliseconds betweenLooks{500};

/// The cameras of the file that are called \p wanted; all for an empty list.
std::vector<settings::SavedCamera> chosenCameras(const settings::SavedSettings& saved,
                                                 const QStringList& wanted) {
    if (wanted.isEmpty())
        return saved.cameras;
    QVector<Names> names;
    for (const settings::SavedCamera& camera : saved.cameras)
        names.append(cameraNames(camera.id, camera.name, camera.serialNumber));
    std::vector<settings::SavedCamera> chosen;
    for (const QString& name : wanted)
        chosen.push_back(saved.cameras[chooseByName(QStringLiteral("saved camera"), names, name)]);
    return chosen;
}

Report restoreOnce(Context& context, const std::vector<settings::SavedCamera>& chosen) {
    const bool isDryRun = context.arguments.has(dryRunOption);
    const CameraNames& present = context.readNames();
    Report report;
    QJsonArray cameras;
    for (const settings::SavedCamera& saved : chosen) {
        if (context.interruption.isRequested()) {
            context.terminal.message(QStringLiteral("spanlet: Interrupted before %1 was restored.")
                                         .arg(QString::fromStdString(saved.id)));
            report.isSuccess = false;
            break;
        }
        const RestoredCamera camera = restoreCamera(
            present, saved, isDryRun, [&] { return context.interruption.isRequested(); });
        cameras.append(toJson(camera));
        report.text += isDryRun ? differenceText(camera) : restoredText(camera);
        report.isSuccess = report.isSuccess && camera.isComplete();
    }
    report.document =
        QJsonObject{{QStringLiteral("dryRun"), isDryRun}, {QStringLiteral("cameras"), cameras}};
    return report;
}

/// Tells when a settings file was written again.
class WatchedFile {
public:
    explicit WatchedFile(QString name) : m_name(std::move(name)), m_read(written()) {}

    bool hasChanged() {
        const QDateTime now = written();
        return now.isValid() && std::exchange(m_read, now) != now;
    }

private:
    /// Not valid for a file that is missing, as for a moment while it is replaced.
    QDateTime written() const { return QFileInfo(m_name).lastModified(); }

    const QString m_name;
    QDateTime m_read;
};

std::vector<settings::SavedCamera> readCameras(const Context& context) {
    const QStringList operands = context.arguments.operands();
    return chosenCameras(readSettingsFile(operands.constFirst(), context.interruption),
                         operands.mid(1));
}

/// The former settings stay when the file is wrong now.
void readAgain(RestoreWatch& watch, const Context& context) {
    try {
        watch.replace(readCameras(context));
    } catch (const Failure& failure) {
        context.terminal.message(QStringLiteral("spanlet: %1 The former settings stay in use.")
                                     .arg(QString::fromUtf8(failure.what())));
    }
}

Report keepRestored(Context& context) {
    if (context.arguments.has(dryRunOption))
        throw Failure(QStringLiteral("--dry-run and --watch exclude each other."),
                      ExitCode::WrongUse);
    Terminal& terminal = context.terminal;
    const auto tell = [&](const RestoredCamera& camera) {
        terminal.print(context.wantsJson ? jsonLine(toJson(camera)) : restoredText(camera));
    };
    // Before it is read, so that no change is missed.
    WatchedFile file(context.arguments.operands().constFirst());
    std::vector<settings::SavedCamera> chosen = readCameras(context);
    RestoreWatch watch(context.readNames(), std::move(chosen), tell);
    const auto isCancelled = [&] {
        return context.interruption.isRequested() || terminal.outputError() != 0;
    };
    do {
        if (file.hasChanged())
            readAgain(watch, context);
        watch.look(isCancelled);
    } while (!context.interruption.wait(betweenLooks) && terminal.outputError() == 0);
    Report report;
    report.document = QJsonObject{{QStringLiteral("restored"), watch.countRestored()}};
    report.isLine = true;
    return report;
}

Report runRestore(Context& context) {
    return context.arguments.has(watchOption) ? keepRestored(context)
                                              : restoreOnce(context, readCameras(context));
}

} // namespace

Command restoreCommand() {
    Command command;
    command.name = QStringLiteral("restore");
    command.summary = QStringLiteral(
        "Restore the settings of cameras, all of the file by default, from a file of \"spanlet "
        "save\"; - is the standard input. A camera is found by its serial number, name or ID, and "
        "must be of the same model. Prints what differs afterwards; the exit status is then 1, as "
        "for a camera that is missing. The camera must not stream meanwhile.");
    command.operands = QStringLiteral("FILE [CAMERA]...");
    command.fewestOperands = 1;
    command.mostOperands = 1000;
    command.options = {
        {dryRunOption,
         QStringLiteral("Only show what would change. Writes selectors only, and puts them back.")},
        {watchOption,
         QStringLiteral("Stay until Ctrl+C, and restore each camera when it appears and when it "
                        "returns. With --json, each line is a document.")}};
    command.examples = QStringList{QStringLiteral("restore cameras.json"),
                                   QStringLiteral("restore cameras.json GEV-21017 --dry-run")};
    command.run = runRestore;
    return command;
}

} // namespace cli
