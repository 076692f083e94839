// SPDX-License-Identifier: BSD-3-Clause
#include "chart/StackedChart.h"

#include "chart/AxisScale.h"
#include "text/PrintableText.h"

#include <QCoreApplication>
#include <QStringList>
#include <QXmlStreamWriter>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace chart {

namespace {

/// Lengths in units of the picture, which is 760 wide.
constexpr double pictureWidth = 760;
constexpr double left = 62;
constexpr double right = 716;
constexpr double top = 52;
constexpr double bottom = 272;
constexpr double legendTop = 326;
constexpr double lineHeight = 20;
constexpr double fontSize = 12;
/// Average width of a letter of a generic font of that size, rounded up.
constexpr double letterWidth = 6.8;
constexpr int longestName = 40;
/// Marks that are closer to each other are one.
constexpr double markWidth = 9;
/// More points than the picture can show are averaged.
constexpr std::size_t mostPoints = 640;
/// Times and rates beyond these are no measurement.
constexpr double mostSeconds = 1e11;
constexpr double mostMegabytesPerSecond = 1e12;
constexpr double shortestSeconds = 1e-3;
/// Numbers that are closer to each other cannot be read.
constexpr double leastNumberDistance = 9;

QString translated(const char* text) {
    return QCoreApplication::translate("chart::Drawing", text);
}

QString number(double value, int decimals = 1) {
    return QString::number(value, 'f', decimals);
}

double rateAt(const Series& series, std::size_t index) {
    if (index >= series.megabytesPerSecond.size())
        return 0;
    const double rate = series.megabytesPerSecond[index];
    return std::isfinite(rate) ? std::clamp(rate, 0.0, mostMegabytesPerSecond) : 0;
}

/// Only times that ascend, and for each of them a rate of each series.
StackedChart valid(const StackedChart& chart) {
    StackedChart result{chart.title, {}, {}, chart.linkMegabytesPerSecond};
    for (const Series& series : chart.series)
        result.series.push_back({series.name, {}, series.lostAtSeconds, series.color});
    for (std::size_t i = 0; i < chart.seconds.size(); ++i) {
        const double time = chart.seconds[i];
        const bool isAscending = result.seconds.empty() || time > result.seconds.back();
        if (!(std::abs(time) <= mostSeconds) || !isAscending)
            continue;
        result.seconds.push_back(time);
        for (std::size_t s = 0; s < chart.series.size(); ++s)
            result.series[s].megabytesPerSecond.push_back(rateAt(chart.series[s], i));
    }
    return result;
}

double mean(const std::vector<double>& values) {
    if (values.empty())
        return 0;
    return std::accumulate(values.begin(), values.end(), 0.0) / static_cast<double>(values.size());
}

/// The means of groups of \p size values.
std::vector<double> meansOf(const std::vector<double>& values, std::size_t size) {
    std::vector<double> means;
    for (std::size_t i = 0; i < values.size(); i += size) {
        const std::size_t end = std::min(i + size, values.size());
        means.push_back(mean({values.begin() + static_cast<std::ptrdiff_t>(i),
                              values.begin() + static_cast<std::ptrdiff_t>(end)}));
    }
    return means;
}

/// Writes one chart.
class Drawing {
public:
    Drawing(const StackedChart& chart, QByteArray& svg)
        : m_full(valid(chart)), m_data(averaged(m_full, mostPoints)), m_writer(&svg) {
        const std::size_t points = m_data.seconds.size();
        m_tops.emplace_back(points, 0.0);
        for (const Series& series : m_data.series) {
            std::vector<double> sums = m_tops.back();
            for (std::size_t i = 0; i < points; ++i)
                sums[i] += series.megabytesPerSecond[i];
            m_tops.push_back(std::move(sums));
        }
        if (points > 0) {
            m_start = m_full.seconds.front();
            m_end = std::max(m_full.seconds.back(), m_start + shortestSeconds);
            m_peak = *std::max_element(m_tops.back().begin(), m_tops.back().end());
        }
        if (m_peak <= 0)
            m_peak = 1;
        const auto link = chart.linkMegabytesPerSecond;
        if (link && std::isfinite(*link) && *link > 0)
            m_link = std::min(*link, mostMegabytesPerSecond);
        m_isLinkShown = m_link > 0 && m_link <= highestLink * m_peak;
        const double most = m_isLinkShown ? std::max(m_peak, m_link) : m_peak;
        m_mostRate = AxisScale(0, most, 8).roundedUp(most);
    }

