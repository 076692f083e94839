// SPDX-License-Identifier: BSD-3-Clause
#include "ui/BandwidthSliderWidget.h"

#include "tests/engine/CameraFixture.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>
#include <QSlider>
#include <QSpinBox>
#include <QStyleOptionSlider>
#include <QTest>
#include <QWheelEvent>
#include <gmock/gmock.h>

#include <limits>
#include <memory>
#include <string>
#include <variant>
#include <vector>

/// Outside of any namespace, as the macro demands.
static void initResources() {
    Q_INIT_RESOURCE(resources);
}

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string limit = "DeviceLinkThroughputLimit";
const std::string mode = "DeviceLinkThroughputLimitMode";
const std::string stream = "StreamBytesPerSecond";
const std::string constrain = "StreamFrameRateConstrain";

std::vector<std::string>& qtWarnings() {
    static std::vector<std::string> warnings;
    return warnings;
}

/// A camera whose limit can be stuck in being off, and be read-only.
struct LimitFeatures : FakeFeatures {
    bool setFeatureValue(const std::string& module, const std::string& feature,
                         const FeatureValue& value) override {
        if (std::holds_alternative<std::int64_t>(value))
            return FakeFeatures::setFeatureValue(module, feature, value);
        if (canBeSwitched)
            put(feature, value, module);
        return canBeSwitched;
    }
    FeatureInfo getFeatureInfo(const std::string& module,
                               const std::string& feature) const override {
        FeatureInfo info = FakeFeatures::getFeatureInfo(module, feature);
        info.writable = limitIsWritable;
        return info;
    }

    bool canBeSwitched = true;
    bool limitIsWritable = true;
};

class BandwidthSliderTest : public testing::Test {
protected:
    BandwidthSliderTest() {
        initResources();
        qtWarnings().clear();
        m_previous =
            qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& text) {
                qtWarnings().push_back(text.toStdString());
            });
    }
    ~BandwidthSliderTest() override { qInstallMessageHandler(m_previous); }

    /// A row with a range from 2 to 450 MB/s and 100 MB/s, in a tree that can be scrolled.
    void open() {
        m_features->putRange(limit, std::int64_t{100'000'000}, std::int64_t{1'500'000},
                             std::int64_t{450'000'000});
        m_widget->initialize();
        m_tree.setWidget(new QWidget);
        m_tree.widget()->setFixedSize(400, 2000);
        m_widget->setParent(m_tree.widget());
        m_widget->resize(310, 30);
        m_tree.resize(420, 200);
        m_tree.show();
        m_widget->show();
        QApplication::setActiveWindow(&m_tree);
    }
    QPoint handle() const {
        QStyleOptionSlider option;
        option.initFrom(m_slider);
        option.orientation = Qt::Horizontal;
        option.minimum = m_slider->minimum();
        option.maximum = m_slider->maximum();
        option.sliderPosition = option.sliderValue = m_slider->value();
        option.subControls = QStyle::SC_All;
        return m_slider->style()
            ->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, m_slider)
            .center();
    }
    void roll(QWidget* target, int delta) {
        const QPointF centre = target->rect().center();
        QWheelEvent event(centre, target->mapToGlobal(centre.toPoint()), {}, {0, delta},
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        // Only events from the window system go on to the parents.
        QSpontaneKeyEvent::setSpontaneous(&event);
        qApp->notify(target, &event);
    }
    QPoint inWindow(const QPoint& onSlider) const { return m_slider->mapTo(&m_tree, onSlider); }
    void press(const QPoint& at) {
        QTest::mousePress(m_tree.windowHandle(), Qt::LeftButton, {}, inWindow(at));
    }
    void move(const QPoint& to) { QTest::mouseMove(m_tree.windowHandle(), inWindow(to)); }
    void release(const QPoint& at) {
        QTest::mouseRelease(m_tree.windowHandle(), Qt::LeftButton, {}, inWindow(at));
    }
    /// What the signal told, in order.
    std::vector<int> told() const {
        std::vector<int> values;
        for (const auto& arguments : m_changed)
            values.push_back(arguments[0].toInt());
        return values;
    }

    CapturedLog m_log;
    std::shared_ptr<LimitFeatures> m_features = std::make_shared<LimitFeatures>();
    QScrollArea m_tree;
    std::unique_ptr<BandwidthSliderWidget> m_widget =
        std::make_unique<BandwidthSliderWidget>(m_features);
    QSlider* m_slider = m_widget->findChild<QSlider*>(QStringLiteral("sliderBandwidth"));
    QSpinBox* m_spin = m_widget->findChild<QSpinBox*>(QStringLiteral("spinBandwidth"));
    QPushButton* m_lock = m_widget->findChild<QPushButton*>(QStringLiteral("buttonLock"));
    QLabel* m_warning = m_widget->findChild<QLabel*>(QStringLiteral("labelWarning"));
    QSignalSpy m_changed{m_widget.get(), &BandwidthSliderWidget::valueChanged};
    QSignalSpy m_locked{m_widget.get(), &BandwidthSliderWidget::lockChanged};

private:
    QtMessageHandler m_previous = nullptr;
};

