// SPDX-License-Identifier: BSD-3-Clause
#include "ui/SupportDialog.h"

#include "tests/support/CapturedLog.h"
#include "tests/support/OwnSettings.h"
#include "tests/support/Resources.h"
#include "tests/support/WidgetParts.h"
#include "tests/ui/FakeCameras.h"
#include "ui/SpanletDialog.h"

#include <QTest>
#include <QtWidgets>
#include <gmock/gmock.h>

namespace {

class SupportDialogTest : public testing::Test {
protected:
    SupportDialogTest() { initResources(); }

    void start() {
        auto system = std::make_shared<FakeSystem>(FakeSystem::FakeList{});
        ON_CALL(*system, QueryVersion).WillByDefault([](OrvVersionInfo& version) {
            version = {4, 5, 6};
            return OrvErrorType{OrvErrorSuccess};
        });
        m_main.reset();
        m_main = std::make_unique<SpanletDialog>(unusedOrvSystem(), false, nullptr,
                                                 makeController(system));
        m_main->show();
    }
    SupportDialog* opened() const { return m_main->findChild<SupportDialog*>(); }

    const OwnSettings m_settings;
    QSettings m_store{QStringLiteral("Meridane"), QStringLiteral("Spanlet")};
    CapturedLog m_log;
    std::unique_ptr<SpanletDialog> m_main;
};

TEST_F(SupportDialogTest, showsThePageFromItsTop) {
    SupportDialog page(&m_store);
    page.setAttribute(Qt::WA_DeleteOnClose, false);
    page.show();
    EXPECT_FALSE(page.windowFlags().testFlag(Qt::WindowContextHelpButtonHint));
    auto& label = partOf<QLabel>(page, "labelPage");
    EXPECT_TRUE(label.openExternalLinks());
    page.resize(400, 600);
    QCoreApplication::processEvents();
    const auto& area = *page.findChild<QScrollArea*>();
    EXPECT_EQ(area.horizontalScrollBar()->maximum(), 0) << "lines break";
    EXPECT_GT(area.verticalScrollBar()->maximum(), 0);
    EXPECT_GE(label.height(), label.heightForWidth(label.width()));
    QTest::keyClick(&label, Qt::Key_PageDown);
    EXPECT_GT(area.verticalScrollBar()->value(), 0) << "can be read without a mouse";
    EXPECT_EQ(label.grab().toImage().pixelColor(2, 2), QColor(0xf5, 0xf5, 0xf5));
}

TEST_F(SupportDialogTest, showsTheEnglishPageForAMissingOne) {
    struct : QTranslator {
        QString translate(const char*, const char* text, const char*, int) const override {
            return *text == ':' ? QStringLiteral(":/pages/pages/missing.html") : QString();
        }
    } translation;
    QCoreApplication::installTranslator(&translation);
    const SupportDialog page(&m_store);
    EXPECT_TRUE(partOf<QLabel>(page, "labelPage").text().contains(QStringLiteral("Get Started")));
}

TEST_F(SupportDialogTest, pagesHaveTheSameStructure) {
    const auto tags = [](const char* name) {
        QFile file(QStringLiteral(":/pages/pages/%1.html").arg(QLatin1String(name)));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name;
        const QString html = QString::fromUtf8(file.readAll());
        EXPECT_TRUE(html.contains(QStringLiteral("background-color: #f5f5f5; color: #")));
        return html.section(QStringLiteral("<body>"), 1)
            .remove(QRegularExpression(QStringLiteral("[^<>]+(?=<)")));
    };
    EXPECT_EQ(tags("GetStarted").toStdString(), tags("GetStarted_de").toStdString());
}

TEST_F(SupportDialogTest, opensAfterTheMainDialogUntilItIsSwitchedOff) {
    start();
    EXPECT_EQ(opened(), nullptr);
    ASSERT_TRUE(QTest::qWaitFor([this] { return opened() != nullptr; }));
    EXPECT_EQ(QApplication::activeModalWidget(), opened());
    EXPECT_EQ(m_store.allKeys(), QStringList());
    QTest::keyClick(opened()->findChild<QCheckBox*>(), Qt::Key_Space);
    EXPECT_EQ(m_store.value(QStringLiteral("Support Dialog/active")), false);
    opened()->close();
    EXPECT_TRUE(QTest::qWaitFor([this] { return opened() == nullptr; })) << "deletes itself";

    start();
    EXPECT_FALSE(QTest::qWaitFor([this] { return opened() != nullptr; }, 100));
    QTest::mouseClick(&partOf<QPushButton>(*m_main, "buttonSupport"), Qt::LeftButton);
    ASSERT_NE(opened(), nullptr);
    QTest::keyClick(opened()->findChild<QCheckBox*>(), Qt::Key_Space);
    EXPECT_EQ(m_store.value(QStringLiteral("Support Dialog/active")), true);
}

TEST_F(SupportDialogTest, aboutTellsTheVersions) {
    switchOffHelpAtStart();
    start();
    std::string text;
    QTimer::singleShot(0, m_main.get(), [&text] {
        auto& box = dynamic_cast<QMessageBox&>(*QApplication::activeModalWidget());
        text = (box.windowTitle() + QLatin1Char(':') + box.text()).toStdString();
        box.close();
    });
    const auto actions = partOf<QPushButton>(*m_main, "buttonAbout").menu()->actions();
    ASSERT_EQ(actions.size(), 2);
    actions.front()->trigger();
    EXPECT_EQ(actions.last()->text(), QStringLiteral("About Qt"));
    EXPECT_THAT(text, testing::StartsWith("About Orvia Spanlet:Spanlet is a Qt application using "
                                          "the OrvCPP API.\n\nVersion: 1.0.0\n"
                                          "Orv API Version: 4.5.6\n\nCopyright"));
}

} // namespace
