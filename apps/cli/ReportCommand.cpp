// SPDX-License-Identifier: BSD-3-Clause
#include "cli/BenchmarkOptions.h"
#include "cli/BenchmarkTable.h"
#include "cli/Commands.h"
#include "cli/DivisionOptions.h"
#include "cli/FormerLimits.h"
#include "cli/HostFindings.h"
#include "cli/InterfaceDescription.h"
#include "cli/LimitChange.h"
#include "cli/OutputFile.h"
#include "cli/RateHistory.h"
#include "cli/ReportPage.h"
#include "cli/StreamSettings.h"
#include "cli/Verdict.h"
#include "doctor/HostExamination.h"
#include "engine/CameraHandler.h"
#include "page/HtmlPage.h"
#include "page/MarkdownPage.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QFileInfo>
#include <QSysInfo>

#include <algorithm>
#include <memory>

namespace cli {

namespace {

const QLatin1String htmlOption("html");
const QLatin1String markdownOption("markdown");
const QLatin1String autoSetOption("auto-set");
const QLatin1String planOption("plan");
const QLatin1String keepOption("keep");

/// A document has at most so many points in time, so that it can be read.
constexpr double mostIntervals = 10000;
/// As many as a chart can show, unless the user wants more.
constexpr double usualIntervals = 600;

void wrongUse(const QString& message) {
    throw Failure(message, ExitCode::WrongUse);
}

bool changesLimits(const Arguments& arguments) {
    return arguments.has(autoSetOption) || arguments.has(planOption);
}

/// Finds wrong use before cameras are opened.
void checkOptions(const Arguments& arguments) {
    if (!arguments.has(htmlOption) && !arguments.has(markdownOption))
        wrongUse(QStringLiteral("--html FILE, --markdown FILE or both are needed."));
    if (arguments.has(htmlOption) && arguments.has(markdownOption) &&
        QFileInfo(arguments.value(htmlOption)).absoluteFilePath() ==
            QFileInfo(arguments.value(markdownOption)).absoluteFilePath())
        wrongUse(QStringLiteral("--html and --markdown need a file each."));
    if (arguments.has(autoSetOption) && arguments.has(planOption))
        wrongUse(QStringLiteral("Either --auto-set or --plan can be given."));
    if (arguments.has(keepOption) && !changesLimits(arguments))
        wrongUse(QStringLiteral("--keep goes with --auto-set or --plan only."));
    for (const QCommandLineOption& option : divisionOptions()) {
        const QString name = option.names().constFirst();
        if (arguments.has(name) && !changesLimits(arguments))
            wrongUse(QStringLiteral("--%1 goes with --auto-set or --plan only.").arg(name));
    }
    checkDivisionOptions(arguments);
}

BenchmarkPlan measurementPlan(const Arguments& arguments) {
    BenchmarkPlan plan = benchmarkPlan(arguments, 10);
    const auto shortest = [&](double intervals) {
        return std::chrono::milliseconds(static_cast<qint64>(plan.seconds * 1000 / intervals));
    };
    if (!arguments.has(QStringLiteral("interval")))
        plan.interval = std::max(plan.interval, shortest(usualIntervals));
    if (plan.interval < shortest(mostIntervals))
        wrongUse(QStringLiteral("--interval is too short for --seconds: a report has at most %1 "
                                "intervals.")
                     .arg(mostIntervals));
    return plan;
}

/// The files that are wanted; null where one is not.
struct Files {
    std::unique_ptr<OutputFile> html;
    std::unique_ptr<OutputFile> markdown;

    explicit Files(const Arguments& arguments) {
        if (arguments.has(htmlOption))
            html = std::make_unique<OutputFile>(arguments.value(htmlOption));
        if (arguments.has(markdownOption))
            markdown = std::make_unique<OutputFile>(arguments.value(markdownOption));
    }