TEST_F(BandwidthSliderTest, DraggingWritesOnceOnRelease) {
    open();
    const QPoint start = handle();
    press(start);
    for (int step = 1; step <= 5; ++step)
        move(start + QPoint(5 * step, 0));
    const int dragged = m_slider->value();
    EXPECT_GT(dragged, 150);
    EXPECT_EQ(m_spin->value(), dragged);
    EXPECT_THAT(m_features->written, IsEmpty());
    release(start + QPoint(25, 0));
    EXPECT_THAT(m_features->written, ElementsAre(dragged * std::int64_t{1'000'000}));
    EXPECT_THAT(told(), ElementsAre(dragged));

    const QPoint there = handle();
    press(there);
    move(there + QPoint(20, 0));
    EXPECT_GT(m_slider->value(), dragged);
    move(there);
    release(there);
    EXPECT_EQ(m_slider->value(), dragged);
    EXPECT_EQ(m_features->written.size(), 1U) << "the handle came back";
}

TEST_F(BandwidthSliderTest, EachValueThatIsSettledOnIsWrittenOnce) {
    open();
    QTest::keyClick(m_slider, Qt::Key_Right);
    EXPECT_EQ(m_spin->value(), 101);
    QTest::mouseClick(m_slider, Qt::LeftButton, {}, QPoint(m_slider->width() - 2, 11));
    const int paged = m_slider->value();
    EXPECT_GT(paged, 101);
    QTest::keyClick(m_spin, Qt::Key_Down);
    EXPECT_EQ(m_slider->value(), paged - 1);
    m_spin->setFocus();
    m_spin->selectAll();
    QTest::keyClicks(m_spin, QStringLiteral("250"));
    EXPECT_EQ(told().size(), 3U) << "while typing";
    QTest::keyClick(m_spin, Qt::Key_Return);
    m_spin->selectAll();
    QTest::keyClicks(m_spin, QStringLiteral("30"));
    m_slider->setFocus();
    EXPECT_THAT(told(), ElementsAre(101, paged, paged - 1, 250, 30));
    EXPECT_EQ(m_features->written.size(), 5U);
    EXPECT_EQ(m_slider->value(), 30);
}

TEST_F(BandwidthSliderTest, WheelChangesOnlyWhatHasTheFocus) {
    open();
    for (QWidget* control : {static_cast<QWidget*>(m_slider), static_cast<QWidget*>(m_spin)}) {
        m_lock->setFocus();
        m_tree.verticalScrollBar()->setValue(0);
        const int before = m_widget->value();
        const auto written = m_features->written.size();
        roll(control, -120);
        EXPECT_EQ(m_widget->value(), before);
        EXPECT_GT(m_tree.verticalScrollBar()->value(), 0);
        m_tree.verticalScrollBar()->setValue(0);
        control->setFocus();
        roll(control, -120);
        EXPECT_LT(m_widget->value(), before);
        EXPECT_EQ(m_tree.verticalScrollBar()->value(), 0);
        EXPECT_EQ(m_features->written.size(), written + 1);
    }
}

