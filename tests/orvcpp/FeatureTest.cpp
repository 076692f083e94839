// SPDX-License-Identifier: BSD-3-Clause
#include "tests/support/SdkFixture.h"

#include <set>

using namespace testing;
using namespace sdk;

namespace {

constexpr std::int64_t mono8Payload = 320 * 200;

std::vector<std::shared_ptr<Feature>> features(const FeatureContainer& module) {
    return list<Feature>(module, &FeatureContainer::GetFeatures);
}

/// Checks that the value is within its limits.
template <typename T> T checkRange(const Feature& feature) {
    T value{};
    EXPECT_EQ(feature.GetValue(value), OrvErrorSuccess);
    const auto [minimum, maximum] = range<T>(feature);
    EXPECT_THAT(value, AllOf(Ge(minimum), Le(maximum)));
    return value - minimum;
}

/// Checks the description, value and limits that every feature must have.
void checkDescription(const Feature& feature) {
    SCOPED_TRACE(text(feature, &Feature::GetName));
    EXPECT_EQ(text(feature, &Feature::GetCategory).substr(0, 1), "/");
    for (const auto get :
         {&Feature::GetDisplayName, &Feature::GetDescription, &Feature::GetToolTip})
        EXPECT_THAT(text(feature, get), Not(AnyOf(IsEmpty(), StartsWith("error"))));
    const bool isReadable = ask(feature, &Feature::IsReadable);
    const OrvFeatureDataType type = ask(feature, &Feature::GetDataType);
    if (type == OrvFeatureDataInt && isReadable) {
        std::int64_t increment = 0;
        EXPECT_EQ(feature.GetIncrement(increment), OrvErrorSuccess);
        EXPECT_EQ(checkRange<std::int64_t>(feature) % increment, 0);
    } else if (type == OrvFeatureDataFloat && isReadable) {
        checkRange<double>(feature);
    } else if (type == OrvFeatureDataEnum) {
        const std::string entry = text(feature, &Feature::GetValue);
        bool available = false;
        EXPECT_EQ(feature.IsValueAvailable(entry.c_str(), available), OrvErrorSuccess);
        EXPECT_TRUE(available) << entry;
    }
}

TEST(Features, describeThemselvesInEveryModule) {
    const Running run(
        scenario(gige("G", R"(, "stream": {"protocol": "UDP"})") + "," +
                 usb("U", 1, R"(, "bandwidth": {"feature": "StreamBytesPerSecond"})")));
    for (const char* id : {"G", "U"}) {
        const auto camera = openCamera(id);
        const std::shared_ptr<FeatureContainer> modules[] = {
            camera, ask(*camera, &Camera::GetTransportLayer), ask(*camera, &Camera::GetInterface),
            ask(*camera, &Camera::GetLocalDevice), stream(*camera)};
        std::set<int> types;
        std::set<int> visibilities;
        std::set<std::string> representations;
        for (const auto& module : modules) {
            const auto all = features(*module);
            const bool isCamera = module == camera;
            EXPECT_THAT(all, SizeIs(AllOf(Ge(isCamera ? 100U : 10U), Le(isCamera ? 200U : 30U))));
            std::set<std::string> names;
            for (const auto& feature : all) {
                checkDescription(*feature);
                names.insert(text(*feature, &Feature::GetName));
                types.insert(static_cast<int>(ask(*feature, &Feature::GetDataType)));
                visibilities.insert(static_cast<int>(ask(*feature, &Feature::GetVisibility)));
                representations.insert(text(*feature, &Feature::GetRepresentation));
            }
            EXPECT_EQ(names.size(), all.size()) << "names are unique in a module";
        }
        EXPECT_THAT(types, ElementsAre(1, 2, 3, 4, 5, 6, 7));
        EXPECT_THAT(visibilities, ElementsAre(1, 2, 3, 4));
        EXPECT_THAT(representations,
                    IsSupersetOf({"Linear", "Logarithmic", "Boolean", "PureNumber", "HexNumber"}));
        if (id == std::string("G")) {
            EXPECT_THAT(representations, IsSupersetOf({"IPV4Address", "MACAddress"}));
        }
    }
}

TEST(Features, areAsManyMoreAsTheScenarioAsksFor) {
    const Running run(scenario(gige("Usual") + "," + gige("Large", R"(, "extraFeatures": 20000)")));
    const auto all = features(*openCamera("Large"));
    EXPECT_EQ(all.size(), features(*openCamera("Usual")).size() + 20'000);
    for (std::size_t i = all.size() - 40; i < all.size(); ++i)
        checkDescription(*all[i]);
}

TEST(Features, answerTheSdksCodesAndThoseOfTheScenario) {
    const Running run(scenario(gige("A", sensor(50) + R"(, "faults": {"features": [
        {"name": "DeviceLinkThroughputLimit", "on": "set", "code": -20},
        {"name": "Width", "on": "get", "code": -12},
        {"name": "GVSPDriver", "module": "Stream0", "code": -3}]})")));
    const auto camera = openCamera("A");
    EXPECT_EQ(set(*camera, "DeviceLinkThroughputLimit", std::int64_t{2'000'000}), -20);
    EXPECT_EQ(get<std::int64_t>(*camera, "DeviceLinkThroughputLimit"), 125'000'000);
    EXPECT_EQ(readInteger(*feature(*camera, "Width")), -12);
    EXPECT_EQ(set(*camera, "Width", std::int64_t{160}), OrvErrorSuccess);
    EXPECT_EQ(getText(*stream(*camera), "GVSPDriver"), "error -3");
    EXPECT_EQ(set(*camera, "Gain", 0.25), OrvErrorInvalidValue) << "between two increments";
    EXPECT_EQ(set(*camera, "Gain", 0.3), OrvErrorSuccess) << "2.9999999999999996 increments";
    EXPECT_EQ(set(*camera, "PixelFormat", "RGB8"), OrvErrorInvalidValue) << "not available";
    EXPECT_EQ(getText(*camera, "DeviceUnlockCode"), "error -6") << "write-only";
    EXPECT_EQ(set(*camera, "DeviceUnlockCode", "1234"), OrvErrorSuccess);
    EXPECT_EQ(set(*camera, "DeviceUserID", std::string(65, 'x').c_str()), OrvErrorInvalidValue);
    EXPECT_FALSE(ask(*feature(*camera, "ExposureTime"), &Feature::HasIncrement));
    EXPECT_EQ(set(*camera, "BinningVertical", std::int64_t{3}), OrvErrorInvalidValue);
    std::vector<std::int64_t> values(3);
    std::uint32_t count = 3;
    EXPECT_EQ(feature(*camera, "BinningVertical")->GetValidValueSet(values.data(), count),
              OrvErrorSuccess);
    EXPECT_THAT(values, ElementsAre(1, 2, 4));

    const auto table = feature(*camera, "LUTValueAll");
    std::uint32_t size = 0;
    std::uint32_t filled = 7;
    EXPECT_EQ(table->GetValue(nullptr, size, filled), OrvErrorSuccess);
    EXPECT_EQ(size, 256U);
    std::vector<std::uint8_t> bytes(size, 9);
    EXPECT_EQ(table->SetValue(bytes.data(), size), OrvErrorSuccess);
    EXPECT_EQ(table->SetValue(bytes.data(), size - 1), OrvErrorInvalidValue);
    bytes.assign(size, 0);
    EXPECT_EQ(table->GetValue(bytes.data(), size, filled), OrvErrorSuccess);
    EXPECT_THAT(bytes, Each(9));
    EXPECT_EQ(filled, 256U);
}

TEST(Camera, keepsAValueForEachEntryOfASelectorAndItsIdentityInMemory) {
    const Running run(scenario(gige("A", R"(, "serialNumber": "S-17")")));
    const auto camera = openCamera("A");
    EXPECT_EQ(set(*camera, "LineSelector", "Line1"), OrvErrorSuccess);
    EXPECT_EQ(set(*camera, "LineMode", "Output"), OrvErrorSuccess);
    EXPECT_EQ(set(*camera, "LineSelector", "Line0"), OrvErrorSuccess);
    EXPECT_EQ(getText(*camera, "LineMode"), "Input");
    EXPECT_EQ(set(*camera, "LineSelector", std::int64_t{1}), OrvErrorSuccess);
    EXPECT_EQ(getText(*camera, "LineMode"), "Output");
    const auto selector = feature(*camera, "LineSelector");
    EXPECT_THAT(list<Feature>(*selector, &Feature::GetSelectedFeatures), SizeIs(5));

    std::vector<std::uint8_t> bytes(8);
    std::uint32_t read = 0;
    EXPECT_EQ(camera->ReadMemory(0xD8, bytes.data(), 8, read), OrvErrorSuccess);
    EXPECT_EQ(std::string(bytes.begin(), bytes.begin() + 4), "S-17");
    EXPECT_EQ(camera->ReadMemory(4092, bytes.data(), 8, read), OrvErrorIncomplete);
    EXPECT_EQ(read, 4U);
    EXPECT_EQ(camera->ReadMemory(4096, bytes.data(), 8, read), OrvErrorInvalidAddress);
}

TEST(FrameRate, isTheLeastOfItsFourLimits) {
    const Running run(scenario(
        gige("A", sensor(100) + R"(, "frameRate": {"feature": "AcquisitionFrameRateLimit"})")));
    const auto camera = openCamera("A");
    const auto rate = [&] {
        return get<double>(*camera, "AcquisitionFrameRateLimit");
    };
    EXPECT_DOUBLE_EQ(rate(), 100) << "sensor";
    EXPECT_EQ(set(*camera, "ExposureTime", 20'000.0), OrvErrorSuccess);
    EXPECT_DOUBLE_EQ(rate(), 50) << "exposure";
    EXPECT_EQ(set(*camera, "AcquisitionFrameRate", 40.0), OrvErrorInvalidAccess);
    EXPECT_EQ(set(*camera, "AcquisitionFrameRateEnable", true), OrvErrorSuccess);
    EXPECT_EQ(set(*camera, "AcquisitionFrameRate", 40.0), OrvErrorSuccess);
    EXPECT_EQ(set(*camera, "AcquisitionFrameRate", 50.5), OrvErrorInvalidValue);
    EXPECT_DOUBLE_EQ(rate(), 40) << "user";
    EXPECT_EQ(set(*camera, "DeviceLinkThroughputLimit", 30 * mono8Payload), OrvErrorSuccess);
    EXPECT_DOUBLE_EQ(rate(), 30) << "limit / payload";
    EXPECT_DOUBLE_EQ(get<double>(*camera, "AcquisitionFrameRate"), 30);
    EXPECT_EQ(set(*camera, "DeviceLinkThroughputLimitMode", "Off"), OrvErrorSuccess);
    EXPECT_DOUBLE_EQ(rate(), 40);
    EXPECT_EQ(set(*camera, "DeviceLinkThroughputLimit", std::int64_t{5'000'000}),
              OrvErrorInvalidAccess);
}

TEST(FrameRate, followsTheImageFormat) {
    const Running run(scenario(gige(
        "A", sensor(1000) + R"(, "bandwidth": {"feature": "StreamBytesPerSecond", "minimum": 64000,
                                              "increment": 1000, "value": 1280000})")));
    const auto camera = openCamera("A");
    const auto rate = [&] {
        return get<double>(*camera, "AcquisitionFrameRate");
    };
    EXPECT_DOUBLE_EQ(rate(), 20);
    EXPECT_EQ(set(*camera, "PixelFormat", "Mono12p"), OrvErrorSuccess);
    EXPECT_EQ(getText(*camera, "PixelSize"), "Bpp12");
    EXPECT_EQ(set(*camera, "Width", std::int64_t{160}), OrvErrorSuccess);
    EXPECT_EQ(get<std::int64_t>(*camera, "PayloadSize"), mono8Payload * 3 / 4);
    EXPECT_NEAR(rate(), 20 * 4 / 3.0, 1e-9);
    EXPECT_EQ(set(*camera, "BinningVertical", std::int64_t{2}), OrvErrorSuccess);
    EXPECT_EQ(get<std::int64_t>(*camera, "Height"), 100) << "binning shrinks the region";
    EXPECT_EQ(set(*camera, "StreamBytesPerSecond", std::int64_t{64'500}), OrvErrorInvalidValue);
    EXPECT_EQ(set(*camera, "StreamFrameRateConstrain", false), OrvErrorSuccess);
    EXPECT_GT(rate(), 1000 / 3.0) << "only the link limits the stream";
    EXPECT_EQ(set(*camera, "BinningVertical", std::int64_t{4}), OrvErrorSuccess);
    checkDescription(*feature(*camera, "Height"));
}

TEST(Commands, takeTheirTimeThenTakeEffect) {
    const Running run(
        scenario(gige("A", R"(, "stream": {"maximumPacketSize": 8000, "adjustMilliseconds": 50})") +
                 "," + gige("Stuck", R"(, "faults": {"stuckCommands": ["DeviceReset"]})")));
    const auto stuck = feature(*openCamera("Stuck"), "DeviceReset");
    EXPECT_EQ(stuck->RunCommand(), OrvErrorSuccess);
    const auto camera = openCamera("A");
    const auto stream = sdk::stream(*camera);
    EXPECT_EQ(getText(*stream, "GVSPDriver"), "Filter");
    EXPECT_EQ(get<std::int64_t>(*stream, "GVSPPacketSize"), 1500);
    const auto adjust = feature(*stream, "GVSPAdjustPacketSize");
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(adjust->RunCommand(), OrvErrorSuccess);
    EXPECT_TRUE(eventually([&] { return ask(*adjust, &Feature::IsCommandDone); }));
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(50));
    EXPECT_EQ(get<std::int64_t>(*stream, "GVSPPacketSize"), 8000);

    EXPECT_EQ(set(*camera, "Width", std::int64_t{640}), OrvErrorSuccess);
    std::int64_t width = 0;
    const auto observer = std::make_shared<MockFeatureObserver>();
    EXPECT_CALL(*observer, FeatureChanged).WillRepeatedly([&](const auto& changed) {
        EXPECT_EQ(changed->GetValue(width), OrvErrorSuccess);
    });
    EXPECT_EQ(feature(*camera, "Width")->RegisterObserver(observer), OrvErrorSuccess);
    const auto reset = feature(*camera, "DeviceReset");
    EXPECT_EQ(reset->RunCommand(), OrvErrorSuccess);
    EXPECT_TRUE(eventually([&] { return ask(*reset, &Feature::IsCommandDone); }));
    EXPECT_EQ(width, 1920) << "observers are told when the command is done";
    EXPECT_FALSE(ask(*stuck, &Feature::IsCommandDone));

    // An acquisition that starts meanwhile keeps the size of its frames.
    EXPECT_EQ(set(*camera, "Width", std::int64_t{640}), OrvErrorSuccess);
    EXPECT_EQ(reset->RunCommand(), OrvErrorSuccess);
    ASSERT_EQ(start(*camera, std::make_shared<Receiver>(camera)), OrvErrorSuccess);
    EXPECT_TRUE(eventually([&] { return ask(*reset, &Feature::IsCommandDone); }));
    EXPECT_EQ(get<std::int64_t>(*camera, "Width"), 640);
}

} // namespace
