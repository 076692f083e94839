// SPDX-License-Identifier: BSD-3-Clause
#include "cli/Verdict.h"
#include "tests/cli/SpanletProcess.h"
#include "tests/support/HtmlReading.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gmock/gmock.h>

using namespace testing;

namespace {

QByteArray contentOf(const QString& file) {
    QFile opened(file);
    EXPECT_TRUE(opened.open(QIODevice::ReadOnly)) << file.toStdString();
    return opened.readAll();
}

/// The table with that heading, not counting the first \p number ones.
QVector<QStringList> table(const HtmlReading& page, const QString& heading, int number = 0) {
    for (const auto& each : page.tables) {
        if (each.first().contains(heading) && number-- == 0)
            return each;
    }
    ADD_FAILURE() << "no table has " << heading.toStdString();
    return {{}};
}

/// A column of a table without its heading.
QStringList column(const QVector<QStringList>& table, const QString& heading) {
    QStringList cells;
    for (const QStringList& row : table.mid(1))
        cells += row.value(table.first().indexOf(heading));
    return cells;
}

/// A member of the document's cameras at \p path as a table shows it.
QStringList shown(const QJsonObject& document, const std::string& path, const char* key,
                  double unit = 1, int decimals = 0) {
    QStringList cells;
    for (const QVariant& camera : at(document, path).toList()) {
        const QVariant value = camera.toMap()[QLatin1String(key)];
        cells += value.type() == QVariant::String
                     ? value.toString()
                     : QString::number(value.toDouble() / unit, 'f', decimals);
    }
    return cells;
}

/// Runs in a folder of its own.
class Report : public Test {
protected:
    SpanletProcess m_spanlet;
    QTemporaryDir m_folder;
    const QString m_html = m_folder.filePath(QStringLiteral("r.html"));
    const QString m_markdown = m_folder.filePath(QStringLiteral("r.md"));

    int run(const std::string& options) {
        return m_spanlet.run(QStringList{QStringLiteral("report"), QStringLiteral("--html"), m_html,
                                         QStringLiteral("--markdown"), m_markdown} +
                             words(options));
    }
    HtmlReading page() const { return readHtml(contentOf(m_html)); }
};

TEST_F(Report, showsTheFiguresOfBothMeasurementsAndPutsTheLimitsBack) {
    ASSERT_EQ(run("--config :oversubscribed --interface GEV-enp3s0 --auto-set --seconds 1.2 "
                  "--interval 0.3 --json"),
              0);
    const QJsonObject document = m_spanlet.json();
    const HtmlReading page = this->page();
    const QString markdown = QString::fromUtf8(contentOf(m_markdown));
    const QString verdict = document[QStringLiteral("verdict")].toString();
    EXPECT_THAT(verdict.toStdString(),
                AllOf(StartsWith("Accepted: none of "),
                      HasSubstr("with the limits of Auto Set, which were put back. The cameras are "
                                "simulated.")));
    EXPECT_EQ(page.textsOf("p").first(), verdict);
    EXPECT_TRUE(markdown.contains(verdict));

    for (const int i : {0, 1}) {
        const std::string result = "measurements " + std::to_string(i) + " result ";
        const auto figures = table(page, QStringLiteral("Received"), i);
        for (const auto& [heading, key, unit, decimals] :
             {std::tuple("Received", "receivedFrames", 1.0, 0),
              {"Lost", "lostFrames", 1.0, 0},
              {"Incomplete", "incompleteFrames", 1.0, 0},
              {"MB/s", "bytesPerSecond", 1e6, 2}}) {
            QStringList cells = shown(document, result + "cameras", key, unit, decimals);
            cells +=
                QString::number(number(document, result + "total " + key) / unit, 'f', decimals);
            EXPECT_EQ(column(figures, QLatin1String(heading)), cells) << heading;
            EXPECT_TRUE(markdown.contains(QStringLiteral("| %1 |").arg(cells.last()))) << heading;
        }
        // The rates over time add up to what was received.
        double bytes = 0;
        double lost = 0;
        const std::string rates = "measurements " + std::to_string(i) + " rates 0 cameras 0 ";
        for (const QVariant& rate : at(document, rates + "bytesPerSecond").toList())
            bytes += rate.toDouble();
        for (const QVariant& frames : at(document, rates + "lostFrames").toList())
            lost += frames.toDouble();
        const std::string camera = result + "cameras 0 ";
        EXPECT_NEAR(bytes * 0.3 / number(document, camera + "payloadBytes"), 1, 0.2);
        EXPECT_EQ(lost, number(document, camera + "lostFrames") +
                            number(document, camera + "incompleteFrames"));
        EXPECT_EQ(lost > 0, i == 0);
    }
    const auto limits = table(page, QStringLiteral("Limit after, MB/s"));
    EXPECT_EQ(column(limits, QStringLiteral("Limit before, MB/s")), words("80.00 80.00 80.00"));
    EXPECT_EQ(column(limits, QStringLiteral("Limit after, MB/s")),
              shown(document, "change cameras", "bandwidthBytesPerSecond", 1e6, 2));
    EXPECT_EQ(column(table(page, QStringLiteral("Firmware")), QStringLiteral("Serial number")),
              words("211001 211002 211003"));
    EXPECT_EQ(at(document, "change putBack"), true);
    // "doctor" still finds the former limits.
    EXPECT_FALSE(
        page.textsOf("pre").filter(QStringLiteral("autoset --interface GEV-enp3s0")).isEmpty());
    EXPECT_EQ(page.textsOf("svg").size(), 2);
}

TEST_F(Report, refusesLossesAndShowsHostileNames) {
    const QString scenario = m_folder.filePath(QStringLiteral("scenario.json"));
    QByteArray content = contentOf(QStringLiteral(SCENARIO_FOLDER "/oversubscribed.json"));
    content.replace("\"Lane\"", "\"</td><script>|**\"");
    QFile file(scenario);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(content) > 0);
    file.close();
    EXPECT_EQ(run("--interface GEV-enp3s0 --seconds 0.5 --config " + scenario.toStdString()), 1);
    // Regular expressions of GoogleTest differ between operating systems.
    const char* verdict =
        "^(Not accepted: \\d+ of \\d+ frames .*GEV-211003 were lost or incomplete "
        "in 0\\.5 s)\\.";
    EXPECT_EQ(matches(m_spanlet.out(), verdict).size(), 1U) << m_spanlet.out();
    const HtmlReading page = this->page();
    EXPECT_EQ(page.textsOf("p").first().toStdString() + '\n',
              m_spanlet.out().substr(0, m_spanlet.out().find('\n') + 1));
    EXPECT_TRUE(
        table(page, QStringLiteral("Model"))[1].contains(QStringLiteral("</td><script>|** 1")));
    EXPECT_FALSE(page.textsOf("title").filter(QStringLiteral("frames lost at 0.25 s")).isEmpty());
    EXPECT_THAT(contentOf(m_markdown).toStdString(),
                HasSubstr(R"(| GEV-211001 | \</td\>\<script\>\|\*\* 1 |)"));
}

