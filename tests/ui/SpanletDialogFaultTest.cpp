// SPDX-License-Identifier: BSD-3-Clause
#include "tests/support/CapturedLog.h"
#include "tests/support/FaultyCameras.h"
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

namespace {

/// The main dialog on simulated cameras, each call of which can be made to fail.
class SpanletDialogFaults : public testing::Test {
protected:
    void SetUp() override {
        initResources();
        QSettings(QStringLiteral("Meridane"), QStringLiteral("Spanlet"))
            .setValue(QStringLiteral("Support Dialog/active"), false);
        m_dialog = std::make_unique<SpanletDialog>(m_cameras.system, false);
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
                m_cameras.simulation.SetCameraPlugged(id, plugged);
            if (!plugged)
                widget<QPushButton>("buttonRefresh").click();
        }
    }

    /// Finds the cameras, sets each by hand, locks and unlocks it, and runs Auto Set on each
    /// interface. Returns the number of calls made.
    std::uint64_t run(std::uint64_t failingCall) {
        closeCameras();
        return m_cameras.callsOf([this] { useDialog(); }, failingCall);
    }

    void useDialog() {
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
    FaultyCameras m_cameras;
    std::unique_ptr<SpanletDialog> m_dialog;
};

TEST_F(SpanletDialogFaults, anyFailingCallLeavesTheOtherRowsUsable) {
    run(0);
    ASSERT_EQ(camerasThatObey(), FaultyCameras::count);
    const std::uint64_t last = FaultyCameras::failEachCall([this](std::uint64_t failingCall) {
        const std::uint64_t calls = run(failingCall);
        if (failingCall > FaultyCameras::callsThatList) {
            EXPECT_GE(camerasThatObey(), FaultyCameras::count - 1)
                << "failing call " << failingCall;
        }
        return calls;
    });
    EXPECT_GT(last, 200U);
    run(0);
    EXPECT_EQ(camerasThatObey(), FaultyCameras::count) << "no fault lasts";
}

} // namespace
