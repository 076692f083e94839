// SPDX-License-Identifier: BSD-3-Clause
#include "ui/BandwidthSliderWidget.h"

#include "tests/support/CameraFixture.h"

#include <QTest>
#include <QtWidgets>
#include <gmock/gmock.h>

#include <iostream>
#include <limits>

namespace {

using namespace testing;

const std::string limit = "DeviceLinkThroughputLimit";
const std::string stream = "StreamBytesPerSecond";
constexpr std::int64_t kilobyte = 1000;
constexpr std::int64_t megabyte = 1000 * kilobyte;
const QString dash = QStringLiteral("\u2013");

void logQtMessage(QtMsgType, const QMessageLogContext&, const QString& text) {
    std::cout << "Qt:" << text.toStdString() << std::endl;
}

class BandwidthSliderTest : public testing::Test {
protected:
    BandwidthSliderTest() : m_previous(qInstallMessageHandler(logQtMessage)) {
        QObject::connect(m_row.get(), &BandwidthSliderWidget::valueChanged,
                         [this](int value) { m_told.push_back(value); });
        QObject::connect(m_row.get(), &BandwidthSliderWidget::lockChanged,
                         [this](bool locked) { m_locks.push_back(locked); });
        m_log.clear();
    }
    ~BandwidthSliderTest() override { qInstallMessageHandler(m_previous); }

