// SPDX-License-Identifier: BSD-3-Clause
#include "features/FeatureController.h"
#include "sdk/OrvCameraWrapper.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/FaultyCameras.h"
#include "tests/ui/features/FeatureTreeWindow.h"
#include "ui/features/FeatureTreeModel.h"
#include "ui/features/editors/LongSpinBox.h"

#include <QtWidgets>

#include <gmock/gmock.h>

namespace {

constexpr const char* cameraId = "DEV_G001";

/// Presses the key that leads away from the value.
void step(LongSpinBox& spin) {
    QTest::keyClick(&spin, spin.value() == 64 ? Qt::Key_Down : Qt::Key_Up);
}

void step(QComboBox& box) {
    QTest::keyClick(&box, box.currentIndex() == 0 ? Qt::Key_End : Qt::Key_Home);
}

void step(QPushButton& /*button*/) {}

/// The feature tree of a simulated camera, each call of which can be made to fail.
class FeatureTreeFaults : public testing::Test {
protected:
    void SetUp() override {
        std::shared_ptr<OrvCPP::Camera> found;
        ASSERT_EQ(m_cameras.system.GetCameraByID(cameraId, found), OrvErrorSuccess);
        m_camera = std::make_shared<OrvCameraWrapper>(found);
        ASSERT_EQ(m_camera->Open(OrvAccessModeFull), OrvErrorSuccess);
    }
    void TearDown() override {
        m_camera->Close();
        m_camera.reset();
    }

    /// A new controller has nothing in memory, so that every read is a call that can fail.
    std::shared_ptr<FeatureController> makeFeatures() const {
        return std::make_shared<FeatureController>(m_camera, "Cam");
    }

    /// Begins to edit a feature and chooses another value. Null for one that cannot be edited now.
    template <class Part> static Part* begin(const FeatureTreeWindow& window, const char* name) {
        const QWidget* editor = window.edit(name);
        auto* part = editor != nullptr ? editor->findChild<Part*>() : nullptr;
        if (part != nullptr)
            step(*part);
        return part;
    }
    /// False for a feature that cannot be edited now.
    template <class Part> static bool edit(const FeatureTreeWindow& window, const char* name) {
        auto* part = begin<Part>(window, name);
        if (part != nullptr)
            QTest::keyClick(part, Qt::Key_Return);
        return part != nullptr;
    }

    static void scroll(const FeatureTreeWindow& window) {
        QScrollBar& bar = *window.tree.verticalScrollBar();
        do {
            window.tree.viewport()->grab();
            bar.triggerAction(QAbstractSlider::SliderPageStepAdd);
        } while (bar.value() < bar.maximum());
    }

    /// Features of which the tree shows what it writes.
    static int featuresThatObey(QAbstractItemModel& tree) {
        int count = 0;
        for (const char* name : {"Width", "Height"}) {
            const QModelIndex index = rowIn(tree, name).siblingAtColumn(1);
            const int other = index.data().toInt() == 64 ? 32 : 64;
            count += tree.setData(index, other) && index.data().toInt() == other ? 1 : 0;
        }
        return count;
    }

    std::uint64_t run(std::uint64_t failingCall, bool filtered) {
        return m_cameras.callsOf([&] { useTree(failingCall, filtered); }, failingCall);
    }

    /// Opens the tree, scrolls through all of it, edits a number and an enumeration that others
    /// depend on, runs a command, and closes the tree during an edit.
    void useTree(std::uint64_t failingCall, bool filtered) {
        m_log.clear();
        const FeatureTreeWindow window(makeFeatures());
        window.filter.setChecked(filtered);
        window.tree.expandAll();
        scroll(window);
        int edited = edit<LongSpinBox>(window, "Width") ? 1 : 0;
        edited += edit<QComboBox>(window, "Pixel Format") ? 1 : 0;
        edited += edit<QPushButton>(window, "Trigger Software") ? 1 : 0;
        EXPECT_TRUE(edited == 3 || failingCall > 0);
        window.tree.viewport()->grab();
        if (failingCall > 0 && m_cameras.simulation.GetCallCount() >= failingCall)
            expectThatItStillWorks(*window.tree.model(), failingCall);
        begin<LongSpinBox>(window, "Height");
        window.dialog->close();
        EXPECT_EQ(window.closed, 1);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_TRUE(window.dialog.isNull());
    }

