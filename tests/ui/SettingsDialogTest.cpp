// SPDX-License-Identifier: BSD-3-Clause
#include "ui/SettingsDialog.h"

#include "tests/support/WidgetParts.h"

#include <QTest>
#include <QtWidgets>
#include <gmock/gmock.h>

#include <functional>
#include <string>
#include <vector>

namespace {

using testing::ElementsAre;

/// What the four margins are called in the form.
const std::string names[] = {"GigEInterface", "GigECamera", "USBInterface", "USBCamera"};
using Values = std::vector<int>;
const Values defaults{10, 5, 30, 5};

class SettingsDialogTest : public testing::Test {
protected:
    ~SettingsDialogTest() override { delete m_dialog; }

    void open(bool autoAdjust = false) {
        m_dialog = new SettingsDialog(autoAdjust, &m_store);
        QObject::connect(m_dialog, &SettingsDialog::activateAutoAdjustPacketsize,
                         [this](bool state) { m_events.push_back(state ? "adjust" : "leave"); });
        QObject::connect(m_dialog, &SettingsDialog::settingsSaved,
                         [this] { m_events.push_back("saved\n" + stored()); });
        m_dialog->show();
    }
    void press(QDialogButtonBox::StandardButton button) {
        partOf<QDialogButtonBox>(*m_dialog, "buttonBox").button(button)->click();
        EXPECT_TRUE(QTest::qWaitFor([this] { return m_dialog.isNull(); }));
    }
    /// Presses keys in a spin box, where the focus is, and answers the question if it is asked.
    bool asksForDebugMessages(QMessageBox::StandardButton answer,
                              Qt::KeyboardModifiers modifiers = Qt::ControlModifier |
                                                                Qt::ShiftModifier) {
        bool isAsked = false;
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, [&isAsked, answer] {
            auto& box = dynamic_cast<QMessageBox&>(*QApplication::activeModalWidget());
            isAsked = box.windowTitle() == QStringLiteral("Logging");
            box.button(answer)->click();
        });
        timer.start(0);
        // Without the event loop: only the question runs one.
        QTest::keyPress(&spin(0), Qt::Key_D, modifiers);
        return isAsked;
    }

    QSpinBox& spin(std::size_t row) const {
        return partOf<QSpinBox>(*m_dialog, names[row] + "SpinBox");
    }
    Values values() const {
        return {spin(0).value(), spin(1).value(), spin(2).value(), spin(3).value()};
    }
    void setValues(const Values& wanted) const {
        for (std::size_t row = 0; row < wanted.size(); ++row)
            spin(row).setValue(wanted[row]);
    }
    std::string warnings() const {
        std::string visible;
        for (const char* name : {"Camera", "InterfaceUSB", "InterfaceGigE"}) {
            if (partOf<QFrame>(*m_dialog, std::string("frameWarning") + name).isVisible())
                visible += std::string(name) + ' ';
        }
        return visible;
    }
    /// No text is cut off at the bottom.
    void expectWholeTexts() const {
        QCoreApplication::processEvents();
        for (const QLabel* label : m_dialog->findChildren<QLabel*>())
            EXPECT_TRUE(!label->wordWrap() || !label->isVisible() ||
                        label->height() >= label->heightForWidth(label->width()))
                << label->objectName().toStdString();
    }
    /// Everything in the store.
    std::string stored() const {
        QString lines;
        for (const QString& key : m_store.allKeys())
            lines +=
                key + QStringLiteral(" = ") + m_store.value(key).toString() + QLatin1Char('\n');
        return lines.toStdString();
    }

    QTemporaryDir m_folder;
    QSettings m_store{m_folder.filePath(QStringLiteral("store.ini")), QSettings::IniFormat};
    QPointer<SettingsDialog> m_dialog;
    std::vector<std::string> m_events;
};

TEST_F(SettingsDialogTest, emptyStoreShowsTheDefaultsWithoutWarnings) {
    open();
    EXPECT_EQ(values(), defaults);
    EXPECT_EQ(warnings(), "");
    // With its title, the window fits on the screen.
    const int most = m_dialog->screen()->availableSize().height() -
                     m_dialog->style()->pixelMetric(QStyle::PM_TitleBarHeight);
    EXPECT_EQ(m_dialog->height(), std::min(663, most));
    EXPECT_EQ(m_dialog->windowTitle(), QStringLiteral("Auto Set Settings"));
    EXPECT_FALSE(m_dialog->windowFlags().testFlag(Qt::WindowContextHelpButtonHint));
    for (std::size_t row = 0; row < defaults.size(); ++row) {
        Values expected{1, 2, 3, 4};
        setValues(expected);
        partOf<QPushButton>(*m_dialog, names[row] + "PushButton").click();
        expected[row] = defaults[row];
        EXPECT_EQ(values(), expected) << "the button resets its row only";
    }
    EXPECT_EQ(stored(), "");
}

