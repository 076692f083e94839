// SPDX-License-Identifier: BSD-3-Clause
#include "tests/cli/SpanletProcess.h"

#include <gmock/gmock.h>

#include <signal.h>

using testing::HasSubstr;
using testing::Not;

namespace {

void sendSignal(const SpanletProcess& process, int signal) {
    ::kill(static_cast<pid_t>(process.id()), signal);
}

class InterruptionBy : public testing::TestWithParam<int> {};

TEST_P(InterruptionBy, endsABenchmarkAndTellsWhatWasCounted) {
    SpanletProcess spanlet;
    spanlet.start({QStringLiteral("benchmark"), QStringLiteral("--interface"),
                   QStringLiteral("GEV-enp3s0"), QStringLiteral("--seconds"), QStringLiteral("60"),
                   QStringLiteral("--json"), QStringLiteral("-v")});
    spanlet.await("GEV-20844): Acquisition started successfully.");
    sendSignal(spanlet, GetParam());
    EXPECT_EQ(spanlet.finish(), 0);
    EXPECT_THAT(spanlet.err().toStdString(),
                HasSubstr("GEV-20844): Acquisition stopped successfully."));
    EXPECT_TRUE(spanlet.json()[QStringLiteral("interrupted")].toBool());
    EXPECT_LT(spanlet.json()[QStringLiteral("seconds")].toDouble(), 30);
    EXPECT_EQ(camerasOf(spanlet.json()).size(), 3);
}

INSTANTIATE_TEST_SUITE_P(Signals, InterruptionBy, testing::Values(SIGINT, SIGTERM, SIGHUP));

TEST(Interruption, endsAWatch) {
    SpanletProcess spanlet;
    spanlet.start({QStringLiteral("watch"), QStringLiteral("--interface"),
                   QStringLiteral("GEV-enp3s0"), QStringLiteral("--interval"),
                   QStringLiteral("0.1")});
    spanlet.await("GEV-20844");
    sendSignal(spanlet, SIGINT);
    EXPECT_EQ(spanlet.finish(), 0);
    EXPECT_THAT(spanlet.out().toStdString(), HasSubstr("s (interrupted)\nCamera "));
}

TEST(Interruption, keepsAutoSetFromBeginning) {
    SpanletProcess spanlet;
    spanlet.start(QStringLiteral("autoset --benchmark 60 -v --interface GEV-enp3s0 "
                                 "--config :oversubscribed")
                      .split(QLatin1Char(' '), Qt::SkipEmptyParts));
    spanlet.await("GEV-211003): Acquisition started successfully.");
    sendSignal(spanlet, SIGINT);
    EXPECT_EQ(spanlet.finish(), 1);
    EXPECT_THAT(spanlet.err().toStdString(), HasSubstr("no camera was changed"));
    EXPECT_THAT(spanlet.err().toStdString(), Not(HasSubstr("DeviceLinkThroughputLimit set to")));
}

} // namespace
