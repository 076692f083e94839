// SPDX-License-Identifier: BSD-3-Clause
#include "features/ui/DelegateWidget.h"
#include "features/ui/FeatureItemDelegate.h"
#include "features/ui/LongSpinBox.h"
#include "logging/QtMessageHandler.h"
#include "tests/features/ui/FeatureRows.h"
#include "tests/support/CapturedLog.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>
#include <QStyleOptionSlider>
#include <QTest>
#include <QTreeView>
#include <QWheelEvent>
#include <QWindow>

#include <gmock/gmock.h>

#include <functional>
#include <memory>

#include <qwt_scale_map.h>
#include <qwt_slider.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
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
    QApplication::sendEvent(widget, &event);
}

/// Edits features in the rows of a tree view, in front of a German user.
class FeatureEditor : public testing::Test {
protected:
    FeatureEditor() { QLocale::setDefault(QLocale(QLocale::German)); }
    ~FeatureEditor() override { QLocale::setDefault(QLocale::c()); }

    /// Opens the editor of the first row.
    void edit(std::vector<FeatureInfo> features) {
        rows = std::make_unique<FeatureRows>(std::move(features));
        view.setModel(rows.get());
        view.setItemDelegateForColumn(1, &delegate);
        view.resize(600, 300);
        view.show();
        view.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&view));
        view.setFocus();
        view.setCurrentIndex(rows->index(0, 1));
        view.edit(rows->index(0, 1));
        ASSERT_TRUE(isOpen());
    }
    void edit(const FeatureInfo& feature) { edit(std::vector{feature}); }

    DelegateWidget* editor(int row = 0) const {
        return qobject_cast<DelegateWidget*>(view.indexWidget(rows->index(row, 1)));
    }
    bool isOpen(int row = 0) const { return editor(row) != nullptr; }
    template <class Part> Part* part() const { return editor()->findChild<Part*>(); }
    QString textOnView() const { return delegate.displayText(value(), view.locale()); }
    QVariant value() const { return rows->index(0, 1).data(); }

    void mouse(QTest::MouseAction action, const QWidget* widget, QPoint position) {
        QTest::mouseEvent(action, view.windowHandle(), Qt::LeftButton, {},
                          widget->mapTo(&view, position), -1);
    }
    void click(const QWidget* widget, QPoint position) {
        mouse(QTest::MousePress, widget, position);
        mouse(QTest::MouseRelease, widget, position);
    }
    void click(const QWidget* widget) { click(widget, widget->rect().center()); }

    std::unique_ptr<FeatureRows> rows;
    FeatureItemDelegate delegate;
    QTreeView view;
};

struct KeyCase {
    const char* name;
    FeatureInfo feature;
    std::function<void()> change;
    FeatureValue written;
};

void PrintTo(const KeyCase& test, std::ostream* stream) {
    *stream << test.name;
}

class EditedByKeys : public FeatureEditor, public testing::WithParamInterface<KeyCase> {};

TEST_P(EditedByKeys, ReturnWritesOnce) {
    edit(GetParam().feature);
    GetParam().change();
    EXPECT_THAT(rows->writes, IsEmpty());
    press(Qt::Key_Return);
    EXPECT_THAT(rows->writes, ElementsAre(GetParam().written));
    EXPECT_FALSE(isOpen());
    EXPECT_TRUE(view.hasFocus());
}

TEST_P(EditedByKeys, EscapeLeavesTheValue) {
    edit(GetParam().feature);
    GetParam().change();
    press(Qt::Key_Escape);
    EXPECT_THAT(rows->writes, IsEmpty());
    EXPECT_FALSE(isOpen());
}

TEST_P(EditedByKeys, LeavingTheEditorWritesOnce) {
    edit(GetParam().feature);
    GetParam().change();
    click(view.viewport(), {300, 250});
    EXPECT_THAT(rows->writes, ElementsAre(GetParam().written));
    EXPECT_FALSE(isOpen());
}

TEST_P(EditedByKeys, NothingTouchedWritesNothing) {
    edit(GetParam().feature);
    press(Qt::Key_Return);
    EXPECT_THAT(rows->writes, IsEmpty());
    EXPECT_FALSE(isOpen());
}

