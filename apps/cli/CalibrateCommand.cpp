// SPDX-License-Identifier: BSD-3-Clause
#include "cli/BenchmarkOptions.h"
#include "cli/CalibrationReport.h"
#include "cli/Commands.h"
#include "cli/PlannedLink.h"
#include "cli/SavedCapacities.h"
#include "cli/Terminal.h"

#include <QJsonArray>

namespace cli {

namespace {

const QLatin1String secondsOption("seconds");
const QLatin1String saveOption("save");
const QLatin1String forgetOption("forget");
const QLatin1String packetSizeOption("adjust-packet-size");
const QLatin1String interfaceOption("interface");

constexpr double usualSeconds = 10;

void checkOptions(const Arguments& arguments) {
    checkInterfaceOptions(arguments);
    benchmarkSeconds(arguments, secondsOption, usualSeconds);
    if (!arguments.has(forgetOption))
        return;
    for (const QLatin1String& option : {saveOption, secondsOption, packetSizeOption}) {
        if (arguments.has(option))
            throw Failure(QStringLiteral("--forget goes without --%1.").arg(option),
                          ExitCode::WrongUse);
    }
    if (!arguments.has(interfaceOption) && !arguments.has(QStringLiteral("all")))
        throw Failure(QStringLiteral("--forget needs --interface or --all."), ExitCode::WrongUse);
}

/// Without the cameras, which may be gone: of real and of simulated links.
Report forget(const Arguments& arguments) {
    QStringList wanted = arguments.values(interfaceOption);
    if (wanted.isEmpty())
        wanted.append(QString());
    QStringList forgotten;
    for (const QString& interface : wanted) {
        for (const bool areSimulated : {false, true})
            forgotten += SavedCapacities(areSimulated).forget(interface);
    }
    Report report;
    report.document[QStringLiteral("forgotten")] = QJsonArray::fromStringList(forgotten);
    report.text =
        forgotten.isEmpty()
            ? QStringLiteral("No capacity was saved.\n")
            : QStringLiteral("Forgotten: %1.\n").arg(forgotten.join(QStringLiteral(", ")));
    return report;
}

/// Why the result is not worth to be saved; empty when it is.
QString saveObstacle(const CalibratedLink& link) {
    // The loss begins so much above what is carried at most.
    constexpr double widest = 1.1;
    if (!link.notOpened.isEmpty())
        return QStringLiteral("A camera could not be opened.");
    // A link that its cameras cannot fill may carry more.
    if (!link.capacity || !link.lossBegins)
        return QStringLiteral("Its capacity was not found.");
    if (!link.isPrecise && *link.lossBegins > widest * *link.capacity)
        return QStringLiteral("Its capacity is not known well enough.");
    return {};
}

void save(const CalibratedLink& link, Cameras& cameras) {
    SavedCapacity capacity{*link.capacity, link.bitsPerSecond, QDate::currentDate(), {}};
    const auto onLink = cameras.onLinkOf(*link.interfaces.interfaces.front());
    for (const HostInterface* interface : onLink)
        capacity.interfaces += {interface->name, interface->id};
    capacity.interfaces.removeAll(QString());
    capacity.interfaces.removeDuplicates();
    for (const HostInterface* interface : onLink)
        SavedCapacities(cameras.areSimulated()).save(linkKey(cameras, *interface), capacity);
}

/// Whether the capacity was saved; says why not, since the results shall not be lost.
bool triesToSave(const CalibratedLink& link, Cameras& cameras, Report& report, Terminal& terminal) {
    QString problem = saveObstacle(link);
    if (problem.isEmpty()) {
        try {
            save(link, cameras);
            return true;
        } catch (const Failure& failure) {
            problem = QString::fromUtf8(failure.what());
            report.isSuccess = false;
        }
    }
    terminal.message(
        QStringLiteral("spanlet: %1: Nothing is saved: %2").arg(link.interfaces.names(), problem));
    return false;
}

/// A failure is told in the result, so that other links are measured and reported.
CalibratedLink triesToCalibrate(Cameras& cameras, const ChosenInterfaces& interfaces,
                                const CalibrationSettings& settings, Interruption& interruption) {
    try {
        return calibrate(cameras, interfaces, settings, interruption);
    } catch (const Failure& failure) {
        if (interruption.isRequested())
            throw;
        CalibratedLink failed;
        failed.interfaces = interfaces;
        failed.error = QString::fromUtf8(failure.what());
        return failed;
    }
}

Report runCalibrate(Context& context) {
    const Arguments& arguments = context.arguments;
    checkOptions(arguments);
    if (arguments.has(forgetOption))
        return forget(arguments);
    const CalibrationSettings settings{benchmarkSeconds(arguments, secondsOption, usualSeconds),
                                       arguments.has(packetSizeOption)};
    if (arguments.has(saveOption))
        SavedCapacities::requireWritable();
    Cameras& cameras = context.openCameras();
    const std::vector<ChosenInterfaces> links = linksOf(chosenInterfaces(cameras, arguments));
    Report report;
    QJsonArray documents;
    QStringList texts;
    for (const ChosenInterfaces& interfaces : links) {
        const CalibratedLink link =
            triesToCalibrate(cameras, interfaces, settings, context.interruption);
        if (links.size() == 1 && link.steps.empty())
            throw Failure(QStringLiteral("%1: %2").arg(interfaces.names(), link.error));
        if (!link.notOpened.isEmpty())
            context.terminal.message(
                QStringLiteral("spanlet: %1: What these cameras send is not known, since they "
                               "could not be opened: %2.")
                    .arg(interfaces.names(), link.notOpened.join(QStringLiteral(", "))));
        const bool isSaved =
            arguments.has(saveOption) && triesToSave(link, cameras, report, context.terminal);
        documents.append(describeCalibration(link, isSaved));
        texts.append(calibrationText(documents.last().toObject(), context.terminal.lineWidth()));
        report.isSuccess = report.isSuccess && link.error.isEmpty();
    }
    report.document[QStringLiteral("links")] = documents;
    report.text = texts.join(QLatin1Char('\n'));
    report.hasHeadings = true;
    return report;
}

} // namespace

Command calibrateCommand() {
    Command command;
    command.name = QStringLiteral("calibrate");
    command.summary = QStringLiteral(
        "Measure what interfaces really carry, with their cameras. It changes the sum of the "
        "limits until it is known to 2 % with which frames are lost, in at most eight steps, and "
        "puts the limits back, also after Ctrl+C.");
    command.options = interfaceOptions(
        QStringLiteral("Name or ID of an interface; may be given several times, and left out where "
                       "there is only one. Interfaces that share a link are measured together."),
        QStringLiteral("Measure all interfaces, one link after the other."));
    command.options += QList<QCommandLineOption>{
        {secondsOption,
         QStringLiteral("How long each step takes, 10 by default: no frame may be lost in it."),
         QStringLiteral("number")},
        {packetSizeOption,
         QStringLiteral("Let GigE cameras negotiate their largest packet size before.")},
        {saveOption,
         QStringLiteral("Keep the capacity on this host: plan and autoset take it for the speed of "
                        "the interface where no other one is given.")},
        {forgetOption, QStringLiteral("Remove what was kept, and measure nothing.")},
    };
    command.examples = QStringList{
        QStringLiteral("calibrate --config :oversubscribed --interface GEV-enp3s0 --seconds 1"),
        QStringLiteral("calibrate --interface GEV-enp3s0 --seconds 1 --json")};
    command.run = runCalibrate;
    return command;
}

} // namespace cli
