// SPDX-License-Identifier: BSD-3-Clause
#include "ui/SpanletDialog.h"
#include "logging/Log.h"
#include "logging/QtMessageHandler.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/OwnSettings.h"
#include "tests/support/TextTree.h"
#include "tests/ui/FakeCameras.h"
#include "tests/ui/Images.h"
#include "ui/BandwidthSliderWidget.h"
#include "ui/InterfaceSpeedWidget.h"
#include "ui/RowHeights.h"
#include "ui/SettingsDialog.h"
#include "ui/features/FeatureTreeDialog.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QProgressBar>
#include <QPushButton>
#include <QSettings>
#include <QSignalSpy>
#include <QSlider>
#include <QSpinBox>
#include <QTableWidget>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QTreeView>
#include <gtest/gtest.h>

#include <functional>
#include <tuple>
#include <vector>

namespace {

constexpr auto gigE = OrvTransportLayerTypeGEV;
constexpr auto usb = OrvTransportLayerTypeU3V;

/// Two GigE interfaces and a USB one; the controller's list has the USB one first.
class SpanletDialogTest : public testing::Test {
protected:
    SpanletDialogTest() {
        initResources();
        set("Support Dialog/active", false);
        m_first->bandwidth = 112'400'000;
        m_closed->opened = false;
        m_closed->warning = "Camera cannot be opened";
        m_dialog = std::make_unique<SpanletDialog>(unusedOrvSystem(), false, nullptr,
                                                   makeController(m_system));
    }

    /// Sets a value in the user's store.
    static void set(const char* key, const QVariant& value) {
        QSettings(QStringLiteral("Meridane"), QStringLiteral("Spanlet"))
            .setValue(QLatin1String(key), value);
    }
    static void storeMargins() {
        set("Safety Margins/interface_GigE", 20);
        set("Safety Margins/camera_GigE", 10);
        set("Safety Margins/interface_USB", 40);
        set("Safety Margins/camera_USB", 25);
    }
    template <class Widget> Widget& widget(const char* name) const {
        auto* found = m_dialog->findChild<Widget*>(QString::fromLatin1(name));
        return found != nullptr ? *found : throw std::runtime_error(name);
    }
    QTreeView& tree() const { return widget<QTreeView>("treeViewCameras"); }
    QComboBox& combo() const { return widget<QComboBox>("comboInterface"); }
    QSpinBox& spin() const { return widget<QSpinBox>("spinBenchmark"); }
    QPushButton& button(const char* name) const { return widget<QPushButton>(name); }
    QList<QAction*> autoSetActions() const { return button("buttonAutoSet").menu()->actions(); }
    static std::string textOf(const QModelIndex& index) {
        return index.data().toString().toStdString();
    }
    QTableWidget& log() const { return widget<QTableWidget>("tableLog"); }

    QModelIndex interfaceRow(int type, int row) const {
        return tree().model()->index(row, 0, tree().model()->index(type, 0));
    }
    QModelIndex camera(int type, int row, int cameraRow, int column = 0) const {
        return tree().model()->index(cameraRow, column, interfaceRow(type, row));
    }
    QWidget* rowWidget(const QModelIndex& row) const {
        return tree().indexWidget(row.siblingAtColumn(1));
    }
    template <class Widget> Widget& part(const QModelIndex& row, const char* name) const {
        auto* found = rowWidget(row)->findChild<Widget*>(QString::fromLatin1(name));
        return found != nullptr ? *found : throw std::runtime_error(name);
    }
    QSpinBox& bandwidth(const QModelIndex& row) const {
        return part<QSpinBox>(row, "spinBandwidth");
    }
    std::string usage(int type, int row) const {
        return part<QLabel>(interfaceRow(type, row), "labelSpeed").text().toStdString();
    }
    QString usageToolTip(int type, int row) const {
        return part<QProgressBar>(interfaceRow(type, row), "progressBarUsage").toolTip();
    }
    QString sliderStyle(const QModelIndex& row) const {
        return part<QSlider>(row, "sliderBandwidth").styleSheet();
    }
    void startBenchmark(int seconds) {
        spin().setValue(seconds);
        button("buttonBenchmark").click();
    }
    /// Lets half a second of the benchmark pass, without waiting for it.
    void tick() { m_dialog->onTimerTimeout(); }

