// SPDX-License-Identifier: BSD-3-Clause
#include "viewer/CommandLine.h"

#include <QCommandLineParser>
#include <QCoreApplication>

namespace viewer {

namespace {

/// The longest benchmark that the dialog's spin box takes.
constexpr int longestBenchmark = 99999;

int toBenchmarkSeconds(const QString& text, QString& error) {
    bool isNumber = false;
    const int seconds = text.toInt(&isNumber);
    if (!isNumber || seconds < 1 || seconds > longestBenchmark) {
        error = QStringLiteral("--benchmark takes a number of seconds from 1 to %1, not \"%2\".")
                    .arg(longestBenchmark)
                    .arg(text);
        return 0;
    }
    return seconds;
}

} // namespace

CommandLine parseCommandLine(const QStringList& arguments) {
    const QCommandLineOption openSpanlet(QStringLiteral("open-spanlet"),
                                         QStringLiteral("Open Spanlet at once."));
    const QCommandLineOption dark(QStringLiteral("dark"), QStringLiteral("Use dark colours."));
    const QCommandLineOption benchmark(
        QStringLiteral("benchmark"),
        QStringLiteral("Open Spanlet, run a benchmark of this length on every interface, print "
                       "its statistics and quit."),
        QStringLiteral("seconds"));
    const QCommandLineOption autoSet(
        QStringLiteral("auto-set"),
        QStringLiteral("Open Spanlet, press Auto Set for every interface, before the benchmark if "
                       "there is one, and quit."));
    const QCommandLineOption picture(
        QStringLiteral("picture"),
        QStringLiteral("Save a picture of Spanlet's dialog before it is closed, and quit."),
        QStringLiteral("file"));
    const QCommandLineOption featurePicture(
        QStringLiteral("feature-picture"),
        QStringLiteral("Save a picture of the feature tree of the first camera, and quit."),
        QStringLiteral("file"));
    const QCommandLineOption windowPicture(
        QStringLiteral("window-picture"),
        QStringLiteral(
            "Save a picture of this program's window after 5 seconds, or 5 seconds after "
            "Spanlet, and quit."),
        QStringLiteral("file"));

    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Shows the live images of cameras and opens Spanlet to manage their "
                       "bandwidth."));
    const QCommandLineOption help = parser.addHelpOption();
    const QCommandLineOption version = parser.addVersionOption();
    parser.addOptions(session::cameraOptions());
    parser.addOptions(
        {openSpanlet, dark, autoSet, benchmark, picture, featurePicture, windowPicture});

    CommandLine line;
    if (!parser.parse(arguments)) {
        line.error = parser.errorText();
    } else if (parser.isSet(help)) {
        line.answer = parser.helpText();
    } else if (parser.isSet(version)) {
        line.answer = QStringLiteral("%1 %2\n").arg(QCoreApplication::applicationName(),
                                                    QCoreApplication::applicationVersion());
    } else if (!parser.positionalArguments().isEmpty()) {
        line.error = QStringLiteral("Unexpected argument \"%1\".")
                         .arg(parser.positionalArguments().constFirst());
    } else {
        line.cameras = session::cameraSource(parser, line.error);
        if (parser.isSet(benchmark))
            line.benchmarkSeconds = toBenchmarkSeconds(parser.value(benchmark), line.error);
    }
    line.opensSpanlet = parser.isSet(openSpanlet);
    line.isDark = parser.isSet(dark);
    line.autoSets = parser.isSet(autoSet);
    line.pictureFile = parser.value(picture);
    line.featurePictureFile = parser.value(featurePicture);
    line.windowPictureFile = parser.value(windowPicture);
    return line;
}

} // namespace viewer
