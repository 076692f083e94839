// SPDX-License-Identifier: BSD-3-Clause
#include "ui/features/FeatureTreeDialog.h"

#include "OrvCPP/OrvSystem.h"
#include "OrvSimulation/Simulation.h"
#include "engine/CameraHandler.h"
#include "engine/MakeSystemController.h"
#include "engine/SystemController.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/FakeFeatureController.h"
#include "tests/support/TextTree.h"
#include "tests/ui/features/FeatureTreeWindow.h"
#include "ui/features/FeatureTreeModel.h"

#include <QTest>
#include <QtWidgets>

#include <gmock/gmock.h>

namespace {

using namespace testing;

std::shared_ptr<FakeFeatureController> makeFeatures() {
    auto features = std::make_shared<FakeFeatureController>(std::vector<std::string>{"Camera"});
    features->add("Camera", "/Image", "PixelFormat", OrvFeatureDataString, std::string("Mono8"));
    features->add("Camera", "/Image", "PayloadSize", OrvFeatureDataInt, std::int64_t{100});
    features->add("Camera", "/Other", "Gamma", OrvFeatureDataFloat, 1.0);
    return features;
}

TEST(FeatureTreeDialog, opensFilteredAndExpandedAndCollapsesAllFeatures) {
    const QFont before = QApplication::font();
    QFont small = before;
    small.setPixelSize(9);
    QApplication::setFont(small);
    const FeatureTreeWindow window(makeFeatures());
    QApplication::setFont(before);
    EXPECT_EQ(window.dialog->size(), QSize(620, 570)) << "no larger font asks for more";
    EXPECT_TRUE(window.filter.isChecked());
    EXPECT_EQ(window.tree.model()->headerData(0, Qt::Horizontal), QStringLiteral("Feature Name"));
    EXPECT_EQ(window.tree.model()->headerData(1, Qt::Horizontal), QStringLiteral("Value"));
    EXPECT_EQ(textTree(*window.tree.model()),
              "Camera\n  Image\n    The PayloadSize | 100\n    The PixelFormat | Mono8\n");
    EXPECT_TRUE(window.tree.isExpanded(window.row("Image")));

    window.tree.setCurrentIndex(window.row("The PixelFormat"));
    QTest::mouseClick(&window.filter, Qt::LeftButton, {}, QPoint(10, 10));
    EXPECT_FALSE(window.tree.isExpanded(window.row("Camera")));
    EXPECT_EQ(window.tree.currentIndex(), window.row("Camera"));
    EXPECT_TRUE(window.row("The Gamma").isValid());

    window.filter.click();
    EXPECT_TRUE(window.tree.isExpanded(window.row("Image")));
    EXPECT_FALSE(window.row("The Gamma").isValid());
}

TEST(FeatureTreeDialog, writesAnOpenEditBeforeTheFilterIsSwitched) {
    const auto features = makeFeatures();
    const FeatureTreeWindow window(features);
    for (const char* text : {"7", "8"}) {
        window.dialog->onActivateProxyModel(false);
        window.tree.expandAll();
        ASSERT_NE(window.edit("The Gamma"), nullptr);
        QTest::keyClicks(QApplication::focusWidget(), QLatin1String(text));
        window.dialog->onActivateProxyModel(true);
    }
    EXPECT_THAT(features->written,
                ElementsAre(Pair("Gamma", FeatureValue(7.0)), Pair("Gamma", FeatureValue(8.0))));
}

TEST(FeatureTreeDialog, keepsValuesOnViewBesideLongNames) {
    const auto features = makeFeatures();
    features->add("Camera", "/Image", "Width").displayName.assign(200, 'W');
    const FeatureTreeWindow window(features);
    EXPECT_LT(window.tree.header()->sectionSize(0), window.tree.width() * 3 / 4);
}

TEST(FeatureTreeDialog, tabLeadsFromValueToValueAndTypingToNames) {
    const FeatureTreeWindow window(makeFeatures());
    window.filter.click();
    window.tree.expandAll();
    ASSERT_NE(window.edit("The PayloadSize"), nullptr);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_NE(window.editor("The PixelFormat"), nullptr);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_NE(window.editor("The Gamma"), nullptr) << "beyond the row of its category";
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab);
    EXPECT_NE(window.editor("The PixelFormat"), nullptr);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(window.editor("The Gamma"), nullptr) << "no further row";
    QTest::keyClicks(&window.tree, QStringLiteral("The Pay"));
    EXPECT_EQ(window.tree.currentIndex(), window.row("The PayloadSize"));
}