    const OwnSettings m_store;
    CapturedLog m_log;
    std::shared_ptr<FakeCamera> m_first = makeFake("eth0", gigE, "A");
    std::shared_ptr<FakeCamera> m_closed = makeFake("eth0", gigE, "B");
    std::shared_ptr<FakeCamera> m_second = makeFake("eth1", gigE, "C");
    std::shared_ptr<FakeCamera> m_third = makeFake("USB bus 1", usb, "D");
    std::shared_ptr<FakeSystem> m_system =
        std::make_shared<FakeSystem>(FakeSystem::FakeList{m_first, m_closed, m_second, m_third});
    std::unique_ptr<SpanletDialog> m_dialog;
};

TEST_F(SpanletDialogTest, comesUpWithTheFirstInterfaceSelected) {
    EXPECT_FALSE(m_dialog->windowFlags().testFlag(Qt::WindowContextHelpButtonHint));
    EXPECT_EQ(m_dialog->size(), QSize(1192, 680));
    EXPECT_EQ(m_dialog->minimumSize(), QSize(1170, 600));
    EXPECT_EQ(textTree(*tree().model()), "GigE\n"
                                         "  eth0 | 125\n"
                                         "    A-S (1)\n"
                                         "    B-S (1)\n"
                                         "  eth1 | 125\n"
                                         "    C-S (1)\n"
                                         "USB\n"
                                         "  USB bus 1 | 625\n"
                                         "    D-S (1)\n");
    EXPECT_EQ(combo().count(), 3);
    EXPECT_EQ(combo().currentText(), QStringLiteral("eth0"));
    EXPECT_EQ(combo().currentData(), 1);
    EXPECT_EQ(combo().itemData(2), 0);
    EXPECT_EQ(tree().currentIndex(), interfaceRow(0, 0));
    EXPECT_TRUE(tree().isExpanded(interfaceRow(1, 0)));
    EXPECT_TRUE(widget<QGroupBox>("grpStatistics").isEnabled());
    EXPECT_TRUE(button("buttonRefresh").isEnabled());
    EXPECT_EQ(m_dialog->cursor().shape(), Qt::ArrowCursor);
    for (const auto* found : m_dialog->findChildren<QPushButton*>()) {
        EXPECT_FALSE(found->autoDefault())
            << found->objectName().toStdString() << " would be pressed by Return";
        EXPECT_FALSE(found->text().isEmpty() && found->accessibleName().isEmpty());
    }
    const char* const toolTips[] = {
        "Click the Refresh button to update the camera tree",
        "Interface throughput limit\nCurrent bandwidth assigned to the camera",
        "Statistics values, collected during the last acquisition"};
    for (int column = 0; column < 8; ++column)
        EXPECT_EQ(tree().model()->headerData(column, Qt::Horizontal, Qt::ToolTipRole),
                  QLatin1String(toolTips[qMin(column, 2)]));
}

TEST_F(SpanletDialogTest, offersAutoSetWhereItCanBeDone) {
    const QList<QAction*> actions = autoSetActions();
    ASSERT_EQ(actions.size(), 2);
    EXPECT_EQ(actions[0]->text(), QStringLiteral("Auto Set Interface"));
    EXPECT_EQ(actions[1]->text(), QStringLiteral("Auto Set Camera"));
    m_second->locked = true;
    const std::vector<std::tuple<QModelIndex, bool, bool>> cases = {
        {interfaceRow(0, 0), true, false}, {camera(0, 0, 0), true, true},
        {camera(0, 1, 0), true, false},    {interfaceRow(1, 0), true, false},
        {camera(1, 0, 0), true, true},     {tree().model()->index(0, 0), true, false}};
    for (const auto& [index, isInterfaceOffered, isCameraOffered] : cases) {
        tree().setCurrentIndex(index);
        EXPECT_EQ(actions[0]->isEnabled(), isInterfaceOffered) << textOf(index);
        EXPECT_EQ(actions[1]->isEnabled(), isCameraOffered) << textOf(index);
    }
    m_first->opened = false;
    tree().setCurrentIndex(camera(0, 0, 0));
    EXPECT_FALSE(actions[1]->isEnabled()) << "it takes no part";
    combo().setCurrentIndex(0);
    m_first->locked = m_closed->locked = true;
    combo().setCurrentIndex(1);
    EXPECT_TRUE(actions[0]->isEnabled());
    m_dialog->onSelectInterface(interfaceRow(0, 1));
    EXPECT_FALSE(actions[0]->isEnabled()) << "the only camera is locked";
}

TEST_F(SpanletDialogTest, setsInterfacesWithTheStoredMargins) {
    storeMargins();
    m_first->need = m_third->need = 800'000'000;
    QSignalSpy finished(m_dialog.get(), &SpanletDialog::autoSetInterfaceFinished);
    autoSetActions()[0]->trigger();
    EXPECT_EQ(finished.count(), 1);
    EXPECT_EQ(m_first->adjustments, 0);
    EXPECT_DOUBLE_EQ(m_first->margin, 0.1);
    EXPECT_EQ(m_first->bandwidth, 100'000'000);
    EXPECT_EQ(m_first->requested, 880'000'000U);
    EXPECT_EQ(m_second->requested, 0U) << "it streams through another interface";
    EXPECT_EQ(bandwidth(camera(0, 0, 0)).value(), 100);
    EXPECT_EQ(usage(0, 0), "100 / 125");
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);

