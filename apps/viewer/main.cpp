// SPDX-License-Identifier: BSD-3-Clause
#include "OrvCPP/OrvSystem.h"
#include "session/SdkSession.h"
#include "text/AlignedTable.h"
#include "viewer/Appearance.h"
#include "viewer/CommandLine.h"
#include "viewer/DialogDriver.h"
#include "viewer/ParentConsole.h"
#include "viewer/ProgramResources.h"
#include "viewer/ViewerWindow.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QLocale>
#include <QMessageBox>
#include <QSettings>
#include <QTimer>
#include <QTranslator>

#include <algorithm>
#include <chrono>
#include <cstdio>

namespace {

using viewer::CommandLine;
using viewer::writeText;

constexpr std::chrono::seconds windowPictureDelay(5);
constexpr QSize windowPictureSize(1120, 660);

void identify(QCoreApplication& application) {
    application.setApplicationName(QStringLiteral("spanlet-viewer"));
    application.setApplicationVersion(QStringLiteral(SPANLET_VERSION));
}

/// Reads the command line before there is a window system to connect to, so that asking for help
/// needs none.
CommandLine readCommandLine(int& argc, char** argv) {
    QCoreApplication application(argc, argv);
    identify(application);
    CommandLine line = viewer::parseCommandLine(QCoreApplication::arguments());
    for (QString* file : {&line.pictureFile, &line.featurePictureFile, &line.windowPictureFile}) {
        if (!file->isEmpty())
            *file = QFileInfo(*file).absoluteFilePath();
    }
    return line;
}

/// Tells a person what is wrong: on the standard error stream, and in a box where one can be seen.
void report(const CommandLine& line, QWidget* parent, const QString& text) {
    writeText(stderr, text + QLatin1Char('\n'));
    if (viewer::hasScreen() && !line.isAutomated())
        QMessageBox::warning(parent, QObject::tr("Camera Viewer"), text);
}

int operateSpanlet(const CommandLine& line, viewer::ViewerWindow& window) {
    viewer::DialogDriver driver(line);
    const QString error = window.openSpanlet();
    if (!error.isEmpty()) {
        report(line, &window, error);
        return 1;
    }
    // After the dialog has closed: while it is open, its log takes the standard output.
    const QVector<QStringList>& statistics = driver.statistics();
    if (!statistics.isEmpty()) {
        QVector<bool> isNumber(statistics.constFirst().size(), true);
        std::fill_n(isNumber.begin(), viewer::DialogDriver::nameColumns, false);
        writeText(stdout,
                  alignedTable(statistics, isNumber).join(QLatin1Char('\n')) + QLatin1Char('\n'));
    }
    const QStringList failures = driver.failures();
    for (const QString& failure : failures)
        report(line, &window, failure);
    return failures.isEmpty() ? 0 : 1;
}

/// Once the throughput has something to show.
int takeWindowPicture(const CommandLine& line, viewer::ViewerWindow& window) {
    window.resize(windowPictureSize);
    QTimer::singleShot(windowPictureDelay, &window, &QCoreApplication::quit);
    QApplication::exec();
    if (window.grab().save(line.windowPictureFile))
        return 0;
    report(line, &window,
           QStringLiteral("The picture cannot be saved as %1.").arg(line.windowPictureFile));
    return 1;
}

int runAutomatically(const CommandLine& line, viewer::ViewerWindow& window) {
    const int operated = line.operatesSpanlet() ? operateSpanlet(line, window) : 0;
    const int taken = line.windowPictureFile.isEmpty() ? 0 : takeWindowPicture(line, window);
    return std::max(operated, taken);
}

/// Beside the program, or where an installation has it.
QString pluginFolder() {
    const QDir programs(QCoreApplication::applicationDirPath());
    const QString beside = programs.filePath(QStringLiteral("plugins"));
    const QString installed =
        QDir::cleanPath(programs.filePath(QStringLiteral(SPANLET_PLUGIN_FROM_PROGRAMS)));
    return !QFileInfo::exists(beside) && QFileInfo::exists(installed) ? installed : beside;
}

int run(const CommandLine& line) {
    const session::SdkSession session(line.cameras);
    if (!session.isStarted()) {
        report(line, nullptr, session.error());
        return 1;
    }
    // Spanlet looks for its translations in the folder "qm" below the current one. The files that
    // the command line names are known by now.
    QDir::setCurrent(QCoreApplication::applicationDirPath());
    // An automatic run neither depends on the window's place nor changes it.
    QSettings settings(QStringLiteral("spanlet"), QStringLiteral("spanlet-viewer"));
    viewer::ViewerWindow window(OrvCPP::OrvSystem::GetInstance(), pluginFolder(),
                                session::StreamingLimits(),
                                line.isAutomated() ? nullptr : &settings);
    window.show();
    if (line.isAutomated())
        return runAutomatically(line, window);
    if (line.opensSpanlet) {
        QTimer::singleShot(0, &window, [&line, &window] {
            const QString error = window.openSpanlet();
            if (!error.isEmpty())
                report(line, &window, error);
        });
    }
    const int exitCode = QApplication::exec();
    settings.sync();
    if (settings.status() != QSettings::NoError)
        writeText(
            stderr,
            QStringLiteral("The window's place cannot be kept in %1.\n").arg(settings.fileName()));
    return exitCode;
}

/// Coordinates are independent of the screen's resolution, also at factors such as 1.25.
void enableHighDpi() {
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(
        Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
}

} // namespace

int main(int argc, char** argv) {
    viewer::attachParentConsole();
    enableHighDpi();
    const CommandLine line = readCommandLine(argc, argv);
    if (!line.answer.isEmpty()) {
        writeText(stdout, line.answer);
        return 0;
    }
    if (!line.error.isEmpty()) {
        writeText(stderr, line.error + QStringLiteral("\nTry --help.\n"));
        return 2;
    }
    QApplication application(argc, argv);
    identify(application);
    // The desktop finds name and icon of the window by it.
    QGuiApplication::setDesktopFileName(QStringLiteral("dev.spanlet.Viewer"));
    viewer::applyAppearance(line.isDark);
    // The texts of Qt's own buttons, which Spanlet's dialogs have, too.
    QTranslator qtTexts;
    if (qtTexts.load(QStringLiteral("qtbase_") + QLocale::system().name(),
                     QLibraryInfo::location(QLibraryInfo::TranslationsPath))) {
        QCoreApplication::installTranslator(&qtTexts);
    }
    QTranslator texts;
    if (viewer::loadTexts(texts, QLocale::system()))
        QCoreApplication::installTranslator(&texts);
    QApplication::setWindowIcon(viewer::windowIcon());
    return run(line);
}
