// SPDX-License-Identifier: BSD-3-Clause
#include "chart/StackedChart.h"

#include <QtGui>
#include <gmock/gmock.h>

#include <set>
#include <tuple>

using testing::HasSubstr;

namespace {

const auto program = QStringLiteral(VIEWER_FILE);

class ViewerProgram : public testing::Test {
protected:
    /// Runs a program to its end, with settings and home in a folder of the test's own.
    void run(const QStringList& arguments, const QString& path = program) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        environment.insert(QStringLiteral("LC_ALL"), m_locale);
        environment.insert(QStringLiteral("HOME"), m_folder.path());
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), m_folder.path());
        QProcess process;
        process.setProcessEnvironment(environment);
        process.start(path, arguments);
        ASSERT_TRUE(process.waitForFinished(100000)) << process.errorString().toStdString();
        m_exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
        // Windows ends a line with two characters.
        m_output = process.readAllStandardOutput().replace("\r\n", "\n").toStdString();
        m_error = process.readAllStandardError().toStdString();
    }

    QTemporaryDir m_folder;
    QString m_locale = QStringLiteral("C.UTF-8");
    int m_exitCode = -1;
    std::string m_output;
    std::string m_error;
};

TEST_F(ViewerProgram, speaksGermanWhereTheSystemDoes) {
    m_locale = QStringLiteral("de_AT.UTF-8");
    run({QStringLiteral("--benchmark"), QStringLiteral("1")});
    EXPECT_THAT(m_output, HasSubstr("Verlorene Bilder  Unvollst\u00e4ndige Bilder"));
}

TEST_F(ViewerProgram, losesNoFrameAfterAutoSetAndTakesPictures) {
    const QString picture = m_folder.filePath(QStringLiteral("out.png"));
    const QString features = m_folder.filePath(QStringLiteral("features.png"));
    const QString window = m_folder.filePath(QStringLiteral("window.png"));
    run({QStringLiteral("--config"), QStringLiteral(":oversubscribed"),
         QStringLiteral("--auto-set"), QStringLiteral("--benchmark"), QStringLiteral("1"),
         QStringLiteral("--picture"), picture, QStringLiteral("--feature-picture"), features,
         QStringLiteral("--window-picture"), window});
    EXPECT_EQ(m_exitCode, 0) << m_error;
    EXPECT_THAT(m_output, testing::StartsWith("Interface  ")) << "to the left";
    const QStringList lines = QString::fromStdString(m_output).split(QLatin1Char('\n'));
    // Of each camera: rate, payload, received and sent frames, no lost and no incomplete ones.
    const QRegularExpression whole(
        QStringLiteral("\\d\\.\\d\\d +\\d+\\.\\d\\d +[1-9]\\d* +[1-9]\\d* +0 +0$"));
    EXPECT_EQ(lines.filter(whole).size(), 8) << m_output;
    EXPECT_GE(QImage(picture).width(), 1170);
    EXPECT_GE(QImage(picture).height(), 600);
    EXPECT_GE(QImage(features).width(), 600);
    const QImage throughput(window);
    std::set<QRgb> colours;
    for (int place = 0; place < throughput.width() * throughput.height(); ++place)
        colours.insert(throughput.pixel(place % throughput.width(), place / throughput.width()));
    for (int camera = 0; camera < 8; ++camera)
        EXPECT_EQ(colours.count(QColor(chart::seriesColor(camera)).rgb()), 1U) << camera;
    EXPECT_FALSE(QFile::exists(m_folder.filePath(QStringLiteral("Meridane"))))
        << "the help that opens by itself is closed, not switched off";
}

TEST_F(ViewerProgram, scalesWithTheResolutionOfTheScreen) {
    const QString picture = m_folder.filePath(QStringLiteral("out.png"));
    const auto sizeAt = [&](const char* dotsPerInch) {
        qputenv("QT_FONT_DPI", dotsPerInch);
        run({QStringLiteral("--cameras"), QStringLiteral("simulated"), QStringLiteral("--picture"),
             picture});
        qunsetenv("QT_FONT_DPI");
        return QImage(picture).size();
    };
    const QSize usual = sizeAt("96");
    EXPECT_FALSE(usual.isEmpty());
    EXPECT_EQ(sizeAt("120"), usual * 1.25) << "a factor that is not rounded";
}

TEST_F(ViewerProgram, withoutThePlugInNamesTheFolder) {
    // A copy elsewhere has no "plugins" beside it; the camera SDK is found where it was linked, or
    // on the path.
    const QFileInfo original(program);
    const QString copy = m_folder.filePath(original.fileName());
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", path + QDir::listSeparator().toLatin1() + original.path().toUtf8());
    ASSERT_TRUE(QFile::copy(program, copy));
    run({QStringLiteral("--benchmark"), QStringLiteral("1")}, copy);
    qputenv("PATH", path);
    EXPECT_EQ(m_exitCode, 1);
    const QString plugins = QDir::toNativeSeparators(m_folder.filePath(QStringLiteral("plugins")));
    EXPECT_THAT(m_error, HasSubstr(plugins.toStdString()));
}

TEST_F(ViewerProgram, explainsItselfAndSaysWhyItFails) {
    run({QStringLiteral("--help")});
    EXPECT_EQ(m_exitCode, 0);
    EXPECT_THAT(m_output, HasSubstr("--config <file>"));
    QFile broken(m_folder.filePath(QStringLiteral("broken.json")));
    ASSERT_TRUE(broken.open(QIODevice::WriteOnly));
    broken.write("{\n  \"cameras\": [\n  }\n");
    broken.close();
    const std::tuple<QString, int, std::string> cases[] = {
        {QStringLiteral("--benchmark never"), 2, "\"never\""},
        {QStringLiteral("--benchmark 1 --config :empty"), 1, "There is no camera"},
        {QStringLiteral("--config ") + broken.fileName(), 1,
         broken.fileName().toStdString() + ": line 3"}};
    for (const auto& [arguments, exitCode, message] : cases) {
        run(arguments.split(QLatin1Char(' ')));
        EXPECT_EQ(m_exitCode, exitCode) << message;
        EXPECT_THAT(m_error, HasSubstr(message));
    }
}

} // namespace