    m_dialog->onAutoAdjustPacketsize(true);
    combo().setCurrentIndex(2);
    EXPECT_EQ(tree().currentIndex(), interfaceRow(1, 0));
    autoSetActions()[0]->trigger();
    EXPECT_EQ(m_third->adjustments, 1);
    EXPECT_DOUBLE_EQ(m_third->margin, 0.25);
    EXPECT_EQ(m_third->bandwidth, 375'000'000);
    // A margin that is out of range counts as the nearest one in range.
    set("Safety Margins/interface_USB", 51);
    autoSetActions()[0]->trigger();
    EXPECT_EQ(m_third->bandwidth, 312'500'000);
}

TEST_F(SpanletDialogTest, setsTheCurrentCameraToWhatItNeeds) {
    storeMargins();
    m_first->need = m_third->need = 100'000'001;
    QSignalSpy finished(m_dialog.get(), &SpanletDialog::autoSetCameraFinished);
    for (const auto& [row, fake, margin, megabytes] :
         {std::tuple(camera(1, 0, 0), m_third, 0.25, 125), {camera(0, 0, 0), m_first, 0.1, 110}}) {
        tree().setCurrentIndex(row);
        autoSetActions()[1]->trigger();
        ASSERT_FALSE(finished.isEmpty());
        EXPECT_EQ(finished.last()[0].toModelIndex(), row);
        EXPECT_DOUBLE_EQ(fake->margin, margin);
        EXPECT_EQ(fake->bandwidth, megabytes * 1'000'000 + 1);
        EXPECT_EQ(fake->requested, 100'000'001U);
        EXPECT_EQ(bandwidth(row).value(), megabytes);
    }
    EXPECT_EQ(usage(1, 0), "125 / 625");
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

TEST_F(SpanletDialogTest, setsNoInterfaceOfAnUnknownType) {
    m_system->setCameras({makeFake("mix", OrvTransportLayerTypeMixed, "M")});
    button("buttonRefresh").click();
    EXPECT_FALSE(autoSetActions()[0]->isEnabled()) << "its bandwidth is not known";
    QSignalSpy finished(m_dialog.get(), &SpanletDialog::autoSetInterfaceFinished);
    m_dialog->onAutoSetButtonClicked();
    EXPECT_TRUE(finished.isEmpty());
    EXPECT_EQ(log().item(0, 2)->text(),
              QStringLiteral("Error:Autoset not supported for interface: mix"));
}

TEST_F(SpanletDialogTest, takesThePacketSizeFlagFromTheSettings) {
    m_dialog->show();
    for (const bool closesSettingsFirst : {true, false}) {
        button("buttonSettings").click();
        auto* settings = m_dialog->findChild<SettingsDialog*>();
        ASSERT_NE(settings, nullptr);
        EXPECT_TRUE(settings->isVisible());
        auto* box = settings->findChild<QCheckBox*>(QStringLiteral("autoAdjustCheckBox"));
        EXPECT_EQ(box->isChecked(), !closesSettingsFirst) << "as the user left it";
        box->click();
        if (closesSettingsFirst) {
            settings->reject();
            EXPECT_TRUE(QTest::qWaitFor(
                [this] { return m_dialog->findChild<SettingsDialog*>() == nullptr; }));
        }
    }
    m_dialog->close();
    EXPECT_EQ(m_dialog->findChild<SettingsDialog*>(), nullptr);
    EXPECT_EQ(m_dialog->result(), 0);
}

TEST_F(SpanletDialogTest, showsTheTrueBandwidthOfEachCameraAndInterface) {
    const auto fourth = makeFake("eth0", gigE, "C");
    fourth->bandwidth = 5'000'000;
    m_system->setCameras({m_first, m_closed, m_second, m_third, fourth});
    button("buttonRefresh").click();
    EXPECT_EQ(bandwidth(camera(0, 0, 0)).value(), 112);
    EXPECT_EQ(bandwidth(camera(0, 0, 2)).value(), 5);
    EXPECT_EQ(usage(0, 0), "117 / 125");
    EXPECT_TRUE(usageToolTip(0, 0).contains(QStringLiteral("(10%)")));
    EXPECT_EQ(usage(1, 0), "100 / 625");
    EXPECT_EQ(usageToolTip(1, 0), QStringLiteral("Interface bandwidth usage is OK."));
    EXPECT_TRUE(rowWidget(camera(0, 0, 0))->isEnabled());
    EXPECT_FALSE(rowWidget(camera(0, 0, 1))->isEnabled());
    EXPECT_EQ(m_closed->bandwidthReads, 0);
    EXPECT_TRUE(m_closed->locked);

    m_first->bandwidth = 50'000'000;
    button("buttonRefresh").click();
    EXPECT_EQ(usage(0, 0), "55 / 125");
    EXPECT_EQ(tree().findChildren<BandwidthSliderWidget*>().size(), 5);
    EXPECT_EQ(tree().findChildren<InterfaceSpeedWidget*>().size(), 3);
}

TEST_F(SpanletDialogTest, followsTheUsersBandwidths) {
    QSpinBox& spinBox = bandwidth(camera(0, 0, 0));
    spinBox.selectAll();
    QTest::keyClicks(&spinBox, QStringLiteral("130"));
    EXPECT_EQ(m_first->bandwidthWrites, 0) << "not while it is typed";
    QTest::keyClick(&spinBox, Qt::Key_Return);
    EXPECT_EQ(m_first->bandwidth, 130'000'000);
    EXPECT_EQ(m_first->bandwidthWrites, 1);
    EXPECT_EQ(usage(0, 0), "130 / 125");
    EXPECT_TRUE(usageToolTip(0, 0).startsWith(QStringLiteral("Bandwidth used by connected cameras "
                                                             "is greater")));
    EXPECT_EQ(usage(0, 1), "100 / 125") << "another interface";
}

TEST_F(SpanletDialogTest, locksCamerasAgainstAutoSet) {
    const QList<QAction*> actions = autoSetActions();
    combo().setCurrentIndex(2);
    tree().setCurrentIndex(camera(1, 0, 0));
    auto& lock = part<QPushButton>(camera(1, 0, 0), "buttonLock");
    for (const bool locked : {true, false}) {
        lock.click();
        EXPECT_EQ(m_third->locked, locked);
        EXPECT_EQ(actions[0]->isEnabled(), !locked);
        EXPECT_EQ(actions[1]->isEnabled(), !locked);
    }
}

TEST_F(SpanletDialogTest, coloursTheSlidersOfThoseThatTookPart) {
    const auto locked = makeFake("eth0", gigE, "A2");
    const auto left = makeFake("eth0", gigE, "A3");
    m_system->setCameras({m_first, locked, left, m_second});
    button("buttonRefresh").click();
    for (const auto& fake : {m_first, locked, left, m_second})
        fake->status = AutosetStatus::BelowRequested;
    part<QPushButton>(camera(0, 0, 1), "buttonLock").click();
    tree().model()->setData(camera(0, 0, 2), Qt::Unchecked, Qt::CheckStateRole);
    emit m_dialog->autoSetInterfaceFinished();
    const QString amber = QStringLiteral("#fcc234");
    EXPECT_TRUE(sliderStyle(camera(0, 0, 0)).contains(amber));
    for (const QModelIndex& other : {camera(0, 0, 1), camera(0, 0, 2), camera(0, 1, 0)})
        EXPECT_FALSE(sliderStyle(other).contains(amber)) << textOf(other);
    m_second->status = AutosetStatus::ClampedToMaximum;
    emit m_dialog->autoSetCameraFinished(camera(0, 1, 0));
    EXPECT_TRUE(sliderStyle(camera(0, 1, 0)).contains(QStringLiteral("#009640")));
}

TEST_F(SpanletDialogTest, judgesTheUseByTheStoredMargins) {
    m_third->bandwidth = 400'000'000;
    set("Safety Margins/interface_USB", 40);
    button("buttonRefresh").click();
    EXPECT_TRUE(usageToolTip(1, 0).contains(QStringLiteral("(40%)")));
    EXPECT_EQ(usageToolTip(0, 1), QStringLiteral("Interface bandwidth usage is OK."));
    button("buttonSettings").click();
    button("buttonSettings").click();
    ASSERT_EQ(m_dialog->findChildren<SettingsDialog*>().size(), 1);
    auto* settings = m_dialog->findChild<SettingsDialog*>();
    settings->findChild<QSpinBox*>(QStringLiteral("GigEInterfaceSpinBox"))->setValue(21);
    settings->accept();
    delete settings;
    EXPECT_TRUE(usageToolTip(0, 1).contains(QStringLiteral("(21%)")));
}

TEST_F(SpanletDialogTest, letsTheUserOverwriteTheMaximumOfAnInterface) {
    const auto enter = [this](const QString& megabytes) {
        QTimer::singleShot(0, [megabytes] {
            QWidget* input = QApplication::activeModalWidget();
            auto* box = input->findChild<QSpinBox*>();
            box->selectAll();
            QTest::keyClicks(box, megabytes);
            QTest::keyClick(input, Qt::Key_Return);
        });
        QTest::mouseDClick(rowWidget(interfaceRow(0, 0)), Qt::LeftButton);
    };
    m_dialog->show();
    m_first->need = 200'000'000;
    enter(QStringLiteral("80"));
    EXPECT_EQ(usage(0, 0), "112 / 80");
    EXPECT_EQ(textOf(interfaceRow(0, 0).siblingAtColumn(1)), "80");
    autoSetActions()[0]->trigger();
    EXPECT_EQ(m_first->bandwidth, 72'000'000);
    EXPECT_EQ(usage(0, 0), "72 / 80");
    // 0 is no maximum: the adapter's is in effect again.
    enter(QStringLiteral("0"));
    EXPECT_EQ(usage(0, 0), "72 / 125");
    EXPECT_TRUE(autoSetActions()[0]->isEnabled());
    enter(QStringLiteral("2147483647"));
    EXPECT_EQ(usage(0, 0), "72 / 2147483647");
    button("buttonRefresh").click();
    EXPECT_EQ(usage(0, 0), "72 / 125");
}

TEST_F(SpanletDialogTest, makesTheRowCurrentWhoseWidgetIsUsed) {
    m_dialog->show();
    m_dialog->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(m_dialog.get()));
    const std::vector<std::pair<QModelIndex, const char*>> parts = {
        {interfaceRow(0, 1), "labelSpeed"},   {interfaceRow(0, 1), "progressBarUsage"},
        {camera(1, 0, 0), "sliderBandwidth"}, {camera(1, 0, 0), "spinBandwidth"},
        {camera(0, 0, 0), "buttonLock"},      {camera(1, 0, 0), "labelWarning"}};
    for (const auto& [row, name] : parts) {
        tree().setCurrentIndex(tree().model()->index(0, 0));
        QTest::mouseClick(&part<QWidget>(row, name), Qt::LeftButton);
        EXPECT_EQ(tree().currentIndex(), row) << name;
    }
    bandwidth(camera(0, 0, 0)).setFocus();
    EXPECT_EQ(tree().currentIndex(), camera(0, 0, 0));
    combo().setCurrentIndex(1);
    tree().setFocus();
    QTest::keyClick(&tree(), Qt::Key_Tab);
    EXPECT_TRUE(rowWidget(interfaceRow(0, 0))->hasFocus());
    EXPECT_EQ(combo().currentText(), QStringLiteral("eth1")) << "the focus selects no interface";
}

