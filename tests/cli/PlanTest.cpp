// SPDX-License-Identifier: BSD-3-Clause
#include "tests/cli/SpanletProcess.h"
#include "tests/support/FileTree.h"

#include <gmock/gmock.h>

#include <cmath>

using namespace testing;

namespace {

const std::string hungry = " --config :oversubscribed --interface GEV-enp3s0";

/// The only link.
QJsonObject planOf(const std::string& options) {
    const QJsonArray links = jsonOf("plan " + options)[QStringLiteral("links")].toArray();
    EXPECT_EQ(links.size(), 1);
    return links.first().toObject();
}

TEST(Plan, comparesWithAutoSetAndWritesOnlyWhenAskedTo) {
    const QJsonObject plan = planOf("--interface GEV-enp3s0 --measure 0.5");
    EXPECT_FALSE(plan[QStringLiteral("isApplied")].toBool());
    // What "autoset" gives: a third for each, since the last one is triggered.
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(camera(plan, i, "role bandwidthBytesPerSecondAutoSet"), "planned 37500000") << i;
    EXPECT_EQ(camera(plan, 2, "needSource"), "measurement");
    EXPECT_NEAR(number(plan, "cameras 2 framesPerSecondNeed"), 5, 0.2);
    EXPECT_NEAR(number(plan, "cameras 0 bandwidthBytesPerSecondPlan"), 53.0e6, 0.4e6);
    EXPECT_NEAR(number(plan, "cameras 0 bandwidthBytesPerSecondPlan"),
                number(plan, "cameras 1 bandwidthBytesPerSecondPlan"), 1);
    EXPECT_LE(sumOf(plan, "bandwidthBytesPerSecondPlan"), 112.5e6);
    EXPECT_GE(sumOf(plan, "bandwidthBytesPerSecondPlan"), 112.49e6);
    const std::string comparison = at(plan, "comparison").toString().toStdString();
    EXPECT_EQ(matches(comparison, "reach 28\\.\\d frames per second in all; "
                                  "the plan reaches 3[78]\\..*more")
                  .size(),
              1U)
        << comparison;

    const QJsonObject unmeasured = planOf("--interface GEV-enp3s0 --measure 0 --apply");
    EXPECT_TRUE(unmeasured[QStringLiteral("isApplied")].toBool());
    EXPECT_EQ(camera(unmeasured, 2, "needSource"), "search");
    EXPECT_GT(number(unmeasured, "cameras 2 framesPerSecondNeed"), 20);
    EXPECT_THAT(textOf("plan" + hungry), AllOf(HasSubstr("planned only (simulated)\n"),
                                               HasSubstr("Auto Set would lose no")));
}

TEST(Plan, followsWeightsWishesAndLocks) {
    const QJsonObject weighted =
        planOf("--measure 0 --weight 211001=4 --weight GEV-211003=0.5 --camera-margin 0" + hungry);
    const double total = 112.5e6 / 5.5;
    EXPECT_NEAR(number(weighted, "cameras 0 bandwidthBytesPerSecondPlan"), 4 * total, 2);
    EXPECT_NEAR(number(weighted, "cameras 1 bandwidthBytesPerSecondPlan"), total, 2);
    EXPECT_NEAR(number(weighted, "cameras 2 bandwidthBytesPerSecondPlan"), total / 2, 2);

    const QJsonObject wished = planOf("--measure 0 --rate GEV-211002=14" + hungry);
    EXPECT_GE(number(wished, "cameras 1 framesPerSecondPlan"), 14);
    EXPECT_LE(number(wished, "cameras 1 framesPerSecondPlan"), 14.8);
    EXPECT_EQ(number(wished, "cameras 1 wishedFramesPerSecond"), 14);
    EXPECT_NEAR(sumOf(wished, "bandwidthBytesPerSecondPlan"), 112.5e6, 3);

    const QJsonObject kept = planOf("--measure 0 --lock GEV-211001" + hungry);
    EXPECT_EQ(camera(kept, 0, "role"), "locked");
    EXPECT_EQ(camera(kept, 0, "bandwidthBytesPerSecondPlan"),
              camera(kept, 0, "bandwidthBytesPerSecondBefore"));
}

TEST(Plan, refusesWhatIsNotPossible) {
    const struct {
        std::string line;
        int code;
        std::string message;
    } cases[] = {
        {"--rate GEV-211001=1000" + hungry, 1, "1000 frames per second are not possible, at most"},
        {"--rate 211001=20 --rate 211002=20" + hungry, 1, "The wished rates do not fit."},
        {"--lock 211001 --rate 211001=1" + hungry, 1, "It gets no limit"},
        {"--weight Lane=2 --config :faulty --all", 1, "There is no camera \"Lane\""},
        {"--weight 211001" + hungry, 2, "--weight takes CAMERA=NUMBER, with a number from 0.01"},
        {"--rate =5" + hungry, 2, "--rate takes CAMERA=NUMBER"},
        {"--rate a=nan" + hungry, 2, "--rate takes CAMERA=NUMBER"},
        {"--weight 211001=2 --weight GEV-211001=3" + hungry, 2,
         "GEV-211001: --weight is given twice"},
        {"--verify 1" + hungry, 2, "--verify goes with --apply only"},
        {"--all --max-bandwidth 9", 2, "--max-bandwidth goes with one --interface only"},
        {"--interface U3V --config " SCENARIO_FILE, 1, "not known; give it by --max-bandwidth"},
    };
    for (const auto& [line, code, message] : cases) {
        SpanletProcess spanlet;
        EXPECT_EQ(spanlet.run("plan --measure 0 " + line), code) << line;
        EXPECT_THAT(spanlet.err(), HasSubstr(message)) << line;
    }
    // The lowest limits are more than there is.
    SpanletProcess spanlet;
    EXPECT_EQ(spanlet.run("plan --apply --json --max-bandwidth 2" + hungry), 1);
    const QJsonObject plan = spanlet.json()[QStringLiteral("links")].toArray().first().toObject();
    EXPECT_FALSE(plan[QStringLiteral("isFeasible")].toBool(true));
    EXPECT_FALSE(plan[QStringLiteral("isApplied")].toBool(true));
    EXPECT_THAT(at(plan, "comparison").toString().toStdString(), HasSubstr("No division"));
}

/// The link carries 125 MB/s, but is said to carry more.
TEST(Plan, lowersWhatIsUsableUntilNothingIsLost) {
    const QJsonObject plan = planOf("--apply --verify 0.7 --max-bandwidth 155" + hungry);
    const QJsonArray rounds =
        plan[QStringLiteral("verification")].toObject()[QStringLiteral("rounds")].toArray();
    ASSERT_EQ(rounds.size(), 4);
    for (int i = 0; i < 4; ++i) {
        EXPECT_NEAR(rounds[i][QStringLiteral("usableBytesPerSecond")].toDouble(),
                    139.5e6 * std::pow(0.95, i), 1);
        EXPECT_EQ(rounds[i][QStringLiteral("lostFrames")].toDouble() > 0, i < 3) << i;
    }
    EXPECT_TRUE(at(plan, "verification isLossFree").toBool());
    EXPECT_NEAR(number(plan, "verification carriedBytesPerSecond"), 112e6, 13e6);
    EXPECT_NEAR(sumOf(plan, "bandwidthBytesPerSecondPlan"), 119.6e6, 0.1e6);
    // Compared with what was carried, not with what was said.
    EXPECT_NEAR(number(plan, "autoSet lossPercent"), 13, 5);
    EXPECT_EQ(number(plan, "plan lossPercent"), 0);
}

/// Two cameras of 20 frames of 1 MB on a link of 125 MB/s; the second one is special.
TEST(Plan, verifiesOnlyWhatEveryCameraSent) {
    const FileTree files;
    const std::string start = R"({"host": {"adapters": [{"name": "a", "address": "10.0.0.1"}]},
        "transportLayers": [{"id": "T", "type": "GigEVision"}],
        "interfaces": [{"id": "I", "transportLayer": "T", "adapter": "a"}],
        "cameras": [{"id": "A", "model": "M", "interface": "I", )"
                              R"("sensor": {"width": 1000, "height": 1000, "frameRate": 19.998}},
                    {"id": "B", "model": "M", "interface": "I", )";
    const std::string fast = R"("sensor": {"width": 1000, "height": 1000, "frameRate": 20})";
    const struct {
        std::string special;
        int code;
        std::string message;
        std::string text;
    } cases[] = {
        {R"(, "faults": {"stopAfterFrames": 0})", 1, "B: None of its frames came in 0.4 s.", ""},
        {R"(, "faults": {"vanishAfterSeconds": 0.3})", 1, "B: It was disconnected.", ""},
        {R"(, "faults": {"lossRate": 0.6})", 1, "",
         "Frames are still lost: \"spanlet calibrate\" finds what the link carries.\n"},
        {R"(, "trigger": {"mode": "On", "source": "Software"})", 0, "B: It waits for triggers",
         "no frame was lost.\n"},
    };
    for (const auto& [special, code, message, text] : cases) {
        const auto file = files.write("scenario.json", start + fast + special + "}]}").string();
        SpanletProcess spanlet;
        EXPECT_EQ(spanlet.run("plan --measure 0 --apply --verify 0.4 --config " + file), code);
        EXPECT_THAT(spanlet.err(), HasSubstr(message)) << special;
        EXPECT_THAT(spanlet.out(), AllOf(HasSubstr("applied (simulated)"), EndsWith(text)));
        EXPECT_EQ(spanlet.out().find("lose no frame either") == std::string::npos, code && text[0]);
    }
    SpanletProcess wished;
    const std::string line = "plan --measure 0 --rate A=20 --config ";
    EXPECT_EQ(wished.run(line + (files.root() / "scenario.json").string()), 1);
    EXPECT_THAT(wished.err(), HasSubstr("are not possible, at most 19.99 are."));
}

TEST(Plan, plansInterfacesOfOneLinkTogether) {
    const std::string shared = " --measure 0 --config " SHARED_LINKS_FILE;
    const QJsonArray links = jsonOf("plan --all" + shared)[QStringLiteral("links")].toArray();
    ASSERT_EQ(links.size(), 3);
    const QJsonObject usb = links[2].toObject();
    EXPECT_EQ(at(usb, "interfaces").toList().size(), 2);
    EXPECT_NEAR(sumOf(usb, "bandwidthBytesPerSecondPlan"), 875e6, 2);
    // Another interface keeps its limits, and another application its traffic.
    EXPECT_NEAR(number(planOf("--interface GEV-c" + shared), "otherBytesPerSecond"), 90e6, 1);
    const QJsonObject one = planOf("--interface GEV-a" + shared);
    EXPECT_GT(number(one, "otherBytesPerSecond"), 50e6);
    EXPECT_NEAR(number(one, "otherBytesPerSecond") + number(one, "usableBytesPerSecond"), 225e6, 1);
}

} // namespace
