// SPDX-License-Identifier: BSD-3-Clause
#include "settings/SettingsDocument.h"
#include "settings/CameraSearch.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <gmock/gmock.h>

#include <limits>

using namespace settings;
using testing::HasSubstr;

namespace {

SavedSettings example() {
    SavedCamera camera{"DEV_1", "Left", "G-1", "0815", {}};
    const auto add = [&](const char* name, OrvFeatureDataType type, FeatureValue value,
                         Selection selection = {}) {
        camera.features.push_back({name, type, std::move(selection), std::move(value)});
    };
    add("Integer", OrvFeatureDataInt, std::int64_t{-5});
    add("Largest", OrvFeatureDataInt, std::numeric_limits<std::int64_t>::max());
    add("Smallest", OrvFeatureDataInt, std::numeric_limits<std::int64_t>::min());
    add("Float", OrvFeatureDataFloat, 1.0 / 3);
    add("Whole", OrvFeatureDataFloat, 2.0);
    add("Text", OrvFeatureDataString, std::string("12 \"µs\""));
    add("Bytes", OrvFeatureDataRaw, std::string("00ff"));
    add("Switch", OrvFeatureDataBool, true,
        {{"Outer", std::string("Line1")}, {"Inner", std::int64_t{3}}, {"Flag", false}});
    add("Beyond", OrvFeatureDataInt, (std::int64_t{1} << 53) + 1);
    SavedDivision division{"Adapter", "eth1", 1'000'000'000, {{"DEV_1", 42}, {"DEV_2", {}}}};
    return {"2026-01-02T03:04:05Z", {camera, {"DEV_2", "", "G-2", "", {}}}, {division}};
}

QByteArray textOf(const QJsonObject& document) {
    return QJsonDocument(document).toJson();
}

TEST(SettingsDocument, keepsEveryValueExactly) {
    const SavedSettings saved = example();
    QString error;
    // Digits of a register may be in upper case.
    const auto read = parseSettings(textOf(toDocument(saved)).replace("00ff", "00fF"), error);
    ASSERT_TRUE(read) << error.toStdString();
    EXPECT_EQ(read->savedAt, saved.savedAt);
    ASSERT_EQ(read->cameras.size(), 2U);
    EXPECT_EQ(read->cameras[0].id + read->cameras[0].name + read->cameras[0].model +
                  read->cameras[0].serialNumber,
              "DEV_1LeftG-10815");
    ASSERT_EQ(read->cameras[0].features.size(), saved.cameras[0].features.size());
    for (std::size_t i = 0; i < saved.cameras[0].features.size(); ++i) {
        const SavedFeature& expected = saved.cameras[0].features[i];
        const SavedFeature& found = read->cameras[0].features[i];
        EXPECT_EQ(labelOf(found), labelOf(expected));
        EXPECT_EQ(found.type, expected.type) << found.name;
        EXPECT_EQ(found.selection, expected.selection) << found.name;
        EXPECT_EQ(found.value, expected.value) << found.name;
    }
    ASSERT_EQ(read->divisions.size(), 1U);
    EXPECT_EQ(read->divisions[0].bitsPerSecond, 1'000'000'000);
    EXPECT_EQ(read->divisions[0].shares[0].limitBytesPerSecond, 42);
    EXPECT_EQ(read->divisions[0].shares[1].limitBytesPerSecond, std::nullopt);
}

TEST(SettingsDocument, tellsWhatIsWrongWhere) {
    const QByteArray good = textOf(toDocument(example()));
    const struct {
        const char* from;
        const char* to;
        const char* message;
    } cases[] = {
        {"\"version\": 1", "\"version\": 1,,", "line "},
        {"spanlet-settings", "others", R"(format: expected "spanlet-settings", found "others")"},
        {"\"version\": 1", "\"version\": 2", "version: expected 1, found 2"},
        {"\"cameras\"", "\"kameras\"", "cameras: expected an array, it is missing"},
        {"\"Whole\"", "7", "cameras[0].features[4].name: expected a text, found 7"},
        {"\"boolean\"", "\"bool\"", "cameras[0].features[7].type: expected one of integer, "},
        {"-5", "1.5", "cameras[0].features[0].value: expected an integer, found 1.5"},
        {"9223372036854775807", "9223372036854775808", "features[1].value: expected an integer"},
        {"\"value\": true", "\"value\": \"x\"", "features[7].value: expected true or false"},
        {"00ff", "00f", "features[6].value: expected an even number of hexadecimal digits"},
        {"00ff", "00fg", "features[6].value: expected an even number of hexadecimal digits"},
        {"\"value\": 3", "\"value\": []", "features[7].selection[1].value: expected an integer"},
        {"\"bitsPerSecond\": 1000000000", "\"bitsPerSecond\": null", "divisions[0].bitsPerSecond"},
    };
    for (const auto& each : cases) {
        QByteArray wrong = good;
        const int place = wrong.lastIndexOf(each.from);
        ASSERT_GE(place, 0) << each.from;
        wrong.replace(place, static_cast<int>(qstrlen(each.from)), each.to);
        QString error;
        EXPECT_FALSE(parseSettings(wrong, error)) << each.message;
        EXPECT_THAT(error.toStdString(), HasSubstr(each.message));
    }
    QString error;
    EXPECT_FALSE(parseSettings("[]", error));
    EXPECT_FALSE(parseSettings("{", error));
    EXPECT_THAT(error.toStdString(), testing::StartsWith("line 1: "));
}

TEST(CameraSearch, prefersTheSerialNumberAndRefusesOtherModels) {
    const auto info = [](const char* id, const char* name, const char* model, const char* serial) {
        CameraInfo made;
        made.cameraId = id;
        made.cameraName = name;
        made.modelName = model;
        made.serialNumber = serial;
        return made;
    };
    const std::vector<CameraInfo> present{
        info("DEV_A", "Left", "G-1", "1"), info("DEV_B", "Right", "G-1", "2"),
        info("DEV_C", "Top", "G-2", "3"),  info("DEV_D", "Same", "G-1", "9"),
        info("DEV_E", "Same", "G-1", "9"), info("DEV_F", "", "G-1", ""),
        info("DEV_G", "G-3", "G-3", "12")};
    const struct {
        SavedCamera saved;
        const char* id;
        const char* reason;
    } cases[] = {
        {{"DEV_B", "Right", "G-1", "1", {}}, "DEV_A", "serial number"},
        {{"DEV_X", "Right", "G-1", "7", {}}, "DEV_B", "name"},
        {{"DEV_A", "", "G-1", "", {}}, "DEV_A", "ID"},
        {{"DEV_X", "G-3", "G-3", "11", {}}, nullptr, "it is missing"},
        {{"DEV_G", "G-3", "G-3", "", {}}, "DEV_G", "ID"},
        {{"DEV_F", "", "G-1", "", {}}, "DEV_F", "ID"},
        {{"DEV_E", "Same", "G-1", "9", {}}, "DEV_E", "ID"},
        {{"DEV_X", "Same", "G-1", "9", {}}, nullptr, "several cameras have its serial number"},
        {{"DEV_X", "None", "G-1", "7", {}}, nullptr, "it is missing"},
        {{"DEV_X", "", "G-1", "3", {}},
         nullptr,
         R"(the camera of this serial number is a "G-2", the settings are of a "G-1")"},
    };
    for (const auto& each : cases) {
        const FoundCamera found = findSavedCamera(each.saved, present);
        EXPECT_EQ(found.reason, each.reason);
        EXPECT_EQ(found.index ? present[*found.index].cameraId : "",
                  each.id == nullptr ? "" : each.id)
            << each.reason;
    }
}

} // namespace