TEST_P(EditedByKeys, ARefusedWriteLeavesTheOldValue) {
    edit(GetParam().feature);
    rows->refuses = true;
    const QVariant before = value();
    GetParam().change();
    press(Qt::Key_Return);
    EXPECT_THAT(rows->writes, ElementsAre(GetParam().written));
    EXPECT_EQ(value(), before);
}

const auto pressUp = [] {
    press(Qt::Key_Up);
};
const auto wheelSlider = [] {
    turnWheel(QApplication::focusWidget()->parentWidget()->findChild<QSlider*>(), -1);
};
const auto wheelFloatSlider = [] {
    turnWheel(QApplication::focusWidget()->parentWidget()->findChild<QwtSlider*>(), 1);
};
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

INSTANTIATE_TEST_SUITE_P(
    All, EditedByKeys,
    testing::Values(
        KeyCase{"Boolean", makeFeature("ReverseX", OrvFeatureDataBool, false),
                [] { press(Qt::Key_Space); }, true},
        KeyCase{"EnumerationByKey", makeEnumeration("Mode", "Off", {"Off", "On"}),
                [] { press(Qt::Key_Down); }, std::string("On")},
        KeyCase{"EnumerationByWheel", makeEnumeration("Mode", "Off", {"Off", "On"}),
                [] { turnWheel(QApplication::focusWidget(), -1); }, std::string("On")},
        KeyCase{"EntryThatIsNotAvailable", makeEnumeration("Mode", "Once", {"Off", "On"}),
                [] { press(Qt::Key_Down); }, std::string("Off")},
        KeyCase{"String", makeFeature("User", OrvFeatureDataString, std::string("old")),
                typing("new"), std::string("new")},
        KeyCase{"Hex", makeFeature("Key", OrvFeatureDataInt, Int{0x12}, "HexNumber"),
                typing("DeadBeef5"), Int{0xdeadbeef}},
        KeyCase{"HexOf64Bits",
                makeFeature("Key", OrvFeatureDataInt, Int{0x123456789abc}, "PureHexNumber"),
                typing("1f"), Int{0x1f}},
        KeyCase{"Ip", makeFeature("Ip", OrvFeatureDataInt, Int{0x0a000001}, "IPV4Address"),
                typing("192.168.256.010"), Int{0xc0a8190a}},
        KeyCase{"MacWithHyphens", makeFeature("Mac", OrvFeatureDataInt, Int{1}, "MACAddress"),
                typing("02-aB-cc-dd-ee-0f"), Int{0x02abccddee0f}},
        KeyCase{"Integer", makeRanged<Int>("Width", 640, 16, 1936, 16), pressUp, Int{656}},
        KeyCase{"IntegerBetweenSteps", makeRanged<Int>("Width", 650, 16, 1936, 16), pressUp,
                Int{656}},
        KeyCase{"IntegerTypedBetweenSteps", makeRanged<Int>("Width", 640, 16, 1936, 16),
                typing("1000"), Int{1008}},
        KeyCase{"IntegerSliderByWheel", makeRanged<Int>("Width", 640, 16, 1936, 16), wheelSlider,
                Int{640 - 3 * 16}},
        KeyCase{"IntegerOf64Bits", makeRanged<Int>("Limit", Int{1} << 40, 0, INT64_MAX, 1), pressUp,
                (Int{1} << 40) + 1},
        KeyCase{"SliderOf64Bits", makeRanged<Int>("Limit", Int{1} << 40, 0, INT64_MAX, 1),
                toSliderAnd(Qt::Key_End), Int{INT64_MAX}},
        KeyCase{"Float", makeRanged("Gain", 12.123456789012345, 0.0, 48.0, 0.0), typing("3,49.25"),
                34.25},
        KeyCase{"FloatSliderByWheel", makeRanged("Gain", 12.0, 0.0, 48.0, 0.5), wheelFloatSlider,
                12.5},
        KeyCase{"FloatSliderByKey", makeRanged("ExposureTime", 50.0, 0.0, 59.94005994005994, 0.0),
                toSliderAnd(Qt::Key_End), 59.94005994005994},
        KeyCase{"LogarithmicDownTo0", makeRanged("ExposureTime", 50.0, 0.0, 1e6, 0.0),
                toSliderAnd(Qt::Key_Home), 0.0}),
    [](const auto& test) { return std::string(test.param.name); });

