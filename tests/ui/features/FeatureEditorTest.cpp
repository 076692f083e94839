// SPDX-License-Identifier: BSD-3-Clause
#include "ui/features/editors/DelegateWidget.h"

#include "features/FeatureMetaTypes.h"
#include "logging/QtMessageHandler.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/FakeFeatureController.h"
#include "ui/features/FeatureItemDelegate.h"
#include "ui/features/FeatureTreeModel.h"

#include <QTest>
#include <QtWidgets>
#include <qwt_scale_map.h>
#include <qwt_slider.h>

#include <gmock/gmock.h>

#include <cmath>
#include <functional>
#include <memory>

namespace {

using namespace testing;
using Int = std::int64_t;

void type(const char* text) {
    QTest::keyClicks(QApplication::focusWidget(), QString::fromLatin1(text));
}

void press(Qt::Key key) {
    QTest::keyClick(QApplication::focusWidget(), key);
}

void turnWheel(QWidget* widget, int notches) {
    const QPointF middle = widget->rect().center();
    QWheelEvent event(middle, widget->mapToGlobal(middle.toPoint()), {}, {0, 120 * notches},
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    // Only events of the window system are passed on to parents.
    QSpontaneKeyEvent::setSpontaneous(&event);
    qApp->notify(widget, &event);
}

FeatureInfo feature(OrvFeatureDataType dataType, FeatureValue value,
                    const char* representation = "") {
    FeatureInfo info;
    info.name = "Feature";
    info.dataType = dataType;
    info.value = std::move(value);
    info.representation = representation;
    info.readable = info.writable = true;
    return info;
}

template <class Number>
FeatureInfo ranged(Number value, Number minimum, Number maximum, Number increment,
                   const char* name = "Number") {
    FeatureInfo info =
        feature(std::is_same_v<Number, Int> ? OrvFeatureDataInt : OrvFeatureDataFloat, value);
    info.name = name;
    info.minimum = minimum;
    info.maximum = maximum;
    info.increment = increment;
    return info;
}

FeatureInfo enumeration(FeatureValue value, const std::vector<std::string>& available) {
    FeatureInfo info = feature(OrvFeatureDataEnum, std::move(value));
    info.availableValues.assign(available.begin(), available.end());
    return info;
}

/// Edits features of a camera in a tree view, with a German locale.
class FeatureEditor : public testing::Test {
protected:
    FeatureEditor() { QLocale::setDefault(QLocale(QLocale::German)); }
    ~FeatureEditor() override { QLocale::setDefault(QLocale::c()); }

    /// Opens the editor of the first feature.
    void edit(const std::vector<FeatureInfo>& features) {
        camera = std::make_shared<FakeFeatureController>(std::vector<std::string>{"Camera"});
        for (const FeatureInfo& info : features)
            camera->add("Camera", "", info.name) = info;
        model = std::make_unique<FeatureTreeModel>(camera);
        model->setupModelData();
        view.setModel(model.get());
        view.setItemDelegateForColumn(1, &delegate);
        view.expandAll();
        view.resize(600, 300);
        view.show();
        view.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&view));
        view.setFocus();
        view.setCurrentIndex(index());
        view.edit(index());
        ASSERT_TRUE(isOpen());
    }
    void edit(const FeatureInfo& info) { edit(std::vector{info}); }

    QModelIndex index(int row = 0) const { return model->index(row, 1, model->index(0, 0)); }
    std::vector<FeatureValue> writes() const {
        std::vector<FeatureValue> values;
        for (const auto& write : camera->written)
            values.push_back(write.second);
        return values;
    }