TEST_F(SpanletDialogTest, opensOneFeatureTreePerCamera) {
    const auto trees = [this] {
        return m_dialog->findChildren<FeatureTreeDialog*>();
    };
    QPushButton& open = button("buttonFeatureTree");
    m_third->id = "3";
    m_dialog->show();
    EXPECT_FALSE(open.isEnabled()) << "an interface is current";
    for (const QModelIndex& row : {camera(0, 0, 0), camera(1, 0, 0)}) {
        tree().setCurrentIndex(row);
        open.click();
        open.click();
    }
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
    ASSERT_EQ(trees().size(), 2);
    EXPECT_EQ(trees()[0]->windowTitle(), QStringLiteral("Feature Tree of A-S (1)"));

    m_first->bandwidth = 77'000'000;
    trees()[0]->close();
    EXPECT_EQ(usage(0, 0), "77 / 125");
    button("buttonRefresh").click();
    EXPECT_FALSE(open.isEnabled());
    EXPECT_TRUE(trees().last()->isVisible()) << "its camera is still there";
    tree().setCurrentIndex(camera(1, 0, 0));
    open.click();
    ASSERT_EQ(trees().size(), 3);
    EXPECT_FALSE(trees()[1]->isVisible()) << "replaced by the new one";
    m_third->bandwidth = 66'000'000;
    QSignalSpy closed(trees().last(), &FeatureTreeDialog::closed);
    m_dialog->close();
    EXPECT_EQ(closed.count(), 1);
    EXPECT_EQ(usage(1, 0), "66 / 625");
}

