// SPDX-License-Identifier: BSD-3-Clause
#include "tests/cli/SpanletProcess.h"
#include "tests/support/FileTree.h"

#include <gmock/gmock.h>

#include <regex>

using namespace testing;

namespace {

/// A USB controller of 5 Gbit/s that carries less, and cameras of at most 120 frames of 2 MB.
std::string scenario(double carriesMbps, const std::string& cameras,
                     const std::string& speedMbps = "5000") {
    return R"({"host": {"usbControllers": [{"device": 20, "speedMbps": )" + speedMbps +
           R"(, "carriesMbps": )" + std::to_string(carriesMbps) + R"(}]},
        "transportLayers": [{"id": "T", "type": "USB3Vision"}],
        "interfaces": [{"id": "U3V", "transportLayer": "T", "usbController": "0-20-0"}],
        "cameras": [)" +
           cameras + "]}";
}

std::string usb(const std::string& id, int port, const std::string& more = "") {
    return R"({"id": ")" + id + R"(", "model": "M", "interface": "U3V", "port": )" +
           std::to_string(port) +
           R"(, "sensor": {"width": 2048, "height": 1024, "frameRate": 120})" + more + "}";
}

const std::string three = usb("A", 1) + "," + usb("B", 2) + "," + usb("C", 3);

const std::string waiting = R"(, "trigger": {"mode": "On", "source": "Software"})";

class Calibrate : public Test {
protected:
    std::string config(const std::string& scenarioText) const {
        return " --config " + m_files.write("scenario.json", scenarioText).string();
    }

    /// Runs the program with settings of this test; its exit code.
    int run(SpanletProcess& spanlet, const std::string& line) const {
        spanlet.useConfiguration(QString::fromStdString((m_files.root() / "user").string()));
        return spanlet.run(line);
    }

    QJsonObject measured(const std::string& options, int code = 0) const {
        SpanletProcess spanlet;
        EXPECT_EQ(run(spanlet, "calibrate --seconds 1 --json" + options), code) << spanlet.err();
        return at(spanlet.json(), "links 0").toJsonObject();
    }

