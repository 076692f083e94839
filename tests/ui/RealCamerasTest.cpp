// SPDX-License-Identifier: BSD-3-Clause
// The main dialog on cameras that it reaches over the network.
#include "OrvCPP/OrvSystem.h"
#include "engine/CameraHandler.h"
#include "session/SdkSession.h"
#include "tests/support/FakeCameraProcess.h"
#include "tests/support/OwnSettings.h"
#include "tests/support/Resources.h"
#include "tests/support/WidgetParts.h"
#include "ui/BandwidthSliderWidget.h"
#include "ui/CameraListModel.h"
#include "ui/InterfaceSpeedWidget.h"
#include "ui/SpanletDialog.h"

#include <QTest>
#include <QtWidgets>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace {

using fakecamera::FakeCameraProcess;

constexpr int cameraCount = 3;
/// Milliseconds that the window may stall in all when cameras die.
constexpr qint64 patience = 3000;

/// Adds up the times in which the GUI thread did not return to its event loop.
class StallMeter : public QObject {
public:
    StallMeter() {
        connect(&m_timer, &QTimer::timeout, this, [this] {
            const qint64 gap = m_sinceLast.restart();
            m_stalled += gap > noticed ? gap : 0;
        });
        m_sinceLast.start();
        m_timer.start(10);
    }

    /// Milliseconds until now, of stalls that a person notices.
    qint64 stalled() {
        QTest::qWait(50);
        return m_stalled;
    }

private:
    static constexpr qint64 noticed = 100;

    QTimer m_timer;
    QElapsedTimer m_sinceLast;
    qint64 m_stalled = 0;
};

/// The main dialog on three cameras, each of which has 3.2 MB/s to send.
class RealCameras : public testing::Test {
protected:
    enum Column { Received = 4, Lost = 6 };

    RealCameras() {
        initResources();
        switchOffHelpAtStart();
        for (int i = 0; i < cameraCount; ++i)
            fakes.push_back(std::make_unique<FakeCameraProcess>(
                "127.0.0." + std::to_string(2 + i),
                std::vector<std::string>{"--serial", std::to_string(i), "--width", "320",
                                         "--height", "200", "--frame-rate", "50"}));
        session = std::make_unique<session::SdkSession>(
            session::CameraSource{QStringLiteral(":genicam")});
        EXPECT_TRUE(session->isStarted()) << session->error().toStdString();
        dialog = std::make_unique<SpanletDialog>(session->system(), false);
        dialog->show();
    }

    template <class Widget> Widget& widget(const char* name) const {
        return partOf<Widget>(*dialog, name);
    }
    QPushButton& benchmarkButton() const { return widget<QPushButton>("buttonBenchmark"); }
    void refresh() const { widget<QPushButton>("buttonRefresh").click(); }
    CameraListModel& model() const { return *dialog->findChild<CameraListModel*>(); }
    QModelIndex row(int camera) const {
        const QModelIndex interface = model().index(0, 0, model().index(0, 0));
        return model().index(camera, 0, interface);
    }
    int rowCount() const { return model().rowCount(row(0).parent()); }
    int figure(int camera, Column column) const {
        return row(camera).siblingAtColumn(column).data().toInt();
    }
    std::shared_ptr<CameraHandler> handler(int camera) const {
        return model().cameraHandler(row(camera));
    }
    static bool eventually(const std::function<bool()>& isSo) {
        return QTest::qWaitFor(isSo, 15000);
    }

    /// Looks for the cameras until all of them can be used again.
    void expectReturn() const {
        EXPECT_TRUE(eventually([this] {
            refresh();
            return rowCount() == cameraCount && handler(0)->isOpened() && handler(1)->isOpened() &&
                   handler(2)->isOpened();
        }));
        benchmarkButton().click();
        EXPECT_TRUE(eventually([this] {
            return figure(0, Received) > 5 && figure(1, Received) > 5 && figure(2, Received) > 5;
        }));
        benchmarkButton().click();
    }

    const OwnSettings m_store;
    std::vector<std::unique_ptr<FakeCameraProcess>> fakes;
    std::unique_ptr<session::SdkSession> session;
    std::unique_ptr<SpanletDialog> dialog;
};

TEST_F(RealCameras, cameraThatDiesInABenchmarkDisturbsNobodyAndComesBack) {
    StallMeter meter;
    benchmarkButton().click();
    ASSERT_TRUE(eventually([this] { return figure(1, Received) > 10; }));
    fakes[1]->kill();
    const int after = figure(2, Received);
    EXPECT_TRUE(eventually([this] {
        const QString lost = QStringLiteral("The camera is lost");
        return !widget<QTableWidget>("tableLog").findItems(lost, Qt::MatchContains).isEmpty();
    }));
    EXPECT_TRUE(eventually([&] { return figure(2, Received) > after + 50; }));
    EXPECT_EQ(figure(2, Lost), 0);
    benchmarkButton().click();
    refresh();
    EXPECT_EQ(rowCount(), cameraCount - 1);
    EXPECT_LT(meter.stalled(), patience);
    fakes[1]->restart();
    expectReturn();
}

/// All cameras stop answering, as when their switch loses its power.
class SilentCameras : public RealCameras, public testing::WithParamInterface<std::string> {};

TEST_P(SilentCameras, holdUpTheWindowForSecondsOnly) {
    emit dialog->findChild<InterfaceSpeedWidget*>()->maxBandwidthChanged(9);
    StallMeter meter;
    for (const auto& fake : fakes)
        fake->pause();
    if (GetParam() == "Benchmark") {
        benchmarkButton().click();
    } else if (GetParam() == "AutoSet") {
        widget<QPushButton>("buttonAutoSet").menu()->actions().front()->trigger();
    } else if (GetParam() == "Sliders") {
        for (auto* slider : dialog->findChildren<BandwidthSliderWidget*>())
            slider->setValue(1);
    } else if (GetParam() == "FeatureTree") {
        widget<QTreeView>("treeViewCameras").setCurrentIndex(row(0));
        widget<QPushButton>("buttonFeatureTree").click();
    }
    refresh();
    EXPECT_LT(meter.stalled(), patience);
    for (const auto& fake : fakes)
        fake->resume();
    expectReturn();
}

INSTANTIATE_TEST_SUITE_P(While, SilentCameras,
                         testing::Values("Benchmark", "AutoSet", "Sliders", "FeatureTree"),
                         [](const auto& tested) { return tested.param; });

} // namespace
