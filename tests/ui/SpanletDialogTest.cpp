// SPDX-License-Identifier: BSD-3-Clause
#include "ui/SpanletDialog.h"
#include "logging/Log.h"
#include "logging/QtMessageHandler.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/OwnSettings.h"
#include "tests/support/TextTree.h"
#include "tests/support/WidgetParts.h"
#include "tests/ui/FakeCameras.h"
#include "tests/ui/Images.h"
#include "ui/BandwidthSliderWidget.h"
#include "ui/InterfaceSpeedWidget.h"
#include "ui/RowHeights.h"
#include "ui/SettingsDialog.h"
#include "ui/features/FeatureTreeDialog.h"

#include <QTest>
#include <QtWidgets>
#include <gmock/gmock.h>

#include <functional>
#include <limits>
#include <thread>
#include <tuple>
#include <vector>

namespace {

/// Two GigE interfaces and a USB one; the controller's list has the USB one first.
class SpanletDialogTest : public testing::Test {
protected:
    SpanletDialogTest() {
        initResources();
        switchOffHelpAtStart();
        m_first->bandwidth = 112'400'000;
        m_closed->opened = false;
        m_closed->warning = "Camera cannot be opened";
        m_dialog = std::make_unique<SpanletDialog>(unusedOrvSystem(), false, nullptr,
                                                   makeController(m_system));
    }

    template <class Widget> Widget& widget(const char* name) const {
        return partOf<Widget>(*m_dialog, name);
    }
    QTreeView& tree() const { return widget<QTreeView>("treeViewCameras"); }
    QComboBox& combo() const { return widget<QComboBox>("comboInterface"); }
    QSpinBox& spin() const { return widget<QSpinBox>("spinBenchmark"); }
    QPushButton& button(const char* name) const { return widget<QPushButton>(name); }
    QList<QAction*> autoSetActions() const { return button("buttonAutoSet").menu()->actions(); }
    /// The kinds of Auto Set that can be chosen.
    std::string offers() const {
        std::string texts;
        for (const QAction* action : autoSetActions())
            texts += action->isEnabled() ? action->text().toStdString() + ';' : "";
        return texts;
    }
    /// The interface, the time, whether a benchmark runs, and which controls can be used.
    std::string state() const {
        std::string text = (combo().currentText() + QLatin1Char(' ') + spin().text()).toStdString();
        text += button("buttonBenchmark").isChecked() ? " running:" : ":";
        for (const char* name :
             {"comboInterface", "spinBenchmark", "buttonAutoSet", "buttonFeatureTree"})
            text += widget<QWidget>(name).isEnabled() ? std::string(" ") + name : "";
        return text;
    }
    /// For each camera its name, how often it was started, and how often it was stopped.
    std::string runs() const {
        std::string counts;
        for (const auto& camera : {m_first, m_closed, m_second, m_third})
            counts += camera->model + std::to_string(camera->starts) + '/' +
                      std::to_string(camera->stops) + ' ';
        return counts;
    }
    void refresh(const FakeSystem::FakeList& cameras) {
        m_system->setCameras(cameras);
        button("buttonRefresh").click();
    }
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
        return partOf<Widget>(*rowWidget(row), name);
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
    void startBenchmark(int seconds) {
        spin().setValue(seconds);
        button("buttonBenchmark").click();
    }
    /// Lets half a second of the benchmark pass, without waiting for it.
    void tick() { m_dialog->onTimerTimeout(); }