TEST_F(Report, keepsThePlannedLimitsWhenAskedTo) {
    ASSERT_EQ(run("--config :oversubscribed --interface GEV-enp3s0 --plan --keep --seconds 0.3"),
              0);
    EXPECT_THAT(m_spanlet.out(), HasSubstr("with the limits of a plan, which were kept."));
    // "doctor" does not find the former limits any more.
    const QStringList cures = page().textsOf("pre");
    EXPECT_EQ(cures.filter(QStringLiteral("autoset --interface GEV-enp3s0")).size(), 0);
    EXPECT_EQ(cures.filter(QStringLiteral("autoset --interface GEV-enp4s0")).size(), 1);
}

TEST(ReportOptions, areCheckedBeforeTheMeasurement) {
    const QTemporaryDir folder;
    const std::string file = folder.filePath(QStringLiteral("r.html")).toStdString();
    const std::tuple<std::string, int, const char*> cases[] = {
        {"", 2, "--html FILE, --markdown FILE or both are needed."},
        {"--html " + file + " --markdown " + file, 2, "need a file each"},
        {"--html " + file + " --auto-set --plan", 2, "Either --auto-set or --plan"},
        {"--html " + file + " --keep", 2, "--keep goes with --auto-set or --plan only."},
        {"--html " + file + " --lock GEV-1", 2, "--lock goes with --auto-set or --plan only."},
        {"--html " + file + " --seconds 5000 --interval 0.1", 2, "--interval is too short"},
        {"--html " + file + " --auto-set --config " SCENARIO_FILE " --interface U3V", 1,
         "The speed of No speed is not known; give it by --max-bandwidth."},
        {"--markdown " + file + "/r.md", 1, "r.md cannot be written: "},
    };
    for (const auto& [options, code, message] : cases) {
        SpanletProcess spanlet;
        QElapsedTimer timer;
        timer.start();
        EXPECT_EQ(spanlet.run("report --seconds 20 " + options), code) << options;
        EXPECT_THAT(spanlet.err(), HasSubstr(message));
        EXPECT_LT(timer.elapsed(), 15000) << options;
    }
    EXPECT_TRUE(QDir(folder.path()).isEmpty()) << "nothing is left";
}

TEST(Verdict, tellsEveryReasonAgainstTheCameras) {
    const auto verdict = [](const char* document) {
        return cli::judge(QJsonDocument::fromJson(document).object()).text.toStdString();
    };
    EXPECT_EQ(
        verdict(R"({"seconds": 2, "interrupted": true, "cameras": [
                  {"id": "A", "opened": false},
                  {"id": "B", "opened": true, "measured": false, "disconnectedAfterSeconds": 1.5},
                  {"id": "C", "opened": true, "measured": true, "receivedFrames": 0},
                  {"id": "D", "opened": true, "measured": false},
                  {"id": "E", "opened": true, "measured": true, "receivedFrames": 7,
                   "sentFrames": 9, "lostFrames": 2, "incompleteFrames": 1},
                  {"id": "F", "opened": true, "measured": true, "receivedFrames": 40,
                   "sentFrames": 40, "silentSeconds": 2.5}],
                "total": {"sentFrames": 49, "lostFrames": 2, "incompleteFrames": 1},
                "findings": [{"place": "wire", "repaired": false},
                             {"place": "kernel", "camera": "E", "repaired": false},
                             {"place": "path", "repaired": true},
                             {"place": "unknown", "repaired": false}]})"),
        "Not accepted: the measurement was interrupted after 2.0 s; A cannot be opened; B was "
        "disconnected after 1.5 s; no frame of C arrived; D does not stream; F sent nothing in the "
        "last 2.5 s; 3 of 9 frames (33.33 %) of E were lost or incomplete in 2.0 s, at: wire (all "
        "cameras), kernel (E).");
    EXPECT_EQ(verdict(R"({"seconds": 2, "cameras": [
                  {"id": "A", "opened": true, "measured": true, "receivedFrames": 9}],
                "total": {"sentFrames": 9, "bytesPerSecond": 12500000}})"),
              "Accepted: none of 9 frames of 1 camera was lost in 2.0 s, at 12.5 MB/s.");
}

} // namespace