TEST_F(BandwidthSliderTest, LockFollowsMouseAndKeyboard) {
    open();
    QTest::mouseClick(m_lock, Qt::LeftButton);
    QTest::keyClick(m_lock, Qt::Key_Space);
    m_widget->changeLock(true);
    m_widget->changeLock(true);
    EXPECT_THAT(m_locked, ElementsAre(QVariantList{true}, QVariantList{false}, QVariantList{true}));
    EXPECT_THAT(m_features->written, IsEmpty());
}

TEST_F(BandwidthSliderTest, StatusColoursTheHandleUntilTheValueChanges) {
    open();
    const QString plain = m_slider->styleSheet();
    const QString usual = QStringLiteral("Min to max bandwidth of the camera");
    const QString amber = QStringLiteral("#fcc234");
    const QString green = QStringLiteral("#009640");
    const struct {
        int status;
        QString color;
    } cases[] = {{1, amber}, {3, green}, {2, amber}, {4, green}, {5, amber}, {0, {}}};
    for (const auto& [status, color] : cases) {
        m_widget->updateColor(static_cast<AutosetStatus>(status));
        const QString expected =
            QStringLiteral("QSlider::handle { background-color: %1; }").arg(color);
        EXPECT_TRUE(color.isEmpty() ? m_slider->styleSheet() == plain
                                    : m_slider->styleSheet().endsWith(expected))
            << status;
        EXPECT_EQ(m_warning->isVisible(), color == amber) << status;
        EXPECT_EQ(m_widget->toolTip(),
                  color == amber ? QStringLiteral("Not sufficient bandwidth allocated.") : usual)
            << status;
    }
    m_widget->updateColor(AutosetStatus::NotSet);
    EXPECT_EQ(m_widget->getValue(), 100);
    EXPECT_TRUE(m_warning->isVisible()) << "nothing changed";
    m_features->put(limit, std::int64_t{200'000'000});
    EXPECT_EQ(m_widget->getValue(), 200);
    EXPECT_EQ(m_slider->styleSheet(), plain);
    m_widget->updateColor(AutosetStatus::NotSet);
    QTest::keyClick(m_slider, Qt::Key_Left);
    EXPECT_FALSE(m_warning->isVisible());
    EXPECT_EQ(m_widget->toolTip(), usual);
    EXPECT_THAT(told(), ElementsAre(199));
}

TEST_F(BandwidthSliderTest, RangeIsTheWholeMegabytesThatTheCameraTakes) {
    const auto huge = std::numeric_limits<std::int64_t>::max();
    const int most = std::numeric_limits<int>::max();
    const struct {
        FeatureValue lowest, highest, bandwidth;
        int minimum, maximum, value;
    } cases[] = {
        {std::int64_t{1'500'000}, std::int64_t{450'000'000}, std::int64_t{1}, 2, 450, 2},
        {std::int64_t{1'400'000}, std::int64_t{449'600'000}, std::int64_t{99'500'000}, 2, 449, 100},
        {std::int64_t{2'000'000}, std::int64_t{449'400'000}, huge, 2, 449, 449},
        {std::int64_t{}, std::int64_t{}, std::int64_t{}, 0, 0, 0},
        {std::int64_t{1'100'000}, std::int64_t{1'900'000}, std::int64_t{1'500'000}, 2, 2, 2},
        {std::int64_t{-1}, huge, huge, 0, most, most},
        {1.5, std::string("x"), 7e6, 0, 0, 0},
    };
    for (const auto& row : cases) {
        const auto features = std::make_shared<LimitFeatures>();
        features->putRange(limit, row.bandwidth, row.lowest, row.highest);
        BandwidthSliderWidget widget(features);
        widget.initialize();
        const auto* slider = widget.findChild<QSlider*>();
        const auto* spin = widget.findChild<QSpinBox*>();
        EXPECT_THAT((std::vector<int>{slider->minimum(), slider->maximum(), slider->value()}),
                    ElementsAre(row.minimum, row.maximum, row.value));
        EXPECT_THAT((std::vector<int>{spin->minimum(), spin->maximum(), widget.value()}),
                    ElementsAre(row.minimum, row.maximum, row.value));
        EXPECT_EQ(features->descriptionsRead, 1);
    }
}

