// SPDX-License-Identifier: BSD-3-Clause
#include "cli/Benchmark.h"
#include "cli/Commands.h"
#include "cli/Terminal.h"

#include <algorithm>
#include <cmath>

namespace cli {

namespace {

constexpr NumberRange intervals{0.1, 3600, 0.5};

QString progressBar(double share) {
    constexpr int width = 30;
    const int filled = static_cast<int>(std::floor(share * width));
    return QStringLiteral("[%1%2] %3 %")
        .arg(QString(filled, QLatin1Char('#')), QString(width - filled, QLatin1Char('.')))
        .arg(std::floor(share * 100));
}

QString heading(const HostInterface& interface, double elapsed, double seconds) {
    const QString time = QString::number(elapsed, 'f', 1);
    if (seconds > 0)
        return QStringLiteral("%1  %2 of %3 s %4")
            .arg(interface.name, time)
            .arg(seconds)
            .arg(progressBar(std::min(elapsed / seconds, 1.0)));
    return QStringLiteral("%1  %2 s, Ctrl+C ends").arg(interface.name, time);
}

/// Lines for a log: the time in front of each, the headings only when \p hasHeadings.
QString plainLines(const QJsonArray& rows, double elapsed, bool hasHeadings) {
    constexpr int headings = 2;
    const QStringList lines = benchmarkLines(rows);
    QString text;
    for (int i = hasHeadings ? 0 : headings; i < lines.size(); ++i) {
        const QString time = i == 0 ? QStringLiteral("s") : QString::number(elapsed, 'f', 1);
        text += i == 1
                    ? QString()
                    : time.rightJustified(8) + QStringLiteral("  ") + lines[i] + QLatin1Char('\n');
    }
    return text;
}

/// The progress returns false, which ends the watch, when the output cannot be written.
BenchmarkProgress makeProgress(Terminal& terminal, const HostInterface& interface, double seconds) {
    if (terminal.isInteractive())
        return [&terminal, &interface, seconds](double elapsed, const QJsonArray& rows) {
            terminal.draw(QStringList(heading(interface, elapsed, seconds)) +
                          benchmarkLines(rows, terminal.columns()));
            return terminal.outputError() == 0;
        };
    return [&terminal, isFirst = true](double elapsed, const QJsonArray& rows) mutable {
        terminal.print(plainLines(rows, elapsed, isFirst));
        isFirst = false;
        return terminal.outputError() == 0;
    };
}

Report runWatch(Context& context) {
    const Arguments& arguments = context.arguments;
    BenchmarkPlan plan = benchmarkPlan(arguments, 0);
    plan.interval = std::chrono::milliseconds(
        std::llround(arguments.number(QStringLiteral("interval"), intervals) * 1000));
    Cameras& cameras = context.openCameras();
    const HostInterface& interface = chosenInterface(cameras, arguments);
    cameras.warnOfExcess(interface);
    const QJsonObject result =
        runBenchmark(cameras, interface, plan, context.interruption,
                     context.wantsJson ? BenchmarkProgress()
                                       : makeProgress(context.terminal, interface, plan.seconds));
    context.terminal.clear();
    return {benchmarkText(result), result, hasMeasuredAll(result)};
}

} // namespace

Command watchCommand() {
    Command command;
    command.name = QStringLiteral("watch");
    command.summary = QStringLiteral(
        "Stream from all cameras of an interface and show their figures as they change, until "
        "Ctrl+C or for a time. Frame rates are averages since the line before; those at the end "
        "are averages of the whole time. On a terminal the lines are redrawn in place.");
    command.options = benchmarkOptions(QStringLiteral("endless"));
    command.options += QCommandLineOption(
        QStringLiteral("interval"),
        QStringLiteral("Seconds between two readings of the figures, 0.5 by default."),
        QStringLiteral("number"));
    command.examples =
        QStringList{QStringLiteral("watch --interface eth0"),
                    QStringLiteral("watch --interface eth0 --seconds 60 --interval 5 > log")};
    command.run = runWatch;
    return command;
}

} // namespace cli