TEST_F(SpanletDialogTest, countsATimedBenchmarkDown) {
    combo().setCurrentIndex(1);
    startBenchmark(3);
    EXPECT_EQ(m_second->starts, 1);
    EXPECT_EQ(m_second->adjustments, 0);
    EXPECT_EQ(m_first->starts + m_third->starts, 0);
    const auto selectors = {static_cast<QWidget*>(&combo()), static_cast<QWidget*>(&spin())};
    for (const QWidget* selector : selectors)
        EXPECT_FALSE(selector->isEnabled());
    EXPECT_FALSE(button("buttonAutoSet").isEnabled());
    EXPECT_FALSE(rowWidget(camera(0, 1, 0))->isEnabled());
    EXPECT_TRUE(rowWidget(camera(0, 0, 0))->isEnabled());

    m_second->statistics.receivedFrames = 42;
    for (const int shown : {2, 2, 1, 1, 0}) {
        tick();
        EXPECT_EQ(spin().value(), shown);
        EXPECT_EQ(m_second->stops, 0);
    }
    EXPECT_EQ(camera(0, 1, 0, 4).data().toInt(), 42);
    tick();
    EXPECT_EQ(spin().value(), 0);
    EXPECT_EQ(m_second->stops, 1);
    EXPECT_EQ(m_first->stops + m_third->stops, 0);
    EXPECT_FALSE(button("buttonBenchmark").isChecked());
    for (const QWidget* selector : selectors)
        EXPECT_TRUE(selector->isEnabled());
    EXPECT_TRUE(rowWidget(camera(0, 1, 0))->isEnabled());
}