TEST_F(FeatureEditor, MouseChoicesAreWrittenAtOnce) {
    edit(makeFeature("ReverseX", OrvFeatureDataBool, false));
    click(editor(), {8, editor()->height() / 2});
    EXPECT_THAT(rows->writes, ElementsAre(FeatureValue(true)));
    EXPECT_FALSE(isOpen());
}

TEST_F(FeatureEditor, AnEntryIsChosenFromThePopup) {
    edit(makeEnumeration("Mode", "Off", {"Off", "Once", "On"}));
    auto* box = part<QComboBox>();
    click(box);
    QAbstractItemView* list = box->view();
    ASSERT_TRUE(QTest::qWaitFor([list] { return list->isVisible(); }));
    EXPECT_TRUE(isOpen());
    // The popup takes no click as a choice in the moment after it was opened by one.
    QTest::keyClick(list, Qt::Key_Down);
    QTest::keyClick(list, Qt::Key_Return);
    EXPECT_THAT(rows->writes, ElementsAre(FeatureValue(std::string("Once"))));
    EXPECT_FALSE(isOpen());
}

TEST_F(FeatureEditor, ACommandRunsOncePerPress) {
    for (const bool byKey : {false, true}) {
        edit(makeFeature("Start", OrvFeatureDataCommand, Int{0}));
        EXPECT_EQ(part<QPushButton>()->text(), QStringLiteral("Execute"));
        if (byKey)
            press(Qt::Key_Return);
        else
            click(part<QPushButton>());
        EXPECT_THAT(rows->writes, ElementsAre(FeatureValue(true)));
        EXPECT_FALSE(isOpen());
    }
    edit(makeFeature("Start", OrvFeatureDataCommand, Int{0}));
    emit delegate.onClose();
    EXPECT_THAT(rows->writes, IsEmpty());
}

TEST_F(FeatureEditor, ADraggedSliderWritesWhenItIsReleasedAndStaysOpen) {
    edit(makeRanged<Int>("Width", 16, 16, 1936, 16));
    auto* slider = part<QSlider>();
    QStyleOptionSlider option;
    option.initFrom(slider);
    option.maximum = slider->maximum();
    option.minimum = slider->minimum();
    option.sliderPosition = slider->sliderPosition();
    const QPoint handle = slider->style()
                              ->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle)
                              .center();
    mouse(QTest::MousePress, slider, handle);
    mouse(QTest::MouseMove, slider, handle + QPoint(40, 0));
    mouse(QTest::MouseMove, slider, handle + QPoint(60, 0));
    const Int chosen = part<LongSpinBox>()->value();
    EXPECT_GT(chosen, 100);
    EXPECT_EQ(chosen % 16, 0);
    EXPECT_THAT(rows->writes, IsEmpty());
    mouse(QTest::MouseRelease, slider, handle + QPoint(60, 0));
    EXPECT_THAT(rows->writes, ElementsAre(FeatureValue(chosen)));
    ASSERT_TRUE(isOpen());

    rows->refuses = true;
    click(slider, {slider->width() - 10, slider->height() / 2});
    EXPECT_THAT(rows->writes, ElementsAre(chosen, chosen + 5 * 16));
    EXPECT_EQ(part<LongSpinBox>()->value(), chosen);
    EXPECT_EQ(slider->value(), chosen);
}

TEST_F(FeatureEditor, ADraggedFloatSliderWritesWhenItIsReleasedAndStaysOpen) {
    edit(makeRanged("Gain", 0.0, 0.0, 48.0, 0.0));
    auto* slider = part<QwtSlider>();
    const QPoint handle(8, slider->height() / 2);
    mouse(QTest::MousePress, slider, handle);
    mouse(QTest::MouseMove, slider, handle + QPoint(70, 0));
    const QString text = part<QLineEdit>()->text();
    EXPECT_THAT(rows->writes, IsEmpty());
    mouse(QTest::MouseRelease, slider, handle + QPoint(70, 0));
    EXPECT_THAT(rows->writes, ElementsAre(FeatureValue(text.toDouble())));
    EXPECT_GT(text.toDouble(), 5.0);
    EXPECT_TRUE(isOpen());
}