    DelegateWidget* editor(int row = 0) const {
        return qobject_cast<DelegateWidget*>(view.indexWidget(index(row)));
    }
    bool isOpen(int row = 0) const { return editor(row) != nullptr; }
    template <class Part> Part* part() const { return editor()->findChild<Part*>(); }
    /// The slider of a number.
    QWidget* firstPart() const { return editor()->layout()->itemAt(0)->widget(); }
    void mouse(QTest::MouseAction action, const QWidget* widget, QPoint position) {
        QTest::mouseEvent(action, view.windowHandle(), Qt::LeftButton, {},
                          widget->mapTo(&view, position), -1);
    }
    void click(const QWidget* widget, QPoint position) {
        mouse(QTest::MousePress, widget, position);
        mouse(QTest::MouseRelease, widget, position);
    }
    void click(const QWidget* widget) { click(widget, widget->rect().center()); }

    std::shared_ptr<FakeFeatureController> camera;
    std::unique_ptr<FeatureTreeModel> model;
    struct : FeatureItemDelegate {
        using FeatureItemDelegate::initStyleOption;
    } delegate;
    QTreeView view;
};

struct KeyCase {
    const char* name;
    FeatureInfo feature;
    std::function<void()> change;
    FeatureValue written;
};

const auto pressUp = [] {
    press(Qt::Key_Up);
};
template <class Slider, int notches> void wheel() {
    turnWheel(QApplication::focusWidget()->parentWidget()->findChild<Slider*>(), notches);
}
const auto toSliderAnd = [](Qt::Key key) {
    return [key] {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab);
        press(key);
    };
};
std::function<void()> typing(const char* text) {
    return [text] {
        type(text);
    };
}

const KeyCase keyCases[] = {
    {"Boolean", feature(OrvFeatureDataBool, false), [] { press(Qt::Key_Space); }, true},
    {"BooleanThatCannotBeRead", feature(OrvFeatureDataBool, Int{0}), [] { press(Qt::Key_Space); },
     true},
    {"EnumerationByKey", enumeration(std::string("Off"), {"Off", "On"}),
     [] { press(Qt::Key_Down); }, std::string("On")},
    {"EnumerationByWheel", enumeration(std::string("Off"), {"Off", "On"}),
     [] { turnWheel(QApplication::focusWidget(), -1); }, std::string("On")},
    {"EntryThatIsNotAvailable", enumeration(std::string("Once"), {"Off", "On"}),
     [] { press(Qt::Key_Down); }, std::string("Off")},
    {"String", feature(OrvFeatureDataString, std::string("old")), typing("new"),
     std::string("new")},
    {"StringThatCannotBeRead", feature(OrvFeatureDataString, Int{0}), typing("0"),
     std::string("0")},
    {"EnumerationThatCannotBeRead", enumeration(Int{0}, {"On"}), [] { press(Qt::Key_Down); },
     std::string("On")},
    {"StringTooLongForALine", feature(OrvFeatureDataString, std::string(40000, 'x')),
     [] { press(Qt::Key_Backspace); }, std::string()},
    {"Hex", feature(OrvFeatureDataInt, Int{0x12}, "HexNumber"), typing("DeadBeef5"),
     Int{0xdeadbeef}},
    {"HexOf64Bits", feature(OrvFeatureDataInt, Int{0x123456789abc}, "PureHexNumber"), typing("1f"),
     Int{0x1f}},
    {"Ip", feature(OrvFeatureDataInt, Int{0x0a000001}, "IPV4Address"), typing("192.168.256.010"),
     Int{0xc0a8190a}},
    {"MacWithHyphens", feature(OrvFeatureDataInt, Int{1}, "MACAddress"),
     typing("02-aB-cc-dd-ee-0f"), Int{0x02abccddee0f}},
    {"Integer", ranged<Int>(640, 16, 1936, 16), pressUp, Int{656}},
    {"IntegerBetweenSteps", ranged<Int>(650, 16, 1936, 16), pressUp, Int{656}},
    {"IntegerTypedBetweenSteps", ranged<Int>(640, 16, 1936, 16), typing("1000"), Int{1008}},
    {"IntegerSliderByWheel", ranged<Int>(640, 16, 1936, 16), wheel<QSlider, -1>, Int{640 - 3 * 16}},
    {"IntegerBelowItsRange", ranged<Int>(7, 16, 1936, 16), pressUp, Int{32}},
    {"IntegerOf64Bits", ranged<Int>(Int{1} << 40, 0, INT64_MAX, 1), pressUp, (Int{1} << 40) + 1},
    {"SliderOf64Bits", ranged<Int>(Int{1} << 40, 0, INT64_MAX, 1), toSliderAnd(Qt::Key_End),
     Int{INT64_MAX}},
    {"Float", ranged(12.123456789012345, 0.0, 48.0, 0.0), typing("3,49.25"), 34.25},
    {"FloatThatIsNoNumber", ranged(std::nan(""), 0.0, 48.0, 0.0),
     [] { QApplication::focusWidget()->setProperty("text", QStringLiteral("5")); }, 5.0},
    {"FloatSliderByWheel", ranged(12.0, 0.0, 48.0, 0.5), wheel<QwtSlider, 1>, 12.5},
    {"FloatSliderByKey", ranged(50.0, 0.0, 59.94005994005994, 0.0, "ExposureTime"),
     toSliderAnd(Qt::Key_End), 59.94005994005994},
    {"LogarithmicDownTo0", ranged(50.0, 0.0, 1e6, 0.0, "ExposureTime"), toSliderAnd(Qt::Key_Home),
     0.0}};

