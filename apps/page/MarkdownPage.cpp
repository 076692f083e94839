// SPDX-License-Identifier: BSD-3-Clause
#include "page/MarkdownPage.h"

#include "text/PrintableText.h"

#include <QRegularExpression>

#include <algorithm>
#include <cmath>

namespace page {

namespace {

constexpr std::size_t mostRows = 25;

/// \p text so that it is shown as it is: without emphasis, HTML, links, mentions and cells.
QString escaped(const QString& text) {
    QString result;
    for (const QChar character : printableText(text)) {
        if (QStringLiteral("\\`*_[]<>#|~&$@").contains(character))
            result += QLatin1Char('\\');
        result += character;
    }
    // What begins a list or underlines a heading.
    static const QRegularExpression start(QStringLiteral("^([0-9]*)([-+=.)])(?=[ =-]|$)"));
    result.replace(start, QStringLiteral("\\1\\\\2"));
    // What GitHub takes for an address of the web.
    return result.replace(QStringLiteral("://"), QStringLiteral("\\://"))
        .replace(QStringLiteral("www."), QStringLiteral("www\\."), Qt::CaseInsensitive);
}

/// A code span: the fence is longer than any row of backquotes in the text.
QString code(const QString& text) {
    QString fence(QLatin1Char('`'));
    while (text.contains(fence))
        fence += QLatin1Char('`');
    return fence + QLatin1Char(' ') + printableText(text) + QLatin1Char(' ') + fence;
}

QString line(const QStringList& cells) {
    return QStringLiteral("| ") + cells.join(QStringLiteral(" | ")) + QStringLiteral(" |\n");
}

QString markdown(const Paragraph& paragraph) {
    return escaped(paragraph.text) + QLatin1Char('\n');
}

QString markdown(const Notes& notes) {
    QString text;
    for (const Note& note : notes.notes) {
        text += QStringLiteral("- ") + escaped(note.text);
        if (!note.detail.isEmpty())
            text += QStringLiteral("\\\n  ") + escaped(note.detail);
        if (!note.command.isEmpty())
            text += QStringLiteral("\\\n  ") + code(note.command);
        text += QLatin1Char('\n');
    }
    return text;
}

QString markdown(const Table& table) {
    QString text = QStringLiteral("**%1**\n\n").arg(escaped(table.caption));
    QStringList headings;
    QStringList rule;
    for (int column = 0; column < table.headings.size(); ++column) {
        headings += escaped(table.headings[column]);
        rule += table.isNumber[static_cast<std::size_t>(column)] ? QStringLiteral("---:")
                                                                 : QStringLiteral("---");
    }
    text += line(headings) + line(rule);
    for (const QStringList& row : table.rows) {
        QStringList cells;
        for (const QString& cell : row)
            cells += escaped(cell);
        text += line(cells);
    }
    return text;
}

/// Index of the time that is nearest.
std::size_t nearest(const std::vector<double>& times, double time) {
    const auto found = std::min_element(times.begin(), times.end(), [&](double a, double b) {
        return std::abs(a - time) < std::abs(b - time);
    });
    return static_cast<std::size_t>(found - times.begin());
}

/// The rates in MB/s; where frames were lost, the cell says so.
QString markdown(const chart::StackedChart& full) {
    const chart::StackedChart chart = chart::averaged(full, mostRows);
    if (chart.seconds.empty())
        return {};
    Table table;
    table.caption = chart.title;
    table.headings += QStringLiteral("Time in s");
    table.isNumber.assign(chart.series.size() + 1, true);
    for (const double time : chart.seconds)
        table.rows.push_back({QString::number(time, 'f', 2)});
    for (const chart::Series& series : chart.series) {
        table.headings += QStringLiteral("%1, MB/s").arg(series.name);
        for (std::size_t i = 0; i < table.rows.size(); ++i)
            table.rows[i] += QString::number(series.megabytesPerSecond[i], 'f', 1);
        for (const double time : series.lostAtSeconds) {
            QString& cell = table.rows[nearest(chart.seconds, time)].last();
            if (!cell.endsWith(QLatin1Char('t')))
                cell += QStringLiteral(", lost");
        }
    }
    return markdown(table);
}

} // namespace

QByteArray toMarkdown(const Page& page) {
    QString text =
        QStringLiteral("# %1\n\n**%2**\n").arg(escaped(page.title), escaped(page.outcome));
    for (const Section& section : page.sections) {
        text += QStringLiteral("\n## %1\n").arg(escaped(section.title));
        for (const Block& block : section.blocks)
            text += QLatin1Char('\n') +
                    std::visit([](const auto& each) { return markdown(each); }, block);
    }
    return text.toUtf8();
}

} // namespace page
