// SPDX-License-Identifier: BSD-3-Clause
#include "tests/cli/SpanletProcess.h"

#include <gmock/gmock.h>

using namespace testing;

namespace {

const std::string own = " --config " SCENARIO_FILE;

TEST(Program, endsWithAMessageAndAnExitCode) {
    const struct {
        std::string line;
        int code;
        const char* message;
    } cases[] = {
        {"", 2, "run, save, restore, doctor, report, help.\nTry \"spanlet help\".\n"},
        {"lst", 2, "no command \"lst\". There is: list, benchmark, "},
        {"help lst", 2, "no command \"lst\". There is: list, benchmark, "},
        {"-v autoset --lokc A", 2, "\nTry \"spanlet autoset --help\".\n"},
        {"--jsno list", 2, "no option \"--jsno\". There is: --config, --cameras, "},
        {"benchmark --secnods 3", 2, "There is: --interface, --all, --seconds, "},
        {"--seconds 3 benchmark", 2, "write it behind the command"},
        {"list stray", 2, "\"stray\""},
        {"get GEV-21017", 2, "Usage: spanlet get"},
        {"set GEV-21017 Width 640 Height", 2, "no value for \"Height\""},
        {"benchmark --seconds soon", 2, "\"soon\""},
        {"benchmark --seconds -1", 2, "from 0.1 to 99999, not \"-1\""},
        {"benchmark --seconds", 2, "Missing value"},
        {"benchmark", 2, "--interface: MRD GigE Interface enp3s0, "},
        {"autoset", 2, "Either --interface, --all or --camera"},
        {"autoset --camera GEV-21017 --lock GEV-21018", 2, "--lock goes with --interface"},
        {"autoset --all --camera GEV-21017", 2, "Either --interface, --all or --camera"},
        {"autoset --all --interface GEV-enp3s0", 2, "Either --interface or --all"},
        {"autoset --all --max-bandwidth 9", 2, "--max-bandwidth goes with one --interface"},
        // Checked before the configuration is read.
        {"autoset --config missing.json --interface i --interface-margin 51", 2, "to 50"},
        {"list --config=", 2, "--config takes a file"},
        {"list --cameras real", 2, "\"real\""},
        {"list --cameras simulated --config :empty", 2, "--config"},
        {"list --config missing.json", 1, "missing.json"},
        {"list --config :fault", 1, "There is: :default, :empty, :faulty, :oversubscribed, "},
        {"benchmark --interface enp3s0", 1, "There is: MRD GigE Interface enp3s0, "},
        {"benchmark --config :empty", 1, "There is no camera."},
        {"get GEV-21071 Width", 1, "There is: GEV-21017, "},
        {"get CXP-F008 Width --config :faulty", 1, "There is no camera \"CXP-F008\". There is: "},
        {"get Twin Width" + own, 1, "More than one camera is called \"Twin\": CAM-A, CAM-B."},
        {"get U3V-40238 Width", 1, "FULL ACCESS"},
        {"get GEV-21017 Widht", 1, "\"spanlet features CAMERA\" lists them."},
        {"get GEV-21017 GVSPDriver", 1, "There is: Stream0:GVSPDriver."},
        {"get GEV-21017 Strem0:GVSPDriver", 1, "There is: Transport Layer, "},
        {"get GEV-21017 TriggerSoftware", 1, "is a command"},
        {"autoset --interface GEV-e0 --lock CAM-A,CAM-D" + own, 1, "no camera \"CAM-D\""},
        {"autoset --interface U3V" + own, 1, "not known; give it by --max-bandwidth"},
        {"get CAM-A BlackLevel" + own, 1, "BlackLevel cannot be read."},
        {"set CAM-A Gamma 2" + own, 1, "did not take \"2\""},
        {"set GEV-21017 Width 641", 1, "It takes 8 to 2464 in steps of 8."},
        {"set GEV-21017 Width -8", 1, "did not take \"-8\""},
        {"set GEV-21017 Width wide", 1, "takes an integer, not \"wide\""},
        {"set GEV-21017 ReverseX perhaps", 1, "\"true\" or \"false\""},
        {"set GEV-21017 PixelFormat mono8", 1, "It takes Mono8, "},
        {"set GEV-21017 PixelSize Bpp8", 1, "cannot be written"},
        {"run GEV-21017 Width", 1, "not a command"},
        {"run CAM-A Stream0:GVSPAdjustPacketSize --timeout 100" + own, 1, "within 100 ms"},
        {"run CAM-A TriggerSoftware --timeout 100" + own, 1, "TriggerSoftware was not"}};
    for (const auto& [line, code, message] : cases) {
        SCOPED_TRACE(line);
        SpanletProcess spanlet;
        EXPECT_EQ(spanlet.run(line), code);
        EXPECT_THAT(spanlet.err(), HasSubstr(message));
        EXPECT_EQ(spanlet.out(), "");
    }
    for (const std::string line : {"list", "list --cameras simulated", "list --config :empty"}) {
        SpanletProcess misled(QStringLiteral("real"));
        EXPECT_EQ(misled.run(line), line == "list" ? 2 : 0);
        EXPECT_EQ(misled.err().find("SPANLET_CAMERAS takes") != std::string::npos, line == "list");
    }
    SpanletProcess machine;
    EXPECT_EQ(machine.run("get GEV-21017 Widht --json"), 1);
    EXPECT_THAT(at(machine.json(), "error").toString().toStdString(),
                HasSubstr("There is no feature \"Widht\"."));
}

TEST(Program, writesFeaturesOfEachTypeAndPrintsWhatTheyThenHave) {
    // The offset fits after the width has been written.
    const QStringList line =
        words("set feeder Width 640 OffsetX 1824 Height 0x280 ExposureTime 1234.5 ReverseX on "
              "PixelFormat Mono12 localdevice:GVCPCmdTimeout 300 "
              "Interface:GevDeviceForceIPAddress 10.0.0.7 DeviceUserID") +
        QStringList(QStringLiteral("-5 to left"));
    SpanletProcess person;
    EXPECT_EQ(person.run(line), 0) << person.err();
    EXPECT_EQ(person.out(), "Width = 640\nOffsetX = 1824\nHeight = 640\nExposureTime = 1234.5\n"
                            "ReverseX = true\nPixelFormat = Mono12\n"
                            "localdevice:GVCPCmdTimeout = 300\n"
                            "Interface:GevDeviceForceIPAddress = 10.0.0.7\n"
                            "DeviceUserID = -5 to left\n");
    SpanletProcess machine;
    EXPECT_EQ(machine.run(line + words("--json")), 0);
    EXPECT_EQ(at(machine.json(), "camera").toString(), QStringLiteral("GEV-21017"));
    EXPECT_EQ(number(machine.json(), "simulated"), 1);
    QJsonArray written;
    for (const QJsonValue& feature : machine.json()[QStringLiteral("features")].toArray())
        written.append(QJsonArray{feature[QStringLiteral("name")], feature[QStringLiteral("value")],
                                  feature[QStringLiteral("valueText")]});
    EXPECT_EQ(QJsonDocument(written).toJson(QJsonDocument::Compact).toStdString(),
              R"([["Width",640,"640"],["OffsetX",1824,"1824"],["Height",640,"640"],)"
              R"(["ExposureTime",1234.5,"1234.5"],["ReverseX",true,"true"],)"
              R"(["PixelFormat","Mono12","Mono12"],["GVCPCmdTimeout",300,"300"],)"
              R"(["GevDeviceForceIPAddress",167772167,"10.0.0.7"],)"
              R"(["DeviceUserID","-5 to left","-5 to left"]])");
}

TEST(Program, printsOneValueOnEachLineAndRunsACommandUntilItIsDone) {
    SpanletProcess spanlet;
    EXPECT_EQ(spanlet.run("get 21017 Width Stream0:GVSPDriver ReverseX"), 0);
    EXPECT_EQ(spanlet.out(), "2464\nFilter\nfalse\n");
    EXPECT_EQ(spanlet.err(), "") << "tries to open U3V-40238";
    const auto result = jsonOf("run CAM-A Stream0:GVSPAdjustPacketSize" + own);
    EXPECT_GE(number(result, "milliseconds"), 300);
}

TEST(Program, listsInterfacesAndCameras) {
    SpanletProcess spanlet;
    EXPECT_EQ(spanlet.run("list --json -v -v"), 0);
    const QJsonObject result = spanlet.json();
    EXPECT_EQ(at(result, "interfaces").toList().size(), 3);
    EXPECT_EQ(at(result, "interfaces 2 type").toString(), QStringLiteral("USB"));
    EXPECT_EQ(number(result, "interfaces 2 bitsPerSecond"), 5e9);
    EXPECT_EQ(number(result, "interfaces 2 bandwidthBytesPerSecond"), 400e6);
    EXPECT_EQ(number(result, "interfaces 2 cameras 2 opened"), 0);
    EXPECT_EQ(number(result, "interfaces 0 cameras 2 triggered"), 1);
    EXPECT_THAT(spanlet.err(), HasSubstr("Debug: Interface Name"));

    SpanletProcess person;
    EXPECT_EQ(person.run("list"), 0);
    EXPECT_THAT(person.out(), HasSubstr("110.0 of 125.0 MB/s"));
    EXPECT_THAT(person.out(), HasSubstr("Reject gate"));
    EXPECT_THAT(person.err(), HasSubstr("Warning: "));
    EXPECT_THAT(person.err(), Not(HasSubstr("Debug:")));
    EXPECT_THAT(person.err(), Not(HasSubstr("add up")));
    EXPECT_THAT(matches(person.out(), "^MRD .* in use( \\(simulated\\))$"), SizeIs(3));
    EXPECT_EQ(textOf("list --config :empty"), "There is no camera.\n");
    SpanletProcess unknown;
    EXPECT_EQ(unknown.run("list" + own), 0);
    EXPECT_THAT(matches(unknown.err(), "(speed not found)"), SizeIs(1)) << unknown.err();
    const QJsonObject empty = jsonOf("list --config :empty");
    EXPECT_TRUE(at(empty, "interfaces").toList().isEmpty());
    EXPECT_EQ(number(empty, "simulated"), 1);
}

TEST(Program, listsNamesWithoutOpeningCameras) {
    SpanletProcess spanlet;
    EXPECT_EQ(spanlet.run("list --names --json -v -v"), 0);
    EXPECT_EQ(spanlet.err(), "");
    const QJsonObject names = spanlet.json();
    EXPECT_EQ(number(names, "simulated"), 1);
    EXPECT_EQ(at(names, "interfaces 2 id").toString(), QStringLiteral("U3V-0-20-0"));
    const QJsonObject all = jsonOf("list");
    for (const char* member : {"id", "name", "model", "serialNumber"}) {
        const std::string path = std::string("interfaces 2 cameras 1 ") + member;
        EXPECT_EQ(at(names, path), at(all, path));
    }
    EXPECT_THAT(textOf("list --names"), HasSubstr("enp3s0 (GEV-enp3s0) (simulated)\nCamera "));
}

TEST(Program, locksCamerasByOneOptionAndByNamesWithCommas) {
    const QJsonObject two = jsonOf("autoset --interface GEV-e0 --lock CAM-A,cam-b" + own);
    EXPECT_EQ(camera(two, 0, "id status") + camera(two, 1, "id status"),
              "CAM-A lockedCAM-B locked");
    const std::string usb = "autoset --interface U3V --max-bandwidth 400 --lock ";
    EXPECT_EQ(camera(jsonOf(usb + "left,UPPER" + own), 0, "status"), "locked");
}

TEST(Program, tellsUnlimitedCamerasAndTheSumOfAnInterface) {
    EXPECT_THAT(matches(textOf("list --config :faulty"), "^GEV-F002 .* (unlimited) "), SizeIs(1));
    SpanletProcess spanlet;
    EXPECT_EQ(spanlet.run("autoset --json --config :faulty --interface GEV-enp3s0"), 1);
    const QJsonValue unlimited = camerasOf(spanlet.json()).at(1);
    for (const char* key : {"bandwidthBytesPerSecond", "bandwidthBytesPerSecondBefore"})
        EXPECT_TRUE(unlimited.toObject().value(QLatin1String(key)).isNull());
    // The limits of the other two cameras add up to 60 MB/s.
    EXPECT_THAT(textOf("autoset --camera GEV-21017"), HasSubstr(": 184.0 of 125.0 MB/s in use"));
}

TEST(Program, examinesSimulatedCamerasAndNotTheHost) {
    SpanletProcess spanlet;
    EXPECT_EQ(spanlet.run("doctor --config " SHARED_LINKS_FILE), 1);
    EXPECT_EQ(spanlet.err(), "") << "the findings say it";
    const std::string text = spanlet.out();
    EXPECT_EQ(matches(text, "^(error|warning|hint) +(.*\\.) "),
              (Texts{"W: open.", "GEV-a and GEV-b: bandwidth.", "GEV-c: bandwidth.",
                     "U3V-a and U3V-b: bandwidth.", "GEV-a and GEV-b: packet-size.",
                     "GEV-c: packet-size."}));
    EXPECT_THAT(text, HasSubstr("read: limits 140.0 MB/s (1 of 2 cameras) with 90.0 MB/s by"));
    EXPECT_THAT(text, HasSubstr("cure: spanlet autoset --interface GEV-c --max-bandwidth 35.0\n"));
    EXPECT_THAT(text, HasSubstr("\nThe cameras are simulated: adapters"));
    EXPECT_THAT(text, HasSubstr("\n1 error, 3 warnings, 2 hints. In order: 0 checks. Unknown: 3."));
}

TEST(Program, showsTheFeaturesThatMatter) {
    const auto count = [](const std::string& line) {
        return at(jsonOf(line), "features").toList().size();
    };
    const int filtered = count("features GEV-21017 --filter");
    EXPECT_GT(filtered, 10);
    EXPECT_GT(count("features GEV-21017"), 3 * filtered);
    const std::string text = textOf("features GEV-21017 --filter");
    EXPECT_THAT(text, HasSubstr("\nGVSPDriver "));
    EXPECT_THAT(matches(text, "^(\\w+) \\(simulated\\)$"), IsSupersetOf({"Camera", "Stream0"}));
    EXPECT_THAT(text, Not(HasSubstr("DeviceTemperature")));
}

} // namespace