TEST_F(FeatureEditor, isWrittenOnceByReturnOrByLeaving) {
    for (const KeyCase& tested : keyCases) {
        SCOPED_TRACE(tested.name);
        for (const bool leaves : {false, true}) {
            edit(tested.feature);
            tested.change();
            EXPECT_THAT(writes(), IsEmpty());
            if (leaves)
                click(view.viewport(), {300, 200});
            else
                press(Qt::Key_Return);
            EXPECT_THAT(writes(), ElementsAre(tested.written));
            EXPECT_FALSE(isOpen());
            EXPECT_TRUE(view.hasFocus());
        }
    }
}

TEST_F(FeatureEditor, isNotWrittenByEscapeNorWhenNothingWasTouched) {
    for (const KeyCase& tested : keyCases) {
        SCOPED_TRACE(tested.name);
        edit(tested.feature);
        tested.change();
        press(Qt::Key_Escape);
        EXPECT_FALSE(isOpen());
        view.edit(index());
        press(Qt::Key_Return);
        EXPECT_FALSE(isOpen());
        EXPECT_THAT(writes(), IsEmpty());
    }
}

TEST_F(FeatureEditor, choicesAreWrittenAtOnce) {
    edit(feature(OrvFeatureDataBool, false));
    click(editor(), {8, editor()->height() / 2});
    EXPECT_THAT(writes(), ElementsAre(FeatureValue(true)));
    EXPECT_FALSE(isOpen());

    edit(enumeration(std::string("Off"), {"Off", "Once", "On"}));
    auto* box = part<QComboBox>();
    click(box);
    QAbstractItemView* list = box->view();
    ASSERT_TRUE(QTest::qWaitFor([list] { return list->isVisible(); }));
    EXPECT_TRUE(isOpen());
    // By key: right after the click that opened it, the popup ignores clicks.
    QTest::keyClick(list, Qt::Key_Down);
    QTest::keyClick(list, Qt::Key_Return);
    EXPECT_THAT(writes(), ElementsAre(FeatureValue(std::string("Once"))));
    EXPECT_FALSE(isOpen());
}

TEST_F(FeatureEditor, aCommandRunsOncePerPress) {
    for (const bool byKey : {false, true}) {
        edit(feature(OrvFeatureDataCommand, Int{0}));
        EXPECT_EQ(part<QPushButton>()->text(), QStringLiteral("Execute"));
        // Not only because a signal of the model makes the editor show the value again.
        const QSignalBlocker silent(model.get());
        if (byKey)
            press(Qt::Key_Return);
        else
            click(part<QPushButton>());
        EXPECT_THAT(camera->commands, ElementsAre(testing::Pair("Feature", 1000.0)));
        EXPECT_FALSE(isOpen());
    }
    edit(feature(OrvFeatureDataCommand, Int{0}));
    emit delegate.onClose();
    EXPECT_THAT(camera->commands, IsEmpty());
}