TEST_F(BandwidthSliderTest, ShowsWhatIsInEffectWhenTheCameraRefuses) {
    open();
    m_features->writable = false;
    m_widget->setValue(300);
    const std::string message =
        "Warning:Fake: SetValue for '" + limit + "' was not successfull, new value: ";
    EXPECT_TRUE(m_log.has(message + "100000000"));
    EXPECT_EQ(m_slider->value(), 100);
    m_features->writable = true;
    m_features->onWrite = [this](std::int64_t) {
        m_features->put(limit, std::int64_t{150'000'000});
    };
    m_widget->setValue(300);
    EXPECT_TRUE(m_log.has(message + "150000000"));
    EXPECT_EQ(m_slider->value(), 150);
    EXPECT_THAT(told(), ElementsAre(100, 150));
}

TEST_F(BandwidthSliderTest, CameraWithoutTheFeatureIsLockedOut) {
    EXPECT_EQ(m_spin->text(), QStringLiteral("\u2013"));
    m_widget->initialize();
    EXPECT_THAT(qtWarnings(),
                ElementsAre("Fake: Cannot find the feature for bandwidth control: "
                            "DeviceLinkThroughputLimit, StreamBytesPerSecond are not available"));
    EXPECT_THAT(m_locked, ElementsAre(QVariantList{true}));
    for (const QWidget* control : {static_cast<QWidget*>(m_slider), static_cast<QWidget*>(m_spin),
                                   static_cast<QWidget*>(m_lock)})
        EXPECT_FALSE(control->isEnabled());
    m_widget->setValue(5);
    EXPECT_EQ(m_widget->getValue(), 0);
    EXPECT_EQ(m_spin->text(), QStringLiteral("\u2013"));
    EXPECT_THAT(m_features->written, IsEmpty());
}

TEST_F(BandwidthSliderTest, SwitchesTheLimitOnAndSaysWhenItStaysOff) {
    const FeatureValue off = std::string("Off");
    const std::string cannot = "Cannot set feature '";
    const std::string deactivated =
        "Warning:Fake: Feature '" + mode + "' set to Off, which deactivates the feature '" + limit;
    const struct {
        std::string feature, switchName;
        FeatureValue before;
        bool canBeSwitched, isWritable;
        std::vector<std::string> log, warnings;
    } cases[] = {
        {limit, mode, off, true, true, {"Info:Fake: feature '" + mode + "' set to 'On'."}, {}},
        {stream,
         constrain,
         false,
         true,
         true,
         {"Info:Fake: feature '" + constrain + "' set to 'true'."},
         {}},
        {limit, mode, off, false, false, {deactivated + "'."}, {cannot + mode + "' to 'On'."}},
        {stream,
         constrain,
         false,
         false,
         true,
         {"Warning:Please enable the Camera-feature '" + constrain +
          "' to be able to change the bandwidth settings."},
         {cannot + constrain + "' to 'On'."}},
        {limit, mode, std::string("On"), false, true, {}, {cannot + mode + "' to 'On'."}},
        {limit, "Other", off, true, true, {}, {}},
    };
    for (const auto& row : cases) {
        const auto features = std::make_shared<LimitFeatures>();
        m_log.clear();
        qtWarnings().clear();
        features->put(row.feature, std::int64_t{});
        features->put(row.switchName, row.before);
        features->canBeSwitched = row.canBeSwitched;
        features->limitIsWritable = row.isWritable;
        BandwidthSliderWidget(features).initialize();
        EXPECT_EQ(m_log.lines(), row.log);
        EXPECT_EQ(qtWarnings(), row.warnings);
    }
}

} // namespace