TEST_F(SettingsDialogTest, warnsOfValuesBelowTheDefaults) {
    const std::pair<Values, const char*> cases[] = {
        {{10, 5, 29, 5}, "InterfaceUSB "},
        {{9, 5, 30, 5}, "InterfaceGigE "},
        {{10, 4, 30, 5}, "Camera "},
        {{10, 5, 30, 4}, "Camera "},
        {{0, 0, 0, 0}, "Camera InterfaceUSB InterfaceGigE "},
        {defaults, ""},
        {{50, 50, 50, 50}, ""},
    };
    open();
    m_dialog->resize(900, 900);
    for (const auto& [shown, expected] : cases) {
        setValues(shown);
        EXPECT_EQ(warnings(), expected) << testing::PrintToString(shown);
        expectWholeTexts();
    }
    EXPECT_TRUE(m_dialog->width() < 600 && m_dialog->height() < 663) << "not adjusted";
    setValues({0, 0, 0, 0});
    press(QDialogButtonBox::Ok);
    open();
    EXPECT_EQ(warnings(), "Camera InterfaceUSB InterfaceGigE ");
    expectWholeTexts();
    QFont large = m_dialog->font();
    large.setPointSize(30);
    m_dialog->setFont(large);
    setValues({1, 1, 1, 1});
    expectWholeTexts();
    EXPECT_LT(m_dialog->height(), m_dialog->screen()->availableSize().height());
}

TEST_F(SettingsDialogTest, okStoresEverythingBeforeItSaysSo) {
    open(true);
    setValues({11, 6, 31, 7});
    press(QDialogButtonBox::Ok);
    EXPECT_THAT(m_events, ElementsAre("adjust", "saved\n" + stored()));
    EXPECT_EQ(stored(), std::string("Safety Margins/camera_GigE = 6\n"
                                    "Safety Margins/camera_USB = 7\n"
                                    "Safety Margins/interface_GigE = 11\n"
                                    "Safety Margins/interface_USB = 31\n"
                                    "ShowDebugMessages = ") +
                            (QLibraryInfo::isDebugBuild() ? "true\n" : "false\n"));
    open();
    EXPECT_EQ(values(), (Values{11, 6, 31, 7}));
}

TEST_F(SettingsDialogTest, everyOtherWayOutReportsThePacketFlagAndStoresNothing) {
    const std::function<void()> ways[] = {
        [this] { press(QDialogButtonBox::Cancel); },
        [this] { m_dialog->close(); },
        [this] { delete m_dialog; },
    };
    for (const auto& leave : ways) {
        m_events.clear();
        open(false);
        partOf<QCheckBox>(*m_dialog, "autoAdjustCheckBox").click();
        setValues({1, 2, 3, 4});
        EXPECT_TRUE(asksForDebugMessages(QMessageBox::Yes));
        leave();
        EXPECT_TRUE(QTest::qWaitFor([this] { return m_dialog.isNull(); }));
        EXPECT_THAT(m_events, ElementsAre("adjust"));
        EXPECT_EQ(stored(), "");
    }
}

TEST_F(SettingsDialogTest, debugMessagesAreSwitchedByTheHiddenQuestionAndOk) {
    const QString key = QStringLiteral("ShowDebugMessages");
    open();
    EXPECT_FALSE(asksForDebugMessages(QMessageBox::Yes, Qt::ControlModifier));
    EXPECT_FALSE(asksForDebugMessages(QMessageBox::Yes, Qt::ShiftModifier));
    EXPECT_TRUE(asksForDebugMessages(QMessageBox::Yes));
    EXPECT_TRUE(asksForDebugMessages(QMessageBox::Cancel));
    EXPECT_EQ(stored(), "") << "stored before OK";
    press(QDialogButtonBox::Ok);
    open();
    press(QDialogButtonBox::Ok);
    EXPECT_EQ(m_store.value(key), true) << "not stored, or not loaded";

    open();
    EXPECT_TRUE(asksForDebugMessages(QMessageBox::No));
    press(QDialogButtonBox::Ok);
    EXPECT_EQ(m_store.value(key), false);
}

TEST_F(SettingsDialogTest, loadsOddValuesAsNumbersInRange) {
    const QString key = QStringLiteral("Safety Margins/interface_USB");
    const std::pair<const char*, int> cases[] = {{"ten", 0}, {"-3", 0},   {"200", 50},
                                                 {"12", 12}, {"12.7", 0}, {"", 0}};
    for (const auto& [odd, shown] : cases) {
        m_store.setValue(key, QLatin1String(odd));
        open();
        EXPECT_EQ(values(), (Values{10, 5, shown, 5}));
        EXPECT_EQ(warnings(), shown < 30 ? "InterfaceUSB " : "");
        press(QDialogButtonBox::Cancel);
    }
}

} // namespace