TEST_F(FeatureEditor, aSliderWritesWhenItIsReleasedAndStaysOpen) {
    for (const FeatureInfo& info : {ranged<Int>(16, 16, 1936, 16), ranged(0.0, 0.0, 48.0, 0.5)}) {
        edit(info);
        QWidget* slider = firstPart();
        const auto* line = part<QLineEdit>();
        const QPoint handle(8, slider->height() / 2);
        mouse(QTest::MousePress, slider, handle);
        mouse(QTest::MouseMove, slider, handle + QPoint(40, 0));
        mouse(QTest::MouseMove, slider, handle + QPoint(60, 0));
        EXPECT_THAT(writes(), IsEmpty());
        const FeatureValue chosen = toFeatureValue(line->text(), info.value.index());
        mouse(QTest::MouseRelease, slider, handle + QPoint(60, 0));
        EXPECT_GT(chosen, info.value);
        EXPECT_THAT(writes(), ElementsAre(chosen));
        ASSERT_TRUE(isOpen());

        const auto shown = [&] {
            return toFeatureValue(line->text(), info.value.index());
        };
        // The camera changes the written value.
        FeatureInfo& number = camera->features.at({"Camera", "Number"});
        camera->onWrite = [&number] {
            number.value = number.maximum;
        };
        click(slider, {slider->width() - 10, handle.y()});
        EXPECT_EQ(writes().size(), 2U);
        EXPECT_EQ(shown(), info.maximum);
        camera->refuses = true;
        click(slider, handle);
        EXPECT_EQ(shown(), info.maximum);
    }
    for (const FeatureInfo& rangeless :
         {feature(OrvFeatureDataInt, Int{5}), feature(OrvFeatureDataFloat, 5.0)}) {
        edit(rangeless);
        EXPECT_FALSE(firstPart()->isEnabled());
    }
}

TEST_F(FeatureEditor, anExposureTimeSpansItsRangeLogarithmically) {
    FeatureInfo other = ranged(10.0, 10.0, 1e6, 0.0);
    other.representation = "Logarithmic";
    for (const FeatureInfo& info : {ranged(10.0, 10.0, 1e6, 0.0, "ExposureTime"),
                                    ranged(10.0, 10.0, 1e6, 0.0, "ExposureTimeAbs"), other}) {
        edit(info);
        type("3162");
        press(Qt::Key_Backtab);
        const auto* slider = part<QwtSlider>();
        EXPECT_NEAR(slider->value(), 3162, 1);
        // The middle of 10^1 and 10^6 is 10^3.5.
        EXPECT_NEAR(slider->scaleMap().transform(slider->value()),
                    (slider->scaleMap().p1() + slider->scaleMap().p2()) / 2, 1);
    }
}

TEST_F(FeatureEditor, tabMovesWithinTheEditorAndThenToTheNextRow) {
    edit({ranged(1.0, 0.0, 48.0, 0.0), ranged<Int>(16, 16, 64, 16, "Other")});
    type("7.5");
    press(Qt::Key_Backtab);
    EXPECT_TRUE(part<QwtSlider>()->hasFocus());
    EXPECT_NEAR(part<QwtSlider>()->value(), 7.5, 1e-9);
    press(Qt::Key_Tab);
    EXPECT_TRUE(part<QLineEdit>()->hasFocus());
    EXPECT_THAT(writes(), IsEmpty());
    press(Qt::Key_Tab);
    EXPECT_THAT(writes(), ElementsAre(FeatureValue(7.5)));
    EXPECT_FALSE(isOpen(0));
    EXPECT_TRUE(isOpen(1));
}

