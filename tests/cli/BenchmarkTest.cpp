// SPDX-License-Identifier: BSD-3-Clause
#include "tests/cli/SpanletProcess.h"

#include <gmock/gmock.h>

#include <cmath>

using namespace testing;

namespace {

const std::string oversubscribed = " --interface GEV-enp3s0 --config :oversubscribed";
const std::string ownScenario = " --interface GEV-e0 --config " SCENARIO_FILE;

QJsonArray interfacesIn(const QJsonObject& document) {
    return document[QStringLiteral("interfaces")].toArray();
}

TEST(Benchmark, countsWhatArrives) {
    const QJsonObject result = jsonOf("benchmark --seconds 1.5 --interface GEV-enp3s0");
    EXPECT_NEAR(number(result, "seconds"), 1.5, 0.5);
    EXPECT_EQ(number(result, "interrupted"), 0);
    ASSERT_EQ(camerasOf(result).size(), 3);
    for (const std::string camera : {"cameras 0 ", "cameras 1 ", "cameras 2 "}) {
        EXPECT_GT(number(result, camera + "receivedFrames"), 3);
        EXPECT_EQ(number(result, camera + "sentFrames"), number(result, camera + "receivedFrames"));
        EXPECT_GT(number(result, camera + "payloadBytes"), 3e6);
        EXPECT_EQ(number(result, camera + "lossPercent"), 0);
    }
    EXPECT_EQ(sumOf(result, "lostFrames"), 0);
    const double rate = number(result, "total bytesPerSecond");
    EXPECT_NEAR(rate, number(result, "total payloadBytes") / number(result, "seconds"), rate / 10);
    EXPECT_EQ(number(result, "total bitsPerSecond"), 1e9);
    EXPECT_NEAR(number(result, "total linkPercent"), rate / 1.25e6, 1e-6);
    EXPECT_FALSE(at(result, "total packetsResent").isValid())
        << "simulated packets are not counted";
}

TEST(Benchmark, failsOnLossWhereThatIsAskedFor) {
    SpanletProcess strict;
    EXPECT_EQ(strict.run("benchmark --fail-on-loss --seconds 1" + oversubscribed), 1);
    EXPECT_THAT(strict.out(), HasSubstr("Incomplete"));
    EXPECT_THAT(strict.err(),
                HasSubstr("Warning: MRD GigE Interface enp3s0: The limits of the cameras add up to "
                          "240.0 MB/s, but only 112.5 MB/s are usable"));
    const QJsonObject result = jsonOf("benchmark --seconds 1" + oversubscribed);
    EXPECT_GT(sumOf(result, "lostFrames"), 0);
    // The average of a second is the count, since lost frames do not shorten an average.
    for (const QJsonValue& camera : camerasOf(result))
        EXPECT_NEAR(camera[QStringLiteral("framesPerSecond")].toDouble(),
                    camera[QStringLiteral("receivedFrames")].toInt(), 1.5);
    const double bad = sumOf(result, "lostFrames") + sumOf(result, "incompleteFrames");
    EXPECT_NEAR(number(result, "total lossPercent"),
                100 * bad / (sumOf(result, "receivedFrames") + sumOf(result, "lostFrames")), 1e-6);
}

TEST(Benchmark, failsWhenACameraVanishes) {
    SpanletProcess spanlet;
    EXPECT_EQ(spanlet.run("benchmark --seconds 1.5 --json" + ownScenario), 1);
    EXPECT_EQ(camera(spanlet.json(), 0, "measured"), "true");
    EXPECT_EQ(camera(spanlet.json(), 1, "measured"), "false");
    EXPECT_GT(number(spanlet.json(), "cameras 1 receivedFrames"), 5) << "it keeps its counts";
    EXPECT_NEAR(number(spanlet.json(), "cameras 1 disconnectedAfterSeconds"), 1, 0.4);
}

TEST(Benchmark, measuresSeveralInterfacesAtTheSameTime) {
    for (const char* which : {"--all", "--interface GEV-enp3s0 --interface U3V-0-20-0 "
                                       "--interface GEV-enp5s0 --interface GEV-enp3s0"}) {
        const QJsonObject result = jsonOf(std::string("benchmark --seconds 1 ") + which);
        EXPECT_EQ(interfacesIn(result).size(), 3) << which;
        EXPECT_LT(number(result, "seconds"), 2);
        for (const QJsonValue& interface : interfacesIn(result))
            EXPECT_GT(number(interface.toObject(), "total receivedFrames"), 5);
    }
    EXPECT_THAT(textOf("benchmark --seconds 0.2 --all"),
                AllOf(HasSubstr("MRD GigE Interface enp3s0, 0."),
                      HasSubstr("\n\nMRD GigE Interface enp5s0, 0.")));
}

TEST(Benchmark, refusesOptionsThatDoNotGoTogether) {
    for (const char* rest : {"--all --interface GEV-enp3s0", "--interval 1 --all"}) {
        SpanletProcess spanlet;
        EXPECT_EQ(spanlet.run(std::string("benchmark ") + rest), 2) << rest;
    }
}

TEST(AutoSet, losesNoFrameAfterwards) {
    const QJsonObject result = jsonOf("autoset --benchmark 1" + oversubscribed);
    EXPECT_GT(sumOf(result[QStringLiteral("benchmarkBefore")].toObject(), "lostFrames"), 0);
    const QJsonObject after = result[QStringLiteral("benchmarkAfter")].toObject();
    EXPECT_EQ(sumOf(after, "lostFrames") + sumOf(after, "incompleteFrames"), 0);
    EXPECT_GT(sumOf(after, "receivedFrames"), 9);
}

TEST(AutoSet, dividesWhatAnInterfaceCarries) {
    const struct {
        std::string options;
        double bytesPerSecond;
        int marginPercent;
    } cases[] = {{"GEV-enp3s0", 112.5e6, 10},
                 {"U3V-0-20-0", 437.5e6, 30},
                 {"GEV-enp3s0 --interface-margin 0", 125e6, 0},
                 {"GEV-enp3s0 --max-bandwidth 50", 45e6, 10}};
    for (const auto& [options, bytesPerSecond, marginPercent] : cases) {
        const auto result = jsonOf("autoset --config :oversubscribed --interface " + options);
        EXPECT_NEAR(sumOf(result, "bandwidthBytesPerSecond"), bytesPerSecond, 10);
        EXPECT_EQ(number(result, "interfaceMarginPercent"), marginPercent);
    }
}

TEST(AutoSet, leavesLockedCamerasAlone) {
    SpanletProcess spanlet;
    EXPECT_EQ(spanlet.run("autoset --json -v --lock GEV-211001 --lock 211002" + oversubscribed), 0);
    EXPECT_THAT(spanlet.err(), HasSubstr("161.0 MB/s, but only 112.5 MB/s"));
    const std::string switched = ": feature 'DeviceLinkThroughputLimitMode' set to 'On'.";
    EXPECT_THAT(spanlet.err(), HasSubstr("(GEV-211003)" + switched));
    EXPECT_THAT(spanlet.err(), Not(HasSubstr("(GEV-211001)" + switched)));
    const std::string members = "bandwidthBytesPerSecondBefore bandwidthBytesPerSecond status";
    EXPECT_EQ(camera(spanlet.json(), 0, members), "80000000 80000000 locked");
    EXPECT_EQ(camera(spanlet.json(), 1, members), "80000000 80000000 locked");
    EXPECT_EQ(camera(spanlet.json(), 2, members), "80000000 1000000 belowRequested");
}

TEST(AutoSet, setsOneCamera) {
    const auto limit = [](const std::string& margin) {
        const auto result = jsonOf("autoset --camera GEV-21017 --camera-margin " + margin);
        EXPECT_EQ(camera(result, 0, "status"), "requestedReached");
        EXPECT_EQ(camerasOf(result).size(), 1);
        return sumOf(result, "bandwidthBytesPerSecond");
    };
    // 2464 x 2056 pixels at up to 23.5 frames per second; then with a margin of 1 %.
    const double need = limit("0");
    EXPECT_NEAR(need, 2464.0 * 2056 * 23.5, 2e6);
    EXPECT_NEAR(limit("1"), need * 1.01, 0.01e6);
}

TEST(AutoSet, dividesSeveralInterfaces) {
    const auto limits = [](const QJsonObject& document) {
        std::vector<long> found;
        for (const QJsonValue& each : interfacesIn(document))
            found.push_back(std::lround(sumOf(each.toObject(), "bandwidthBytesPerSecond") / 1e5));
        return found;
    };
    EXPECT_THAT(limits(jsonOf("autoset --all --config :oversubscribed")),
                ElementsAre(1125, 113, 4375));
    const QJsonObject two = jsonOf("autoset --benchmark 0.5 --interface GEV-enp3s0 --interface "
                                   "U3V-0-20-0 --lock 211001 --config :oversubscribed");
    EXPECT_THAT(limits(two), ElementsAre(1125, 4375));
    EXPECT_EQ(camera(interfacesIn(two).at(0).toObject(), 0, "status"), "locked");
    EXPECT_EQ(interfacesIn(two[QStringLiteral("benchmarkAfter")].toObject()).size(), 2);

    SpanletProcess partial;
    EXPECT_EQ(partial.run("autoset --all --json --config " SCENARIO_FILE), 1);
    EXPECT_THAT(limits(partial.json()), ElementsAre(134, 0));
    EXPECT_THAT(at(partial.json(), "interfaces 1 error").toString().toStdString(),
                HasSubstr("speed of No speed is not known"));
}

TEST(SharedLinks, areToldByHeadingsAndDocuments) {
    const std::string config = " --config " SHARED_LINKS_FILE;
    const std::string inEach = ", shares its link with (Eth [ab]|USB 0-20-0 [ab]) \\(simulated\\)$";
    for (const std::string line :
         {"list", "benchmark --all --seconds 0.2", "autoset --all", "watch --all --seconds 0.2"}) {
        SpanletProcess spanlet;
        EXPECT_EQ(spanlet.run(line + config), 0);
        EXPECT_THAT(matches(spanlet.out(), inEach.c_str()),
                    ElementsAre("Eth b", "Eth a", "USB 0-20-0 b", "USB 0-20-0 a"))
            << line;
        EXPECT_THAT(matches(spanlet.err(), "^Warning: (.+): The limits of the cameras add up"),
                    Contains("USB 0-20-0 a and USB 0-20-0 b").Times(1));
    }
    const QJsonObject benchmark = jsonOf("benchmark --all --seconds 0.5" + config);
    EXPECT_EQ(at(benchmark, "interfaces 0 sharesLinkWith").toStringList(),
              QStringList(QStringLiteral("Eth b")));
    EXPECT_FALSE(at(benchmark, "interfaces 2 sharesLinkWith").isValid());
    EXPECT_EQ(number(benchmark, "interfaces 3 total bitsPerSecond"), 10e9);
    EXPECT_NEAR(number(benchmark, "interfaces 3 total linkPercent"), 80, 10);
}

TEST(OtherTraffic, countsAsUseAndIsCarriedByTheLink) {
    const std::string config = " --config " SHARED_LINKS_FILE;
    SpanletProcess list;
    EXPECT_EQ(list.run("list" + config), 0);
    EXPECT_THAT(list.out(), HasSubstr(": 140.0 of 125.0 MB/s in use, 90.0 of it by others"));
    EXPECT_THAT(list.err(), HasSubstr("Eth c: The limits of the cameras add up to 50.0 MB/s, and "
                                      "others send 90.0 MB/s, but only 112.5 MB/s are usable"));
    EXPECT_EQ(number(jsonOf("list" + config), "interfaces 2 otherBytesPerSecond"), 90e6);
    const QJsonObject result = jsonOf("benchmark --seconds 1.5 --interface GEV-c" + config);
    EXPECT_GT(number(result, "total lossPercent"), 7);
}

TEST(Watch, printsLinesWhereThereIsNoTerminal) {
    SpanletProcess spanlet;
    EXPECT_EQ(spanlet.run("watch --seconds 2 --interval 0.4" + ownScenario), 1);
    EXPECT_THAT(spanlet.out(), HasSubstr("     0.4  CAM-A"));
    // The camera vanishes after a second: the rate is that of the last 0.4 s.
    EXPECT_THAT(spanlet.out(), HasSubstr("     1.6  CAM-B   Twin      0.00 "));
    EXPECT_THAT(spanlet.out(), HasSubstr("disconnected after "));
    EXPECT_THAT(spanlet.out(), HasSubstr("\nMRD GigE Interface e0, 2."));
    EXPECT_THAT(spanlet.out(), Not(HasSubstr("\x1b")));
    const std::string several = textOf("watch --all --seconds 0.6 --interval 0.4");
    EXPECT_THAT(several, HasSubstr("     0.4  MRD GigE Interface enp5s0\n       s  Camera "));
}

TEST(Watch, printsALineOfJsonAtEachInterval) {
    SpanletProcess spanlet;
    EXPECT_EQ(spanlet.run("watch --seconds 2.9 --interval 0.6 --json" + ownScenario), 1);
    const QJsonArray lines = spanlet.jsonLines();
    ASSERT_EQ(lines.size(), 5);
    double frames = 0;
    for (int i = 0; i < lines.size(); ++i) {
        const QJsonObject line = lines[i].toObject();
        const bool isResult = i == lines.size() - 1;
        EXPECT_EQ(at(line, "type").toString().toStdString(), isResult ? "result" : "interval");
        EXPECT_NEAR(number(line, "seconds"), isResult ? 2.9 : 0.6 * (i + 1), 0.3);
        EXPECT_GT(sumOf(line, "receivedFrames"), frames) << "counts since the start";
        frames = sumOf(line, "receivedFrames");
    }
    // The camera vanishes after a second.
    EXPECT_EQ(number(lines[0].toObject(), "cameras 1 measured"), 1);
    const QJsonObject later = lines[3].toObject();
    EXPECT_EQ(number(later, "cameras 1 measured"), 0);
    EXPECT_EQ(number(later, "cameras 1 framesPerSecond"), 0);
    EXPECT_GT(number(later, "cameras 1 receivedFrames"), 5);
    EXPECT_NEAR(number(later, "cameras 1 disconnectedAfterSeconds"), 1, 0.4);
    EXPECT_EQ(number(later, "cameras 0 measured"), 1);
}

} // namespace
