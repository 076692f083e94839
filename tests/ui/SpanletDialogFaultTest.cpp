// SPDX-License-Identifier: BSD-3-Clause
#include "tests/support/CapturedLog.h"
#include "tests/support/FaultyCameras.h"
#include "tests/support/OwnSettings.h"
#include "tests/support/Resources.h"
#include "tests/support/WidgetParts.h"
#include "ui/BandwidthSliderWidget.h"
#include "ui/CameraListModel.h"
#include "ui/SpanletDialog.h"

#include <QTest>
#include <QtWidgets>

#include <algorithm>

namespace {

/// The main dialog on simulated cameras, each call of which can be made to fail.
class SpanletDialogFaults : public testing::Test {
protected:
    void SetUp() override {
        initResources();
        switchOffHelpAtStart();
        m_dialog = std::make_unique<SpanletDialog>(m_cameras.system, false);
    }

    QPushButton& button(const char* name) const { return partOf<QPushButton>(*m_dialog, name); }
    QList<BandwidthSliderWidget*> sliders() const {
        return m_dialog->findChildren<BandwidthSliderWidget*>();
    }

    /// Closes all cameras: a close that failed would leave one open for good.
    void closeCameras() {
        for (const bool plugged : {false, true}) {
            for (const char* id : {"DEV_G001", "DEV_G002", "DEV_U"})
                m_cameras.simulation.SetCameraPlugged(id, plugged);
            if (!plugged)
                button("buttonRefresh").click();
        }
    }

    /// Finds the cameras, sets each by hand, locks and unlocks it, and runs Auto Set on each
    /// interface. Returns the number of calls made.
    std::uint64_t run(std::uint64_t failingCall) {
        closeCameras();
        return m_cameras.callsOf(
            [this] {
                button("buttonRefresh").click();
                for (auto* slider : sliders()) {
                    QTest::keyClick(slider->findChild<QSpinBox*>(), Qt::Key_Down);
                    for (int i = 0; i < 2; ++i)
                        slider->findChild<QPushButton*>()->toggle();
                }
                auto& combo = partOf<QComboBox>(*m_dialog, "comboInterface");
                for (int i = 0; i < combo.count(); ++i) {
                    combo.setCurrentIndex(i);
                    button("buttonAutoSet").menu()->actions().front()->trigger();
                }
            },
            failingCall);
    }

    /// Cameras whose slider still sets them, and shows what they then have.
    std::ptrdiff_t camerasThatObey() const {
        const auto all = sliders();
        return std::count_if(all.begin(), all.end(), [](BandwidthSliderWidget* slider) {
            if (!slider->findChild<QSpinBox*>()->isEnabled())
                return false;
            slider->setValue(20);
            return slider->getValue() == 20;
        });
    }

    const OwnSettings m_store;
    CapturedLog m_log;
    FaultyCameras m_cameras;
    std::unique_ptr<SpanletDialog> m_dialog;
};

TEST_F(SpanletDialogFaults, anyFailingCallLeavesTheOtherRowsUsable) {
    run(0);
    ASSERT_EQ(camerasThatObey(), FaultyCameras::count);
    const auto runWithFault = [this](std::uint64_t failingCall) {
        const std::uint64_t calls = run(failingCall);
        if (failingCall > FaultyCameras::callsThatList) {
            EXPECT_GE(camerasThatObey(), FaultyCameras::count - 1)
                << "failing call " << failingCall;
        }
        return calls;
    };
    EXPECT_GT(FaultyCameras::failEachCall(runWithFault), 200U);
    run(0);
    EXPECT_EQ(camerasThatObey(), FaultyCameras::count) << "no fault lasts";
}

} // namespace