    void write() {
        start();
        writeRateAxis();
        for (std::size_t s = 0; s < m_data.series.size(); ++s)
            writeArea(s);
        writeTimeAxis();
        writeLink();
        for (std::size_t s = 0; s < m_data.series.size(); ++s)
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

    double x(double seconds) const {
        return left + (seconds - m_start) / (m_end - m_start) * (right - left);
    }
    double y(double rate) const { return bottom - rate / m_mostRate * (bottom - top); }

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
        if (m_data.seconds.empty())
            return translated("No rates were measured.");
        QStringList sentences{translated("Mean rates from %1 s to %2 s, stacked.")
                                  .arg(number(m_start), number(m_end))};
        for (std::size_t s = 0; s < m_data.series.size(); ++s) {
            const auto losses = lossesOf(s).size();
            sentences.append(QStringLiteral("%1: %2 MB/s%3.")
                                 .arg(name(s), number(mean(m_full.series[s].megabytesPerSecond)),
                                      losses == 0 ? QString()
                                                  : translated(", %1 times of lost frames")
                                                        .arg(static_cast<int>(losses))));
        }
        if (m_link > 0)
            sentences.append(linkText() + QLatin1Char('.'));
        return sentences.join(QLatin1Char(' '));
    }

    QString linkText() const { return translated("Link: %1 MB/s").arg(number(m_link)); }
    QString linkLegend() const {
        return m_isLinkShown ? linkText() : translated("%1, above this chart").arg(linkText());
    }

    void writeRateAxis() {
        const AxisScale scale(0, m_mostRate, 8);
        text(8, top - 14, QStringLiteral("MB/s"));
        for (const double mark : scale.marks()) {
            line(left, y(mark), right, y(mark), "chart-grid", "#cccccc");
            text(left - 8, y(mark) + 4, scale.text(mark), "end");
        }
    }

    void writeTimeAxis() {
        line(left, bottom, right, bottom, "chart-axis", "#1a1a1a");
        text((left + right) / 2, bottom + 36, translated("Time in s"), "middle");
        if (m_data.seconds.empty()) {
            text((left + right) / 2, (top + bottom) / 2, description(), "middle");
            return;
        }
        const AxisScale scale(m_start, m_end, 10);
        for (const double mark : scale.marks()) {
            line(x(mark), bottom, x(mark), bottom + 5, "chart-axis", "#1a1a1a");
            text(x(mark), bottom + 19, scale.text(mark), "middle");
        }
    }

    /// Forwards along the upper edge and backwards along the lower one.
    void writeArea(std::size_t series) {
        QStringList points;
        const std::size_t count = m_data.seconds.size();
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
        return number(x(m_data.seconds[index])) + QLatin1Char(',') + number(y(m_tops[edge][index]));
    }

    void writeLink() {
        if (m_isLinkShown)
            line(left, y(m_link), right, y(m_link), "chart-link", "#1a1a1a");
    }

    std::vector<double> lossesOf(std::size_t series) const {
        std::vector<double> times;
        for (const double time : m_full.series[series].lostAtSeconds) {
            if (time >= m_start && time <= m_end && !m_data.seconds.empty())
                times.push_back(time);
        }
        std::sort(times.begin(), times.end());
        return times;
    }

