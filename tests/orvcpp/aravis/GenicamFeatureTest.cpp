// SPDX-License-Identifier: BSD-3-Clause
#include "tests/orvcpp/aravis/DescriptionTexts.h"
#include "tests/orvcpp/aravis/FakeCameraFixture.h"

#include <sstream>
#include <variant>

namespace {

using namespace sdk;
using namespace testing;

class GenicamFeature : public cameras::OneCamera {};

/// Category, name, type, access, visibility, unit and representation of the features below a
/// category, in the order of their list.
std::vector<std::string> outline(const OrvCPP::Camera& camera, const std::string& category) {
    std::vector<std::string> lines;
    for (const auto& found : sdk::list<Feature>(camera, &OrvCPP::Camera::GetFeatures)) {
        const std::string path = text(*found, &Feature::GetCategory);
        if (path.rfind(category, 0) != 0)
            continue;
        std::ostringstream line;
        line << path.substr(category.size()) << ',' << text(*found, &Feature::GetName) << ','
             << sdk::ask(*found, &Feature::GetDataType) << ','
             << (sdk::ask(*found, &Feature::IsReadable) ? "r" : "")
             << (sdk::ask(*found, &Feature::IsWritable) ? "w" : "") << ','
             << sdk::ask(*found, &Feature::GetVisibility) << ',' << text(*found, &Feature::GetUnit)
             << ',' << text(*found, &Feature::GetRepresentation);
        lines.push_back(line.str());
    }
    return lines;
}

TEST_F(GenicamFeature, tellsItsDescriptionBoundsEntriesAndAccess) {
    EXPECT_THAT(
        outline(*camera, "/TestControl/TestKinds"),
        ElementsAre(",TestHexNumber,1,rw,1,,HexNumber", ",TestIPV4Address,1,rw,1,,IPV4Address",
                    ",TestMACAddress,1,rw,1,,MACAddress", ",TestLogarithmic,1,rw,1,,Logarithmic",
                    ",TestSigned,1,rw,1,,Linear", ",TestFloat,2,rw,1,dB,Linear",
                    ",TestBoolean,5,rw,1,,", ",TestString,4,rw,1,,", ",TestCommand,6,w,1,,",
                    ",TestEnumeration,3,rw,1,,", "/TestNested,TestSelector,1,rw,1,,PureNumber",
                    "/TestNested,TestSelected,1,rw,1,,PureNumber"));
    EXPECT_THAT(outline(*camera, "/TestControl/TestAccess"),
                ElementsAre(",TestThirdIsAvailable,5,rw,1,,", ",TestLock,5,rw,1,,",
                            ",TestLocked,1,rw,1,,PureNumber", ",TestSwitch,5,rw,1,,",
                            ",TestSwitched,1,,1,,PureNumber", ",TestReadOnly,1,r,1,,PureNumber",
                            ",TestWriteOnly,1,w,1,,PureNumber", ",TestBeginner,1,rw,1,,PureNumber",
                            ",TestExpert,1,rw,2,,PureNumber", ",TestGuru,1,rw,3,,PureNumber",
                            ",TestPendingTime,1,rw,4,,PureNumber"));

    const auto number = feature(*camera, "TestFloat");
    EXPECT_EQ(text(*number, &Feature::GetDisplayName), "Float");
    EXPECT_EQ(text(*number, &Feature::GetDescription), "A number with fraction and unit.");
    EXPECT_EQ(text(*number, &Feature::GetToolTip), "");
    std::vector<std::string> selected;
    const auto selector = feature(*camera, "TriggerSelector");
    for (const auto& one : sdk::list<Feature>(*selector, &Feature::GetSelectedFeatures))
        selected.push_back(text(*one, &Feature::GetName));
    EXPECT_THAT(selected, ElementsAre("TriggerMode", "TriggerSource", "TriggerSoftware"));

    const auto limit = feature(*camera, "DeviceLinkThroughputLimit");
    std::int64_t increment = 0;
    EXPECT_EQ(limit->GetIncrement(increment), OrvErrorSuccess);
    EXPECT_EQ(increment, 1000);
    EXPECT_EQ(sdk::range<std::int64_t>(*limit), std::pair(1'000'000L, 125'000'000L));
    EXPECT_EQ(sdk::range<double>(*number), std::pair(-10.0, 10.0));
    EXPECT_FALSE(sdk::ask(*number, &Feature::HasIncrement));
    for (const char* name : {"DeviceLinkSpeed", "PixelSize"})
        EXPECT_FALSE(sdk::ask(*feature(*camera, name), &Feature::IsWritable)) << name;

    const auto choice = feature(*camera, "TestEnumeration");
    std::uint32_t count = 0;
    choice->GetValues(static_cast<const char**>(nullptr), count);
    std::vector<const char*> entries(count);
    ASSERT_EQ(choice->GetValues(entries.data(), count), OrvErrorSuccess);
    EXPECT_THAT(entries, ElementsAre(StrEq("First"), StrEq("Second"), StrEq("Third")));
    bool available = true;
    EXPECT_EQ(choice->IsValueAvailable("Third", available), OrvErrorSuccess);
    EXPECT_FALSE(available);
    EXPECT_EQ(set(*camera, "TestThirdIsAvailable", true), OrvErrorSuccess);
    EXPECT_EQ(choice->IsValueAvailable("Third", available), OrvErrorSuccess);
    EXPECT_TRUE(available);
    EXPECT_EQ(set(*camera, "TestEnumeration", "Third"), OrvErrorSuccess);

    std::vector<std::uint8_t> bytes(32);
    std::uint32_t complete = 0;
    ASSERT_EQ(camera->ReadMemory(0x48, bytes.data(), 32, complete), OrvErrorSuccess);
    EXPECT_EQ(complete, 32U);
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(bytes.data())), "Fakeworks");
    EXPECT_NE(camera->ReadMemory(0xFFFFFF00, bytes.data(), 32, complete), OrvErrorSuccess);
}