TEST_F(FeatureEditor, AnExposureTimeSpansItsRangeLogarithmically) {
    edit(makeRanged("ExposureTimeAbs", 10.0, 10.0, 1e6, 0.0));
    part<QLineEdit>()->selectAll();
    type("3162");
    press(Qt::Key_Backtab);
    EXPECT_NEAR(part<QwtSlider>()->value(), 3162, 1);
    const auto* slider = part<QwtSlider>();
    // The middle of 10^1 and 10^6 is 10^3.5.
    EXPECT_NEAR(slider->scaleMap().transform(slider->value()),
                (slider->scaleMap().p1() + slider->scaleMap().p2()) / 2, 1);
}

TEST_F(FeatureEditor, TabMovesWithinTheEditorAndThenToTheNextRow) {
    edit({makeRanged("Gain", 1.0, 0.0, 48.0, 0.0), makeRanged<Int>("Width", 16, 16, 64, 16)});
    type("7.5");
    press(Qt::Key_Backtab);
    EXPECT_TRUE(part<QwtSlider>()->hasFocus());
    EXPECT_NEAR(part<QwtSlider>()->value(), 7.5, 1e-9);
    press(Qt::Key_Tab);
    EXPECT_TRUE(part<QLineEdit>()->hasFocus());
    EXPECT_THAT(rows->writes, IsEmpty());
    press(Qt::Key_Tab);
    EXPECT_THAT(rows->writes, ElementsAre(FeatureValue(7.5)));
    EXPECT_FALSE(isOpen(0));
    EXPECT_TRUE(isOpen(1));
}

TEST_F(FeatureEditor, AnIncompleteTextIsNeverWritten) {
    edit(makeFeature("Ip", OrvFeatureDataInt, Int{0x0a000001}, "IPV4Address"));
    type("10.0.");
    press(Qt::Key_Return);
    EXPECT_TRUE(isOpen());
    emit delegate.onClose();
    EXPECT_FALSE(isOpen());
    EXPECT_THAT(rows->writes, IsEmpty());
}

TEST_F(FeatureEditor, ClosingTheDialogCommitsWhatWasTyped) {
    edit(makeFeature("User", OrvFeatureDataString, std::string("old")));
    type("new");
    delegate.commitAndCloseEditor();
    EXPECT_THAT(rows->writes, ElementsAre(FeatureValue(std::string("new"))));
    EXPECT_FALSE(isOpen());
}

TEST_F(FeatureEditor, NumbersHaveAPointAndNoGroupsInEveryLocale) {
    edit(makeRanged("Gain", 1234567.25, 0.0, 1e7, 0.0));
    EXPECT_EQ(textOnView(), QStringLiteral("1234567.25"));
    EXPECT_EQ(part<QLineEdit>()->text(), QStringLiteral("1234567.25"));
    edit(makeRanged<Int>("Width", 1000000, 0, 2000000, 1));
    EXPECT_EQ(textOnView(), QStringLiteral("1000000"));
}

TEST_F(FeatureEditor, WhatCannotBeEditedOrToldIsADebugMessage) {
    const CapturedLog log;
    qInstallMessageHandler(qtMessageHandler);
    const FeatureRows raw({makeFeature("Lut", OrvFeatureDataRaw, Int{0})});
    EXPECT_EQ(delegate.createEditor(&view, {}, raw.index(0, 1)), nullptr);
    DelegateWidget widget(makeFeature("User", OrvFeatureDataString, std::string()));
    FeatureRows target({makeFeature("Lut", OrvFeatureDataRaw, Int{0})});
    delegate.setModelData(&widget, &target, target.index(0, 1));
    widget.saveEditorData();
    QSpinBox stranger;
    QObject::connect(&stranger, &QSpinBox::editingFinished, &widget,
                     &DelegateWidget::saveEditorData);
    emit stranger.editingFinished();
    qInstallMessageHandler(nullptr);
    EXPECT_THAT(target.writes, IsEmpty());
    using testing::StartsWith;
    EXPECT_THAT(log.lines(), ElementsAre(StartsWith("Debug:Cannot create delegate widget for Lut"),
                                         StartsWith("Debug:Cannot set value for type [7]"),
                                         StartsWith("Debug:Cannot get sender widget."),
                                         StartsWith("Debug:Unhandled class: QSpinBox")));
}

} // namespace