TEST_F(SpanletDialogTest, runsAnEndlessBenchmarkUntilTheUserStops) {
    startBenchmark(0);
    for (int i = 0; i < 20; ++i)
        tick();
    EXPECT_EQ(spin().value(), 0);
    EXPECT_EQ(m_first->stops, 0);
    EXPECT_TRUE(button("buttonBenchmark").isChecked());

    m_first->statistics.receivedFrames = 42;
    button("buttonBenchmark").click();
    EXPECT_EQ(camera(0, 0, 0, 4).data(), 42) << "read again when the cameras have stopped";
    EXPECT_EQ(m_first->starts, 1);
    EXPECT_EQ(m_first->stops, 1);
    EXPECT_EQ(m_closed->starts, 0);
    // The next one is a timed one again.
    startBenchmark(1);
    tick();
    tick();
    EXPECT_EQ(m_first->stops, 2);
}

/// Only the user's stop enables Auto Set and lets the tree steer the dialog again.
TEST_F(SpanletDialogTest, treatsTheEndOfTimeAndTheUsersStopDifferently) {
    tree().setCurrentIndex(camera(0, 0, 0));
    EXPECT_TRUE(button("buttonFeatureTree").isEnabled());
    startBenchmark(1);
    tree().setCurrentIndex(interfaceRow(1, 0));
    EXPECT_EQ(combo().currentText(), QStringLiteral("eth0"));
    tree().setCurrentIndex(camera(1, 0, 0));
    tick();
    tick();
    EXPECT_FALSE(button("buttonAutoSet").isEnabled());
    part<QPushButton>(camera(0, 0, 0), "buttonLock").click();
    EXPECT_TRUE(button("buttonFeatureTree").isEnabled()) << "as before the benchmark";
    tree().setCurrentIndex(interfaceRow(0, 1));
    EXPECT_EQ(combo().currentText(), QStringLiteral("eth0"));
    button("buttonRefresh").click();
    EXPECT_TRUE(button("buttonFeatureTree").isEnabled());

    startBenchmark(30);
    tick();
    m_third->locked = true;
    tree().setCurrentIndex(camera(1, 0, 0));
    button("buttonBenchmark").click();
    EXPECT_EQ(spin().value(), 0);
    EXPECT_TRUE(button("buttonAutoSet").isEnabled());
    EXPECT_FALSE(autoSetActions()[1]->isEnabled()) << "the camera chosen meanwhile is locked";
    EXPECT_TRUE(button("buttonFeatureTree").isEnabled());
    tree().setCurrentIndex(interfaceRow(1, 0));
    EXPECT_EQ(combo().currentText(), QStringLiteral("USB bus 1"));
    tree().setCurrentIndex(camera(1, 0, 0));
    EXPECT_TRUE(autoSetActions()[0]->isEnabled()) << "still that of the chosen interface";
}

TEST_F(SpanletDialogTest, endsARunningBenchmarkBeforeItRefreshes) {
    for (const int seconds : {0, 60}) {
        const int stops = m_second->stops;
        combo().setCurrentIndex(1);
        startBenchmark(seconds);
        button("buttonRefresh").click();
        EXPECT_EQ(m_second->stops, stops + 1);
        EXPECT_FALSE(button("buttonBenchmark").isChecked());
        EXPECT_TRUE(combo().isEnabled());
        EXPECT_TRUE(spin().isEnabled());
        EXPECT_EQ(spin().value(), 0);
        EXPECT_EQ(combo().currentText(), QStringLiteral("eth0"));
        EXPECT_EQ(tree().currentIndex(), interfaceRow(0, 0));
        EXPECT_TRUE(rowWidget(camera(0, 1, 0))->isEnabled());
    }
}

