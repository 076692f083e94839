// SPDX-License-Identifier: BSD-3-Clause
#include "chart/AxisScale.h"
#include "chart/StackLayout.h"
#include "chart/StackedChart.h"
#include "text/PrintableText.h"

#include <QCoreApplication>
#include <QStringList>
#include <QXmlStreamWriter>

#include <algorithm>

namespace chart {

namespace {

/// Lengths in units of the picture, which is 760 wide.
constexpr double pictureWidth = 760;
constexpr double left = StackLayout::left;
constexpr double right = StackLayout::right;
constexpr double top = StackLayout::top;
constexpr double bottom = StackLayout::bottom;
constexpr double legendTop = 326;
constexpr double lineHeight = 20;
constexpr double fontSize = 12;
/// Average width of a letter of a generic font of that size, rounded up.
constexpr double letterWidth = 6.8;
constexpr int longestName = 40;
/// Marks that are closer to each other are one.
constexpr double markWidth = 9;
/// Numbers that are closer to each other cannot be read.
constexpr double leastNumberDistance = 9;

QString translated(const char* text) {
    return QCoreApplication::translate("chart::Drawing", text);
}

QString number(double value, int decimals = 1) {
    return QString::number(value, 'f', decimals);
}

/// Writes one chart.
class Drawing {
public:
    Drawing(const StackedChart& chart, QByteArray& svg)
        : m_layout(chart), m_full(m_layout.full()), m_writer(&svg) {}

    void write() {
        start();
        writeRateAxis();
        for (std::size_t s = 0; s < m_full.series.size(); ++s)
            writeArea(s);
        writeTimeAxis();
        writeLink();
        for (std::size_t s = 0; s < m_full.series.size(); ++s)
            writeMarks(s);
        writeNumbers();
        writeLegend();
        m_writer.writeEndElement();
    }

private:
    struct Attribute {
        const char* name;
        QString value;
    };

    double x(double seconds) const { return m_layout.x(seconds); }
    double y(double rate) const { return m_layout.y(rate); }

    void open(const char* element, std::initializer_list<Attribute> attributes) {
        m_writer.writeStartElement(QLatin1String(element));
        for (const Attribute& attribute : attributes)
            m_writer.writeAttribute(QLatin1String(attribute.name), attribute.value);
    }
    void element(const char* name, std::initializer_list<Attribute> attributes) {
        open(name, attributes);
        m_writer.writeEndElement();
    }
    void text(double x, double y, const QString& content, const char* anchor = "start",
              const char* kind = "chart-text") {
        open("text", {{"x", number(x)},
                      {"y", number(y)},
                      {"text-anchor", QLatin1String(anchor)},
                      {"class", QLatin1String(kind)},
                      {"fill", QStringLiteral("#1a1a1a")}});
        m_writer.writeCharacters(content);
        m_writer.writeEndElement();
    }
    void line(double x1, double y1, double x2, double y2, const char* kind, const char* color) {
        element("line", {{"x1", number(x1)},
                         {"y1", number(y1)},
                         {"x2", number(x2)},
                         {"y2", number(y2)},
                         {"class", QLatin1String(kind)},
                         {"stroke", QLatin1String(color)}});
    }

    double height() const { return legendTop + legendRows() * lineHeight; }

    /// Attributes have the colours for light backgrounds, since not every reader of SVG knows
    /// style sheets; the sheet has those for dark screens.
    void start() {
        open("svg",
             {{"xmlns", QStringLiteral("http://www.w3.org/2000/svg")},
              {"viewBox",
               QStringLiteral("0 0 %1 %2").arg(number(pictureWidth, 0), number(height(), 0))},
              {"width", number(pictureWidth, 0)},
              {"height", number(height(), 0)},
              {"class", QStringLiteral("chart")},
              {"font-family", QStringLiteral("sans-serif")},
              {"font-size", number(fontSize, 0)},
              {"role", QStringLiteral("img")},
              {"aria-label", title()}});
        m_writer.writeTextElement(QStringLiteral("title"), title());
        m_writer.writeTextElement(QStringLiteral("desc"), description());
        m_writer.writeTextElement(
            QStringLiteral("style"),
            QStringLiteral(".chart .chart-link{stroke-width:2;stroke-dasharray:7 4}"
                           "@media screen and (prefers-color-scheme:dark){"
                           ".chart .chart-ground{fill:#1c1c1e}.chart .chart-text{fill:#f0f0f0}"
                           ".chart .chart-grid{stroke:#55555a}"
                           ".chart .chart-axis,.chart .chart-link,.chart .chart-area"
                           "{stroke:#f0f0f0}"
                           ".chart .chart-mark{fill:#f0f0f0;stroke:#1c1c1e}}"));
        element("rect", {{"width", number(pictureWidth, 0)},
                         {"height", number(height(), 0)},
                         {"class", QStringLiteral("chart-ground")},
                         {"fill", QStringLiteral("#ffffff")}});
        open("text", {{"x", QStringLiteral("8")},
                      {"y", QStringLiteral("20")},
                      {"font-size", QStringLiteral("15")},
                      {"font-weight", QStringLiteral("bold")},
                      {"class", QStringLiteral("chart-text")},
                      {"fill", QStringLiteral("#1a1a1a")}});
        m_writer.writeCharacters(elided(title(), 84));
        m_writer.writeEndElement();
    }

