// SPDX-License-Identifier: BSD-3-Clause
#include "tests/orvcpp/aravis/FakeCameraFixture.h"

#include <variant>

namespace {

using sdk::feature;
using sdk::get;
using sdk::getText;
using sdk::set;
using testing::ElementsAre;

class GenicamFeature : public cameras::OneCamera {};

using Texts = std::vector<std::string>;

std::string textOf(const OrvCPP::Feature& of,
                   OrvErrorType (OrvCPP::Feature::*ask)(char*, std::uint32_t&) const) {
    return sdk::text([&](char* b, std::uint32_t& n) { return (of.*ask)(b, n); });
}

/// Name, category and type of the features below a category, in the order of their list.
Texts outline(const OrvCPP::Camera& camera, const std::string& category) {
    Texts lines;
    for (const auto& found : sdk::list<OrvCPP::Feature>(
             [&](auto array, auto&count) { return camera.GetFeatures(array, count); })) {
        OrvFeatureDataType type{};
        found->GetDataType(type);
        const std::string path = textOf(*found, &OrvCPP::Feature::GetCategory);
        if (path.rfind(category, 0) == 0)
            lines.push_back(path + ' ' + textOf(*found, &OrvCPP::Feature::GetName) + ' ' +
                            std::to_string(type));
    }
    return lines;
}

TEST_F(GenicamFeature, tellsItsDescriptionBoundsEntriesAndAccess) {
    EXPECT_THAT(
        outline(*camera, "/TestControl/TestKinds"),
        ElementsAre(
            "/TestControl/TestKinds TestHexNumber 1", "/TestControl/TestKinds TestIPV4Address 1",
            "/TestControl/TestKinds TestMACAddress 1", "/TestControl/TestKinds TestLogarithmic 1",
            "/TestControl/TestKinds TestSigned 1", "/TestControl/TestKinds TestFloat 2",
            "/TestControl/TestKinds TestBoolean 5", "/TestControl/TestKinds TestString 4",
            "/TestControl/TestKinds TestCommand 6", "/TestControl/TestKinds TestEnumeration 3",
            "/TestControl/TestKinds/TestNested TestSelector 1",
            "/TestControl/TestKinds/TestNested TestSelected 1"));
    std::shared_ptr<OrvCPP::Feature> none;
    EXPECT_EQ(camera->GetFeatureByName("TestNotImplemented", none), OrvErrorNotFound);

    const auto number = feature(*camera, "TestFloat");
    EXPECT_EQ(textOf(*number, &OrvCPP::Feature::GetDisplayName), "Float");
    EXPECT_EQ(textOf(*number, &OrvCPP::Feature::GetUnit), "dB");
    EXPECT_EQ(textOf(*number, &OrvCPP::Feature::GetRepresentation), "Linear");
    EXPECT_EQ(textOf(*number, &OrvCPP::Feature::GetDescription),
              "A number with fraction and unit.");
    EXPECT_EQ(textOf(*number, &OrvCPP::Feature::GetToolTip), "");
    EXPECT_EQ(textOf(*feature(*camera, "TestBoolean"), &OrvCPP::Feature::GetUnit), "");
    EXPECT_EQ(textOf(*feature(*camera, "TestMACAddress"), &OrvCPP::Feature::GetRepresentation),
              "MACAddress");
    OrvFeatureVisibilityType visibility{};
    feature(*camera, "TestGuru")->GetVisibility(visibility);
    EXPECT_EQ(visibility, OrvFeatureVisibilityGuru);
    const auto selected = sdk::list<OrvCPP::Feature>([&](auto array, auto& count) {
        return feature(*camera, "TriggerSelector")->GetSelectedFeatures(array, count);
    });
    Texts names;
    for (const auto& one : selected)
        names.push_back(textOf(*one, &OrvCPP::Feature::GetName));
    EXPECT_THAT(names, ElementsAre("TriggerMode", "TriggerSource", "TriggerSoftware"));

    std::int64_t minimum = 0;
    std::int64_t maximum = 0;
    std::int64_t increment = 0;
    const auto limit = feature(*camera, "DeviceLinkThroughputLimit");
    EXPECT_EQ(limit->GetRange(minimum, maximum), OrvErrorSuccess);
    EXPECT_EQ(limit->GetIncrement(increment), OrvErrorSuccess);
    EXPECT_THAT((std::vector<std::int64_t>{minimum, maximum, increment}),
                ElementsAre(1'000'000, 125'000'000, 1000));

    double least = 0;
    double most = 0;
    bool hasIncrement = true;
    const auto real = feature(*camera, "TestFloat");
    EXPECT_EQ(real->GetRange(least, most), OrvErrorSuccess);
    EXPECT_EQ(real->HasIncrement(hasIncrement), OrvErrorSuccess);
    EXPECT_EQ(least, -10);
    EXPECT_EQ(most, 10);
    EXPECT_FALSE(hasIncrement);

    struct Access {
        const char* name;
        bool readable;
        bool writable;
    };
    for (const Access& expected :
         {Access{"TestReadOnly", true, false}, Access{"TestWriteOnly", false, true},
          Access{"TestSwitched", false, false}, Access{"TestLocked", true, true},
          Access{"TestCommand", false, true}, Access{"DeviceLinkSpeed", true, false},
          Access{"PixelSize", true, false}}) {
        bool readable = !expected.readable;
        bool writable = !expected.writable;
        feature(*camera, expected.name)->IsReadable(readable);
        feature(*camera, expected.name)->IsWritable(writable);
        EXPECT_EQ(readable, expected.readable) << expected.name;
        EXPECT_EQ(writable, expected.writable) << expected.name;
    }

    const auto choice = feature(*camera, "TestEnumeration");
    std::uint32_t count = 0;
    choice->GetValues(static_cast<const char**>(nullptr), count);
    std::vector<const char*> entries(count);
    ASSERT_EQ(choice->GetValues(entries.data(), count), OrvErrorSuccess);
    EXPECT_THAT(Texts(entries.begin(), entries.end()), ElementsAre("First", "Second", "Third"));
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

struct Write {
    const char* feature;
    std::variant<std::int64_t, double, bool, const char*> value;
    OrvErrorType result = OrvErrorSuccess;
};

TEST_F(GenicamFeature, writesWhatFitsAndRefusesTheRestWithTheRightCode) {
    const std::int64_t big = 5'000'000'000;
    const Write writes[] = {
        {"TestHexNumber", std::int64_t{0xFFFFFFFF}},
        {"TestHexNumber", big, OrvErrorInvalidValue},
        {"TestMACAddress", std::int64_t{0x02FC00000001}},
        {"TestSigned", std::int64_t{-95}},
        {"TestSigned", std::int64_t{-94}, OrvErrorInvalidValue},
        {"TestSigned", std::int64_t{105}, OrvErrorInvalidValue},
        {"TestSigned", true, OrvErrorWrongType},
        {"TestFloat", 2.5},
        {"TestFloat", 10.1, OrvErrorInvalidValue},
        {"TestFloat", std::int64_t{1}, OrvErrorWrongType},
        {"TestBoolean", true},
        {"TestString", "hello"},
        {"TestString", "a text that is far longer than the sixty-four bytes of the register",
         OrvErrorInvalidValue},
        {"TestEnumeration", "Second"},
        {"TestEnumeration", "Third", OrvErrorInvalidValue},
        {"TestEnumeration", "Fourth", OrvErrorInvalidValue},
        {"TestEnumeration", std::int64_t{5}},
        {"TestEnumeration", std::int64_t{6}, OrvErrorInvalidValue},
        {"DeviceLinkThroughputLimit", std::int64_t{50'000'000}},
        {"DeviceLinkThroughputLimit", std::int64_t{50'000'001}, OrvErrorInvalidValue},
        {"DeviceLinkThroughputLimit", std::int64_t{125'001'000}, OrvErrorInvalidValue},
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
    for (const Write& write : writes)
        EXPECT_EQ(
            std::visit([&](auto value) { return set(*camera, write.feature, value); }, write.value),
            write.result)
            << write.feature << ", write " << &write - writes;

    EXPECT_EQ(get<std::int64_t>(*camera, "TestHexNumber"), 0xFFFFFFFF);
    EXPECT_EQ(get<std::int64_t>(*camera, "TestSigned"), -95);
    EXPECT_EQ(get<double>(*camera, "TestFloat"), 2.5);
    EXPECT_TRUE(get<bool>(*camera, "TestBoolean"));
    EXPECT_EQ(getText(*camera, "TestString"), "hello");
    EXPECT_EQ(getText(*camera, "TestEnumeration"), "Second");
    EXPECT_EQ(get<std::int64_t>(*camera, "TestEnumeration"), 5);
    EXPECT_EQ(get<std::int64_t>(*camera, "DeviceLinkThroughputLimit"), 50'000'000);
    EXPECT_EQ(getText(*camera, "DeviceLinkThroughputLimitMode"), "Off");
}

TEST_F(GenicamFeature, commandIsDoneWhenTheCameraSaysSo) {
    const auto command = feature(*camera, "TestCommand");
    const auto begun = cameras::Clock::now();
    ASSERT_EQ(command->RunCommand(), OrvErrorSuccess);
    bool done = true;
    EXPECT_EQ(command->IsCommandDone(done), OrvErrorSuccess);
    EXPECT_FALSE(done);
    EXPECT_TRUE(
        sdk::eventually([&] { return command->IsCommandDone(done) == OrvErrorSuccess && done; }));
    EXPECT_GE(cameras::Clock::now() - begun, std::chrono::milliseconds(190));
}

/// A category that contains itself, a text that cannot be read, a register larger than all memory,
/// and a number that refers to itself.
constexpr const char* brokenDescription = R"(<?xml version="1.0"?>
<RegisterDescription ModelName="M" VendorName="V" StandardNameSpace="None" ProductGuid="1"
  SchemaMajorVersion="1" SchemaMinorVersion="1" SchemaSubMinorVersion="0" MajorVersion="1"
  MinorVersion="0" SubMinorVersion="0" VersionGuid="2"
  xmlns="http://www.genicam.org/GenApi/Version_1_1">
<Category Name="Root"><pFeature>Root</pFeature><pFeature>Kinds</pFeature></Category>
<Category Name="Kinds"><pFeature>Missing</pFeature><pFeature>Text</pFeature>
  <pFeature>Large</pFeature><pFeature>Kinds</pFeature><pFeature>Number</pFeature></Category>
<StringReg Name="Text"><Address>0x200</Address><Length>32</Length><AccessMode>RW</AccessMode>
  <pPort>Nowhere</pPort></StringReg>
<Register Name="Large"><Address>0x200</Address><Length>99999999999</Length>
  <AccessMode>RW</AccessMode><pPort>Device</pPort></Register>
<Integer Name="Number"><pValue>Number</pValue></Integer>
<Integer Name="PayloadSize"><Value>4000000000000</Value></Integer>
<Port Name="Device"/>
</RegisterDescription>)";

TEST(BrokenDescription, failsFeatureByFeature) {
    const sdk::TemporaryFile file("broken.xml", brokenDescription);
    const fakecamera::FakeCameraProcess fake(cameras::address, {"--genicam", file.path()});
    const cameras::Started started;
    const auto camera = cameras::find("FC0001");
    ASSERT_TRUE(camera);
    ASSERT_EQ(camera->Open(OrvAccessModeFull), OrvErrorSuccess);
    EXPECT_THAT(outline(*camera, "/"), ElementsAre("/Kinds Text 4", "/Kinds Large 7"));
    EXPECT_EQ(getText(*camera, "Text"), "error " + std::to_string(OrvErrorXml));
    std::uint32_t size = 0;
    std::uint32_t filled = 0;
    EXPECT_EQ(feature(*camera, "Large")->GetValue(nullptr, size, filled), OrvErrorResources);
    EXPECT_EQ(sdk::start(*camera, std::make_shared<sdk::Receiver>(camera)), OrvErrorInvalidValue);
}

} // namespace
