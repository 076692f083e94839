// SPDX-License-Identifier: BSD-3-Clause
#include "cli/BenchmarkOptions.h"
#include "cli/BenchmarkTable.h"
#include "cli/Commands.h"
#include "cli/LiveFigures.h"
#include "cli/MetricsOption.h"
#include "cli/ObservedAdapters.h"
#include "cli/Terminal.h"
#include "cli/platform/Keyboard.h"

#include <algorithm>
#include <optional>

namespace cli {

namespace {

const QLatin1String interfaceOption("interface");
const QLatin1String pcapOption("pcap");

bool hasSeenStreams(const QJsonObject& result) {
    const QJsonArray interfaces = interfacesOf(result);
    return std::any_of(interfaces.begin(), interfaces.end(), [](const QJsonValue& interface) {
        return !interface[QStringLiteral("cameras")].toArray().isEmpty();
    });
}

/// What the figures do not contain, one line for each adapter.
QString missedText(const QJsonObject& result) {
    QString text;
    for (const QJsonValue& interface : interfacesOf(result)) {
        const double missed = interface[QStringLiteral("observerMissedPackets")].toDouble();
        if (missed > 0)
            text += QStringLiteral("Spanlet itself has missed %1 packets on %2; frames that these "
                                   "may belong to are not counted.\n")
                        .arg(missed, 0, 'f', 0)
                        .arg(interface[QStringLiteral("interface")].toString());
    }
    return text;
}

/// Adapters without a stream are left out where others have one.
QJsonObject withoutIdle(QJsonObject document) {
    const QJsonValue list = document.value(QStringLiteral("interfaces"));
    if (!list.isArray() || !hasSeenStreams(document))
        return document;
    QJsonArray busy;
    for (const QJsonValue& interface : list.toArray()) {
        if (!interface[QStringLiteral("cameras")].toArray().isEmpty())
            busy.append(interface);
    }
    document[QStringLiteral("interfaces")] = busy;
    return document;
}

std::optional<QString> captureFile(const Arguments& arguments) {
    return arguments.has(pcapOption) ? std::optional(arguments.value(pcapOption)) : std::nullopt;
}

Report runObserve(Context& context) {
    const Arguments& arguments = context.arguments;
    const BenchmarkPlan plan = measuredTime(arguments, 0);
    // An interface is an adapter here.
    const auto metrics =
        metricsExporter(context, [](const QString& interface) { return interface.toStdString(); });
    ObservedAdapters adapters(arguments.values(interfaceOption), captureFile(arguments));
    std::optional<Keyboard> keyboard;
    if (context.terminal.isInteractive() && !context.wantsJson)
        keyboard.emplace();
    const BenchmarkProgress progress = makeExportedProgress(context, metrics.get(), plan.seconds);
    // Without keys there is nothing to do between two intervals: it may run for months.
    const BenchmarkTick tick =
        keyboard ? BenchmarkTick([&] { return obeyKeys(*keyboard, context.terminal); })
                 : BenchmarkTick();
    const bool isInterrupted = awaitEnd(plan, context.interruption, tick, [&] {
        const QJsonObject interval = adapters.interval();
        if (metrics)
            metrics->update(interval);
        return progress(withoutIdle(interval));
    });
    const QJsonObject result = withoutIdle(adapters.result(isInterrupted));
    keyboard.reset();
    context.terminal.clear();
    Report report;
    report.document = result;
    report.text = hasSeenStreams(result)
                      ? benchmarkText(result, context.terminal.lineWidth(), explainsAll(arguments))
                      : QStringLiteral("No stream of a GigE Vision camera was seen.\n");
    report.text += missedText(result);
    if (const QString capture = captureText(result); !capture.isEmpty())
        report.text += capture + QLatin1Char('\n');
    report.isLine = true;
    return report;
}

} // namespace

Command observeCommand() {
    Command command;
    command.name = QStringLiteral("observe");
    command.summary = QStringLiteral(
        "Watch the streams of GigE cameras that other programs receive, until Ctrl+C or for a "
        "time. Opens no camera and sends nothing: packets are seen where they arrive, by their "
        "headers. Needs the capability CAP_NET_RAW. Frames are counted from the second one that is "
        "seen. Cameras are named when they answer to a discovery or tell their names to another "
        "program; until then by their addresses. Output as of watch.");
    command.options =
        QList<QCommandLineOption>{
            {interfaceOption,
             QStringLiteral("A network adapter; may be given several times. Without it, all that "
                            "are up."),
             QStringLiteral("adapter")},
            {pcapOption,
             QStringLiteral("After frames were lost, writes the headers of the last minute's "
                            "packets to this file (pcapng, for Wireshark); at most once a minute, "
                            "and at the end. Replaces the file."),
             QStringLiteral("file")}} +
        timeOptions(
            QStringLiteral("endless"),
            QStringLiteral("Seconds between two readings of the figures, 0.5 by default.")) +
        QList<QCommandLineOption>{metricsOption()};
    command.examples = QStringList{QStringLiteral("observe --interface lo --seconds 2"),
                                   QStringLiteral("observe --seconds 2 --interval 1 --json"),
                                   QStringLiteral("observe --seconds 2 --pcap lost.pcapng")};
    command.run = runObserve;
    return command;
}

} // namespace cli
