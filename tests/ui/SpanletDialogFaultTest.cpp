// SPDX-License-Identifier: BSD-3-Clause
#include "OrvCPP/OrvSystem.h"
#include "OrvSimulation/Simulation.h"
#include "engine/CameraHandler.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/OwnSettings.h"
#include "tests/support/Resources.h"
#include "ui/BandwidthSliderWidget.h"
#include "ui/CameraListModel.h"
#include "ui/SpanletDialog.h"

#include <QAction>
#include <QComboBox>
#include <QMenu>
#include <QPushButton>
#include <QSettings>
#include <QSpinBox>
#include <QTest>
#include <QTreeView>
#include <gtest/gtest.h>

namespace {

constexpr int cameraCount = 3;

/// The main dialog on simulated cameras, each call of which can be made to fail.
class SpanletDialogFaults : public testing::Test {
protected:
    void SetUp() override {
        initResources();
        QSettings(QStringLiteral("Meridane"), QStringLiteral("Spanlet"))
            .setValue(QStringLiteral("Support Dialog/active"), false);
        ASSERT_NE(m_simulation, nullptr);
        ASSERT_EQ(m_system.Startup(L"" FAULT_SCENARIO), OrvErrorSuccess);
        m_dialog = std::make_unique<SpanletDialog>(m_system, false);
    }
    void TearDown() override {
        m_dialog.reset();
        m_system.Shutdown();
    }

    template <class Widget> Widget& widget(const char* name) const {
        return *m_dialog->findChild<Widget*>(QString::fromLatin1(name));
    }
    QList<QSpinBox*> spinBoxes() const {
        return m_dialog->findChildren<QSpinBox*>(QStringLiteral("spinBandwidth"));
    }

    /// Closes all cameras: a close that failed would leave one open for good.
    void closeCameras() {
        for (const bool plugged : {false, true}) {
            for (const char* id : {"DEV_G001", "DEV_G002", "DEV_U"})
                m_simulation->SetCameraPlugged(id, plugged);
            if (!plugged)
                widget<QPushButton>("buttonRefresh").click();
        }
    }

    /// What a user does in a minute, while one call fails: finds the cameras, sets each by hand,
    /// locks and unlocks it, and lets each interface be set. Answers how many calls were made.
    std::uint64_t run(std::uint64_t failingCall) {
        closeCameras();
        m_simulation->ResetCalls();
        m_simulation->FailCall(failingCall, OrvErrorInternalFault);
        widget<QPushButton>("buttonRefresh").click();
        for (QSpinBox* spinBox : spinBoxes()) {
            QTest::keyClick(spinBox, Qt::Key_Down);
            spinBox->parent()->findChild<QPushButton*>(QStringLiteral("buttonLock"))->toggle();
            spinBox->parent()->findChild<QPushButton*>(QStringLiteral("buttonLock"))->toggle();
        }
        auto& combo = widget<QComboBox>("comboInterface");
        for (int i = 0; i < combo.count(); ++i) {
            combo.setCurrentIndex(i);
            widget<QPushButton>("buttonAutoSet").menu()->actions().front()->trigger();
        }
        const std::uint64_t calls = m_simulation->GetCallCount();
        m_simulation->FailCall(0, OrvErrorSuccess);
        return calls;
    }

    /// Cameras whose slider still sets them, and shows what they then have.
    int camerasThatObey() const {
        int count = 0;
        for (QSpinBox* spinBox : spinBoxes()) {
            auto* slider = qobject_cast<BandwidthSliderWidget*>(spinBox->parent());
            if (!spinBox->isEnabled())
                continue;
            slider->setValue(20);
            count += slider->getValue() == 20 ? 1 : 0;
        }
        return count;
    }

    const OwnSettings m_store;
    CapturedLog m_log;
    OrvCPP::OrvSystem& m_system = OrvCPP::OrvSystem::GetInstance();
    OrvCPP::ISimulation* m_simulation = dynamic_cast<OrvCPP::ISimulation*>(&m_system);
    std::unique_ptr<SpanletDialog> m_dialog;
};

TEST_F(SpanletDialogFaults, AnyFailingCallLeavesTheOtherRowsUsable) {
    constexpr std::uint64_t callsThatList = 2;
    run(0);
    ASSERT_EQ(camerasThatObey(), cameraCount);
    std::uint64_t failingCall = 0;
    std::uint64_t calls = 0;
    do {
        calls = run(++failingCall);
        if (failingCall > callsThatList) {
            EXPECT_GE(camerasThatObey(), cameraCount - 1) << "failing call " << failingCall;
        }
    } while (calls >= failingCall && !HasFailure());
    EXPECT_GT(failingCall, 200U);
    run(0);
    EXPECT_EQ(camerasThatObey(), cameraCount) << "nothing of it lasts";
}

} // namespace
