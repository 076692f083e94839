// SPDX-License-Identifier: BSD-3-Clause
#include "page/HtmlPage.h"

#include "text/PrintableText.h"

#include <QXmlStreamWriter>

#include <initializer_list>
#include <utility>

namespace page {

namespace {

/// Without quotes and child selectors, which would be escaped. All colours of text have a contrast
/// of at least 7 : 1 to their ground (WCAG 2.1, 1.4.6).
const char styleSheet[] =
    ":root{color-scheme:light dark;--ink:#1a1a1a;--paper:#ffffff;--soft:#f3f3f5;--line:#b9b9bf;"
    "--good:#0a5c32;--bad:#8f1d0c}"
    "@media screen and (prefers-color-scheme:dark){:root{--ink:#f0f0f0;--paper:#1c1c1e;"
    "--soft:#2a2a2d;--line:#5c5c62;--good:#7fd6a4;--bad:#ffb4a3}}"
    "*{box-sizing:border-box}"
    "body{margin:0 auto;max-width:62rem;padding:1.5rem;background:var(--paper);color:var(--ink);"
    "font:1rem/1.5 sans-serif}"
    "h1{font-size:1.7rem;line-height:1.2;margin:0 0 1rem}"
    "h2{font-size:1.25rem;margin:2rem 0 .5rem;border-bottom:1px solid var(--line)}"
    ".outcome{margin:0;padding:.8rem 1rem;background:var(--soft);border-left:.5rem solid;"
    "font-size:1.15rem;font-weight:bold}"
    ".good{color:var(--good)}.bad{color:var(--bad)}"
    ".table{overflow-x:auto;margin:1rem 0}"
    "table{border-collapse:collapse;width:100%;font-size:.875rem;line-height:1.35}"
    "caption{text-align:left;font-weight:bold;padding:.3rem 0}"
    "th,td{padding:.3rem .55rem;border-bottom:1px solid var(--line);text-align:left;"
    "vertical-align:top}"
    "td:not(.number){min-width:5em}thead th{background:var(--soft)}tbody "
    "th{font-weight:normal;white-space:nowrap}"
    ".number{text-align:right;font-variant-numeric:tabular-nums}"
    "figure{margin:1rem 0}figure svg{display:block;width:100%;height:auto}"
    "li{margin:.4rem 0}.detail{font-size:.875rem}"
    "pre{margin:.2rem 0;padding:.3rem .5rem;background:var(--soft);font:.85rem/1.4 monospace;"
    "white-space:pre-wrap;overflow-wrap:anywhere}"
    "@page{size:A4;margin:15mm}"
    "@media print{body{max-width:none;padding:0;font-size:10pt}"
    "table,.detail{font-size:8pt}th,td{padding:.15rem .3rem}.table{overflow:visible}"
    "h1,h2,caption,p{break-after:avoid}thead{display:table-header-group}"
    "tr,.table,figure,li,.outcome{break-inside:avoid}p{orphans:3;widows:3}}";

class HtmlWriter {
public:
    explicit HtmlWriter(QByteArray& html) : m_writer(&html) {}

    void write(const Page& page) {
        m_writer.writeDTD(QStringLiteral("<!DOCTYPE html>\n"));
        open("html", {{"lang", "en"}});
        writeHead(page);
        open("body");
        open("main");
        element("h1", page.title);
        element("p", page.outcome, page.isGood ? "outcome good" : "outcome bad");
        for (const Section& section : page.sections) {
            open("section");
            element("h2", section.title);
            for (const Block& block : section.blocks)
                std::visit([this](const auto& each) { writeBlock(each); }, block);
            close();
        }
        m_writer.writeEndDocument();
    }

private:
    using Attributes = std::initializer_list<std::pair<const char*, const char*>>;

    void open(const char* name, Attributes attributes = {}) {
        m_writer.writeStartElement(QLatin1String(name));
        for (const auto& [key, value] : attributes)
            m_writer.writeAttribute(QLatin1String(key), QLatin1String(value));
    }
    void close() { m_writer.writeEndElement(); }

    void element(const char* name, const QString& text, const char* kind = nullptr) {
        open(name);
        if (kind)
            m_writer.writeAttribute(QStringLiteral("class"), QLatin1String(kind));
        m_writer.writeCharacters(printableText(text));
        close();
    }

    void writeHead(const Page& page) {
        open("head");
        open("meta", {{"charset", "utf-8"}});
        close();
        open("meta", {{"name", "viewport"}, {"content", "width=device-width, initial-scale=1"}});
        close();
        open("meta", {{"http-equiv", "Content-Security-Policy"},
                      {"content", "default-src 'none'; style-src 'unsafe-inline'"}});
        close();
        element("title", page.title);
        element("style", QLatin1String(styleSheet));
        close();
    }

    void writeBlock(const Paragraph& paragraph) { element("p", paragraph.text); }

    void writeBlock(const Notes& notes) {
        open("ul");
        for (const Note& note : notes.notes) {
            open("li");
            m_writer.writeCharacters(printableText(note.text));
            if (!note.detail.isEmpty())
                element("div", note.detail, "detail");
            if (!note.command.isEmpty())
                element("pre", note.command);
            close();
        }
        close();
    }

    /// A wide table scrolls within its frame, by keys, too.
    void writeBlock(const Table& table) {
        open("div", {{"class", "table"}, {"role", "region"}, {"tabindex", "0"}});
        m_writer.writeAttribute(QStringLiteral("aria-label"), printableText(table.caption));
        open("table");
        element("caption", table.caption);
        open("thead");
        open("tr");
        for (int column = 0; column < table.headings.size(); ++column)
            writeCell(table, "th", column, table.headings[column], "col");
        close();
        close();
        open("tbody");
        for (const QStringList& row : table.rows) {
            open("tr");
            for (int column = 0; column < row.size(); ++column)
                writeCell(table, column == 0 ? "th" : "td", column, row[column],
                          column == 0 ? "row" : nullptr);
            close();
        }
        close();
        close();
        close();
    }

    /// An empty cell has a dash, so that it is not taken for a missing figure.
    void writeCell(const Table& table, const char* name, int column, const QString& text,
                   const char* scope) {
        open(name);
        if (scope)
            m_writer.writeAttribute(QStringLiteral("scope"), QLatin1String(scope));
        if (table.isNumber[static_cast<std::size_t>(column)])
            m_writer.writeAttribute(QStringLiteral("class"), QStringLiteral("number"));
        m_writer.writeCharacters(text.isEmpty() ? QString(QChar(0x2013)) : printableText(text));
        close();
    }

    void writeBlock(const chart::StackedChart& chart) {
        open("figure");
        // Ends the opening tag, so that the chart follows it.
        m_writer.writeCharacters(QString());
        m_writer.device()->write(chart::toSvg(chart));
        close();
    }

    QXmlStreamWriter m_writer;
};

} // namespace

QByteArray toHtml(const Page& page) {
    QByteArray html;
    HtmlWriter(html).write(page);
    return html;
}

} // namespace page
