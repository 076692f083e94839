// SPDX-License-Identifier: BSD-3-Clause
#include "cli/LiveFigures.h"

#include "cli/AdapterLoad.h"
#include "cli/BenchmarkTable.h"
#include "cli/ShareBars.h"
#include "cli/Terminal.h"
#include "cli/platform/Console.h"
#include "cli/platform/Keyboard.h"

#include <QHash>

#include <algorithm>
#include <cmath>
#include <utility>

namespace cli {

namespace {

/// As wide as there is room for; empty where that is too little.
QString progressBar(double share, int room) {
    const int width = std::min(room - 3, 30);
    if (width < 5)
        return {};
    const int filled = static_cast<int>(std::floor(share * width));
    return QStringLiteral(" [") + QString(filled, QLatin1Char('#')) +
           QString(width - filled, QLatin1Char('.')) + QLatin1Char(']');
}

QString heading(const QString& interfaces, double elapsed, double seconds, int width) {
    const QString time = interfaces + QStringLiteral("  ") + QString::number(elapsed, 'f', 1);
    if (seconds <= 0) {
        const QString withHint = time + QStringLiteral(" s, q or Ctrl+C ends");
        return withHint.size() <= width ? withHint : time + QStringLiteral(" s, q ends");
    }
    const QString ofAll = QStringLiteral("%1 of %2 s").arg(time).arg(seconds);
    return ofAll + progressBar(std::min(elapsed / seconds, 1.0), width - ofAll.size());
}

double elapsedOf(const QJsonObject& interval) {
    return interval[QStringLiteral("seconds")].toDouble();
}

/// What follows the name of an interface.
QString detailsOf(const QJsonObject& interface) {
    return sharingText(interface) + loadText(interface);
}

/// The lines on a terminal: a table for each interface.
QStringList screenLines(const QJsonObject& interval, double seconds, int lineWidth) {
    const QJsonArray interfaces = interfacesOf(interval);
    const auto nameOf = [](const QJsonValue& interface) {
        return interface[QStringLiteral("interface")].toString();
    };
    const bool isOne = interfaces.size() == 1;
    const QString simulated =
        interval[QStringLiteral("simulated")].toBool() ? QStringLiteral(" (simulated)") : QString();
    const QString all =
        isOne ? nameOf(interfaces.first()) : QStringLiteral("%1 interfaces").arg(interfaces.size());
    const QString sharing = isOne ? detailsOf(interfaces.first().toObject()) : QString();
    QStringList lines{heading(all + sharing + simulated, elapsedOf(interval), seconds, lineWidth)};
    if (lines[0].size() > lineWidth)
        lines[0] = heading(all + simulated, elapsedOf(interval), seconds, lineWidth);
    for (const QJsonValue& interface : interfaces) {
        if (!isOne)
            lines.append(nameOf(interface) + detailsOf(interface.toObject()));
        lines += withShareBars(benchmarkLines(interface.toObject(), lineWidth),
                               interface.toObject(), lineWidth, isUtf8Console());
    }
    if (const QString capture = captureText(interval); !capture.isEmpty())
        lines += capture;
    return lines;
}

/// Lines for a log, with the time in front of each.
class WatchLog {
public:
    QString linesOf(const QJsonObject& interval) {
        const QString time = QString::number(elapsedOf(interval), 'f', 1);
        const QJsonArray interfaces = interfacesOf(interval);
        QString text;
        for (const QJsonValue& value : interfaces) {
            const QString name = value[QStringLiteral("interface")].toString();
            if (interfaces.size() > 1)
                text += stamped(time, name + detailsOf(value.toObject()));
            const QStringList lines = benchmarkLines(value.toObject());
            if (hasNewHeadings(name, lines[0].simplified()))
                text += stamped(QStringLiteral("s"), lines[0]);
            for (const QString& line : lines.mid(headings))
                text += stamped(time, line);
        }
        const QString capture = captureText(interval);
        if (std::exchange(m_capture, capture) != capture)
            text += stamped(time, capture);
        return text;
    }

private:
    /// The headings and the rule below them.
    static constexpr int headings = 2;

    static QString stamped(const QString& time, const QString& line) {
        return time.rightJustified(8) + QStringLiteral("  ") + line + QLatin1Char('\n');
    }

    /// At first, and when a column was added.
    bool hasNewHeadings(const QString& interface, const QString& now) {
        const bool isNew = m_headings.value(interface) != now;
        m_headings[interface] = now;
        return isNew;
    }

    QHash<QString, QString> m_headings;
    QString m_capture;
};

} // namespace

BenchmarkProgress makeLiveProgress(Terminal& terminal, double seconds, bool wantsJson) {
    if (wantsJson)
        return makeJsonProgress(terminal);
    if (terminal.isInteractive())
        return [&terminal, seconds](const QJsonObject& interval) {
            // The time, and of one interface the headings of its table and the rule below them.
            const int headingLines = interfacesOf(interval).size() == 1 ? 3 : 1;
            terminal.draw(screenLines(interval, seconds, terminal.lineWidth()), headingLines);
            return terminal.outputError() == 0;
        };
    return [&terminal, log = WatchLog()](const QJsonObject& interval) mutable {
        terminal.print(log.linesOf(interval));
        return terminal.outputError() == 0;
    };
}

QString captureText(const QJsonObject& document) {
    const QJsonObject capture = document[QStringLiteral("capture")].toObject();
    if (capture.isEmpty())
        return {};
    const QString file = capture[QStringLiteral("file")].toString();
    if (capture.contains(QStringLiteral("error")))
        return QStringLiteral("Packets could not be written to %1: %2")
            .arg(file, capture[QStringLiteral("error")].toString());
    const QString text =
        QStringLiteral("Headers of the packets before %1 s were written to %2.")
            .arg(capture[QStringLiteral("writtenAfterSeconds")].toDouble(), 0, 'f', 1)
            .arg(file);
    return capture.contains(QStringLiteral("partial"))
               ? text +
                     QStringLiteral(" Packets of the first losses may be missing: older ones had "
                                    "no room.")
               : text;
}

bool obeyKeys(Keyboard& keyboard, Terminal& terminal) {
    while (const auto key = keyboard.read()) {
        if (*key == Key::Quit)
            return false;
        terminal.scroll(*key);
    }
    return true;
}

} // namespace cli