TEST_F(GenicamFeature, writesWhatFitsRefusesTheRestAndRunsACommand) {
    const struct {
        const char* feature;
        std::variant<std::int64_t, double, bool, const char*> value;
        OrvErrorType result = OrvErrorSuccess;
    } writes[] = {
        {"TestHexNumber", std::int64_t{0xFFFFFFFF}},
        {"TestHexNumber", std::int64_t{5'000'000'000}, OrvErrorInvalidValue},
        {"TestMACAddress", std::int64_t{0x02FC00000001}},
        {"TestSigned", std::int64_t{-95}},
        {"TestSigned", std::int64_t{-94}, OrvErrorInvalidValue},
        {"TestSigned", std::int64_t{105}, OrvErrorInvalidValue},
        {"TestFloat", 2.5},
        {"TestFloat", 10.1, OrvErrorInvalidValue},
        {"TestBoolean", true},
        {"TestString", "hello"},
        {"TestString", "a text that is far longer than the sixty-four bytes of the register",
         OrvErrorInvalidValue},
        {"TestEnumeration", "Second"},
        {"TestEnumeration", "Third", OrvErrorInvalidValue},
        {"TestEnumeration", std::int64_t{5}},
        {"TestEnumeration", std::int64_t{6}, OrvErrorInvalidValue},
        {"DeviceLinkThroughputLimit", std::int64_t{50'000'000}},
        {"DeviceLinkThroughputLimitMode", "Off"},
        {"TestReadOnly", std::int64_t{1}, OrvErrorInvalidAccess},
        {"TestWriteOnly", std::int64_t{1}},
        {"TestSwitched", std::int64_t{1}, OrvErrorNotAvailable},
        {"TestSwitch", true},
        {"TestSwitched", std::int64_t{1}},
        {"TestLock", true},
        {"TestLocked", std::int64_t{1}, OrvErrorInvalidAccess},
        {"TestLock", false},
        {"TestLocked", std::int64_t{1}},
    };
    for (const auto& [name, given, result] : writes) {
        const auto write = [&, name = name](auto value) {
            return set(*camera, name, value);
        };
        EXPECT_EQ(std::visit(write, given), result) << name;
    }
    EXPECT_EQ(get<std::int64_t>(*camera, "TestHexNumber"), 0xFFFFFFFF);
    EXPECT_EQ(get<std::int64_t>(*camera, "TestSigned"), -95);
    EXPECT_EQ(get<std::int64_t>(*camera, "TestEnumeration"), 5);
    EXPECT_EQ(get<std::int64_t>(*camera, "DeviceLinkThroughputLimit"), 50'000'000);
    EXPECT_EQ(getText(*camera, "DeviceLinkThroughputLimitMode"), "Off");

    const auto command = feature(*camera, "TestCommand");
    const auto begun = cameras::Clock::now();
    ASSERT_EQ(command->RunCommand(), OrvErrorSuccess);
    EXPECT_FALSE(sdk::ask(*command, &Feature::IsCommandDone));
    EXPECT_TRUE(sdk::eventually([&] { return sdk::ask(*command, &Feature::IsCommandDone); }));
    EXPECT_GE(cameras::Clock::now() - begun, std::chrono::milliseconds(190));
}

/// A category that contains itself, a text that cannot be read, a text and a register larger than
/// all memory.
const std::string brokenDescription = descriptions::described(R"(
<Category Name="Root"><pFeature>Root</pFeature><pFeature>Kinds</pFeature></Category>
<Category Name="Kinds"><pFeature>Missing</pFeature><pFeature>Text</pFeature>
  <pFeature>Large</pFeature><pFeature>Kinds</pFeature><pFeature>Long</pFeature></Category>
<StringReg Name="Text"><Address>0x200</Address><Length>32</Length><AccessMode>RW</AccessMode>
  <pPort>Nowhere</pPort></StringReg>
<Register Name="Large"><Address>0x200</Address><Length>99999999999</Length>
  <AccessMode>RW</AccessMode><pPort>Device</pPort></Register>
<StringReg Name="Long"><Address>0x200</Address><Length>-1</Length><AccessMode>RW</AccessMode>
  <pPort>Device</pPort></StringReg>
<Integer Name="PayloadSize"><Value>4000000000000</Value></Integer>
<Port Name="Device"/>)");

TEST(BrokenDescription, failsFeatureByFeature) {
    const FileTree files;
    const fakecamera::FakeCameraProcess fake(
        fakecamera::onlyAddress, {"--genicam", files.write("broken.xml", brokenDescription)});
    const cameras::Started started;
    const auto camera = cameras::find("FC0001");
    ASSERT_TRUE(camera);
    ASSERT_EQ(camera->Open(OrvAccessModeFull), OrvErrorSuccess);
    EXPECT_THAT(outline(*camera, ""), ElementsAre("/Kinds,Text,4,rw,1,,", "/Kinds,Large,7,rw,1,,",
                                                  "/Kinds,Long,4,rw,1,,"));
    EXPECT_EQ(getText(*camera, "Text"), "error " + std::to_string(OrvErrorXml));
    EXPECT_EQ(getText(*camera, "Long"), "error " + std::to_string(OrvErrorResources));
    EXPECT_EQ(feature(*camera, "Long")->SetValue("x"), OrvErrorResources);
    std::uint32_t size = 0;
    std::uint32_t filled = 0;
    EXPECT_EQ(feature(*camera, "Large")->GetValue(nullptr, size, filled), OrvErrorResources);
    EXPECT_EQ(sdk::start(*camera, std::make_shared<sdk::Receiver>(camera)), OrvErrorInvalidValue);
}

} // namespace
