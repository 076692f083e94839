// SPDX-License-Identifier: BSD-3-Clause
#include "cli/BenchmarkOptions.h"
#include "cli/BenchmarkTable.h"
#include "cli/Commands.h"
#include "cli/Failure.h"
#include "cli/LiveFigures.h"
#include "cli/MetricsOption.h"
#include "cli/ObservedInterfaces.h"
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

/// What the figures do not contain, one line for each interface.
QString missedText(const QJsonObject& result) {
    QString text;
    for (const QJsonValue& interface : interfacesOf(result)) {
        const double missed = interface[QStringLiteral("observerMissedPackets")].toDouble();
        const bool isNetwork = interface.toObject().contains(QStringLiteral("adapter"));
        if (missed > 0)
            text += QStringLiteral("Spanlet itself has missed %1 %2 on %3; frames that these may "
                                   "belong to are not counted.\n")
                        .arg(missed, 0, 'f', 0)
                        .arg(isNetwork ? QStringLiteral("packets")
                                       : QStringLiteral("events of transfers"),
                             interface[QStringLiteral("interface")].toString());
    }
    return text;
}

/// Interfaces without a stream are left out where others have one.
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
    // An interface is an adapter here, or a USB bus, which has no counters of an adapter.
    const auto metrics =
        metricsExporter(context, [](const QString& interface) { return interface.toStdString(); });
    ObservedInterfaces interfaces(arguments.values(interfaceOption), captureFile(arguments));
    const auto tellNotices = [&] {
        for (const QString& notice : interfaces.takeNotices())
            context.terminal.message(notice);
    };
    tellNotices();
    std::optional<Keyboard> keyboard;
    if (context.terminal.isInteractive() && !context.wantsJson)
        keyboard.emplace();
    const BenchmarkProgress progress = makeExportedProgress(context, metrics.get(), plan.seconds);
    // Without keys there is nothing to do between two intervals: it may run for months.
    const BenchmarkTick tick =
        keyboard ? BenchmarkTick([&] { return obeyKeys(*keyboard, context.terminal); })
                 : BenchmarkTick();
    const bool isInterrupted = awaitEnd(plan, context.interruption, tick, [&] {
        const QJsonObject interval = interfaces.interval();
        tellNotices();
        if (metrics)
            metrics->update(interval);
        return progress(withoutIdle(interval));
    });
    const QJsonObject result = withoutIdle(interfaces.result(isInterrupted));
    keyboard.reset();
    context.terminal.clear();
    Report report;
    report.document = result;
    report.text = hasSeenStreams(result)
                      ? benchmarkText(result, context.terminal.lineWidth(), explainsAll(arguments))
                      : QStringLiteral("No stream of a camera was seen.\n");
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
        "Watch the streams of cameras that other programs receive, until Ctrl+C or for a time. "
        "Opens no camera and sends nothing: packets of GigE cameras are seen where they arrive, by "
        "their headers, and transfers of USB3 Vision cameras through the kernel's module usbmon. "
        "Network adapters need the capability CAP_NET_RAW, USB buses the permission to read "
        "/dev/usbmonN. Frames of GigE cameras are counted from the second one that is seen. GigE "
        "cameras are named when they answer to a discovery or tell their names to another program; "
        "until then by their addresses. Output as of watch.");
    command.options =
        QList<QCommandLineOption>{
            {interfaceOption,
             QStringLiteral("A network adapter, or usbmonN for USB bus N; may be given several "
                            "times. Without it, all adapters that are up and all USB buses that "
                            "may be observed."),
             QStringLiteral("name")},
            {pcapOption,
             QStringLiteral("After frames were lost, writes the headers of the last minute's "
                            "packets to this file (pcapng, for Wireshark): at the first loss, "
                            "after others a minute later or before their packets are forgotten, "
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