TEST(FeatureTreeDialog, showsAndEditsWhatWasWrittenByOtherMeans) {
    const auto features = makeFeatures();
    const FeatureTreeWindow window(features);
    FeatureValue& payload = features->features[{"Camera", "PayloadSize"}].value;
    payload = std::int64_t{200};
    EXPECT_EQ(window.edit("The PayloadSize")->findChild<QLineEdit*>()->text(),
              QStringLiteral("200"));
    QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("100"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    EXPECT_THAT(features->written,
                ElementsAre(Pair("PayloadSize", FeatureValue(std::int64_t{100}))));

    payload = std::int64_t{300};
    EXPECT_EQ(window.value("The PayloadSize"), QStringLiteral("100"));
    window.reactivate();
    EXPECT_EQ(window.value("The PayloadSize"), QStringLiteral("300"));
    features->features[{"Camera", "PayloadSize"}].writable = false;
    EXPECT_EQ(window.edit("The PayloadSize"), nullptr);

    auto* line = window.edit("The PixelFormat")->findChild<QLineEdit*>();
    QTest::keyClicks(line, QStringLiteral("Mono1"));
    features->features[{"Camera", "PixelFormat"}].value = std::string("Mono12");
    window.reactivate();
    EXPECT_EQ(line->text(), QStringLiteral("Mono1"));
    line->clear();
    QTest::keyClicks(line, QStringLiteral("Mono8"));
    QTest::keyClick(line, Qt::Key_Return);
    EXPECT_EQ(window.value("The PixelFormat"), QStringLiteral("Mono8"));
    EXPECT_EQ(features->written.size(), 2U) << "the former value is no exception";
}

TEST(FeatureTreeDialog, writesAnOpenEditBeforeItIsClosedInWhateverWay) {
    for (const bool byKey : {true, false}) {
        const auto features = makeFeatures();
        const FeatureTreeWindow window(features);
        window.edit("The PixelFormat");
        QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("Mono12"));
        std::size_t writtenAtClose = 0;
        QObject::connect(window.dialog, &FeatureTreeDialog::closed,
                         [&] { writtenAtClose = features->written.size(); });
        if (byKey)
            QTest::keyClick(window.dialog, Qt::Key_Escape);
        else
            window.dialog->findChild<QPushButton*>(QStringLiteral("closeButton"))->click();
        EXPECT_EQ(window.closed, 1);
        EXPECT_EQ(writtenAtClose, 1U);
        EXPECT_THAT(features->written,
                    ElementsAre(Pair("PixelFormat", FeatureValue(std::string("Mono12")))));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_TRUE(window.dialog.isNull());
        EXPECT_EQ(features.use_count(), 1);
    }
}

/// The dialog on a simulated camera of more than 200 features.
class FeatureTreeOfCamera : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(m_system.Startup(L""), OrvErrorSuccess);
        m_controller = makeSystemController(m_system);
        m_camera = m_controller->enumerate().at(0).at(0);
    }
    void TearDown() override {
        m_camera.reset();
        m_controller.reset();
        m_system.Shutdown();
    }
    /// How many calls \p action and the painting after it make.
    template <class Action> std::uint64_t calls(Action action) {
        m_simulation->ResetCalls();
        action();
        QCoreApplication::processEvents();
        QCoreApplication::processEvents();
        return m_simulation->GetCallCount();
    }

    CapturedLog m_log;
    OrvCPP::OrvSystem& m_system = OrvCPP::OrvSystem::GetInstance();
    OrvCPP::ISimulation* m_simulation = dynamic_cast<OrvCPP::ISimulation*>(&m_system);
    std::shared_ptr<SystemController> m_controller;
    std::shared_ptr<CameraHandler> m_camera;
};

TEST_F(FeatureTreeOfCamera, isReadOnlyAsFarAsItIsOnView) {
    const auto features = m_camera->getFeatureController();
    const auto listing = [&] {
        FeatureTreeModel(features).setupModelData();
    };
    listing();
    const std::uint64_t listed = calls(listing);
    std::unique_ptr<FeatureTreeWindow> window;
    EXPECT_LT(calls([&] { window = std::make_unique<FeatureTreeWindow>(features); }) - listed,
              300U);
    const auto activate = [&] {
        QEvent activation(QEvent::WindowActivate);
        QCoreApplication::sendEvent(window->dialog, &activation);
    };
    EXPECT_EQ(calls(activate), 0U) << "the window was not left";
    EXPECT_GT(window->tree.header()->sectionSize(0), 200);
    EXPECT_EQ(calls([&] { window->filter.click(); }), 0U);
    EXPECT_EQ(calls([&] { window->tree.expand(window->tree.model()->index(3, 0)); }), 0U);
    calls([&] { window->tree.expandAll(); });
    // Nothing is read twice.
    EXPECT_EQ(calls([&] { window->tree.collapseAll(); }), 0U);
    EXPECT_EQ(calls([&] { window->tree.expandAll(); }), 0U);
    EXPECT_LT(calls([&] { window->reactivate(); }), 150U);
}

TEST_F(FeatureTreeOfCamera, followsWhatAWriteChangesElsewhere) {
    const FeatureTreeWindow window(m_camera->getFeatureController());
    window.filter.click();
    window.tree.expandAll();
    for (int page = 0; page < 12; ++page)
        calls(
            [&] { window.tree.verticalScrollBar()->triggerAction(QScrollBar::SliderPageStepAdd); });
    const int payload = window.value("Payload Size").toInt();
    const QModelIndex format = window.row("Pixel Format").siblingAtColumn(1);
    window.tree.scrollTo(format);
    calls([] {});
    const int width = window.tree.header()->sectionSize(0);
    EXPECT_LT(
        calls([&] { EXPECT_TRUE(window.tree.model()->setData(format, QStringLiteral("Mono12"))); }),
        150U);
    EXPECT_EQ(window.tree.header()->sectionSize(0), width);
    EXPECT_EQ(window.value("Payload Size").toInt(), 2 * payload);
    EXPECT_FALSE(window.tree.model()->setData(format, QStringLiteral("NoFormat")));
    EXPECT_EQ(window.value("Pixel Format"), QStringLiteral("Mono12"));
    EXPECT_THAT(m_log.text(), testing::HasSubstr("Cannot set feature 'PixelFormat' to value"));
}

} // namespace