    const FileTree m_files;
};

TEST_F(Calibrate, findsWhatALinkCarriesToThreePercent) {
    const struct {
        std::string scenario;
        double capacity;
    } cases[] = {
        {scenario(3040, three), 380e6},
        // One camera only.
        {scenario(800, usb("A", 1)), 100e6},
        // What another application receives is a part of what the link carries.
        {scenario(3040,
                  three + "," + usb("W", 4, R"(, "access": "none", "otherTraffic": 90000000)")),
         380e6},
        // A camera without a limit takes what it sends.
        {scenario(4000, usb("A", 1) + "," + usb("B", 2) + "," +
                            usb("F", 3, R"(, "bandwidth": {"feature": "none"})")),
         500e6},
        // A camera that waits sends nothing.
        {scenario(3040, three + "," + usb("S", 4, waiting)), 380e6},
    };
    for (const auto& [text, capacity] : cases) {
        const QJsonObject link = measured(" --save" + config(text));
        const bool isOpened = text.find("access") == std::string::npos;
        EXPECT_EQ(at(link, "isSaved").toBool(), isOpened) << text;
        EXPECT_NEAR(number(link, "capacityBytesPerSecond"), capacity, 0.03 * capacity);
        EXPECT_GT(number(link, "lossBeginsAtBytesPerSecond"), capacity * 0.99);
        EXPECT_TRUE(at(link, "isPrecise").toBool());
        EXPECT_LE(link[QStringLiteral("steps")].toArray().size(), 8);
        EXPECT_FALSE(link[QStringLiteral("findings")].toArray().isEmpty());
    }
}

TEST_F(Calibrate, saysPlainlyWhatItDoesNotKnow) {
    // Together 2 x 20 MB/s.
    const std::string slow = R"(, "bandwidth": {"maximum": 20000000})";
    const QJsonObject unfilled =
        measured(" --save" + config(scenario(3040, usb("A", 1, slow) + "," + usb("B", 2, slow))));
    EXPECT_NEAR(number(unfilled, "capacityBytesPerSecond"), 40e6, 0.1e6);
    EXPECT_FALSE(at(unfilled, "isFilled").toBool());
    EXPECT_FALSE(at(unfilled, "isSaved").toBool());
    SpanletProcess text;
    EXPECT_EQ(run(text, "calibrate --seconds 0.5 --config " +
                            (m_files.root() / "scenario.json").string()),
              0);
    EXPECT_THAT(text.out(), AllOf(HasSubstr("carries at least 40.0 MB/s, nominally 625.0"),
                                  HasSubstr("do not fill the link")));

    // Steps of 40 MB/s: 90 of 100 MB/s are the nearest.
    const QJsonObject coarse =
        measured(" --save" +
                 config(scenario(
                     800, usb("A", 1, R"(, "bandwidth": {"minimum": 10000000, "maximum": 250000000,
                              "increment": 40000000, "value": 250000000})"))));
    EXPECT_EQ(number(coarse, "capacityBytesPerSecond"), 90e6);
    EXPECT_EQ(number(coarse, "lossBeginsAtBytesPerSecond"), 130e6);
    EXPECT_FALSE(at(coarse, "isPrecise").toBool());
    EXPECT_FALSE(at(coarse, "isSaved").toBool());
    EXPECT_LE(coarse[QStringLiteral("steps")].toArray().size(), 6) << "none is made twice";

    // Frames are lost at any limit.
    const QJsonObject broken =
        measured(config(scenario(3040, usb("A", 1, R"(, "faults": {"lossRate": 0.3})"))), 1);
    EXPECT_TRUE(at(broken, "capacityBytesPerSecond").isNull());
    EXPECT_THAT(at(broken, "error").toString().toStdString(),
                HasSubstr("in all eight steps, down to "));
    const QJsonObject lowest =
        measured(config(scenario(3040, usb("A", 1, R"(, "faults": {"lossRate": 0.3},
                              "bandwidth": {"minimum": 150000000, "maximum": 250000000})"))),
                 1);
    EXPECT_THAT(at(lowest, "error").toString().toStdString(), HasSubstr("another one"));

    // In the second step, one camera is not there.
    SpanletProcess vanished;
    EXPECT_EQ(run(vanished, "calibrate --seconds 1 --json" +
                                config(scenario(3040, usb("A", 1) + "," + usb("B", 2, R"(, "faults":
                                                              {"vanishAfterSeconds": 1.2})")))),
              1);
    EXPECT_THAT(vanished.json()[QStringLiteral("error")].toString().toStdString(),
                AnyOf(HasSubstr("B: It did not stream"), HasSubstr("B: It was disconnected.")));

    // One link fails, and the other one is measured.
    SpanletProcess both;
    EXPECT_EQ(run(both, "calibrate --all --seconds 1 --json" + config(R"({"host":
                  {"usbControllers": [{"device": 20, "speedMbps": 5000},
                                      {"device": 21, "speedMbps": 5000, "carriesMbps": 800}]},
                  "transportLayers": [{"id": "T", "type": "USB3Vision"}],
                  "interfaces": [
                      {"id": "First", "transportLayer": "T", "usbController": "0-20-0"},
                      {"id": "U3V", "transportLayer": "T", "usbController": "0-21-0"}],
                  "cameras": [
                      {"id": "Gone", "model": "M", "interface": "First", "port": 1,
                       "faults": {"vanishAfterSeconds": 0.5}},)" + usb("A", 1) +
                                                                      "]}")),
              1);
    EXPECT_THAT(at(both.json(), "links 0 error").toString().toStdString(), StartsWith("Gone: It "));
    EXPECT_NEAR(number(both.json(), "links 1 capacityBytesPerSecond"), 100e6, 3e6);

    // What a camera sends that is not triggered and does not send is not known.
    const struct {
        std::string camera;
        const char* message;
    } silent[] = {
        {R"(, "faults": {"stopAfterFrames": 0})", "C: None of its frames came in 1 s."},
        {R"(, "trigger": {"mode": "On", "source": "Line0", "rate": 1.2})", "C: It sends now"},
    };
    for (const auto& [more, message] : silent) {
        SpanletProcess refused;
        EXPECT_EQ(run(refused, "calibrate --save --seconds 1" +
                                   config(scenario(800, usb("A", 1) + "," + usb("C", 2, more)))),
                  1);
        EXPECT_THAT(refused.err(), HasSubstr(message));
    }
    SpanletProcess idle;
    EXPECT_EQ(run(idle, "calibrate --seconds 1" + config(scenario(800, usb("A", 1, waiting)))), 1);
    EXPECT_THAT(idle.err(), HasSubstr("All cameras with a limit wait for triggers"));

    const std::string none = R"(, "bandwidth": {"feature": "none"})";
    SpanletProcess refused;
    EXPECT_EQ(run(refused, "calibrate" + config(scenario(3040, usb("A", 1, none)))), 1);
    EXPECT_THAT(refused.err(), HasSubstr("No camera has a bandwidth limit that can be written."));
}

TEST_F(Calibrate, savesTheCapacityForPlanAndAutoSetUntilItIsForgottenOrTheSpeedChanges) {
    const auto link = [&](const std::string& speedMbps) {
        return config(scenario(3040, three, speedMbps));
    };
    const std::string cameras = link("5000");
    const double capacity = number(measured(" --save" + cameras), "capacityBytesPerSecond");
    const struct {
        std::string line;
        /// Nominal speed that counts, in bytes per second.
        double speed;
        const char* message;
    } cases[] = {
        {"plan --measure 0" + cameras, capacity, "is taken for its speed"},
        {"autoset --interface U3V" + cameras, capacity, "is taken for its speed"},
        {"plan --measure 0 --max-bandwidth 200" + cameras, 200e6, ""},
        {"plan --measure 0" + link("10000"), 1250e6,
         "is not used: the link had 625.0 MB/s then, and has 1250.0 now"},
    };
    for (const auto& [line, speed, message] : cases) {
        // Both scenarios have the same file.
        link(speed == 1250e6 ? "10000" : "5000");
        SpanletProcess spanlet;
        EXPECT_EQ(run(spanlet, line + " --json"), 0) << spanlet.err();
        const bool isPlan = line.rfind("plan", 0) == 0;
        EXPECT_NEAR(number(spanlet.json(), isPlan ? "links 0 bitsPerSecond" : "bitsPerSecond") / 8,
                    speed, 1)
            << line;
        EXPECT_THAT(spanlet.err(), HasSubstr(message));
        EXPECT_EQ(spanlet.err().find("measured on") != std::string::npos, *message != '\0') << line;
    }
    link("5000");
    const std::string saved = m_files.read("user/capacities.conf");
    const struct {
        std::string text;
        std::string line;
        int code;
        const char* message;
    } broken[] = {
        {std::regex_replace(saved, std::regex("bytesPerSecond="), "bytesPerSecond=nan"),
         "plan --measure 0" + cameras, 0, "is broken and is not used"},
        {"garbage", "plan --measure 0" + cameras, 1, "capacities.conf is broken. Remove it"},
        {"garbage", "calibrate --forget --all", 1, "capacities.conf is broken. Remove it"},
    };
    for (const auto& [text, line, code, message] : broken) {
        m_files.write("user/capacities.conf", text);
        SpanletProcess spanlet;
        EXPECT_EQ(run(spanlet, line), code);
        EXPECT_THAT(spanlet.err(), HasSubstr(message));
    }
    m_files.write("user/capacities.conf", saved);
    // Real cameras have their own.
    SpanletProcess other;
    EXPECT_EQ(run(other, "calibrate --forget --interface other"), 0);
    EXPECT_THAT(other.out(), HasSubstr("No capacity was saved."));
    SpanletProcess forget;
    EXPECT_EQ(run(forget, "calibrate --forget --interface U3V --json"), 0);
    EXPECT_EQ(forget.json()[QStringLiteral("forgotten")].toArray().size(), 2) << "name and ID";
    SpanletProcess plan;
    EXPECT_EQ(run(plan, "plan --measure 0 --json" + cameras), 0);
    EXPECT_NEAR(number(plan.json(), "links 0 bitsPerSecond"), 5e9, 1);
}

TEST_F(Calibrate, measuresNothingThatCannotBeSaved) {
    m_files.write("user", "a file in place of the folder");
    SpanletProcess spanlet;
    EXPECT_EQ(run(spanlet, "calibrate --save --seconds 1" + config(scenario(3040, three))), 1);
    EXPECT_THAT(spanlet.err(), HasSubstr("capacities.conf cannot be written."));
    EXPECT_EQ(spanlet.out(), "");
}

TEST_F(Calibrate, refusesWrongUse) {
    for (const char* line : {"--forget", "--forget --all --save", "--forget --all --seconds 3",
                             "--seconds 0", "--interface GEV-enp3s0 --all", "--max-bandwidth 3"}) {
        SpanletProcess spanlet;
        EXPECT_EQ(run(spanlet, std::string("calibrate ") + line), 2) << line;
    }
}

} // namespace
