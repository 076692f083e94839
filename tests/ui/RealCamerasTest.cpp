// SPDX-License-Identifier: BSD-3-Clause
// The main dialog on cameras that it reaches over the network.
#include "OrvCPP/OrvSystem.h"
#include "engine/CameraHandler.h"
#include "features/FeatureController.h"
#include "session/SdkSession.h"
#include "tests/support/FakeCameraProcess.h"
#include "tests/support/Resources.h"
#include "ui/CameraListModel.h"
#include "ui/InterfaceSpeedWidget.h"
#include "ui/SpanletDialog.h"

#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QInputDialog>
#include <QMenu>
#include <QPushButton>
#include <QSettings>
#include <QSpinBox>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QTreeView>
#include <gmock/gmock.h>

#include <functional>
#include <memory>
#include <ostream>
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
    enum Column { FramesPerSecond = 2, Received = 4, Sent, Lost, Incomplete };

    RealCameras() {
        initResources();
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_store.path());
        QSettings(QStringLiteral("Meridane"), QStringLiteral("Spanlet"))
            .setValue(QStringLiteral("Support Dialog/active"), false);
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
        return *dialog->findChild<Widget*>(QString::fromLatin1(name));
    }
    QPushButton& benchmarkButton() const { return widget<QPushButton>("buttonBenchmark"); }
    void refresh() const { widget<QPushButton>("buttonRefresh").click(); }
    void autoSet() const {
        widget<QPushButton>("buttonAutoSet").menu()->actions().front()->trigger();
    }
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
    std::int64_t framesSent(int camera) const {
        return std::get<std::int64_t>(
            handler(camera)->getFeatureController()->getFeatureValue("Camera", "TestFramesSent"));
    }
    bool logHas(const QString& text) const {
        return !widget<QTableWidget>("tableLog").findItems(text, Qt::MatchContains).isEmpty();
    }
    static bool eventually(const std::function<bool()>& isSo) {
        return QTest::qWaitFor(isSo, 15000);
    }

    /// Enters the interface's maximum, in MB/s, as a person does.
    void overwriteMaximum(int maximum) const {
        QTimer::singleShot(0, dialog.get(), [maximum] {
            auto* box = qobject_cast<QInputDialog*>(QApplication::activeModalWidget());
            box->setIntValue(maximum);
            box->accept();
        });
        dialog->findChild<InterfaceSpeedWidget*>()->manualSetMaxBandwidth();
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

    QTemporaryDir m_store;
    std::vector<std::unique_ptr<FakeCameraProcess>> fakes;
    std::unique_ptr<session::SdkSession> session;
    std::unique_ptr<SpanletDialog> dialog;
};

TEST_F(RealCameras, autoSetDividesTheInterfaceAndTheBenchmarkCountsWhatWasSent) {
    ASSERT_EQ(rowCount(), cameraCount);
    constexpr int maximum = 9;
    overwriteMaximum(maximum);
    autoSet();
    std::int64_t before[cameraCount];
    for (int i = 0; i < cameraCount; ++i) {
        EXPECT_EQ(handler(i)->getBandwidth(), 2'700'000) << "a third of what the margin leaves";
        EXPECT_EQ(handler(i)->getAutosetStatus(), AutosetStatus::BelowRequested);
        before[i] = framesSent(i);
    }
    widget<QSpinBox>("spinBenchmark").setValue(2);
    benchmarkButton().click();
    EXPECT_TRUE(eventually([this] { return !benchmarkButton().isChecked(); }));
    for (int i = 0; i < cameraCount; ++i) {
        const std::int64_t sent = framesSent(i) - before[i];
        EXPECT_GT(figure(i, Received), 50) << "2.7 MB/s are 42 frames per second";
        EXPECT_LT(figure(i, Received), 100);
        EXPECT_THAT(sent - figure(i, Received), testing::AnyOf(0, 1)) << "cut by the stop";
        EXPECT_EQ(figure(i, Sent), figure(i, Received));
        EXPECT_EQ(figure(i, Lost), 0);
        EXPECT_EQ(figure(i, Incomplete), 0);
    }
}

TEST_F(RealCameras, cameraThatDiesInABenchmarkDisturbsNobodyAndComesBack) {
    StallMeter meter;
    benchmarkButton().click();
    ASSERT_TRUE(eventually([this] { return figure(1, Received) > 10; }));
    fakes[1]->kill();
    const int after = figure(2, Received);
    EXPECT_TRUE(eventually([this] { return logHas(QStringLiteral("The camera is lost")); }));
    EXPECT_TRUE(eventually([&] { return figure(2, Received) > after + 50; }));
    EXPECT_EQ(figure(2, Lost), 0);
    benchmarkButton().click();
    refresh();
    EXPECT_EQ(rowCount(), cameraCount - 1);
    EXPECT_LT(meter.stalled(), patience);
    fakes[1]->restart();
    expectReturn();
}

struct Action {
    const char* name;
    void (*perform)(SpanletDialog&);
};

void PrintTo(const Action& action, std::ostream* stream) {
    *stream << action.name;
}

template <class Button> void click(SpanletDialog& dialog, const char* name) {
    dialog.findChild<Button*>(QString::fromLatin1(name))->click();
}

void selectFirstCamera(SpanletDialog& dialog) {
    auto& tree = *dialog.findChild<QTreeView*>(QStringLiteral("treeViewCameras"));
    const auto& model = *tree.model();
    tree.setCurrentIndex(model.index(0, 0, model.index(0, 0, model.index(0, 0))));
}

const Action actions[] = {
    {"Refresh",
     [](SpanletDialog&) {
     }},
    {"Benchmark",
     [](SpanletDialog& dialog) {
         click<QPushButton>(dialog, "buttonBenchmark");
         click<QPushButton>(dialog, "buttonBenchmark");
     }},
    {"AutoSet",
     [](SpanletDialog& dialog) {
         dialog.findChild<QPushButton*>(QStringLiteral("buttonAutoSet"))
             ->menu()
             ->actions()
             .front()
             ->trigger();
     }},
    {"Sliders",
     [](SpanletDialog& dialog) {
         for (QSpinBox* bandwidth : dialog.findChildren<QSpinBox*>(QStringLiteral("spinBandwidth")))
             QTest::keyClick(bandwidth, Qt::Key_Down);
     }},
    {"FeatureTree",
     [](SpanletDialog& dialog) {
         selectFirstCamera(dialog);
         click<QPushButton>(dialog, "buttonFeatureTree");
     }},
};

/// All cameras stop answering, as when their switch loses its power.
class SilentCameras : public RealCameras, public testing::WithParamInterface<Action> {};

TEST_P(SilentCameras, holdUpTheWindowForSecondsOnly) {
    overwriteMaximum(9);
    StallMeter meter;
    for (const auto& fake : fakes)
        fake->pause();
    GetParam().perform(*dialog);
    refresh();
    EXPECT_LT(meter.stalled(), patience);
    for (const auto& fake : fakes)
        fake->resume();
    expectReturn();
}

INSTANTIATE_TEST_SUITE_P(While, SilentCameras, testing::ValuesIn(actions),
                         [](const auto& tested) { return tested.param.name; });

} // namespace
