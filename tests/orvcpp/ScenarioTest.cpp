// SPDX-License-Identifier: BSD-3-Clause
#include "tests/support/SdkFixture.h"

#include <utility>

using namespace testing;
using namespace sdk;

namespace {

TEST(MalformedScenario, namesFilePlaceAndExpectationAndStartsNothing) {
    const struct {
        std::string contents;
        /// Parts of the message: place and expectation; what was found.
        const char* message;
        const char* found = "";
    } cases[] = {
        {"{\n  \"seed\": 1,\n  \"cameras\" []\n}", "line 3", "expected valid JSON"},
        {"[1]", "line 1: expected an object"},
        {scenario(gige("A") + "," + gige("B", R"(, "sensor": {"widht": 640})")),
         "cameras[1].sensor.widht: unknown key", "\"width\""},
        {scenario(gige("A", R"(, "sensor": {"width": 640.5})")),
         "cameras[0].sensor.width: expected an integer", "found 640.5"},
        {scenario(gige("A", R"(, "faults": {"lossRate": 1.5})")),
         "cameras[0].faults.lossRate: expected a number from 0 to 1", "found 1.5"},
        {scenario(gige("A", R"(, "sensor": {"width": 650})")),
         "cameras[0].sensor.width: expected a multiple of 8"},
        {scenario(
             gige("A", R"(, "bandwidth": {"minimum": 1000, "increment": 300, "value": 1500})")),
         "cameras[0].bandwidth.value: expected the minimum plus a multiple of the increment"},
        {scenario(R"({"id": "A", "interface": "gev"})"),
         "cameras[0].model: expected a text that is not empty, found nothing"},
        {R"({"host": {"adapters": [{"name": "e", "address": "10.0.0.1"}]},
         "transportLayers": [{"id": "U", "type": "USB3Vision"}],
         "interfaces": [{"id": "u", "transportLayer": "U", "adapter": "e"}]})",
         "interfaces[0].usbController: expected one of"},
        {scenario(gige("A002") + "," + gige("A", R"(, "count": 2)")), "cameras[1].id",
         "\"A002\" is taken"},
        {scenario(usb("A", 1) + "," + usb("B", 1)),
         "cameras[1].port: expected a port that no other camera"},
        {scenario(usb("A", 30, R"(, "count": 3)")),
         "cameras[0].count: expected as many cameras as there are ports up to 31"},
        {scenario(usb("A", 3, R"(, "count": 2)")),
         "cameras[0].port: expected ports on which there is no hub"},
        {scenario(usb("A", 1, R"(, "serialNumber": "ab-1")")),
         "cameras[0].serialNumber: expected digits and upper-case letters"},
        {R"({"host": {"adapters": [{"name": "e", "address": "192.168.1.256"}]}})",
         "host.adapters[0].address: expected an IPv4 address"},
        {scenario(gige("A", R"(, "otherTraffic": 1000)")),
         "cameras[0].otherTraffic: expected 0 for a camera that no other application uses"},
        {R"({"host": {"usbControllers": [{"device": 20, "speedMbps": 6000}]}})",
         "host.usbControllers[0].speedMbps: expected a speed of USB: 1.5, 12, 480, 5000, 10000 or"},
        {R"({"host": {"usbControllers": [{"device": 20, "carriesMbps": 5001}]}})",
         "host.usbControllers[0].carriesMbps: expected at most the link's speed"},
        {scenario(gige("A", R"(, "sensor": {"pixelFormats": ["Mono8", "Mono7"]})")),
         "cameras[0].sensor.pixelFormats"},
        {scenario(gige("A", R"(, "faults": {"features": [{"name": "Widht"}]})")),
         "cameras[0].faults.features[0].name: expected a feature of the module \"Camera\"",
         "Widht"},
        {scenario(gige("A", R"(, "faults": {"stuckCommands": ["Width"]})")),
         "cameras[0].faults.stuckCommands: expected names of commands"},
        {R"({"providers": [{"type": "imaginary"}]})",
         "providers[0].type: expected one of \"virtual\""},
        {R"({"providers": [{"type": "virtual"}, {"type": "virtual"}]})",
         "providers[1].type: expected each type of provider at most once"},
    };
    for (const auto& [contents, message, found] : cases) {
        SCOPED_TRACE(message);
        EXPECT_EQ(startWith(contents), OrvErrorBadParameter);
        EXPECT_THAT(startupError(),
                    AllOf(HasSubstr("scenario.json: "), HasSubstr(message), HasSubstr(found)));
        std::uint32_t count = 0;
        EXPECT_EQ(system().GetCameras(nullptr, count), OrvErrorApiNotStarted);
        EXPECT_EQ(system().RegisterCameraListObserver(nullptr), OrvErrorApiNotStarted);
        EXPECT_EQ(system().Shutdown(), OrvErrorSuccess) << "as it is";
        EXPECT_THAT(simulation().GetHost().adapters, IsEmpty());
    }
}