    QString title() const { return printableText(m_full.title); }
    QString name(std::size_t series) const { return printableText(m_full.series[series].name); }
    QString color(std::size_t series) const {
        return seriesColor(m_full.series[series].color.value_or(static_cast<int>(series)));
    }
    static QString elided(const QString& text, int letters) {
        if (text.size() <= letters)
            return text;
        QString start = text.left(letters - 1);
        // Half a surrogate pair is no letter.
        if (start.at(letters - 2).isHighSurrogate())
            start.chop(1);
        return start + QChar(0x2026);
    }

    /// For who does not see the picture: the mean rates, and who lost frames.
    QString description() const {
        if (m_layout.isEmpty())
            return translated("No rates were measured.");
        QStringList sentences{translated("Mean rates from %1 s to %2 s, stacked.")
                                  .arg(number(m_layout.start()), number(m_layout.end()))};
        for (std::size_t s = 0; s < m_full.series.size(); ++s) {
            const auto losses = m_layout.lossesOf(s).size();
            sentences.append(QStringLiteral("%1: %2 MB/s%3.")
                                 .arg(name(s), number(meanRate(m_full.series[s])),
                                      losses == 0 ? QString()
                                                  : translated(", %1 times of lost frames")
                                                        .arg(static_cast<int>(losses))));
        }
        if (m_layout.link() > 0)
            sentences.append(linkText() + QLatin1Char('.'));
        return sentences.join(QLatin1Char(' '));
    }

    QString linkText() const { return translated("Link: %1 MB/s").arg(number(m_layout.link())); }
    QString linkLegend() const {
        return m_layout.isLinkShown() ? linkText()
                                      : translated("%1, above this chart").arg(linkText());
    }

    void writeRateAxis() {
        const AxisScale scale(0, m_layout.mostRate(), 8);
        text(8, top - 14, QStringLiteral("MB/s"));
        for (const double mark : scale.marks()) {
            line(left, y(mark), right, y(mark), "chart-grid", "#cccccc");
            text(left - 8, y(mark) + 4, scale.text(mark), "end");
        }
    }

    void writeTimeAxis() {
        line(left, bottom, right, bottom, "chart-axis", "#1a1a1a");
        text((left + right) / 2, bottom + 36, translated("Time in s"), "middle");
        if (m_layout.isEmpty()) {
            text((left + right) / 2, (top + bottom) / 2, description(), "middle");
            return;
        }
        const AxisScale scale(m_layout.start(), m_layout.end(), 10);
        for (const double mark : scale.marks()) {
            line(x(mark), bottom, x(mark), bottom + 5, "chart-axis", "#1a1a1a");
            text(x(mark), bottom + 19, scale.text(mark), "middle");
        }
    }

    /// Forwards along the upper edge and backwards along the lower one.
    void writeArea(std::size_t series) {
        QStringList points;
        const std::size_t count = m_layout.drawn().seconds.size();
        for (std::size_t i = 0; i < count; ++i)
            points.append(point(i, series + 1));
        for (std::size_t i = count; i > 0; --i)
            points.append(point(i - 1, series));
        open("polygon", {{"points", points.join(QLatin1Char(' '))},
                         {"fill", color(series)},
                         {"class", QStringLiteral("chart-area")},
                         {"stroke", QStringLiteral("#1a1a1a")},
                         {"stroke-width", QStringLiteral("0.8")},
                         {"stroke-linejoin", QStringLiteral("round")}});
        m_writer.writeTextElement(QStringLiteral("title"), name(series));
        m_writer.writeEndElement();
    }

    QString point(std::size_t index, std::size_t edge) const {
        return number(x(m_layout.drawn().seconds[index])) + QLatin1Char(',') +
               number(y(m_layout.rateOf(edge, index)));
    }

