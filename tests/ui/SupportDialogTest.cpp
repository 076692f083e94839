// SPDX-License-Identifier: BSD-3-Clause
#include "ui/SupportDialog.h"

#include "tests/support/CapturedLog.h"
#include "tests/support/OwnSettings.h"
#include "tests/support/Resources.h"
#include "tests/ui/FakeCameras.h"
#include "ui/SettingsKeys.h"
#include "ui/SpanletDialog.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QFile>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QRegularExpression>
#include <QScrollArea>
#include <QScrollBar>
#include <QSettings>
#include <QTest>
#include <QTranslator>
#include <gmock/gmock.h>

namespace {

const QLatin1String activeKey("Support Dialog/active");

class SupportDialogTest : public testing::Test {
protected:
    SupportDialogTest() {
        initResources();
        m_store =
            std::make_unique<QSettings>(QStringLiteral("Meridane"), QStringLiteral("Spanlet"));
    }
    ~SupportDialogTest() override { delete m_page; }

    void open() {
        m_page = new SupportDialog(m_store.get());
        m_page->show();
    }
    void close() {
        QTest::keyClick(m_page, Qt::Key_Escape);
        EXPECT_TRUE(QTest::qWaitFor([this] { return m_page.isNull(); })) << "deletes itself";
    }
    QCheckBox& checkBox() const { return *m_page->findChild<QCheckBox*>(); }
    QLabel& label() const { return *m_page->findChild<QLabel*>(); }

    void start() {
        auto system = std::make_shared<FakeSystem>(FakeSystem::FakeList{});
        ON_CALL(*system, QueryVersion).WillByDefault([](OrvVersionInfo& version) {
            version = {4, 5, 6};
            return OrvErrorType{OrvErrorSuccess};
        });
        m_main = std::make_unique<SpanletDialog>(unusedOrvSystem(), false, nullptr,
                                                 makeController(system));
        m_main->show();
    }
    QPushButton& button(const char* name) const {
        return *m_main->findChild<QPushButton*>(QString::fromLatin1(name));
    }
    SupportDialog* opened() const { return m_main->findChild<SupportDialog*>(); }