    const OwnSettings m_store;
    CapturedLog m_log;
    std::shared_ptr<FakeCamera> m_first = makeFake("eth0", gige, "A");
    std::shared_ptr<FakeCamera> m_closed = makeFake("eth0", gige, "B");
    std::shared_ptr<FakeCamera> m_second = makeFake("eth1", gige, "C");
    std::shared_ptr<FakeCamera> m_third = makeFake("USB bus 1", usb, "D");
    std::shared_ptr<FakeSystem> m_system =
        std::make_shared<FakeSystem>(FakeSystem::FakeList{m_first, m_closed, m_second, m_third});
    std::unique_ptr<SpanletDialog> m_dialog;
};

TEST_F(SpanletDialogTest, comesUpWithTheFirstInterfaceSelected) {
    EXPECT_FALSE(m_dialog->windowFlags().testFlag(Qt::WindowContextHelpButtonHint));
    EXPECT_EQ(m_dialog->size(), QSize(1192, 680));
    EXPECT_EQ(textTree(*combo().model()), "eth0\neth1\nUSB bus 1\n");
    EXPECT_EQ(combo().currentData(), 1);
    EXPECT_EQ(combo().itemData(2), 0);
    EXPECT_EQ(tree().currentIndex(), interfaceRow(0, 0));
    EXPECT_TRUE(tree().isExpanded(interfaceRow(1, 0)));
    EXPECT_TRUE(widget<QGroupBox>("grpStatistics").isEnabled());
    EXPECT_EQ(m_dialog->cursor().shape(), Qt::ArrowCursor);
    for (const auto* found : m_dialog->findChildren<QPushButton*>()) {
        EXPECT_FALSE(found->autoDefault())
            << found->objectName().toStdString() << " would be pressed by Return";
        EXPECT_FALSE(found->text().isEmpty() && found->accessibleName().isEmpty());
    }
    for (const int column : {2, 7})
        EXPECT_EQ(tree().model()->headerData(column, Qt::Horizontal, Qt::ToolTipRole),
                  QStringLiteral("Statistics values, collected during the last acquisition"));
}

TEST_F(SpanletDialogTest, offersAutoSetWhereItCanBeDone) {
    const std::string interfaceOnly = "Auto Set Interface;";
    const std::string both = interfaceOnly + "Auto Set Camera;";
    m_second->locked = true;
    const std::vector<std::pair<QModelIndex, bool>> cases = {
        {interfaceRow(0, 0), false},         {camera(0, 0, 0), true},     {camera(0, 1, 0), false},
        {interfaceRow(1, 0), false},         {interfaceRow(0, 1), false}, {camera(1, 0, 0), true},
        {tree().model()->index(0, 0), false}};
    for (const auto& [index, isCameraOffered] : cases) {
        tree().setCurrentIndex(index);
        EXPECT_EQ(offers(), isCameraOffered ? both : interfaceOnly) << textOf(index);
    }
    m_first->opened = false;
    tree().setCurrentIndex(camera(0, 0, 0));
    EXPECT_EQ(offers(), interfaceOnly) << "it takes no part";
    combo().setCurrentIndex(2);
    tree().setCurrentIndex(camera(1, 0, 0));
    for (const bool locked : {true, false}) {
        part<QPushButton>(camera(1, 0, 0), "buttonLock").click();
        EXPECT_EQ(m_third->locked, locked);
        EXPECT_EQ(offers(), locked ? "" : both) << "the only camera of its interface";
    }
}

TEST_F(SpanletDialogTest, setsInterfacesAndCamerasWithTheStoredMargins) {
    storeSetting("Safety Margins/interface_GigE", 20);
    storeSetting("Safety Margins/camera_GigE", 10);
    storeSetting("Safety Margins/interface_USB", 40);
    storeSetting("Safety Margins/camera_USB", 25);
    const auto autoSet = [this](int action, const FakeCamera& camera) {
        autoSetActions()[action]->trigger();
        EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
        return std::tuple(camera.margin, camera.bandwidth, camera.requested);
    };
    m_first->need = m_third->need = 800'000'000;
    EXPECT_EQ(autoSet(0, *m_first), std::tuple(0.1, 100'000'000, 880'000'000U));
    EXPECT_EQ(m_first->adjustments, 0);
    EXPECT_EQ(m_second->requested, 0U) << "it streams through another interface";
    EXPECT_EQ(bandwidth(camera(0, 0, 0)).value(), 100);
    EXPECT_EQ(usage(0, 0), "100 / 125");

    m_dialog->onAutoAdjustPacketsize(true);
    combo().setCurrentIndex(2);
    EXPECT_EQ(tree().currentIndex(), interfaceRow(1, 0));
    EXPECT_EQ(autoSet(0, *m_third), std::tuple(0.25, 375'000'000, 1'000'000'000U));
    EXPECT_EQ(m_third->adjustments, 1);
    // A margin that is out of range counts as the nearest one in range.
    storeSetting("Safety Margins/interface_USB", 51);
    EXPECT_EQ(std::get<1>(autoSet(0, *m_third)), 312'500'000);

    m_first->need = m_third->need = 100'000'001;
    tree().setCurrentIndex(camera(1, 0, 0));
    EXPECT_EQ(autoSet(1, *m_third), std::tuple(0.25, 125'000'001, 100'000'001U));
    EXPECT_EQ(usage(1, 0), "125 / 625");
    tree().setCurrentIndex(camera(0, 0, 0));
    EXPECT_EQ(autoSet(1, *m_first), std::tuple(0.1, 110'000'001, 100'000'001U));
    EXPECT_EQ(bandwidth(camera(0, 0, 0)).value(), 110);
}

TEST_F(SpanletDialogTest, takesFlagAndMarginsFromTheSettings) {
    m_third->bandwidth = 400'000'000;
    storeSetting("Safety Margins/interface_USB", 40);
    m_dialog->show();
    button("buttonRefresh").click();
    EXPECT_TRUE(usageToolTip(1, 0).contains(QStringLiteral("(40%)")));
    EXPECT_EQ(usageToolTip(0, 1), QStringLiteral("Interface bandwidth usage is OK."));
    for (const bool isAdjusted : {false, true}) {
        button("buttonSettings").click();
        button("buttonSettings").click();
        ASSERT_EQ(m_dialog->findChildren<SettingsDialog*>().size(), 1);
        auto* settings = m_dialog->findChild<SettingsDialog*>();
        EXPECT_TRUE(settings->isVisible());
        auto& box = partOf<QCheckBox>(*settings, "autoAdjustCheckBox");
        EXPECT_EQ(box.isChecked(), isAdjusted) << "as the user left it";
        box.click();
        partOf<QSpinBox>(*settings, "GigEInterfaceSpinBox").setValue(21);
        if (isAdjusted)
            break;
        settings->accept();
        delete settings;
        EXPECT_TRUE(usageToolTip(0, 1).contains(QStringLiteral("(21%)")));
    }
    m_dialog->close();
    EXPECT_EQ(m_dialog->findChild<SettingsDialog*>(), nullptr);
    EXPECT_EQ(m_dialog->result(), 0);
}

TEST_F(SpanletDialogTest, showsTheTrueBandwidthOfEachCameraAndInterface) {
    const auto fourth = makeFake("eth0", gige, "C");
    fourth->bandwidth = 5'000'000;
    refresh({m_first, m_closed, m_second, m_third, fourth});
    EXPECT_EQ(bandwidth(camera(0, 0, 0)).value(), 112);
    EXPECT_EQ(bandwidth(camera(0, 0, 2)).value(), 5);
    EXPECT_EQ(usage(0, 0), "117 / 125");
    EXPECT_TRUE(usageToolTip(0, 0).contains(QStringLiteral("(10%)")));
    EXPECT_EQ(usage(1, 0), "100 / 625");
    EXPECT_TRUE(rowWidget(camera(0, 0, 0))->isEnabled());
    EXPECT_FALSE(rowWidget(camera(0, 0, 1))->isEnabled());
    EXPECT_EQ(m_closed->bandwidthReads, 0);
    EXPECT_TRUE(m_closed->locked);

    bandwidth(camera(0, 0, 0)).setValue(130);
    EXPECT_EQ(m_first->bandwidth, 130'000'000);
    EXPECT_EQ(m_first->bandwidthWrites, 1);
    EXPECT_EQ(usage(0, 0), "135 / 125");
    EXPECT_EQ(usage(0, 1), "100 / 125") << "another interface";

    // Lays the tree out between the deletion of the row widgets and that of the rows.
    m_dialog->show();
    QTimer resizing;
    QObject::connect(&resizing, &QTimer::timeout,
                     [this] { m_dialog->resize(m_dialog->size() + QSize(1, 1)); });
    resizing.start(0);
    m_first->bandwidth = 50'000'000;
    button("buttonRefresh").click();
    EXPECT_GT(m_dialog->width(), 1192);
    EXPECT_EQ(usage(0, 0), "55 / 125");
    EXPECT_EQ(tree().findChildren<BandwidthSliderWidget*>().size(), 5);
    EXPECT_EQ(tree().findChildren<InterfaceSpeedWidget*>().size(), 3);
}

TEST_F(SpanletDialogTest, leavesLockedAndUncheckedCamerasOut) {
    const auto locked = makeFake("eth0", gige, "A2");
    const auto left = makeFake("eth0", gige, "A3");
    refresh({m_first, locked, left, m_second});
    for (const auto& fake : {m_first, locked, left, m_second})
        fake->status = AutosetStatus::BelowRequested;
    part<QPushButton>(camera(0, 0, 1), "buttonLock").click();
    tree().setCurrentIndex(camera(0, 0, 2));
    EXPECT_TRUE(autoSetActions()[1]->isEnabled());
    tree().model()->setData(camera(0, 0, 2), Qt::Unchecked, Qt::CheckStateRole);
    EXPECT_FALSE(autoSetActions()[1]->isEnabled());
    EXPECT_FALSE(rowWidget(camera(0, 0, 2))->isEnabled());
    EXPECT_TRUE(rowWidget(camera(0, 0, 1))->isEnabled());
    const auto warned = [this] {
        std::string rows;
        for (const QModelIndex& row :
             {camera(0, 0, 0), camera(0, 0, 1), camera(0, 0, 2), camera(0, 1, 0)})
            if (part<QLabel>(row, "labelWarning").isVisibleTo(rowWidget(row)))
                rows += textOf(row) + ';';
        return rows;
    };
    emit m_dialog->autoSetInterfaceFinished();
    EXPECT_EQ(warned(), "A-S (1);");
    emit m_dialog->autoSetCameraFinished(camera(0, 1, 0));
    EXPECT_EQ(warned(), "A-S (1);C-S (1);");
    startBenchmark(0);
    EXPECT_FALSE(rowWidget(camera(0, 0, 1))->isEnabled());
    EXPECT_THAT((std::vector{m_first->starts, locked->starts, left->starts}),
                testing::ElementsAre(1, 1, 0));
}

TEST_F(SpanletDialogTest, letsTheUserOverwriteTheMaximumOfAnInterface) {
    const auto overwrite = [this](int megabytes) {
        auto& bar = dynamic_cast<InterfaceSpeedWidget&>(*rowWidget(interfaceRow(0, 0)));
        emit bar.maxBandwidthChanged(megabytes);
    };
    m_first->need = 200'000'000;
    overwrite(80);
    EXPECT_EQ(usage(0, 0), "112 / 80");
    autoSetActions()[0]->trigger();
    EXPECT_EQ(m_first->bandwidth, 72'000'000);
    EXPECT_EQ(usage(0, 0), "72 / 80");
    // 0 is no maximum: the adapter's is in effect again.
    overwrite(0);
    EXPECT_EQ(usage(0, 0), "72 / 125");
    EXPECT_TRUE(autoSetActions()[0]->isEnabled());
    overwrite(std::numeric_limits<int>::max());
    EXPECT_EQ(usage(0, 0), "72 / 2147483647");
    button("buttonRefresh").click();
    EXPECT_EQ(usage(0, 0), "72 / 125");
}

TEST_F(SpanletDialogTest, makesTheRowCurrentWhoseWidgetIsUsed) {
    m_dialog->show();
    m_dialog->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(m_dialog.get()));
    const std::vector<std::pair<QModelIndex, const char*>> parts = {
        {interfaceRow(0, 1), "progressBarUsage"},
        {camera(1, 0, 0), "spinBandwidth"},
        {camera(0, 0, 0), "buttonLock"},
        {camera(1, 0, 0), "labelWarning"}};
    for (const auto& [row, name] : parts) {
        tree().setCurrentIndex(tree().model()->index(0, 0));
        // The right button, which some widgets handle themselves: the bar opens its menu.
        QTest::mouseClick(&part<QWidget>(row, name), Qt::RightButton);
        EXPECT_EQ(tree().currentIndex(), row) << name;
    }
    QApplication::activePopupWidget()->close();
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
    m_dialog->close();
    EXPECT_EQ(usage(1, 0), "66 / 625") << "its feature tree was not closed";
}

TEST_F(SpanletDialogTest, countsATimedBenchmarkDown) {
    combo().setCurrentIndex(1);
    startBenchmark(3);
    EXPECT_EQ(runs(), "A0/0 B0/0 C1/0 D0/0 ");
    EXPECT_EQ(m_second->adjustments, 0);
    EXPECT_EQ(state(), "eth1 3 running:");
    EXPECT_FALSE(rowWidget(camera(0, 1, 0))->isEnabled());
    EXPECT_TRUE(rowWidget(camera(0, 0, 0))->isEnabled());

    m_second->statistics.receivedFrames = 42;
    for (const int shown : {2, 2, 1, 1, 0, 0}) {
        EXPECT_EQ(m_second->stops, 0);
        tick();
        EXPECT_EQ(spin().value(), shown);
        EXPECT_EQ(camera(0, 1, 0, 4).data(), 42);
    }
    EXPECT_EQ(runs(), "A0/0 B0/0 C1/1 D0/0 ");
    EXPECT_EQ(state(), "eth1 0: comboInterface spinBenchmark");
    EXPECT_TRUE(rowWidget(camera(0, 1, 0))->isEnabled());
}

TEST_F(SpanletDialogTest, runsAnEndlessBenchmarkUntilTheUserStops) {
    startBenchmark(0);
    for (int i = 0; i < 20; ++i)
        tick();
    EXPECT_EQ(runs(), "A1/0 B0/0 C0/0 D0/0 ");
    EXPECT_EQ(state(), "eth0 0 running:");
    m_first->statistics.receivedFrames = 42;
    button("buttonBenchmark").click();
    EXPECT_EQ(camera(0, 0, 0, 4).data(), 42) << "read again when the cameras have stopped";
    EXPECT_EQ(runs(), "A1/1 B0/0 C0/0 D0/0 ");
    startBenchmark(1);
    tick();
    tick();
    EXPECT_EQ(runs(), "A2/2 B0/0 C0/0 D0/0 ") << "the next one is a timed one again";
}

/// Only the user's stop enables Auto Set and lets the tree steer the dialog again.
TEST_F(SpanletDialogTest, treatsTheEndOfTimeAndTheUsersStopDifferently) {
    tree().setCurrentIndex(camera(0, 0, 0));
    startBenchmark(1);
    tree().setCurrentIndex(interfaceRow(1, 0));
    tree().setCurrentIndex(camera(1, 0, 0));
    tick();
    tick();
    part<QPushButton>(camera(0, 0, 0), "buttonLock").click();
    tree().setCurrentIndex(interfaceRow(0, 1));
    EXPECT_EQ(state(), "eth0 0: comboInterface spinBenchmark buttonFeatureTree");
    button("buttonRefresh").click();

    startBenchmark(30);
    tick();
    m_third->locked = true;
    tree().setCurrentIndex(camera(1, 0, 0));
    button("buttonBenchmark").click();
    EXPECT_EQ(state(), "eth0 0: comboInterface spinBenchmark buttonAutoSet buttonFeatureTree");
    EXPECT_FALSE(autoSetActions()[1]->isEnabled()) << "the camera chosen meanwhile is locked";
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
        EXPECT_EQ(state(), "eth0 0: comboInterface spinBenchmark");
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
    EXPECT_EQ(spin().value(), 12) << "no benchmark was ended";
}

TEST_F(SpanletDialogTest, hasNothingToSetWithoutUsableCameras) {
    tree().setCurrentIndex(camera(0, 0, 0));
    for (const auto& cameras : {FakeSystem::FakeList{m_closed}, FakeSystem::FakeList{}}) {
        refresh(cameras);
        EXPECT_EQ(offers(), "");
        EXPECT_FALSE(button("buttonFeatureTree").isEnabled());
    }
    EXPECT_EQ(combo().count(), 0);
    EXPECT_FALSE(widget<QGroupBox>("grpStatistics").isEnabled());
    refresh({makeFake("mix", OrvTransportLayerTypeMixed, "M")});
    EXPECT_EQ(offers(), "") << "its bandwidth is not known";
    m_dialog->onAutoSetButtonClicked();
    EXPECT_EQ(log().item(0, 2)->text(),
              QStringLiteral("Error:Autoset not supported for interface: mix"));
    refresh({m_third});
    EXPECT_TRUE(widget<QGroupBox>("grpStatistics").isEnabled());
    EXPECT_EQ(combo().currentText(), QStringLiteral("USB bus 1"));
    startBenchmark(0);
    EXPECT_EQ(m_third->starts, 1);
}

TEST_F(SpanletDialogTest, canBeOperatedWithKeysOnly) {
    refresh({m_first});
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

TEST_F(SpanletDialogTest, showsLogLinesOfTheWholeProcess) {
    const auto switchDebugMessages = [this](bool shown) {
        storeSetting("ShowDebugMessages", shown);
        emit m_dialog->settingsSaved();
        logDebug(shown ? "shown" : "hidden");
    };
    log().setRowCount(0);
    std::cerr << "lost" << std::endl;
    logInfo("found");
    logDebug("hidden");
    qWarning("careful");
    switchDebugMessages(true);
    switchDebugMessages(false);
    std::thread([] { logInfo("from afar"); }).join();
    EXPECT_EQ(log().rowCount(), 6) << "a line of another thread waits for the event loop";
    QCoreApplication::processEvents();
    std::vector<std::string> rows;
    for (int row = 0; row < log().rowCount(); ++row)
        rows.push_back(QStringLiteral("%1 %2")
                           .arg(log().item(row, 0)->text(), log().item(row, 2)->text())
                           .section(QStringLiteral(" ("), 0, 0)
                           .toStdString());
    EXPECT_THAT(rows, testing::ElementsAre("INFO from afar", "INFO Debug-messages  deactivated",
                                           "DEBUG shown", "DEBUG Debug-messages  activated.",
                                           "WARNING careful", "INFO found", "ERROR lost"));
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
    m_dialog = std::make_unique<SpanletDialog>(unusedOrvSystem(), false, nullptr,
                                               makeController(std::exchange(m_system, nullptr)));
    m_dialog.reset();
    logInfo("given back");
    EXPECT_EQ(m_log.text(), "Info:given back\n") << "a camera outlived the streams";
    EXPECT_NE(qInstallMessageHandler(nullptr), &qtMessageHandler);
}

/// The dialog, its rows and its settings.
TEST_F(SpanletDialogTest, followsThePalette) {
    const auto expectColours = [this](const std::string& suffix, const char* warning) {
        const auto image = [&suffix](const std::string& name) {
            return programImage((name + suffix).c_str());
        };
        EXPECT_EQ(imageOf(button("buttonRefresh").icon()), image("refresh"));
        const QIcon lock = part<QPushButton>(camera(0, 0, 0), "buttonLock").icon();
        EXPECT_EQ(imageOf(lock), image("lock_open"));
        EXPECT_EQ(imageOf(lock, QIcon::On), programImage("lock_closed"));
        const QImage pale = imageOf(lock, QIcon::Off, QIcon::Disabled);
        for (int place = 0; place < pale.width() * pale.height(); ++place)
            EXPECT_LT(qAlpha(pale.pixel(place % pale.width(), place / pale.width())), 128);
        const auto& settings = *m_dialog->findChild<SettingsDialog*>();
        for (const char* name : {"GigEInterface", "GigECamera", "USBInterface", "USBCamera"})
            EXPECT_EQ(
                imageOf(partOf<QPushButton>(settings, name + std::string("PushButton")).icon()),
                image("delete"));
        for (const char* name : {"camera", "usbInterface", "gigeInterface"})
            EXPECT_EQ(partOf<QLabel>(settings, name + std::string("WarningLabel")).styleSheet(),
                      QLatin1String(warning));
    };
    constexpr char onLight[] = "color: rgba(50,95,201,255);";
    button("buttonSettings").click();
    expectColours("", onLight);
    QApplication::setPalette(QColor(99, 99, 99));
    expectColours("_darkmode", "color: rgba(56,111,251,255);");
    QApplication::setPalette(QColor(100, 100, 100));
    expectColours("", onLight);
    QApplication::setPalette(QApplication::style()->standardPalette());
}

TEST_F(SpanletDialogTest, answersTheFlagAndStopsTheBenchmarkHoweverItIsClosed) {
    const std::function<void()> ways[] = {
        [this] { m_dialog->close(); },
        [this] { QTest::keyClick(m_dialog.get(), Qt::Key_Escape); },
        [this] { m_dialog->accept(); },
    };
    for (const bool flag : {true, false}) {
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
    EXPECT_EQ(m_first->adjustments, 3);
    // Closed while it is not visible, and deleted without being closed.
    m_dialog->onAutoAdjustPacketsize(true);
    m_dialog->close();
    EXPECT_EQ(m_dialog->result(), 1);
    startBenchmark(0);
    m_dialog.reset();
    EXPECT_EQ(m_first->stops, 7);
}

} // namespace
