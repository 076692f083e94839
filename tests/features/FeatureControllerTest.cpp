// SPDX-License-Identifier: BSD-3-Clause
#include "features/FeatureController.h"

#include "sdk/ErrorText.h"
#include "tests/support/CameraParts.h"
#include "tests/support/CapturedLog.h"

#include <chrono>
#include <functional>
#include <sstream>
#include <thread>

namespace {

using namespace testing;

using Texts = std::vector<std::string>;
using Values = std::vector<FeatureValue>;

const auto failed = Return(OrvErrorType{OrvErrorIO});

std::string warning(const std::string& text) {
    return "Warning:Cam" + text;
}

std::string warning(const std::string& text, OrvErrorType error) {
    return warning(text) + ' ' + errorText(error);
}

std::string debug(const std::string& text, OrvErrorType error) {
    return "Debug:Cam" + text + ' ' + errorText(error);
}

/// All fields, so that a failing comparison shows the whole picture.
std::string describe(const FeatureInfo& info) {
    std::ostringstream text;
    const auto value = [](const FeatureValue& v) {
        return std::to_string(v.index()) + ':' + toText(v);
    };
    text << info.category << '|' << info.name << '|' << info.displayName << '|' << info.description
         << '|' << info.representation << '|' << info.toolTip << '|' << info.unit << '|'
         << info.readable << info.writable << '|' << info.visibility << '|' << info.dataType << '|'
         << value(info.value) << '|' << value(info.minimum) << '|' << value(info.maximum) << '|'
         << value(info.increment) << '|';
    for (const auto& entry : info.values)
        text << entry << ',';
    text << '|';
    for (const auto& entry : info.availableValues)
        text << value(entry) << ',';
    return text.str();
}

/// Gives a feature all the texts that a description has.
NiceFeature described(NiceFeature feature) {
    ON_CALL(*feature, GetCategory).WillByDefault(answer(std::string("/Cat")));
    ON_CALL(*feature, GetDescription).WillByDefault(answer(std::string("desc")));
    ON_CALL(*feature, GetRepresentation).WillByDefault(answer(std::string("Linear")));
    ON_CALL(*feature, GetToolTip).WillByDefault(answer(std::string("tip")));
    ON_CALL(*feature, GetUnit).WillByDefault(answer(std::string("us")));
    return feature;
}

class FeatureControllerTest : public testing::Test {
protected:
    FeatureController controller() const { return {m_camera, "Cam"}; }

    NiceFeature add(const std::string& name, NiceFeature feature) {
        return m_camera->addFeature(name, std::move(feature));
    }

    std::shared_ptr<testing::NiceMock<MockCamera>> m_camera = makeCamera();
    CapturedLog m_log;
};

/// A camera with all its modules, two streams among them.
class FeatureModulesTest : public FeatureControllerTest {
protected:
    FeatureModulesTest() {
        m_camera = m_parts.camera;
        const std::vector<std::shared_ptr<OrvStreamWrapper>> streams{m_parts.stream, m_stream1};
        ON_CALL(*m_camera, GetStreams).WillByDefault(answer(streams));
    }

    template <class Wrapper> static auto withoutModule() {
        return Return(std::pair{std::make_shared<Wrapper>(), OrvErrorType{OrvErrorDeviceNotOpen}});
    }