TEST_F(SpanletDialogTest, takesInputDuringARefreshOnlyWhenItIsShown) {
    struct : QObject {
        bool eventFilter(QObject*, QEvent* event) override {
            isTaken = isTaken || event->type() == QEvent::MouseMove;
            return false;
        }
        bool isTaken = false;
    } input;
    QWidget host;
    host.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&host));
    qApp->installEventFilter(&input);
    spin().setValue(12);
    for (const bool isShown : {false, true}) {
        m_dialog->setVisible(isShown);
        QCursor::setPos(host.mapToGlobal({5, 5}));
        QCoreApplication::processEvents();
        input.isTaken = false;
        QCursor::setPos(host.mapToGlobal({50, 50}));
        button("buttonRefresh").click();
        EXPECT_EQ(input.isTaken, isShown);
    }
    EXPECT_EQ(m_first->stops, 0);
    EXPECT_EQ(spin().value(), 12);
    EXPECT_TRUE(button("buttonAutoSet").isEnabled());
}

TEST_F(SpanletDialogTest, hasNothingToMeasureWhenAllCamerasAreGone) {
    tree().setCurrentIndex(camera(0, 0, 0));
    for (const auto& cameras : {FakeSystem::FakeList{m_closed}, FakeSystem::FakeList{}}) {
        m_system->setCameras(cameras);
        button("buttonRefresh").click();
        for (const QAction* action : autoSetActions())
            EXPECT_FALSE(action->isEnabled());
        EXPECT_FALSE(button("buttonFeatureTree").isEnabled());
    }
    EXPECT_EQ(combo().count(), 0);
    EXPECT_FALSE(widget<QGroupBox>("grpStatistics").isEnabled());
    m_system->setCameras({m_third});
    button("buttonRefresh").click();
    EXPECT_TRUE(widget<QGroupBox>("grpStatistics").isEnabled());
    EXPECT_EQ(combo().currentText(), QStringLiteral("USB bus 1"));
    startBenchmark(0);
    EXPECT_EQ(m_third->starts, 1);
}

/// Lays the tree out between the deletion of the row widgets and that of the rows.
TEST_F(SpanletDialogTest, refreshesWhileItIsResized) {
    m_dialog->show();
    QTimer resizing;
    QObject::connect(&resizing, &QTimer::timeout,
                     [this] { m_dialog->resize(m_dialog->size() + QSize(1, 1)); });
    resizing.start(0);
    for (int round = 0; round < 3; ++round)
        button("buttonRefresh").click();
    EXPECT_GT(m_dialog->width(), 1192);
    EXPECT_EQ(bandwidth(camera(0, 0, 0)).value(), 112);
}

TEST_F(SpanletDialogTest, canBeOperatedWithKeysOnly) {
    m_system->setCameras({m_first});
    button("buttonRefresh").click();
    widget<QToolButton>("buttonShowLogging").click();
    m_dialog->show();
    m_dialog->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(m_dialog.get()));
    QStringList visited;
    for (int i = 0; i < 16; ++i) {
        visited.append(QApplication::focusWidget()->objectName());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    EXPECT_EQ(visited.join(QLatin1Char(' ')).toStdString(),
              "buttonRefresh comboInterface spinBenchmark buttonBenchmark buttonAutoSet "
              "buttonSettings buttonAbout buttonSupport treeViewCameras progressBarUsage "
              "sliderBandwidth spinBandwidth "
              "buttonLock buttonShowLogging tableLog buttonRefresh");

    QPushButton& refresh = button("buttonRefresh");
    refresh.setFocus();
    QTest::keyClick(&refresh, Qt::Key_Space);
    EXPECT_EQ(QApplication::focusWidget(), &refresh);
    m_first->bandwidth = 50'000'000;
    QTest::keyClick(&tree(), Qt::Key_F5);
    EXPECT_TRUE(QTest::qWaitFor([this] { return usage(0, 0) == "50 / 125"; }));
    tree().setCurrentIndex(camera(0, 0, 0, 4));
    QTest::keyClick(&tree(), Qt::Key_Space);
    EXPECT_FALSE(m_first->opened);
    QTest::keyClick(&spin(), Qt::Key_Return);
    EXPECT_TRUE(m_dialog->isVisible());
    EXPECT_EQ(m_first->starts, 0);
}

