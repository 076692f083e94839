// SPDX-License-Identifier: BSD-3-Clause
#include "tests/cli/SpanletProcess.h"

#include <gmock/gmock.h>

using testing::HasSubstr;
using testing::Not;

namespace {

QString onOwnScenario(const char* line) {
    return QLatin1String(line) + QStringLiteral(" --config " SCENARIO_FILE);
}

struct Ending {
    const char* line;
    int code;
    const char* message;
};

void PrintTo(const Ending& ending, std::ostream* stream) {
    *stream << ending.line;
}

class EndsWithAMessage : public testing::TestWithParam<Ending> {};

TEST_P(EndsWithAMessage, andAnExitCode) {
    SpanletProcess spanlet;
    QString line = QLatin1String(GetParam().line);
    line.replace(QLatin1String("OWN"), QStringLiteral("--config " SCENARIO_FILE));
    EXPECT_EQ(spanlet.run(line), GetParam().code);
    EXPECT_THAT(spanlet.err().toStdString(), HasSubstr(GetParam().message));
    EXPECT_EQ(spanlet.out(), QByteArray());
}

INSTANTIATE_TEST_SUITE_P(
    WrongUse, EndsWithAMessage,
    testing::Values(
        Ending{"", 2, "A command is needed"},
        Ending{"lst", 2, "no command \"lst\". There is: list, benchmark, "},
        Ending{"--jsno list", 2, "no option \"--jsno\". There is: --config, --cameras, "},
        Ending{"benchmark --secnods 3", 2, "There is: --interface, --seconds, "},
        Ending{"--seconds 3 benchmark", 2, "write it behind the command"},
        Ending{"list stray", 2, "\"stray\""}, Ending{"get GEV-21017", 2, "Usage: spanlet get"},
        Ending{"set GEV-21017 Width 640 Height", 2, "no value for \"Height\""},
        Ending{"benchmark --seconds soon", 2, "\"soon\""},
        Ending{"benchmark --seconds -1", 2, "from 0.1 to 99999, not \"-1\""},
        Ending{"benchmark --seconds", 2, "Missing value"},
        Ending{"benchmark", 2, "--interface: MRD GigE Interface enp3s0, "},
        Ending{"autoset", 2, "Either --interface or --camera"},
        Ending{"autoset --camera GEV-21017 --lock GEV-21018", 2, "--lock goes with --interface"},
        // Checked before the configuration is read.
        Ending{"autoset --config missing.json --interface i --interface-margin 51", 2, "to 50"},
        Ending{"autoset --config missing.json --interface i --max-bandwidth 0", 2, "from 0.001"},
        Ending{"list --config=", 2, "--config takes a file"},
        Ending{"list --cameras real", 2, "\"real\""},
        Ending{"list --cameras simulated --config :empty", 2, "--config"}));

INSTANTIATE_TEST_SUITE_P(
    Failure, EndsWithAMessage,
    testing::Values(
        Ending{"list --config missing.json", 1, "missing.json"},
        Ending{"benchmark --interface enp3s0", 1, "There is: MRD GigE Interface enp3s0, "},
        Ending{"benchmark --config :empty", 1, "There is no camera."},
        Ending{"get GEV-21071 Width", 1, "There is: GEV-21017, "},
        Ending{"get Twin Width OWN", 1, "More than one camera is called \"Twin\": CAM-A, CAM-B."},
        Ending{"get U3V-40238 Width", 1, "FULL ACCESS"},
        Ending{"get GEV-21017 Widht", 1, "\"spanlet features CAMERA\" lists them."},
        Ending{"get GEV-21017 GVSPDriver", 1, "There is: Stream0:GVSPDriver."},
        Ending{"get GEV-21017 Strem0:GVSPDriver", 1, "There is: Transport Layer, "},
        Ending{"get GEV-21017 TriggerSoftware", 1, "is a command"},
        Ending{"autoset --interface U3V OWN", 1, "not known; give it by --max-bandwidth"},
        Ending{"get CAM-A BlackLevel OWN", 1, "BlackLevel cannot be read."},
        Ending{"set CAM-A Gamma 2 OWN", 1, "did not take \"2\""},
        Ending{"set GEV-21017 Width 641", 1, "It takes 8 to 2464 in steps of 8."},
        Ending{"set GEV-21017 Width -8", 1, "did not take \"-8\""},
        Ending{"set GEV-21017 Width wide", 1, "takes an integer, not \"wide\""},
        Ending{"set GEV-21017 ReverseX perhaps", 1, "\"true\" or \"false\""},
        Ending{"set GEV-21017 PixelFormat mono8", 1, "It takes Mono8, "},
        Ending{"set GEV-21017 PixelSize Bpp8", 1, "cannot be written"},
        Ending{"run GEV-21017 Width", 1, "not a command"},
        Ending{"run CAM-A Stream0:GVSPAdjustPacketSize --timeout 100 OWN", 1, "within 100 ms"},
        Ending{"run CAM-A TriggerSoftware --timeout 100 OWN", 1, "TriggerSoftware was not"}));

struct RoundTrip {
    const char* feature;
    const char* value;
    QJsonValue expected;
    const char* text;
};

void PrintTo(const RoundTrip& trip, std::ostream* stream) {
    *stream << trip.feature << " " << trip.value;
}

class Writes : public testing::TestWithParam<RoundTrip> {};

TEST_P(Writes, andReadsBack) {
    const RoundTrip& trip = GetParam();
    const QString feature = QLatin1String(trip.feature);
    // Once for text and once for JSON.
    const QStringList line{QStringLiteral("set"), QStringLiteral("Feeder"), feature,
                           QLatin1String(trip.value)};
    SpanletProcess spanlet;
    EXPECT_EQ(spanlet.run(line), 0) << spanlet.err().toStdString();
    EXPECT_EQ(spanlet.out().toStdString(), std::string(trip.feature) + " = " + trip.text + "\n");
    SpanletProcess machine;
    EXPECT_EQ(machine.run(line + QStringList(QStringLiteral("--json"))), 0);
    const QJsonObject document = machine.json();
    EXPECT_EQ(document[QStringLiteral("camera")].toString(), QStringLiteral("GEV-21017"));
    const QJsonValue written = document[QStringLiteral("features")].toArray().first();
    EXPECT_EQ(written[QStringLiteral("value")], trip.expected);
    EXPECT_EQ(written[QStringLiteral("valueText")].toString(), QLatin1String(trip.text));
    EXPECT_EQ(written[QStringLiteral("name")].toString(), feature.section(QLatin1Char(':'), -1));
}

INSTANTIATE_TEST_SUITE_P(
    EachType, Writes,
    testing::Values(
        RoundTrip{"Width", "640", 640, "640"}, RoundTrip{"Width", "0x280", 640, "640"},
        RoundTrip{"ExposureTime", "1234.5", 1234.5, "1234.5"},
        RoundTrip{"ReverseX", "on", true, "true"},
        RoundTrip{"PixelFormat", "Mono12", QStringLiteral("Mono12"), "Mono12"},
        RoundTrip{"DeviceUserID", "-5 to left", QStringLiteral("-5 to left"), "-5 to left"},
        RoundTrip{"localdevice:GVCPCmdTimeout", "300", 300, "300"},
        RoundTrip{"Interface:GevDeviceForceIPAddress", "10.0.0.7", 0x0a000007, "10.0.0.7"}));

TEST(Program, printsOneValueOnEachLine) {
    SpanletProcess spanlet;
    EXPECT_EQ(spanlet.run(QStringLiteral("get 21017 Width Stream0:GVSPDriver ReverseX")), 0);
    EXPECT_EQ(spanlet.out(), QByteArray("2464\nFilter\nfalse\n"));
}

TEST(Program, writesOneFeatureAfterTheOther) {
    SpanletProcess spanlet;
    EXPECT_EQ(spanlet.run(QStringLiteral("set GEV-21017 Width 640 OffsetX 1824")), 0)
        << spanlet.err().toStdString();
}

TEST(Program, runsACommandUntilItIsDone) {
    SpanletProcess spanlet;
    EXPECT_EQ(spanlet.run(onOwnScenario("run CAM-A Stream0:GVSPAdjustPacketSize --json")), 0);
    EXPECT_GE(spanlet.json()[QStringLiteral("milliseconds")].toInt(), 300);
}

TEST(Program, listsInterfacesAndCameras) {
    SpanletProcess spanlet;
    EXPECT_EQ(spanlet.run(QStringLiteral("list --json -v -v")), 0);
    const QJsonArray interfaces = spanlet.json()[QStringLiteral("interfaces")].toArray();
    ASSERT_EQ(interfaces.size(), 3);
    const QJsonObject usb = interfaces[2].toObject();
    EXPECT_EQ(usb[QStringLiteral("type")].toString(), QStringLiteral("USB"));
    EXPECT_EQ(usb[QStringLiteral("bitsPerSecond")].toDouble(), 5e9);
    EXPECT_EQ(usb[QStringLiteral("bandwidthBytesPerSecond")].toDouble(), 400e6);
    const QJsonObject robot = camerasOf(usb)[2].toObject();
    EXPECT_FALSE(robot[QStringLiteral("opened")].toBool(true));
    EXPECT_TRUE(camerasOf(interfaces[0].toObject())[2][QStringLiteral("triggered")].toBool());
    EXPECT_THAT(spanlet.err().toStdString(), HasSubstr("Debug: Interface Name"));

    SpanletProcess person;
    EXPECT_EQ(person.run(QStringLiteral("list")), 0);
    EXPECT_THAT(person.out().toStdString(), HasSubstr("110.0 of 125.0 MB/s"));
    EXPECT_THAT(person.out().toStdString(), HasSubstr("Reject gate"));
    EXPECT_THAT(person.err().toStdString(), HasSubstr("Warning: "));
    EXPECT_THAT(person.err().toStdString(), Not(HasSubstr("Debug:")));
    EXPECT_THAT(person.err().toStdString(), Not(HasSubstr("add up")));
}

TEST(Program, withoutCamerasListsNone) {
    SpanletProcess spanlet;
    EXPECT_EQ(spanlet.run(QStringLiteral("list --config :empty --json")), 0);
    EXPECT_TRUE(spanlet.json()[QStringLiteral("interfaces")].toArray().isEmpty());
}

TEST(Program, showsTheFeaturesThatMatter) {
    const auto count = [](const char* line) {
        SpanletProcess spanlet;
        EXPECT_EQ(spanlet.run(QLatin1String(line)), 0);
        return spanlet.json()[QStringLiteral("features")].toArray().size();
    };
    const int all = count("features GEV-21017 --json");
    const int filtered = count("features GEV-21017 --json --filter");
    EXPECT_GT(filtered, 10);
    EXPECT_GT(all, 3 * filtered);
    SpanletProcess person;
    EXPECT_EQ(person.run(QStringLiteral("features GEV-21017 --filter")), 0);
    EXPECT_THAT(person.out().toStdString(), HasSubstr("\nGVSPDriver "));
    EXPECT_THAT(person.out().toStdString(), Not(HasSubstr("DeviceTemperature")));
}

TEST(Program, tellsAMachineWhatWentWrong) {
    SpanletProcess spanlet;
    EXPECT_EQ(spanlet.run(QStringLiteral("get GEV-21017 Widht --json")), 1);
    EXPECT_THAT(spanlet.json()[QStringLiteral("error")].toString().toStdString(),
                HasSubstr("There is no feature \"Widht\"."));
}

} // namespace
