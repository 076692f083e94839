// SPDX-License-Identifier: BSD-3-Clause
#include "cli/Commands.h"
#include "cli/HostFindings.h"
#include "cli/Table.h"
#include "cli/Terminal.h"
#include "cli/WrappedText.h"
#include "doctor/HostExamination.h"

#include <QJsonArray>

#include <algorithm>

namespace cli {

namespace {

using doctor::Finding;
using doctor::Findings;
using doctor::Severity;

constexpr char allFindings[] = "all";

bool isShown(const Finding& finding, bool showsAll) {
    return showsAll || finding.severity < Severity::Unknown;
}

/// A command stays on one line, so that it can be copied.
QStringList linesOf(const Finding& finding, int width) {
    constexpr int column = 9;
    const QString margin(column, QLatin1Char(' '));
    QStringList lines = wrappedLines(
        QStringLiteral("%1: %2. %3")
            .arg(QString::fromStdString(finding.subject), QString::fromStdString(finding.check),
                 QString::fromStdString(finding.text)),
        QString::fromLatin1(doctor::nameOf(finding.severity)).leftJustified(column), width);
    if (!finding.evidence.empty())
        lines += wrappedLines(QString::fromStdString(finding.evidence),
                              margin + QStringLiteral("read: "), width);
    if (!finding.cure.empty())
        lines.append(margin + QStringLiteral("cure: ") + QString::fromStdString(finding.cure));
    return lines;
}

int count(const Findings& findings, Severity severity) {
    return static_cast<int>(
        std::count_if(findings.begin(), findings.end(),
                      [severity](const Finding& each) { return each.severity == severity; }));
}

QString counted(int number, const char* what) {
    return QStringLiteral("%1 %2%3").arg(number).arg(QLatin1String(what),
                                                     number == 1 ? QString() : QStringLiteral("s"));
}

/// "1 error, 2 warnings, 0 hints. In order: 9 checks. Unknown: 1. (--all shows them)"
QString summaryOf(const Findings& findings, bool showsAll) {
    return QStringLiteral("%1, %2, %3. In order: %4. Unknown: %5.%6")
        .arg(counted(count(findings, Severity::Error), "error"),
             counted(count(findings, Severity::Warning), "warning"),
             counted(count(findings, Severity::Hint), "hint"),
             counted(count(findings, Severity::Ok), "check"),
             QString::number(count(findings, Severity::Unknown)),
             showsAll ? QString() : QStringLiteral(" (--all shows them)"));
}

Report runDoctor(Context& context) {
    const doctor::HostEvidence evidence = collectEvidence(context);
    const Findings findings = doctor::examine(evidence);
    const bool showsAll = context.arguments.has(QLatin1String(allFindings));
    const int width = std::min(context.terminal.lineWidth(), longestLine);
    QJsonArray documents;
    QStringList lines;
    for (const Finding& finding : findings) {
        if (!isShown(finding, showsAll))
            continue;
        documents.append(describeFinding(finding));
        lines += linesOf(finding, width);
    }
    // Else it is among the findings.
    if (!evidence.unread.empty() && !showsAll)
        lines += wrappedLines(QString::fromStdString(evidence.unread), QString(), width);
    lines += wrappedLines(summaryOf(findings, showsAll), QString(), width);
    Report report{joined(lines), {{QStringLiteral("findings"), documents}}};
    report.isSuccess = std::none_of(findings.begin(), findings.end(), [](const Finding& each) {
        return each.severity == Severity::Error;
    });
    return report;
}

} // namespace

Command doctorCommand() {
    Command command;
    command.name = QStringLiteral("doctor");
    command.summary =
        QStringLiteral("Check this host and its cameras for what costs frames. Changes nothing; "
                       "cameras that no program controls send a few test packets. Each finding has "
                       "what was read and a command that cures it. The exit code "
                       "is 1 when one is an error: when it costs frames or makes a camera "
                       "unusable.");
    command.options = {{QLatin1String(allFindings),
                        QStringLiteral("Also what is in order, and what could not be checked.")}};
    command.examples = QStringList{QStringLiteral("doctor --config :oversubscribed"),
                                   QStringLiteral("doctor --config :oversubscribed --all --json")};
    command.isQuiet = true;
    command.run = runDoctor;
    return command;
}

} // namespace cli