    void write(const page::Page& page) const {
        if (html)
            html->write(page::toHtml(page));
        if (markdown)
            markdown->write(page::toMarkdown(page));
    }
};

QJsonObject describeHost() {
    return {{QStringLiteral("name"), QSysInfo::machineHostName()},
            {QStringLiteral("system"), QSysInfo::prettyProductName()},
            {QStringLiteral("kernel"),
             QStringLiteral("%1 %2").arg(QSysInfo::kernelType(), QSysInfo::kernelVersion())},
            {QStringLiteral("processor"), QSysInfo::currentCpuArchitecture()}};
}

/// Adds "settings" to each open camera of an interface.
QJsonObject withSettings(QJsonObject interface, const CameraList& cameras) {
    QJsonArray rows;
    int row = 0;
    for (const auto& camera : cameras) {
        QJsonObject described = interface[QStringLiteral("cameras")].toArray().at(row++).toObject();
        if (camera->isOpened())
            described[QStringLiteral("settings")] = streamSettings(*camera);
        rows.append(described);
    }
    interface[QStringLiteral("cameras")] = rows;
    return interface;
}

/// "id" and "packetSizeBytes" of the open cameras that have one.
QJsonArray describePacketSizes(const CameraList& cameras) {
    const QString size = QStringLiteral("packetSizeBytes");
    QJsonArray rows;
    for (const auto& camera : cameras) {
        const QJsonObject settings = camera->isOpened() ? streamSettings(*camera) : QJsonObject();
        if (settings.contains(size))
            rows.append(QJsonObject{
                {QStringLiteral("id"), QString::fromStdString(camera->getCameraInfo().cameraId)},
                {size, settings[size]}});
    }
    return rows;
}

/// The libraries that reach the cameras, each once.
QString cameraLibraries(const ChosenInterfaces& chosen) {
    QStringList libraries;
    for (const auto& camera : chosen.cameras()) {
        const CameraInfo info = camera->getCameraInfo();
        libraries += QStringLiteral("%1 (%2)").arg(QString::fromStdString(info.transportLayerName),
                                                   QString::fromStdString(info.transportLayerPath));
    }
    libraries.removeDuplicates();
    return libraries.join(QStringLiteral(", "));
}

/// What is known before the first measurement.
QJsonObject describeTest(Cameras& cameras, const ChosenInterfaces& chosen) {
    QJsonArray interfaces;
    for (const HostInterface* interface : chosen.interfaces)
        interfaces.append(withSettings(describeInterface(cameras, *interface), interface->cameras));
    const QDateTime now = QDateTime::currentDateTime();
    return {
        {QStringLiteral("date"), now.toOffsetFromUtc(now.offsetFromUtc()).toString(Qt::ISODate)},
        {QStringLiteral("host"), describeHost()},
        {QStringLiteral("versions"),
         QJsonObject{{QStringLiteral("spanlet"), QCoreApplication::applicationVersion()},
                     {QStringLiteral("qt"), QLatin1String(qVersion())},
                     {QStringLiteral("cameraLibrary"), cameraLibraries(chosen)}}},
        {QStringLiteral("interfaces"), interfaces}};
}

/// The measurements of one report, and the change between them.
class Test {
public:
    Test(Context& context, Cameras& cameras, const ChosenInterfaces& chosen,
         const BenchmarkPlan& plan)
        : m_context(context), m_cameras(cameras), m_chosen(chosen), m_plan(plan) {}

    void run() {
        const Arguments& arguments = m_context.arguments;
        if (!changesLimits(arguments)) {
            measure(QStringLiteral("as found"));
            return;
        }
        lockCameras(m_chosen, arguments);
        setMaxBandwidth(m_cameras, m_chosen, arguments, m_context.terminal);
        requireDivisible();
        FormerLimits former(m_chosen.cameras());
        // A plan leaves such a camera alone by itself.
        if (arguments.has(autoSetOption))
            former.requireReadable();
        measure(QStringLiteral("before"));
        if (!change())
            return;
        measure(QStringLiteral("after"));
        const bool isKept = arguments.has(keepOption) && !m_context.interruption.isRequested();
        m_change[QStringLiteral("kept")] = isKept;
        m_change[QStringLiteral("putBack")] = !isKept && former.putBack();
        if (isKept)
            former.forget();
    }

    const QJsonArray& measurements() const { return m_measurements; }
    const QJsonObject& limitChange() const { return m_change; }
    QJsonObject lastResult() const {
        return m_measurements.last()[QStringLiteral("result")].toObject();
    }

private:
    /// Throws a Failure when none of the interfaces can be divided.
    void requireDivisible() const {
        QString obstacle;
        for (const HostInterface* interface : m_chosen.interfaces) {
            obstacle = divisionObstacle(m_cameras, *interface, true);
            if (obstacle.isEmpty())
                return;
        }
        throw Failure(obstacle);
    }

    void measure(const QString& name) {
        RateHistory history;
        const QJsonObject result = runBenchmark(m_cameras, m_chosen, m_plan, m_context.interruption,
                                                [&](const QJsonObject& interval) {
                                                    history.add(interval);
                                                    return true;
                                                });
        history.add(result);
        QJsonObject measurement{{QStringLiteral("name"), name},
                                {QStringLiteral("result"), result},
                                {QStringLiteral("rates"), history.document()}};
        if (m_plan.adjustsPacketSize)
            measurement[QStringLiteral("packetSizes")] = describePacketSizes(m_chosen.cameras());
        m_measurements.append(measurement);
    }

    /// Returns false, with all limits as before, when the program is to end.
    bool change() {
        if (m_context.interruption.isRequested())
            return false;
        const Arguments& arguments = m_context.arguments;
        if (arguments.has(autoSetOption)) {
            m_change = changeByAutoSet(m_cameras, m_chosen, arguments);
            return true;
        }
        try {
            m_change = changeByPlan(m_cameras, m_chosen, arguments, m_context.interruption);
        } catch (const Failure&) {
            // What was measured so far is reported.
            if (m_context.interruption.isRequested())
                return false;
            throw;
        }
        return true;
    }