    /// Each call is about one feature, except the two that list all.
    void expectThatItStillWorks(QAbstractItemModel& tree, std::uint64_t failingCall) {
        m_cameras.simulation.FailCall(0, OrvErrorSuccess);
        const bool listed =
            m_log.text().find("Cannot get features of module: 'Camera'") == std::string::npos;
        m_unlisted += listed ? 0 : 1;
        EXPECT_GE(featuresThatObey(tree), listed ? 1 : 0) << "failing call " << failingCall;
    }

    /// Builds a tree. Returns the number of calls made.
    std::uint64_t list(std::uint64_t failingCall) {
        m_log.clear();
        FeatureTreeModel tree(makeFeatures());
        const std::uint64_t calls =
            m_cameras.callsOf([&tree] { tree.setupModelData(); }, failingCall);
        expectThatItStillWorks(tree, failingCall);
        return calls;
    }

    CapturedLog m_log;
    FaultyCameras m_cameras;
    std::shared_ptr<OrvCameraWrapper> m_camera;
    int m_unlisted = 0;
};

TEST_F(FeatureTreeFaults, anyFailingCallLeavesAListThatCanBeUsed) {
    const std::uint64_t calls = list(0);
    EXPECT_GT(calls, 1000U);
    for (std::uint64_t failingCall = 1; failingCall <= calls && !HasFailure(); ++failingCall)
        list(failingCall);
    EXPECT_EQ(m_unlisted, 2) << "the number of the camera's features, and the features";
}

TEST_F(FeatureTreeFaults, anyFailingCallLeavesTheListedTreeUsable) {
    const std::uint64_t listing = list(0);
    // Intervals, since a run takes 40 ms and more.
    for (const auto& [filtered, interval, least] :
         {std::tuple(true, 13U, listing + 600), {false, 67, 4000}}) {
        const bool isFiltered = filtered;
        run(0, isFiltered);
        EXPECT_THAT(m_log.text(), testing::Not(testing::HasSubstr("Warning:")));
        EXPECT_GT(FaultyCameras::failEachCall([&](auto call) { return run(call, isFiltered); },
                                              listing + 1, interval),
                  least);
    }
}

TEST_F(FeatureTreeFaults, aVanishedCameraLeavesNothingToWriteTo) {
    for (const bool byClosing : {false, true}) {
        const FeatureTreeWindow window(makeFeatures());
        auto* editor = begin<LongSpinBox>(window, "Width");
        ASSERT_NE(editor, nullptr);
        m_cameras.simulation.SetCameraPlugged(cameraId, false);
        // The main dialog lets go of it.
        m_camera->Close();
        m_log.clear();
        if (byClosing) {
            window.dialog->close();
        } else {
            QTest::keyClick(editor, Qt::Key_Return);
            EXPECT_EQ(window.value("Width"), QStringLiteral("64"));
            EXPECT_EQ(window.edit("Width"), nullptr) << "it cannot be read any more";
        }
        EXPECT_THAT(m_log.text(),
                    testing::HasSubstr("Warning:Cam: Cannot set feature 'Width' to value: 56"));
        m_cameras.simulation.SetCameraPlugged(cameraId, true);
        ASSERT_EQ(m_camera->Open(OrvAccessModeFull), OrvErrorSuccess);
    }
    EXPECT_GT(featuresThatObey(*FeatureTreeWindow(makeFeatures()).tree.model()), 0);
}

} // namespace
