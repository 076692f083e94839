// SPDX-License-Identifier: BSD-3-Clause
#include "cli/BenchmarkOptions.h"
#include "cli/Commands.h"
#include "cli/PlanReport.h"
#include "cli/PlanVerification.h"
#include "cli/Terminal.h"
#include "engine/CameraHandler.h"

#include <QJsonArray>

#include <algorithm>
#include <cmath>

namespace cli {

namespace {

const QLatin1String weightOption("weight");
const QLatin1String rateOption("rate");
const QLatin1String measureOption("measure");
const QLatin1String applyOption("apply");
const QLatin1String verifyOption("verify");

/// "CAMERA=NUMBER".
struct CameraNumber {
    QString camera;
    double number;
};

QVector<CameraNumber> cameraNumbers(const Arguments& arguments, const QString& option, double least,
                                    double most) {
    QVector<CameraNumber> found;
    for (const QString& text : arguments.values(option)) {
        const int equals = text.lastIndexOf(QLatin1Char('='));
        bool isNumber = false;
        const double number = text.mid(equals + 1).toDouble(&isNumber);
        if (equals < 1 || !isNumber || !(number >= least && number <= most))
            throw Failure(QStringLiteral("--%1 takes CAMERA=NUMBER, with a number from %2 to %3, "
                                         "not \"%4\".")
                              .arg(option)
                              .arg(least)
                              .arg(most)
                              .arg(text),
                          ExitCode::WrongUse);
        found.append({text.left(equals), number});
    }
    return found;
}

struct PlanOptions {
    QVector<CameraNumber> weights;
    QVector<CameraNumber> rates;
    std::chrono::duration<double> measuredSeconds;
    bool applies;
    /// 0: no verification.
    double verifiedSeconds;
};

PlanOptions planOptions(const Arguments& arguments) {
    checkInterfaceOptions(arguments);
    checkDivisionOptions(arguments);
    PlanOptions options;
    options.weights = cameraNumbers(arguments, weightOption, 0.01, 100);
    options.rates = cameraNumbers(arguments, rateOption, 0.001, 1e6);
    options.measuredSeconds =
        std::chrono::duration<double>(arguments.number(measureOption, {0, 3600, 1}));
    options.applies = arguments.has(applyOption);
    options.verifiedSeconds = benchmarkSeconds(arguments, verifyOption, 0);
    if (options.verifiedSeconds > 0 && !options.applies)
        throw Failure(QStringLiteral("--verify goes with --apply only."), ExitCode::WrongUse);
    return options;
}

/// Finds wrong names before the cameras are asked.
void checkNames(const ChosenInterfaces& chosen, const QVector<CameraNumber>& numbers,
                const QString& option) {
    const CameraList all = chosen.cameras();
    CameraList named;
    for (const CameraNumber& each : numbers) {
        named.push_back(findCamera(all, each.camera));
        if (std::count(named.begin(), named.end(), named.back()) > 1)
            throw Failure(QStringLiteral("%1: --%2 is given twice for it.")
                              .arg(cameraId(*named.back()), option),
                          ExitCode::WrongUse);
    }
}

/// Calls \p give with the planned camera of each name and its number.
template <typename Give>
void assign(std::vector<PlannedLink>& links, const ChosenInterfaces& chosen,
            const QVector<CameraNumber>& numbers, Give give) {
    const CameraList all = chosen.cameras();
    for (const CameraNumber& each : numbers) {
        const auto handler = findCamera(all, each.camera);
        for (const PlannedLink& link : links) {
            if (!link.plan)
                continue;
            for (PlannedCamera& camera : link.plan->cameras()) {
                if (camera.handler == handler)
                    give(camera, each.number);
            }
        }
    }
}

void requirePlanned(const PlannedCamera& camera) {
    if (camera.role != PlanRole::Planned)
        throw Failure(QStringLiteral("%1: It gets no limit, so it can have no weight and no rate.")
                          .arg(cameraId(*camera.handler)));
}

void giveWeight(PlannedCamera& camera, double weight) {
    requirePlanned(camera);
    camera.weight = weight;
}

void wishRate(PlannedCamera& camera, double frames) {
    requirePlanned(camera);
    if (camera.needFrames <= 0)
        throw Failure(QStringLiteral("%1: Its frame rate is not known, so none can be promised.")
                          .arg(cameraId(*camera.handler)));
    const double most = std::max(camera.mostFrames(), camera.needFrames);
    if (frames > most)
        throw Failure(QStringLiteral("%1: %2 frames per second are not possible, at most %3 are.")
                          .arg(cameraId(*camera.handler))
                          .arg(frames)
                          .arg(std::floor(most * 100) / 100, 0, 'f', 2));
    camera.wishedFrames = frames;
}

void divide(PlannedLink& link) {
    link.division = link.plan->divide(link.usableBytes);
    if (link.division.outcome != BandwidthPlan::Outcome::WishesDoNotFit)
        return;
    const auto megabytes = [](double bytes) {
        return QString::number(bytes / 1e6, 'f', 1);
    };
    throw Failure(QStringLiteral("%1: The wished rates do not fit. With the lowest limits of the "
                                 "other cameras they take %2 MB/s, but %3 MB/s are left of the %4 "
                                 "MB/s that are usable.")
                      .arg(link.interfaces.names(), megabytes(link.division.floors),
                           megabytes(link.usableBytes - link.plan->fixedBytes()),
                           megabytes(link.usableBytes)));
}

/// Returns whether the plan is applied as far as it was asked for.
bool carryOut(PlannedLink& link, Cameras& cameras, const PlanOptions& options,
              Interruption& interruption) {
    if (!options.applies || link.division.outcome != BandwidthPlan::Outcome::Divided)
        return link.division.outcome == BandwidthPlan::Outcome::Divided;
    if (interruption.isRequested())
        throw Failure(QStringLiteral("Interrupted: its limits were not changed."));
    link.isApplied = link.plan->apply();
    if (!link.isApplied)
        throw Failure(QStringLiteral("A camera did not take its limit, see the messages above. The "
                                     "former limits were put back."));
    return options.verifiedSeconds <= 0 ||
           verifyPlan(link, cameras, options.verifiedSeconds, interruption);
}

/// The same, and says why not, so that other links are carried out and reported.
bool triesToCarryOut(PlannedLink& link, Cameras& cameras, const PlanOptions& options,
                     Context& context) {
    try {
        return carryOut(link, cameras, options, context.interruption);
    } catch (const Failure& failure) {
        link.failure = QString::fromUtf8(failure.what());
        context.terminal.message(
            QStringLiteral("spanlet: %1: %2").arg(link.interfaces.names(), link.failure));
        return false;
    }
}

Report makeReport(const std::vector<PlannedLink>& links) {
    Report report;
    QJsonArray documents;
    QStringList texts;
    for (const PlannedLink& link : links) {
        documents.append(describePlan(link));
        texts.append(planText(documents.last().toObject()));
    }
    report.document = QJsonObject{{QStringLiteral("links"), documents}};
    report.text = texts.join(QLatin1Char('\n'));
    report.hasHeadings = true;
    return report;
}

Report runPlan(Context& context) {
    const PlanOptions options = planOptions(context.arguments);
    Cameras& cameras = context.openCameras();
    const ChosenInterfaces chosen = chosenInterfaces(cameras, context.arguments);
    lockCameras(chosen, context.arguments);
    setMaxBandwidth(cameras, chosen, context.arguments, context.terminal);
    std::vector<PlannedLink> links = plannedLinks(cameras, chosen, context.arguments);
    if (links.size() == 1 && !links.front().error.isEmpty())
        throw Failure(links.front().error);
    checkNames(chosen, options.weights, weightOption);
    checkNames(chosen, options.rates, rateOption);

    bool isSuccess = true;
    for (PlannedLink& link : links) {
        if (link.plan)
            surveyLink(link, cameras, options.measuredSeconds, context.interruption);
    }
    assign(links, chosen, options.weights, giveWeight);
    assign(links, chosen, options.rates, wishRate);
    for (PlannedLink& link : links) {
        if (link.plan)
            divide(link);
    }
    for (PlannedLink& link : links) {
        const bool isDone = link.plan && triesToCarryOut(link, cameras, options, context);
        isSuccess = isSuccess && isDone;
    }
    Report report = makeReport(links);
    report.isSuccess = isSuccess;
    return report;
}

} // namespace

Command planCommand() {
    const auto cameraNumber = QStringLiteral("camera=number");
    const auto seconds = QStringLiteral("seconds");
    Command command;
    command.name = QStringLiteral("plan");
    command.summary = QStringLiteral(
        "Plan a fair division of interfaces beside Auto Set, and apply it if asked to. Without "
        "--apply the limits are afterwards as before.");
    command.options = interfaceOptions(
        QStringLiteral("Name or ID of an interface; may be given several times, and left out where "
                       "there is only one. Interfaces that share a link are planned together."),
        QStringLiteral("Plan all interfaces."));
    command.options += divisionOptions();
    command.options += QList<QCommandLineOption>{
        {weightOption,
         QStringLiteral("Weight of a camera, 0.01 to 100, 1 by default: one of weight 2 gets twice "
                        "as much; may be given several times."),
         cameraNumber},
        {rateOption,
         QStringLiteral("Frames per second that a camera gets at least; may be given several "
                        "times."),
         cameraNumber},
        {measureOption,
         QStringLiteral("How long to measure what triggered cameras and those without a limit "
                        "send, 1 by default; 0: not at all."),
         seconds},
        {applyOption, QStringLiteral("Write the planned limits.")},
        {verifyOption,
         QStringLiteral("With --apply: stream for so many seconds; as long as frames are lost, "
                        "plan with 5 % less and stream again."),
         seconds},
    };
    command.examples = QStringList{
        QStringLiteral("plan --config :oversubscribed --interface GEV-enp3s0"),
        QStringLiteral("plan --all --apply --json"),
        QStringLiteral("plan --interface GEV-enp3s0 --weight GEV-21017=2 --rate GEV-21018=12.5 "
                       "--apply --verify 1")};
    command.run = runPlan;
    return command;
}

} // namespace cli