    const OwnSettings m_settings;
    std::unique_ptr<QSettings> m_store;
    QPointer<SupportDialog> m_page;
    CapturedLog m_log;
    std::unique_ptr<SpanletDialog> m_main;
};

TEST_F(SupportDialogTest, showsThePageFromItsTop) {
    open();
    EXPECT_EQ(m_page->windowTitle(), QStringLiteral("Spanlet"));
    EXPECT_EQ(m_page->windowModality(), Qt::ApplicationModal);
    EXPECT_FALSE(m_page->windowFlags().testFlag(Qt::WindowContextHelpButtonHint));
    EXPECT_EQ(m_page->minimumHeight(), 600);
    EXPECT_TRUE(label().openExternalLinks());
    m_page->resize(400, 600);
    QCoreApplication::processEvents();
    const auto& area = *m_page->findChild<QScrollArea*>();
    EXPECT_EQ(area.horizontalScrollBar()->maximum(), 0) << "lines break";
    EXPECT_GT(area.verticalScrollBar()->maximum(), 0);
    EXPECT_GE(label().height(), label().heightForWidth(label().width()));
    QTest::keyClick(&label(), Qt::Key_PageDown);
    EXPECT_GT(area.verticalScrollBar()->value(), 0) << "can be read without a mouse";
    EXPECT_EQ(label().grab().toImage().pixelColor(2, 2), QColor(0xf5, 0xf5, 0xf5));
}

TEST_F(SupportDialogTest, showsTheEnglishPageForAMissingOne) {
    struct : QTranslator {
        QString translate(const char*, const char* text, const char*, int) const override {
            return *text == ':' ? QStringLiteral(":/pages/pages/missing.html") : QString();
        }
    } translation;
    QCoreApplication::installTranslator(&translation);
    open();
    EXPECT_TRUE(label().text().contains(QStringLiteral("<h1>Get Started</h1>")));
}

/// Every language has the same headings, lists and links.
TEST_F(SupportDialogTest, pagesHaveTheSameStructureAndNeedNoOtherColours) {
    QStringList outlines;
    for (const char* name : {"GetStarted", "GetStarted_de"}) {
        QFile file(QStringLiteral(":/pages/pages/%1.html").arg(QLatin1String(name)));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << name;
        QString html = QString::fromUtf8(file.readAll());
        EXPECT_TRUE(html.contains(QStringLiteral("background-color: #f5f5f5; color: #")));
        html.remove(0, html.indexOf(QStringLiteral("<body>")));
        QString outline;
        const QRegularExpression tag(QStringLiteral("</?(h\\d|ol|ul|li|a)\\b[^>]*>"));
        for (auto found = tag.globalMatch(html); found.hasNext();)
            outline += found.next().captured().simplified();
        outlines << outline;
    }
    EXPECT_EQ(outlines[0].toStdString(), outlines[1].toStdString());
    EXPECT_EQ(outlines[0].count(QStringLiteral("<a ")), 3);
}

TEST_F(SupportDialogTest, storesTheChoiceAtOnceAndOnlyWhenItIsMade) {
    open();
    EXPECT_TRUE(checkBox().isChecked());
    EXPECT_EQ(checkBox().text(), QStringLiteral("Show this dialog on start of the Spanlet."));
    EXPECT_FALSE(m_store->contains(activeKey));
    QTest::keyClick(&checkBox(), Qt::Key_Space);
    EXPECT_EQ(m_store->value(activeKey), false);
    close();

    open();
    EXPECT_FALSE(checkBox().isChecked());
    QTest::keyClick(&checkBox(), Qt::Key_Space);
    EXPECT_EQ(m_store->value(activeKey), true);
    m_store.reset();
    QTest::keyClick(&checkBox(), Qt::Key_Space);
    close();
}

TEST_F(SupportDialogTest, opensAfterTheMainDialogUntilItIsSwitchedOff) {
    start();
    EXPECT_EQ(opened(), nullptr);
    ASSERT_TRUE(QTest::qWaitFor([this] { return opened() != nullptr; }));
    EXPECT_TRUE(opened()->isVisible());
    EXPECT_EQ(QApplication::activeModalWidget(), opened());
    QTest::keyClick(opened()->findChild<QCheckBox*>(), Qt::Key_Space);
    opened()->close();
    ASSERT_TRUE(QTest::qWaitFor([this] { return opened() == nullptr; }));
    m_main.reset();

    start();
    EXPECT_FALSE(QTest::qWaitFor([this] { return opened() != nullptr; }, 100));
    QTest::mouseClick(&button("buttonSupport"), Qt::LeftButton);
    ASSERT_NE(opened(), nullptr);
    EXPECT_FALSE(opened()->findChild<QCheckBox*>()->isChecked());
}

TEST_F(SupportDialogTest, aboutTellsTheVersions) {
    m_store->setValue(activeKey, false);
    start();
    std::vector<std::string> boxes;
    for (QAction* action : button("buttonAbout").menu()->actions()) {
        QTimer::singleShot(0, m_main.get(), [&] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            ASSERT_NE(box, nullptr);
            boxes.push_back((box->windowTitle() + QLatin1Char(':') + box->text()).toStdString());
            box->close();
        });
        action->trigger();
    }
    EXPECT_THAT(boxes,
                testing::ElementsAre(
                    testing::MatchesRegex(
                        "About Orvia Spanlet:Spanlet is a Qt application using the OrvCPP API.\n\n"
                        "Version: 1.0.0\nOrv API Version: 4.5.6\n\nCopyright.+"),
                    testing::StartsWith("About Qt:")));
}

} // namespace