    const CameraParts m_parts{OrvTransportLayerTypeGEV};
    std::shared_ptr<MockStream> m_stream1 = std::make_shared<testing::NiceMock<MockStream>>();
};

TEST_F(FeatureModulesTest, areListedFromTheHostToTheStreamsWithFeaturesOfTheirOwn) {
    add("Id", makeIntFeature(1));
    m_parts.stream->addFeature("Id", makeIntFeature(2));
    const FeatureController features = controller();
    EXPECT_EQ(features.getFeatureValue("Camera", "Id"), FeatureValue{std::int64_t{1}});
    EXPECT_EQ(features.getFeatureValue("Stream0", "Id"), FeatureValue{std::int64_t{2}});
    EXPECT_FALSE(features.hasFeature("Stream1", "Id"));
    EXPECT_THAT(features.getModuleNames(),
                ElementsAre("Transport Layer", "Interface", "Local Device", "Camera", "Stream0",
                            "Stream1"));
    EXPECT_EQ(features.getModule("Stream1"), m_stream1);
    EXPECT_EQ(features.getModule("camera"), nullptr);
    EXPECT_EQ(m_log.text(), "");
}

TEST_F(FeatureModulesTest, mayAllFailButTheCamera) {
    ON_CALL(*m_camera, GetTransportLayer())
        .WillByDefault(withoutModule<OrvTransportLayerWrapper>());
    ON_CALL(*m_camera, GetInterface()).WillByDefault(withoutModule<OrvInterfaceWrapper>());
    ON_CALL(*m_camera, GetLocalDevice()).WillByDefault(withoutModule<OrvLocalDeviceWrapper>());
    ON_CALL(*m_camera, GetStreams).WillByDefault(failed);
    const FeatureController features = controller();
    EXPECT_THAT(features.getModuleNames(), ElementsAre("Camera"));
    EXPECT_FALSE(features.hasFeature("Local Device", "Any"));
    EXPECT_THAT(features.getFeaturesByCategory("Local Device"), IsEmpty());
    EXPECT_THAT(
        m_log.lines(),
        ElementsAre(warning(": Unable to get Transport Layer features", OrvErrorDeviceNotOpen),
                    warning(": Unable to get Interface features", OrvErrorDeviceNotOpen),
                    warning(": Unable to get Local Device features", OrvErrorDeviceNotOpen),
                    warning(": Unable to get Streams", OrvErrorIO),
                    warning(": Cannot get module: 'Local Device'")));
    EXPECT_THAT(FeatureController({}, "Cam").getModuleNames(), IsEmpty());
}

TEST_F(FeatureControllerTest, listsVisibleFeaturesByCategory) {
    const auto addIn = [this](const char* category, const char* name,
                              OrvFeatureVisibilityType visibility) {
        const auto feature = add(name, makeIntFeature(0));
        ON_CALL(*feature, GetCategory).WillByDefault(answer(std::string(category)));
        ON_CALL(*feature, GetVisibility).WillByDefault(answer(visibility));
        return feature;
    };
    addIn("/B", "Zeta", OrvFeatureVisibilityBeginner);
    addIn("/A", "Guru", OrvFeatureVisibilityGuru);
    addIn("/B", "Hidden", OrvFeatureVisibilityInvisible);
    addIn("/B", "Alpha", OrvFeatureVisibilityUnknown);
    ON_CALL(*addIn("/A", "Nameless", OrvFeatureVisibilityBeginner), GetName).WillByDefault(failed);
    ON_CALL(*addIn("/A", "Stray", OrvFeatureVisibilityBeginner), GetCategory).WillByDefault(failed);
    ON_CALL(*addIn("/A", "Odd", OrvFeatureVisibilityInvisible), GetVisibility)
        .WillByDefault(failed);

    EXPECT_THAT(controller().getFeaturesByCategory("Camera"),
                ElementsAre(Pair("", Texts{"Stray"}), Pair("/A", Texts{"Guru", "Odd"}),
                            Pair("/B", Texts{"Zeta", "Alpha"})));
    EXPECT_TRUE(m_log.has(warning(": Unable to get feature name.", OrvErrorIO)));
    EXPECT_TRUE(m_log.has(warning(": Unable to get Category of the feature 'Stray'", OrvErrorIO)));
    EXPECT_TRUE(m_log.has(warning(": Unable to get Visibility of the feature 'Odd'", OrvErrorIO)));
}

struct TypeCase {
    const char* name;
    std::function<NiceFeature()> make;
    /// Value and what the type adds to the description.
    std::string description;
    FeatureValue value;
};

NiceFeature makeOnceUnavailable() {
    auto feature = makeEnumFeature("Off", {"Off", "Once", "Continuous"});
    ON_CALL(*feature, IsValueAvailable(StrEq("Once"), _))
        .WillByDefault([](const char*, bool& available) {
            available = false;
            return OrvErrorType{OrvErrorSuccess};
        });
    return feature;
}

const TypeCase types[] = {
    {"Int", [] { return makeIntFeature(-5, -8, 1000, 3); }, "1|0:-5|0:-8|0:1000|0:3||",
     std::int64_t{-5}},
    {"Float", [] { return makeFloatFeature(2.5, 0.5, 10.0, 0.25); },
     "2|1:2.500000|1:0.500000|1:10.000000|1:0.250000||", 2.5},
    {"Enum", makeOnceUnavailable, "3|3:Off|0:0|0:0|0:0|Off,Once,Continuous,|3:Off,3:Continuous,",
     std::string("Off")},
    {"String", [] { return makeStringFeature("text"); }, "4|3:text|0:0|0:0|0:0||",
     std::string("text")},
    {"Bool", [] { return makeBoolFeature(true); }, "5|2:true|0:0|0:0|0:0||", true},
    {"Command", makeCommandFeature, "6|0:0|0:0|0:0|0:0||", true},
    {"Raw", [] { return makeFeature(OrvFeatureDataRaw); }, "7|0:0|0:0|0:0|0:0||", {}},
    {"None", [] { return makeFeature(OrvFeatureDataNone); }, "8|0:0|0:0|0:0|0:0||", {}},
    {"Unknown", [] { return makeFeature(OrvFeatureDataUnknown); }, "0|0:0|0:0|0:0|0:0||", {}},
};

TEST_F(FeatureControllerTest, describesAndReadsAFeatureByItsType) {
    for (const TypeCase& tested : types) {
        SCOPED_TRACE(tested.name);
        m_camera = makeCamera();
        const auto feature = add("F", described(tested.make()));
        const FeatureController features = controller();
        m_log.clear();
        for (int i = 0; i < 2; ++i)
            EXPECT_EQ(describe(features.getFeatureInfo("Camera", "F")),
                      "/Cat|F|F|desc|Linear|tip|us|11|1|" + tested.description);
        EXPECT_EQ(features.getFeatureValue("Camera", "F"), tested.value);
        EXPECT_EQ(m_log.text(), "");
    }
}

const auto anInt = [] {
    return makeIntFeature(-5, -8, 1000, 3);
};
const auto anEnum = [] {
    return makeEnumFeature("Off", {"Off", "On"});
};

struct FailureCase {
    /// Without the feature's name at its end.
    const char* message;
    std::function<NiceFeature()> make;
    std::function<void(MockFeature&)> fail;
    /// Part of the whole description, and what is in its place after the failure.
    std::string part, rest;
};

// The cases differ in the operation, not in its signature: a macro names each only once.
#define FAILS(Operation)                                                                           \
    [](MockFeature& f) {                                                                           \
        ON_CALL(f, Operation).WillByDefault(failed);                                               \
    }

const FailureCase failures[] = {
    {"Cannot get feature name", anInt, FAILS(GetName), "|F|F|", "||F|"},
    {"Cannot get feature category", anInt, FAILS(GetCategory), "/Cat|", "|"},
    {"Cannot get feature display name", anInt, FAILS(GetDisplayName), "|F|F|", "|F||"},
    {"Cannot get feature description", anInt, FAILS(GetDescription), "desc", ""},
    {"Cannot get feature representation", anInt, FAILS(GetRepresentation), "Linear", ""},
    {"Cannot get feature tooltip", anInt, FAILS(GetToolTip), "tip", ""},
    {"Cannot get feature unit", anInt, FAILS(GetUnit), "us", ""},
    {"Cannot get feature readability", anInt, FAILS(IsReadable), "|11|", "|01|"},
    {"Cannot get feature writability", anInt, FAILS(IsWritable), "|11|", "|10|"},
    {"Cannot get feature visibility", anInt, FAILS(GetVisibility), "|1|1|", "|0|1|"},
    {"Cannot get feature data type", makeCommandFeature, FAILS(GetDataType), "|1|6|", "|1|0|"},
    {"Cannot get feature value (int)", anInt, FAILS(GetValue(An<std::int64_t&>())), "0:-5", "0:0"},
    {"Cannot get feature range", anInt, FAILS(GetRange(An<std::int64_t&>(), _)), "0:-8|0:1000",
     "0:0|0:0"},
    {"Cannot get feature increment", anInt, FAILS(GetIncrement(An<std::int64_t&>())), "0:3", "0:0"},
    {"Cannot get feature value (double)", [] { return makeFloatFeature(1.5, 1.0, 2.0, 0.5); },
     FAILS(GetValue(An<double&>())), "1:1.500000", "0:0"},
    {"Cannot get feature value (string)", anEnum, FAILS(GetValue(An<std::string&>())), "3:Off|",
     "0:0|"},
    {"Cannot get feature values list", anEnum, FAILS(GetValues), "Off,On,|3:Off,3:On,", "|"},
    {"Cannot determine if feature is available", anEnum, FAILS(IsValueAvailable(StrEq("Off"), _)),
     "3:Off,3:On,", "3:On,"},
    {"Cannot get feature value (string)", [] { return makeStringFeature("x"); },
     FAILS(GetValue(An<std::string&>())), "3:x", "0:0"},
    {"Cannot get feature value (bool)", [] { return makeBoolFeature(true); },
     FAILS(GetValue(An<bool&>())), "2:true", "0:0"},
};

#undef FAILS

TEST_F(FeatureControllerTest, keepsTheOtherFieldsWhenOneCannotBeRead) {
    for (const FailureCase& tested : failures) {
        SCOPED_TRACE(tested.message);
        m_camera = makeCamera();
        const auto feature = add("F", described(tested.make()));
        std::string expected = describe(controller().getFeatureInfo("Camera", "F"));
        expected.replace(expected.find(tested.part), tested.part.size(), tested.rest);
        tested.fail(*feature);
        const FeatureController features = controller();
        const std::string name = tested.rest == "||F|" ? "" : " for 'F'";
        // A failure is not remembered: it is met again.
        for (int i = 0; i < 2; ++i) {
            m_log.clear();
            EXPECT_EQ(describe(features.getFeatureInfo("Camera", "F")), expected);
            ASSERT_FALSE(m_log.lines().empty());
            EXPECT_EQ(m_log.lines().front(),
                      debug(std::string(": ") + tested.message + name, OrvErrorIO));
        }
    }
}

TEST_F(FeatureControllerTest, answersNeutrallyForWhatIsMissing) {
    FeatureController features = controller();
    m_log.clear();
    for (const char* module : {"Camera", "Nowhere"}) {
        EXPECT_EQ(describe(features.getFeatureInfo(module, "X")), describe({}));
        EXPECT_EQ(features.getFeatureValue(module, "X"), FeatureValue{});
        EXPECT_EQ(features.getFeatureOutline(module, "X").displayName, "");
        EXPECT_FALSE(features.setFeatureValue(module, "X", true));
        EXPECT_FALSE(features.runCommand(module, "X", 10.0));
        EXPECT_FALSE(features.hasFeature(module, "X"));
    }
    const std::string noModule = warning(": Cannot get module: 'Nowhere'");
    const std::string noFeature = warning(": Cannot get feature: 'X'", OrvErrorNotFound);
    EXPECT_THAT(m_log.lines(),
                ElementsAre(noFeature, warning(": Cannot get feature value: 'X'", OrvErrorNotFound),
                            noFeature, noFeature,
                            warning(": Cannot get feature 'X'", OrvErrorNotFound), noModule,
                            noModule, noModule, noModule, noModule));
}

TEST_F(FeatureControllerTest, warnsOfAValueThatCannotBeRead) {
    const auto number = add("Number", makeIntFeature(7));
    ON_CALL(*number, GetValue(An<std::int64_t&>())).WillByDefault(failed);
    ON_CALL(*add("Untyped", makeIntFeature(7)), GetDataType).WillByDefault(failed);
    const FeatureController features = controller();
    for (const std::string name : {"Number", "Untyped"}) {
        m_log.clear();
        EXPECT_EQ(features.getFeatureValue("Camera", name), FeatureValue{});
        EXPECT_THAT(m_log.lines(),
                    ElementsAre(warning(": Cannot get feature value: '" + name + "'", OrvErrorIO)));
    }
}

TEST_F(FeatureControllerTest, setsWithTheOperationOfTheValuesAlternative) {
    const auto ok = Return(OrvErrorType{OrvErrorSuccess});
    const Values values{std::int64_t{1}, 1.5, true, std::string("On")};
    const auto feature = add("F", makeFeature(OrvFeatureDataInt));
    testing::InSequence inOrder;
    EXPECT_CALL(*feature, SetValue(testing::TypedEq<std::int64_t>(1))).WillOnce(ok);
    EXPECT_CALL(*feature, SetValue(testing::TypedEq<double>(1.5))).WillOnce(ok);
    EXPECT_CALL(*feature, SetValue(testing::TypedEq<bool>(true))).WillOnce(ok);
    EXPECT_CALL(*feature, SetValue(testing::Matcher<const char*>(StrEq("On")))).WillOnce(ok);
    add("Width", makeIntFeature(1));
    FeatureController features = controller();
    m_log.clear();
    for (const FeatureValue& value : values) {
        EXPECT_TRUE(features.setFeatureValue("Camera", "F", value));
        EXPECT_EQ(features.setFeatureValue("Camera", "Width", value), value == values[0]);
    }
    const auto refused = [](const char* value) {
        return warning(std::string(": Cannot set feature 'Width' to value: ") + value,
                       OrvErrorWrongType);
    };
    EXPECT_THAT(m_log.lines(), ElementsAre(refused("1.500000"), refused("true"), refused("On")));
}

class FeatureCommandTest : public FeatureControllerTest {
protected:
    bool run(double timeoutMs) {
        FeatureController features = controller();
        m_log.clear();
        return features.runCommand("Camera", "Go", timeoutMs);
    }