TEST_F(SpanletDialogTest, leavesAnUncheckedCameraOut) {
    const auto second = makeFake("eth0", gigE, "A2");
    m_system->setCameras({m_first, second});
    button("buttonRefresh").click();
    tree().setCurrentIndex(camera(0, 0, 0));
    EXPECT_TRUE(autoSetActions()[1]->isEnabled());
    tree().model()->setData(camera(0, 0, 0), Qt::Unchecked, Qt::CheckStateRole);
    EXPECT_FALSE(autoSetActions()[1]->isEnabled());
    EXPECT_FALSE(rowWidget(camera(0, 0, 0))->isEnabled());
    EXPECT_TRUE(rowWidget(camera(0, 0, 1))->isEnabled());
    startBenchmark(0);
    EXPECT_EQ(m_first->starts, 0);
    EXPECT_EQ(second->starts, 1);
}

TEST_F(SpanletDialogTest, showsLogLinesOfTheWholeProcess) {
    log().setRowCount(0);
    std::cerr << "lost" << std::endl;
    logInfo("found");
    qWarning("careful");
    logDebug("hidden");
    ASSERT_EQ(log().rowCount(), 3);
    const auto row = [this](int index) {
        return (log().item(index, 0)->text() + QLatin1Char(' ') + log().item(index, 2)->text())
            .toStdString();
    };
    EXPECT_EQ(row(1), "INFO found");
    EXPECT_EQ(row(2), "ERROR lost");
    EXPECT_EQ(row(0).rfind("WARNING careful", 0), 0U) << row(0);

    set("ShowDebugMessages", true);
    emit m_dialog->settingsSaved();
    logDebug("shown");
    EXPECT_EQ(row(0), "DEBUG shown");
    for (const QHeaderView* header : {log().horizontalHeader(), log().verticalHeader()}) {
        EXPECT_EQ(header->sectionResizeMode(0), QHeaderView::ResizeToContents);
        EXPECT_EQ(header->resizeContentsPrecision(), RowHeights::newestRows);
    }
}

TEST_F(SpanletDialogTest, givesTheStandardStreamsBackAfterTheLastCamera) {
    m_dialog.reset();
    m_system->setCameras({std::shared_ptr<FakeCamera>(new FakeCamera(*m_first), [](auto* camera) {
        logInfo("gone");
        delete camera;
    })});
    auto controller = makeController(std::exchange(m_system, nullptr));
    m_dialog = std::make_unique<SpanletDialog>(unusedOrvSystem(), false, nullptr,
                                               std::exchange(controller, nullptr));
    m_dialog.reset();
    EXPECT_FALSE(m_log.has("Info:gone")) << "a camera outlived the streams";
    logInfo("given back");
    EXPECT_TRUE(m_log.has("Info:given back"));
    EXPECT_NE(qInstallMessageHandler(nullptr), &qtMessageHandler);
}

TEST_F(SpanletDialogTest, swapsTheRefreshIconInADarkPalette) {
    const std::pair<int, const char*> cases[] = {
        {100, "refresh"}, {99, "refresh_darkmode"}, {100, "refresh"}};
    for (const auto& [lightness, name] : cases) {
        m_dialog->setPalette(QPalette(QColor(lightness, lightness, lightness)));
        EXPECT_EQ(imageOf(button("buttonRefresh").icon()), programImage(name));
    }
}

TEST_F(SpanletDialogTest, answersTheFlagAndStopsTheBenchmarkHoweverItIsClosed) {
    const std::function<void()> ways[] = {
        [this] { m_dialog->close(); },
        [this] { QTest::keyClick(m_dialog.get(), Qt::Key_Escape); },
        [this] { m_dialog->reject(); },
        [this] { m_dialog->accept(); },
    };
    for (const bool flag : {false, true}) {
        m_dialog->onAutoAdjustPacketsize(flag);
        for (const auto& close : ways) {
            const int stops = m_first->stops;
            QTimer::singleShot(0, m_dialog.get(), [&] {
                startBenchmark(0);
                close();
            });
            EXPECT_EQ(m_dialog->exec(), flag ? 1 : 0);
            EXPECT_FALSE(m_dialog->isVisible());
            EXPECT_EQ(m_first->stops, stops + 1);
        }
    }
    EXPECT_EQ(m_first->adjustments, 4);
}

TEST_F(SpanletDialogTest, answersTheFlagWhenClosedUnseenAndStopsTheBenchmarkAtItsEnd) {
    m_dialog->onAutoAdjustPacketsize(true);
    m_dialog->close();
    EXPECT_EQ(m_dialog->result(), 1);
    startBenchmark(0);
    m_dialog.reset();
    EXPECT_EQ(m_first->stops, 1);
}

} // namespace