    void writeLink() {
        if (m_layout.isLinkShown())
            line(left, y(m_layout.link()), right, y(m_layout.link()), "chart-link", "#1a1a1a");
    }

    /// A triangle on the upper edge of the series for each loss, or for several that are close.
    void writeMarks(std::size_t series) {
        const std::vector<double> times = m_layout.lossesOf(series);
        for (std::size_t i = 0; i < times.size();) {
            std::size_t next = i + 1;
            while (next < times.size() && x(times[next]) - x(times[i]) < markWidth)
                ++next;
            writeMark(series, times[i], times[next - 1]);
            i = next;
        }
    }

    void writeMark(std::size_t series, double first, double last) {
        const double middle = (x(first) + x(last)) / 2;
        const double tip = y(m_layout.rateAt(series + 1, (first + last) / 2));
        open("path", {{"d", triangle(middle, tip)},
                      {"class", QStringLiteral("chart-mark")},
                      {"fill", QStringLiteral("#1a1a1a")},
                      {"stroke", QStringLiteral("#ffffff")}});
        m_writer.writeTextElement(
            QStringLiteral("title"),
            first < last
                ? translated("%1: frames lost from %2 s to %3 s")
                      .arg(name(series), number(first, 2), number(last, 2))
                : translated("%1: frames lost at %2 s").arg(name(series), number(first, 2)));
        m_writer.writeEndElement();
    }

    static QString triangle(double tipX, double tipY) {
        return QStringLiteral("M%1 %2l%3 %4h%5z")
            .arg(number(tipX), number(tipY), number(-markWidth / 2), number(-markWidth),
                 number(markWidth));
    }

    /// The series' numbers beside their areas' ends.
    void writeNumbers() {
        const std::vector<double> heights = m_layout.numberHeights(fontSize, leastNumberDistance);
        for (std::size_t s = 0; s < heights.size(); ++s)
            text(right + 8, heights[s] + 4, QString::number(s + 1));
    }

    QString legendText(std::size_t series) const {
        return QStringLiteral("%1  %2").arg(series + 1).arg(elided(name(series), longestName));
    }

    bool hasLosses() const {
        for (std::size_t s = 0; s < m_full.series.size(); ++s) {
            if (!m_layout.lossesOf(s).empty())
                return true;
        }
        return false;
    }

    double columnWidth() const {
        int longest = 12;
        for (std::size_t s = 0; s < m_full.series.size(); ++s)
            longest = std::max(longest, legendText(s).size());
        if (m_layout.link() > 0)
            longest = std::max(longest, linkLegend().size());
        return 36 + longest * letterWidth;
    }
    int legendColumns() const {
        return std::max(1, static_cast<int>((pictureWidth - left) / columnWidth()));
    }
    int legendRows() const {
        const int entries = static_cast<int>(m_full.series.size()) + (m_layout.link() > 0 ? 1 : 0) +
                            (hasLosses() ? 1 : 0);
        return (entries + legendColumns() - 1) / legendColumns();
    }

    void writeLegend() {
        int entry = 0;
        double entryX = 0;
        double entryY = 0;
        const auto next = [&](const QString& content) {
            entryX = left + entry % legendColumns() * columnWidth();
            entryY = legendTop + entry / legendColumns() * lineHeight;
            text(entryX + 20, entryY, content);
            ++entry;
        };
        for (std::size_t s = 0; s < m_full.series.size(); ++s) {
            next(legendText(s));
            element("rect", {{"x", number(entryX)},
                             {"y", number(entryY - 10)},
                             {"width", QStringLiteral("12")},
                             {"height", QStringLiteral("12")},
                             {"fill", color(s)},
                             {"class", QStringLiteral("chart-area")},
                             {"stroke", QStringLiteral("#1a1a1a")},
                             {"stroke-width", QStringLiteral("0.8")}});
        }
        if (m_layout.link() > 0)
            next(linkLegend());
        if (m_layout.isLinkShown())
            line(entryX - 2, entryY - 4, entryX + 16, entryY - 4, "chart-link", "#1a1a1a");
        if (!hasLosses())
            return;
        next(translated("frames lost"));
        element("path", {{"d", triangle(entryX + 6, entryY + 1)},
                         {"class", QStringLiteral("chart-mark")},
                         {"fill", QStringLiteral("#1a1a1a")},
                         {"stroke", QStringLiteral("#ffffff")}});
    }

    const StackLayout m_layout;
    const StackedChart& m_full;
    QXmlStreamWriter m_writer;
};

} // namespace

QByteArray toSvg(const StackedChart& chart) {
    QByteArray svg;
    Drawing(chart, svg).write();
    return svg;
}

} // namespace chart