    NiceFeature m_command = add("Go", makeCommandFeature());
};

TEST_F(FeatureCommandTest, isPolledUntilItIsDoneOrGivesNoAnswer) {
    EXPECT_CALL(*m_command, RunCommand).Times(2);
    EXPECT_CALL(*m_command, IsCommandDone)
        .WillOnce(answer(false))
        .WillOnce(answer(true))
        .WillOnce(failed);
    for (const double limit : {1000.0, 0.0}) {
        EXPECT_TRUE(run(limit));
        EXPECT_EQ(m_log.text(), "");
    }
}

TEST_F(FeatureCommandTest, thatCannotBeStartedIsNotPolled) {
    ON_CALL(*m_command, RunCommand).WillByDefault(failed);
    EXPECT_CALL(*m_command, IsCommandDone).Times(0);
    EXPECT_FALSE(run(1000.0));
    EXPECT_THAT(m_log.lines(), ElementsAre(warning(": Error while executing 'Go'", OrvErrorIO)));
}

TEST_F(FeatureCommandTest, thatIsNotDoneInTimeHasFailed) {
    ON_CALL(*m_command, IsCommandDone).WillByDefault(answer(false));
    const std::string start = "Info:Timeout while executing 'Go', duration(ms) = ";
    for (const double limit : {0.0, 20.0}) {
        EXPECT_FALSE(run(limit));
        ASSERT_THAT(m_log.lines(), ElementsAre(testing::StartsWith(start)));
        EXPECT_GT(std::stod(m_log.lines()[0].substr(start.size())), limit);
    }
    ON_CALL(*m_command, IsCommandDone).WillByDefault([](bool& done) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
        done = true;
        return OrvErrorType{OrvErrorSuccess};
    });
    EXPECT_FALSE(run(2.0)) << "done too late";
    EXPECT_TRUE(run(1000.0));
}

