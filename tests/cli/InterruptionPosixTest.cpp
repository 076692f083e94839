// SPDX-License-Identifier: BSD-3-Clause
#include "tests/cli/ProcessSignal.h"
#include "tests/cli/SpanletProcess.h"
#include "tests/support/FileTree.h"

#include <QThread>
#include <gmock/gmock.h>

#include <signal.h>

using namespace testing;

namespace {

/// Runs a command, sends a signal when it has printed \p text; the exit code.
int interrupt(SpanletProcess& spanlet, const std::string& line, const std::string& text,
              int signal = SIGINT) {
    spanlet.start(words(line + " --interface GEV-enp3s0"));
    spanlet.await(text);
    sendSignal(spanlet, signal);
    return spanlet.finish();
}

TEST(Interruption, endsABenchmarkAndTellsWhatWasCounted) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        SCOPED_TRACE(signal);
        SpanletProcess spanlet;
        EXPECT_EQ(interrupt(spanlet, "benchmark --seconds 60 --json -v",
                            "GEV-20844): Acquisition started successfully.", signal),
                  0);
        EXPECT_THAT(spanlet.err(), HasSubstr("GEV-20844): Acquisition stopped successfully."));
        EXPECT_EQ(number(spanlet.json(), "interrupted"), 1);
        EXPECT_LT(number(spanlet.json(), "seconds"), 30);
        EXPECT_EQ(camerasOf(spanlet.json()).size(), 3);
    }
}

TEST(Interruption, endsAWatch) {
    SpanletProcess spanlet;
    EXPECT_EQ(interrupt(spanlet, "watch --interval 0.1", "GEV-20844"), 0);
    EXPECT_THAT(spanlet.out(), HasSubstr("s, interrupted (simulated)\nCamera "));
}

TEST(Interruption, endsARestorationWhoseInputIsSilent) {
    SpanletProcess spanlet;
    spanlet.start(words("restore -"));
    // Past the start of the program, before which the signal would end it at once.
    QThread::msleep(300);
    sendSignal(spanlet, SIGTERM);
    EXPECT_EQ(spanlet.finish(), 1);
    EXPECT_THAT(spanlet.err(), HasSubstr("The standard input: interrupted"));
}

TEST(Interruption, endsAReportWithTheFormerLimits) {
    const FileTree files;
    const std::string file = files.write("r.md", "").string();
    SpanletProcess spanlet;
    spanlet.start(words("report --config :oversubscribed --interface GEV-enp3s0 --seconds 2 -v "
                        "--json --auto-set --keep --markdown " +
                        file));
    // Of both measurements.
    for (int i = 0; i < 2; ++i) {
        spanlet.forget();
        ASSERT_NO_FATAL_FAILURE(spanlet.await("GEV-211003): Acquisition started successfully."));
    }
    sendSignal(spanlet, SIGINT);
    EXPECT_EQ(spanlet.finish(), 1);
    const QJsonObject report = spanlet.json();
    EXPECT_EQ(number(report, "interrupted"), 1);
    EXPECT_EQ(at(report, "change putBack"), true);
    EXPECT_EQ(at(report, "change kept"), false);
    EXPECT_THAT(at(report, "verdict").toString().toStdString(),
                StartsWith("Not accepted: the measurement was interrupted after "));
    EXPECT_GT(std::filesystem::file_size(file), 1000U);
}

TEST(Interruption, keepsAutoSetFromBeginning) {
    SpanletProcess spanlet;
    EXPECT_EQ(interrupt(spanlet, "autoset --benchmark 60 -v --config :oversubscribed",
                        "GEV-211003): Acquisition started successfully."),
              1);
    EXPECT_THAT(spanlet.err(), HasSubstr("no camera was changed"));
    EXPECT_THAT(spanlet.err(), Not(HasSubstr("DeviceLinkThroughputLimit set to")));
}

TEST(Interruption, endsARestorationThatReadsItsFileAgain) {
    const FileTree files;
    const std::string one = textOf("save - GEV-21017");
    const std::string both = textOf("save - GEV-21017 GEV-21018");
    const std::string file = files.write("cameras.json", one).string();
    SpanletProcess spanlet;
    spanlet.start(words("restore --watch " + file));
    spanlet.await("GEV-21017: 0 settings restored");
    files.write("cameras.json", "{}");
    spanlet.await("The former settings stay in use.");
    files.write("cameras.json", both);
    spanlet.await("GEV-21018: 0 settings restored");
    sendSignal(spanlet, SIGINT);
    EXPECT_EQ(spanlet.finish(), 0);
    EXPECT_THAT(matches(spanlet.out(), "^(GEV-21017): "), SizeIs(1)) << "restored already";
}

TEST(Interruption, endsAPlanWithoutAChange) {
    SpanletProcess spanlet;
    EXPECT_EQ(interrupt(spanlet, "plan --apply --measure 60 -v", "GEV-20844): Acquisition started"),
              1);
    EXPECT_THAT(spanlet.err(), HasSubstr("Interrupted: no limit was changed."));
    EXPECT_THAT(spanlet.err(), HasSubstr("GEV-20844): Acquisition stopped successfully."));
}

TEST(Interruption, reportsWhichPlansWereApplied) {
    SpanletProcess spanlet;
    EXPECT_EQ(interrupt(spanlet,
                        "plan --interface GEV-enp5s0 --measure 0 --apply --verify 60 --json -v",
                        "GEV-30412): Acquisition started"),
              1);
    const QJsonObject plan = spanlet.json();
    EXPECT_TRUE(at(plan, "links 0 isApplied").toBool());
    EXPECT_EQ(at(plan, "links 0 failure").toString().toStdString(),
              "Interrupted: the limits of its last plan stay.");
    EXPECT_FALSE(at(plan, "links 1 isApplied").toBool());
    EXPECT_EQ(at(plan, "links 1 failure").toString().toStdString(),
              "Interrupted: its limits were not changed.");
    EXPECT_THAT(spanlet.err(), HasSubstr("spanlet: MRD GigE Interface enp5s0: Interrupted: the"));
}

} // namespace