TEST_F(FeatureEditor, closingCommitsATextThatIsComplete) {
    const std::pair<FeatureInfo, const char*> numbers[] = {
        {ranged(20.0, 10.0, 48.0, 0.0),
         "A number from 10 to 48, with up to 10 decimals after a point"},
        {ranged<Int>(20, 10, 48, 1), "A whole number from 10 to 48"}};
    for (const auto& [info, hint] : numbers) {
        edit(info);
        type("4");
        EXPECT_NE(QToolTip::text().toStdString(), hint);
        type("9");
        EXPECT_EQ(QToolTip::text().toStdString(), hint);
        EXPECT_EQ(part<QLineEdit>()->text(), QStringLiteral("4"));
        press(Qt::Key_Return);
        EXPECT_TRUE(isOpen());
        emit delegate.onClose();
        EXPECT_FALSE(isOpen());
        EXPECT_THAT(writes(), IsEmpty());
    }
    edit(feature(OrvFeatureDataString, std::string("old")));
    type("new");
    emit delegate.onClose();
    EXPECT_THAT(writes(), ElementsAre(FeatureValue(std::string("new"))));
}

TEST_F(FeatureEditor, leavesTheWheelToTheTreeWhereItHasNoUseForIt) {
    std::vector<FeatureInfo> features(30, feature(OrvFeatureDataString, std::string("old")));
    for (std::size_t i = 0; i < features.size(); ++i)
        features[i].name += std::to_string(i);
    edit(features);
    turnWheel(part<QLineEdit>(), -1);
    const int scrolled = view.verticalScrollBar()->value();
    EXPECT_GT(scrolled, 0);

    features[0] = ranged<Int>(640, 16, 1936, 16);
    edit(features);
    QWidget another;
    another.show();
    another.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&another));
    turnWheel(part<QSlider>(), -1);
    EXPECT_GT(view.verticalScrollBar()->value(), 0);
    EXPECT_EQ(part<QLineEdit>()->text(), QStringLiteral("640"));
}

TEST_F(FeatureEditor, numbersHaveAPointAndNoGroupsInEveryLocaleAndTheirUnit) {
    FeatureInfo info = ranged(1234567.25, 0.0, 1e7, 0.0);
    info.unit = "us";
    edit(info);
    EXPECT_EQ(part<QLabel>()->text(), QStringLiteral("us"));
    QStyleOptionViewItem option;
    delegate.initStyleOption(&option, index());
    EXPECT_EQ(option.text, QStringLiteral("1234567.25 us"));
    EXPECT_EQ(part<QLineEdit>()->text(), QStringLiteral("1234567.25"));
    EXPECT_EQ(delegate.displayText(1234567.25, view.locale()), QStringLiteral("1234567.25"));
    EXPECT_EQ(delegate.displayText(1000000LL, view.locale()), QStringLiteral("1000000"));
}

TEST_F(FeatureEditor, whatCannotBeEditedOrToldIsADebugMessage) {
    FeatureInfo raw = feature(OrvFeatureDataRaw, Int{0});
    raw.name = "Raw";
    edit({feature(OrvFeatureDataBool, true), raw});
    const CapturedLog log;
    qInstallMessageHandler(qtMessageHandler);
    EXPECT_EQ(delegate.createEditor(&view, {}, index(1)), nullptr);
    delegate.setModelData(editor(), model.get(), index(1));
    editor()->saveEditorData();
    QSpinBox stranger;
    QObject::connect(&stranger, &QSpinBox::editingFinished, editor(),
                     &DelegateWidget::saveEditorData);
    emit stranger.editingFinished();
    qInstallMessageHandler(nullptr);
    EXPECT_THAT(writes(), IsEmpty());
    using testing::StartsWith;
    EXPECT_THAT(log.lines(), ElementsAre(StartsWith("Debug:Cannot create delegate widget for Raw"),
                                         StartsWith("Debug:Cannot set value for type [7]"),
                                         StartsWith("Debug:Cannot get sender widget."),
                                         StartsWith("Debug:Unhandled class: QSpinBox")));
}

} // namespace