TEST(TruncatedScenario, tellsWhereItBreaksOff) {
    const std::string whole = scenario(gige("A"));
    for (std::size_t size = 0; size < whole.size(); size += 7) {
        ASSERT_EQ(startWith(whole.substr(0, size)), OrvErrorBadParameter) << size;
        ASSERT_THAT(startupError(), MatchesRegex(".*scenario.json: line .*: expected .*")) << size;
    }
}

TEST(Configuration, findsAScenarioBesideIt) {
    const FileTree files;
    const auto wide =
        files.write("sdk.json", R"({"providers": [{"type": "virtual", "scenario": "own.json"}]})")
            .wstring();
    EXPECT_EQ(system().Startup(wide.c_str()), OrvErrorBadParameter);
    EXPECT_THAT(startupError(), HasSubstr("own.json: expected a readable file"));

    files.write("own.json", scenario(gige("Own")));
    ASSERT_EQ(system().Startup(wide.c_str()), OrvErrorSuccess);
    EXPECT_EQ(startupError(), "");
    EXPECT_EQ(ask(system(), &OrvSystem::QueryVersion).major, 1U);
    EXPECT_EQ(system().Startup(wide.c_str()), OrvErrorAlreadyDone);
    EXPECT_THAT(cameras(), SizeIs(1));
    EXPECT_EQ(system().Shutdown(), OrvErrorSuccess);
}

TEST(EmbeddedScenario, starts) {
    const std::pair<const wchar_t*, std::size_t> scenarios[] = {{L":default", 8},
                                                                {L":oversubscribed", 8},
                                                                {L":sixty-four", 64},
                                                                {L":empty", 0},
                                                                {L":faulty", 9}};
    for (const auto& [name, count] : scenarios) {
        ASSERT_EQ(system().Startup(name), OrvErrorSuccess) << startupError();
        EXPECT_THAT(cameras(), SizeIs(count)) << name;
        EXPECT_EQ(system().Shutdown(), OrvErrorSuccess);
    }
}

TEST(SimulatedHost, hasUsbCamerasBelowTheirHubs) {
    const Running run(
        scenario(usb("A", 2, R"(, "serialNumber": "7A")") + "," +
                 usb("B", 1, R"(, "serialNumber": "7B", "hub": "hub", "linkSpeedMbps": 480)")));
    const auto nodes = simulation().GetHost().usbNodes;
    using Kind = OrvCPP::SimulatedUsbNode::Kind;
    ASSERT_THAT(nodes, SizeIs(5));
    EXPECT_EQ(nodes[0].kind, Kind::Controller);
    EXPECT_EQ(nodes[0].instanceId.substr(0, 4), "PCI\\");
    EXPECT_EQ(nodes[0].pciAddress, 20U << 16U);
    EXPECT_EQ(nodes[2].kind, Kind::Hub);
    EXPECT_EQ(nodes[2].parent, 1) << "the external hub hangs on the root hub";
    EXPECT_EQ(nodes[3].parent, 1);
    EXPECT_EQ(nodes[4].parent, 2);
    EXPECT_EQ(nodes[4].bitsPerSecond, 480'000'000U);
    EXPECT_THAT(nodes[4].path, StartsWith(R"(\\?\USB#VID_4D52&PID_0001#7B#{)"));

    const auto device = ask(*openCamera("B"), &Camera::GetLocalDevice);
    EXPECT_EQ(getText(*device, "DeviceLocation"), "::1/4/1");
}

} // namespace