    /// A row with a range from 2 to 450 MB/s and 100 MB/s, in a view that can be scrolled.
    void open() {
        m_features->putLimit(100 * megabyte, megabyte * 3 / 2, 450 * megabyte);
        m_row->initialize();
        m_view.setWidget(new QWidget);
        m_view.widget()->setFixedSize(400, 2000);
        m_row->setParent(m_view.widget());
        m_view.resize(420, 200);
        m_view.show();
        m_row->show();
        QApplication::setActiveWindow(&m_view);
    }
    static void roll(QWidget* target) {
        const QPoint centre = target->rect().center();
        QWheelEvent event(centre, target->mapToGlobal(centre), {}, {0, -120}, Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        // Only events from the window system go on to the parents.
        QSpontaneKeyEvent::setSpontaneous(&event);
        qApp->notify(target, &event);
    }
    void type(const char* text) {
        m_spin->setFocus();
        m_spin->selectAll();
        QTest::keyClicks(m_spin, QLatin1String(text));
    }

    CapturedLog m_log;
    std::shared_ptr<FakeFeatureController> m_features = std::make_shared<FakeFeatureController>();
    QScrollArea m_view;
    std::unique_ptr<BandwidthSliderWidget> m_row =
        std::make_unique<BandwidthSliderWidget>(m_features);
    QSlider* m_slider = m_row->findChild<QSlider*>();
    QSpinBox* m_spin = m_row->findChild<QSpinBox*>();
    QPushButton* m_lock = m_row->findChild<QPushButton*>();
    std::vector<int> m_told;
    std::vector<bool> m_locks;

private:
    QtMessageHandler m_previous;
};

TEST_F(BandwidthSliderTest, draggingWritesOnceOnRelease) {
    open();
    m_slider->setSliderDown(true);
    for (const int value : {105, 160, 250}) {
        m_slider->setSliderPosition(value);
        EXPECT_EQ(m_spin->value(), value);
    }
    EXPECT_THAT(m_features->written, IsEmpty()) << "while dragging";
    m_slider->setSliderDown(false);
    EXPECT_THAT(m_features->writtenIntegers(), ElementsAre(250 * megabyte));
    m_slider->setSliderDown(true);
    m_slider->setSliderPosition(300);
    m_slider->setSliderPosition(250);
    m_slider->setSliderDown(false);
    EXPECT_THAT(m_told, ElementsAre(250)) << "the handle came back";
}

TEST_F(BandwidthSliderTest, eachValueThatIsSettledOnIsWrittenOnce) {
    open();
    QTest::keyClick(m_slider, Qt::Key_Right);
    EXPECT_EQ(m_spin->value(), 101);
    QTest::mouseClick(m_slider, Qt::LeftButton, {}, m_slider->rect().center());
    const int paged = m_slider->value();
    QTest::keyClick(m_spin, Qt::Key_Down);
    EXPECT_EQ(m_slider->value(), paged - 1);
    type("250");
    EXPECT_EQ(m_told.size(), 3U) << "while typing";
    QTest::keyClick(m_spin, Qt::Key_Return);
    type("77");
    QTest::keyClick(m_spin, Qt::Key_Escape);
    EXPECT_EQ(m_spin->text(), QStringLiteral("250"));
    type("30");
    m_slider->setFocus();
    EXPECT_EQ(m_slider->value(), 30);
    type("78");
    m_view.close();
    EXPECT_THAT(m_told, ElementsAre(101, paged, paged - 1, 250, 30));
    EXPECT_EQ(m_features->written.size(), 5U);
}

TEST_F(BandwidthSliderTest, wheelChangesOnlyWhatHasTheFocus) {
    open();
    for (QWidget* control : {static_cast<QWidget*>(m_slider), static_cast<QWidget*>(m_spin)}) {
        for (QWidget* focused : {static_cast<QWidget*>(m_lock), control}) {
            const int before = m_row->value();
            focused->setFocus();
            m_view.verticalScrollBar()->setValue(0);
            roll(control);
            EXPECT_EQ(m_row->value() < before, focused == control);
            EXPECT_EQ(m_view.verticalScrollBar()->value() > 0, focused != control);
        }
    }
    EXPECT_EQ(m_features->written.size(), 2U);
}

TEST_F(BandwidthSliderTest, statusColoursTheHandleUntilTheValueChanges) {
    open();
    const QString plain = m_slider->styleSheet();
    const QString amber = QStringLiteral("#fcc234");
    const QString green = QStringLiteral("#009640");
    const auto expectColor = [&](const QString& color) {
        const QString rule =
            QStringLiteral("\nQSlider::handle { background-color: %1; }").arg(color);
        EXPECT_EQ(m_slider->styleSheet(), color.isEmpty() ? plain : plain + rule);
        EXPECT_EQ(m_row->findChild<QLabel*>()->isVisible(), color == amber);
        EXPECT_EQ(m_row->toolTip().toStdString(), color == amber
                                                      ? "Not sufficient bandwidth allocated."
                                                      : "Min to max bandwidth of the camera");
    };
    int status = 0;
    for (const QString& color : {QString(), amber, amber, green, green, amber}) {
        SCOPED_TRACE(status);
        m_row->updateColor(static_cast<AutosetStatus>(status++));
        expectColor(color);
    }
    m_row->updateColor(AutosetStatus::NotSet);
    EXPECT_EQ(m_row->getValue(), 100);
    expectColor(amber);
    m_features->put(limit, 200 * megabyte);
    EXPECT_EQ(m_row->getValue(), 200);
    expectColor({});
    m_row->updateColor(AutosetStatus::NotSet);
    QTest::keyClick(m_slider, Qt::Key_Left);
    expectColor({});
    EXPECT_THAT(m_told, ElementsAre(199)) << "the reloaded value is the camera's own";
}

TEST_F(BandwidthSliderTest, rangeIsTheWholeMegabytesThatTheCameraTakes) {
    const auto huge = std::numeric_limits<std::int64_t>::max();
    const int most = std::numeric_limits<int>::max();
    using Figures = std::vector<int>;
    const struct {
        FeatureValue lowest, highest, bandwidth;
        /// Minimum, maximum and value in MB/s.
        Figures shown;
    } cases[] = {
        {1500 * kilobyte, 450 * megabyte, 1 * kilobyte, {2, 450, 2}},
        {1400 * kilobyte, 449'600 * kilobyte, 99'500 * kilobyte, {2, 449, 100}},
        {2 * megabyte, 449'400 * kilobyte, huge, {2, 449, 449}},
        {1100 * kilobyte, 1900 * kilobyte, 3 * megabyte, {2, 2, 2}},
        {std::int64_t{}, std::int64_t{}, std::int64_t{}, {0, 0, 0}},
        {-huge, huge, huge, {0, most, most}},
        {1.5, std::string("x"), 7e6, {0, 0, 0}},
    };
    for (const auto& [lowest, highest, bandwidth, shown] : cases) {
        m_features->putLimit(bandwidth, lowest, highest);
        m_features->reads.clear();
        m_row->initialize();
        EXPECT_EQ((Figures{m_slider->minimum(), m_slider->maximum(), m_slider->value()}), shown);
        EXPECT_EQ((Figures{m_spin->minimum(), m_spin->maximum(), m_spin->value()}), shown);
        EXPECT_EQ(m_features->reads[limit], 1);
    }
}

TEST_F(BandwidthSliderTest, showsWhatIsInEffectWhenTheCameraRefuses) {
    open();
    const auto cameraTakes = [this](std::int64_t bandwidth) {
        m_features->onWrite = [=] {
            m_features->put(limit, bandwidth);
        };
    };
    m_features->refuses = true;
    m_row->setValue(300);
    EXPECT_EQ(m_slider->value(), 100);
    m_features->refuses = false;
    cameraTakes(150 * megabyte);
    m_row->setValue(300);
    // The limit cannot be read back: the written value is shown.
    cameraTakes(0);
    m_row->setValue(200);
    EXPECT_EQ(m_spin->text(), QStringLiteral("200"));
    m_row->getValue();
    EXPECT_EQ(m_spin->text(), dash) << "the limit cannot be read";
    EXPECT_THAT(m_told, ElementsAre(100, 150, 200));
    const std::string line =
        "Warning:Cam: SetValue for '" + limit + "' was not successfull, new value: ";
    EXPECT_THAT(m_log.lines(), ElementsAre(line + "100000000", line + "150000000"));
}

TEST_F(BandwidthSliderTest, movesByTheStepsOfTheCamera) {
    m_features->putLimit(100 * megabyte, 4 * megabyte, 450 * megabyte, 4 * megabyte);
    m_features->accepts = [](std::int64_t value) {
        return value % (4 * megabyte) == 0;
    };
    m_row->initialize();
    QTest::keyClick(m_spin, Qt::Key_Up);
    QTest::keyClick(m_slider, Qt::Key_Right);
    QTest::keyClick(m_slider, Qt::Key_Left);
    m_row->setValue(450);
    EXPECT_EQ(m_slider->value(), 448);
    // Steps that are counted from 0, not from the minimum.
    m_features->putLimit(100 * megabyte, 3 * megabyte, 450 * megabyte, 4 * megabyte);
    m_row->initialize();
    m_row->setValue(120);
    EXPECT_THAT(m_told, ElementsAre(104, 108, 104, 448, 120));
    EXPECT_EQ(m_log.text(), "");
}

TEST_F(BandwidthSliderTest, cameraWithoutTheFeatureIsLockedOut) {
    m_row->initialize();
    EXPECT_THAT(m_log.lines(),
                ElementsAre("Qt:Cam: Cannot find the feature for bandwidth control: "
                            "DeviceLinkThroughputLimit, StreamBytesPerSecond are not available"));
    EXPECT_THAT(m_locks, ElementsAre(true));
    EXPECT_FALSE(m_slider->isEnabled() || m_spin->isEnabled() || m_lock->isEnabled());
    m_row->setValue(5);
    EXPECT_EQ(m_row->getValue(), 0);
    EXPECT_EQ(m_spin->text(), dash);
    EXPECT_THAT(m_features->written, IsEmpty());
}

TEST_F(BandwidthSliderTest, switchesTheLimitOnAndSaysWhenItStaysOff) {
    const std::string mode = limit + "Mode";
    const std::string constrain = "StreamFrameRateConstrain";
    const FeatureValue off = std::string("Off");
    const std::string cannotSet = "Qt:Cannot set feature '" + mode + "' to 'On'.\n";
    const std::string warned = "Warning:Cam: Feature '" + mode +
                               "' set to Off, which deactivates the feature '" + limit + "'.\n";
    const struct {
        std::string feature, enabling;
        FeatureValue value;
        bool canBeSwitched;
        std::string log;
    } cases[] = {
        {limit, mode, off, true, "Info:Cam: feature '" + mode + "' set to 'On'.\n"},
        {stream, constrain, off, true, "Info:Cam: feature '" + constrain + "' set to 'true'.\n"},
        {limit, mode, off, false, cannotSet + warned},
        {limit, mode, std::string("Auto"), false, cannotSet + warned},
        {limit, mode, std::string("On"), false, cannotSet},
        {limit, mode, std::int64_t{}, false, cannotSet},
        {stream, constrain, off, false,
         "Qt:Cannot set feature '" + constrain +
             "' to 'On'.\nWarning:Please enable the Camera-feature '" + constrain +
             "' to be able to change the bandwidth settings.\n"},
    };
    for (const auto& row : cases) {
        const auto features = std::make_shared<FakeFeatureController>();
        m_log.clear();
        features->put(row.feature, std::int64_t{}).writable = row.feature == stream;
        features->put(row.enabling, row.value);
        features->refuses = !row.canBeSwitched;
        BandwidthSliderWidget(features).initialize();
        EXPECT_EQ(m_log.text(), row.log);
    }
}

} // namespace