    /// A triangle on the upper edge of the series for each loss, or for several that are close.
    void writeMarks(std::size_t series) {
        const std::vector<double> times = lossesOf(series);
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
        const double tip = y(edgeAt(series + 1, (first + last) / 2));
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

    /// The stack's height in MB/s at a time, between two points.
    double edgeAt(std::size_t edge, double seconds) const {
        const std::vector<double>& times = m_data.seconds;
        const std::vector<double>& rates = m_tops[edge];
        const auto after = std::upper_bound(times.begin(), times.end(), seconds);
        if (after == times.begin())
            return rates.front();
        if (after == times.end())
            return rates.back();
        const auto i = static_cast<std::size_t>(after - times.begin());
        const double part = (seconds - times[i - 1]) / (times[i] - times[i - 1]);
        return rates[i - 1] + part * (rates[i] - rates[i - 1]);
    }

    /// The series' numbers beside their areas' ends, moved apart where areas are flat.
    void writeNumbers() {
        if (m_data.seconds.empty())
            return;
        const std::size_t count = m_data.series.size();
        const double distance = std::min(
            fontSize, (bottom - top) / static_cast<double>(std::max<std::size_t>(count, 1)));
        if (distance < leastNumberDistance)
            return;
        double lowest = bottom;
        for (std::size_t s = 0; s < count; ++s) {
            const double room = static_cast<double>(count - 1 - s) * distance;
            const double middle = (y(m_tops[s].back()) + y(m_tops[s + 1].back())) / 2;
            const double place = std::max(std::min(middle, lowest), top + room);
            text(right + 8, place + 4, QString::number(s + 1));
            lowest = place - distance;
        }
    }

    QString legendText(std::size_t series) const {
        return QStringLiteral("%1  %2").arg(series + 1).arg(elided(name(series), longestName));
    }

    bool hasLosses() const {
        for (std::size_t s = 0; s < m_full.series.size(); ++s) {
            if (!lossesOf(s).empty())
                return true;
        }
        return false;
    }

    double columnWidth() const {
        int longest = 12;
        for (std::size_t s = 0; s < m_full.series.size(); ++s)
            longest = std::max(longest, legendText(s).size());
        if (m_link > 0)
            longest = std::max(longest, linkLegend().size());
        return 36 + longest * letterWidth;
    }
    int legendColumns() const {
        return std::max(1, static_cast<int>((pictureWidth - left) / columnWidth()));
    }
    int legendRows() const {
        const int entries =
            static_cast<int>(m_full.series.size()) + (m_link > 0 ? 1 : 0) + (hasLosses() ? 1 : 0);
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
        if (m_link > 0)
            next(linkLegend());
        if (m_isLinkShown)
            line(entryX - 2, entryY - 4, entryX + 16, entryY - 4, "chart-link", "#1a1a1a");
        if (!hasLosses())
            return;
        next(translated("frames lost"));
        element("path", {{"d", triangle(entryX + 6, entryY + 1)},
                         {"class", QStringLiteral("chart-mark")},
                         {"fill", QStringLiteral("#1a1a1a")},
                         {"stroke", QStringLiteral("#ffffff")}});
    }

    const StackedChart m_full;
    /// As many points as can be drawn.
    const StackedChart m_data;
    QXmlStreamWriter m_writer;
    /// Sums of the rates: the time axis, and the upper edge of each series.
    std::vector<std::vector<double>> m_tops;
    double m_start = 0;
    double m_end = 1;
    double m_peak = 0;
    double m_link = 0;
    bool m_isLinkShown = false;
    double m_mostRate = 1;
};

} // namespace

QString seriesColor(int index) {
    // Okabe and Ito, "Color Universal Design" (2008), which people with any common colour blindness
    // tell apart; its black, which is for text here, is replaced by a grey.
    static constexpr const char* colors[] = {"#0072b2", "#e69f00", "#009e73", "#cc79a7",
                                             "#56b4e9", "#d55e00", "#f0e442", "#999999"};
    return QLatin1String(colors[static_cast<unsigned>(index) % std::size(colors)]);
}

StackedChart averaged(const StackedChart& chart, std::size_t mostTimes) {
    StackedChart result = valid(chart);
    const std::size_t size = (result.seconds.size() + mostTimes - 1) / mostTimes;
    if (size > 1) {
        result.seconds = meansOf(result.seconds, size);
        for (Series& series : result.series)
            series.megabytesPerSecond = meansOf(series.megabytesPerSecond, size);
    }
    return result;
}

QByteArray toSvg(const StackedChart& chart) {
    QByteArray svg;
    Drawing(chart, svg).write();
    return svg;
}

} // namespace chart