    Context& m_context;
    Cameras& m_cameras;
    const ChosenInterfaces& m_chosen;
    const BenchmarkPlan m_plan;
    QJsonArray m_measurements;
    QJsonObject m_change;
};

/// The checks of "doctor". After an interruption none that takes time.
void addFindings(QJsonObject& report, Context& context) {
    if (context.interruption.isRequested()) {
        report[QStringLiteral("unread")] =
            QStringLiteral("The program was interrupted: this host was not checked.");
        return;
    }
    const doctor::HostEvidence evidence = collectEvidence(context);
    QJsonArray findings;
    for (const doctor::Finding& finding : doctor::examine(evidence)) {
        if (finding.severity < doctor::Severity::Unknown)
            findings.append(describeFinding(finding));
    }
    report[QStringLiteral("findings")] = findings;
    if (!evidence.unread.empty())
        report[QStringLiteral("unread")] = QString::fromStdString(evidence.unread);
}

/// With which limits the last measurement was made, where they are not the former ones.
QString limitsSentence(const QJsonObject& change) {
    if (change.isEmpty())
        return {};
    return QStringLiteral(" This is measured with %1").arg(limitsText(change));
}

/// The verdict on the last measurement, which also tells whether there should have been another.
Verdict verdictOn(const Test& test, const Context& context) {
    Verdict verdict = judge(test.lastResult());
    if (changesLimits(context.arguments) && test.measurements().size() < 2)
        verdict = {false, QStringLiteral("Not accepted: the test was interrupted before the "
                                         "measurement with other limits.")};
    verdict.text += limitsSentence(test.limitChange());
    if (context.areCamerasSimulated())
        verdict.text += QStringLiteral(" The cameras are simulated.");
    return verdict;
}

Report runReportCommand(Context& context) {
    const Arguments& arguments = context.arguments;
    checkOptions(arguments);
    const BenchmarkPlan plan = measurementPlan(arguments);
    const Files files(arguments);
    QJsonObject document;
    Verdict verdict;
    {
        Cameras& cameras = context.openCameras();
        const ChosenInterfaces chosen = chosenInterfaces(cameras, arguments);
        document = describeTest(cameras, chosen);
        Test test(context, cameras, chosen, plan);
        test.run();
        verdict = verdictOn(test, context);
        document[QStringLiteral("measurements")] = test.measurements();
        if (!test.limitChange().isEmpty())
            document[QStringLiteral("change")] = test.limitChange();
    }
    document[QStringLiteral("simulated")] = context.areCamerasSimulated();
    document[QStringLiteral("interrupted")] = context.interruption.isRequested();
    addFindings(document, context);
    document[QStringLiteral("accepted")] = verdict.isAccepted;
    document[QStringLiteral("verdict")] = verdict.text;
    files.write(reportPage(document, explainsAll(arguments)));

    Report report{verdict.text + QLatin1Char('\n'), document, verdict.isAccepted};
    for (const QLatin1String& option : {htmlOption, markdownOption}) {
        if (arguments.has(option))
            report.text += QStringLiteral("Written: %1\n").arg(arguments.value(option));
    }
    return report;
}

} // namespace

Command reportCommand() {
    Command command;
    command.name = QStringLiteral("report");
    command.summary = QStringLiteral(
        "Write a report of an acceptance test: host, interfaces, cameras with their settings, a "
        "benchmark with its figures over time, where frames were lost, and the advice of "
        "\"doctor\". The first sentence says whether the cameras are accepted: no frame was lost, "
        "and every camera has sent to the end. Else the exit code is 1. Ctrl+C ends the "
        "measurement early, puts limits back and reports what was measured.");
    command.options = {
        {htmlOption, QStringLiteral("Write one HTML file, which refers to nothing outside."),
         QStringLiteral("file")},
        {markdownOption, QStringLiteral("Write Markdown, with tables in place of charts."),
         QStringLiteral("file")}};
    command.options += benchmarkOptions(
        QStringLiteral("10"), QStringLiteral("Seconds between two points of a chart, 0.5 by "
                                             "default, more in long measurements."));
    command.options += QList<QCommandLineOption>{
        {autoSetOption, QStringLiteral("Measure, divide the interfaces by Auto Set, measure again, "
                                       "and put the former limits back.")},
        {planOption, QStringLiteral("The same with the division of \"plan\".")},
        {keepOption, QStringLiteral("With these two: keep the new limits.")}};
    command.options += divisionOptions();
    command.examples = QStringList{
        QStringLiteral("report --html report.html --interface GEV-enp3s0 --seconds 2"),
        QStringLiteral("report --html report.html --markdown report.md --config :oversubscribed "
                       "--interface GEV-enp3s0 --auto-set --seconds 1")};
    command.run = runReportCommand;
    return command;
}

} // namespace cli