// A call into the SDK may cost a millisecond on a real camera: what cannot change is read once.
TEST_F(FeatureControllerTest, asksOnceForWhatNeverChanges) {
    const auto feature = add("F", described(makeIntFeature(1)));
    EXPECT_CALL(*m_camera, GetFeatureByName(StrEq("F"), _));
    EXPECT_CALL(*m_camera, GetFeatureByName(StrEq("X"), _)).Times(2);
    EXPECT_CALL(*feature, GetName);
    EXPECT_CALL(*feature, GetCategory);
    EXPECT_CALL(*feature, GetDisplayName);
    EXPECT_CALL(*feature, GetDescription);
    EXPECT_CALL(*feature, GetRepresentation);
    EXPECT_CALL(*feature, GetToolTip);
    EXPECT_CALL(*feature, GetUnit);
    EXPECT_CALL(*feature, GetVisibility);
    EXPECT_CALL(*feature, GetDataType);
    EXPECT_CALL(*feature, IsReadable).Times(2);
    EXPECT_CALL(*feature, IsWritable).Times(6).WillOnce(answer(true)).WillRepeatedly(answer(false));
    EXPECT_CALL(*feature, GetValue(An<std::int64_t&>())).Times(4);
    EXPECT_CALL(*feature, GetRange(An<std::int64_t&>(), _)).Times(2);
    EXPECT_CALL(*feature, GetIncrement(An<std::int64_t&>())).Times(2);
    const auto entries = add("E", makeEnumFeature("Off", {"Off", "On"}));
    EXPECT_CALL(*entries, GetValues(An<Texts&>()));
    EXPECT_CALL(*entries, IsValueAvailable(An<const char*>(), _)).Times(4);
    FeatureController features = controller();
    EXPECT_TRUE(features.hasFeature("Camera", "F"));
    features.getFeaturesByCategory("Camera");
    EXPECT_TRUE(features.getFeatureOutline("Camera", "F").writable);
    EXPECT_FALSE(features.getFeatureOutline("Camera", "F").writable);
    for (int i = 0; i < 2; ++i) {
        features.getFeatureInfo("Camera", "F");
        features.getFeatureInfo("Camera", "E");
        features.getFeatureValue("Camera", "F");
        EXPECT_EQ(features.getFeatureOutline("Camera", "F").displayName, "F");
        // What was not found may appear later.
        EXPECT_FALSE(features.hasFeature("Camera", "X"));
    }
}

} // namespace
