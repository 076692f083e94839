// SPDX-License-Identifier: BSD-3-Clause
#include "ui/SettingsDialog.h"

#include "tests/ui/Images.h"
#include "ui/SettingsKeys.h"

#include <QApplication>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFrame>
#include <QKeyEvent>
#include <QLabel>
#include <QLibraryInfo>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QSpinBox>
#include <QStyle>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <gmock/gmock.h>

#include <array>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace {

using testing::ElementsAre;

/// What the four margins are called in the form and in the store, in the order of \c Values.
struct Row {
    const char* name;
    const char* key;
};
constexpr Row rows[] = {{"GigEInterface", "Safety Margins/interface_GigE"},
                        {"GigECamera", "Safety Margins/camera_GigE"},
                        {"USBInterface", "Safety Margins/interface_USB"},
                        {"USBCamera", "Safety Margins/camera_USB"}};
using Values = std::array<int, 4>;
constexpr Values defaults{10, 5, 30, 5};

class SettingsDialogTest : public testing::Test {
protected:
    SettingsDialogTest() { initResources(); }
    ~SettingsDialogTest() override { delete m_dialog; }

    void open(bool autoAdjust = false) {
        m_dialog = new SettingsDialog(autoAdjust, m_store.get());
        QObject::connect(m_dialog, &SettingsDialog::activateAutoAdjustPacketsize,
                         [this](bool state) { m_events.push_back(state ? "adjust" : "leave"); });
        QObject::connect(m_dialog, &SettingsDialog::settingsSaved, [this] {
            m_events.push_back("saved " + stored(rows[0].key).toString().toStdString());
        });
        m_dialog->show();
    }
    void press(QDialogButtonBox::StandardButton button) {
        widget<QDialogButtonBox>("buttonBox").button(button)->click();
        EXPECT_TRUE(QTest::qWaitFor([this] { return m_dialog.isNull(); }));
    }
    /// Presses Ctrl+Shift+D in a spin box, where the focus is, and answers the question if asked.
    bool answerDebugQuestion(QMessageBox::StandardButton answer,
                             Qt::KeyboardModifiers modifiers = Qt::ControlModifier |
                                                               Qt::ShiftModifier) {
        bool asked = false;
        QTimer questionTimer;
        QObject::connect(&questionTimer, &QTimer::timeout, [&asked, answer] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            ASSERT_NE(box, nullptr);
            asked = true;
            EXPECT_EQ(box->windowTitle(), QStringLiteral("Logging"));
            EXPECT_EQ(box->text(),
                      QStringLiteral("Should the Debug-messages be activated?\nWill be saved with "
                                     "submitting the 'Settings'-dialog with 'OK'."));
            EXPECT_EQ(box->standardButtons(),
                      QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
            box->button(answer)->click();
        });
        questionTimer.setSingleShot(true);
        questionTimer.start(0);
        // Without the event loop: only the question runs one.
        QKeyEvent press(QEvent::KeyPress, Qt::Key_D, modifiers);
        QApplication::sendEvent(&spin(rows[0]), &press);
        return asked;
    }

    template <class Widget> Widget& widget(const std::string& name) const {
        auto* found = m_dialog->findChild<Widget*>(QString::fromStdString(name));
        return found != nullptr ? *found : throw std::runtime_error(name);
    }
    QSpinBox& spin(const Row& row) const {
        return widget<QSpinBox>(std::string(row.name) + "SpinBox");
    }
    QPushButton& reset(const Row& row) const {
        return widget<QPushButton>(std::string(row.name) + "PushButton");
    }
    Values values() const {
        Values shown{};
        std::transform(std::begin(rows), std::end(rows), shown.begin(),
                       [this](const Row& row) { return spin(row).value(); });
        return shown;
    }
    void setValues(const Values& wanted) const {
        for (std::size_t row = 0; row < wanted.size(); ++row)
            spin(rows[row]).setValue(wanted[row]);
    }
    std::string warnings() const {
        std::string visible;
        for (const char* name : {"Camera", "InterfaceUSB", "InterfaceGigE"}) {
            if (widget<QFrame>(std::string("frameWarning") + name).isVisible())
                visible += std::string(visible.empty() ? "" : " ") + name;
        }
        return visible;
    }
    /// No text is cut off at the bottom.
    void expectWholeTexts() const {
        QCoreApplication::processEvents();
        for (const QLabel* label : m_dialog->findChildren<QLabel*>()) {
            if (label->wordWrap() && label->isVisible()) {
                EXPECT_GE(label->height(), label->heightForWidth(label->width()))
                    << label->objectName().toStdString();
            }
        }
    }
    QVariant stored(const char* key) const { return m_store->value(QLatin1String(key)); }

    QTemporaryDir m_folder;
    std::unique_ptr<QSettings> m_store = std::make_unique<QSettings>(
        m_folder.filePath(QStringLiteral("store.ini")), QSettings::IniFormat);
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
    EXPECT_TRUE(m_store->allKeys().isEmpty());
}

TEST_F(SettingsDialogTest, warnsOfValuesBelowTheDefaults) {
    const std::vector<std::pair<Values, std::string>> cases{
        {{10, 5, 29, 5}, "InterfaceUSB"},
        {{9, 5, 30, 5}, "InterfaceGigE"},
        {{10, 4, 30, 5}, "Camera"},
        {{10, 5, 30, 4}, "Camera"},
        {{0, 0, 0, 0}, "Camera InterfaceUSB InterfaceGigE"},
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
    EXPECT_EQ(warnings(), "Camera InterfaceUSB InterfaceGigE");
    expectWholeTexts();
    QFont large = m_dialog->font();
    large.setPointSize(30);
    m_dialog->setFont(large);
    setValues({1, 1, 1, 1});
    expectWholeTexts();
    EXPECT_LT(m_dialog->height(), m_dialog->screen()->availableSize().height());
}

TEST_F(SettingsDialogTest, resetButtonRestoresItsRowOnly) {
    open();
    for (std::size_t row = 0; row < defaults.size(); ++row) {
        Values expected{1, 2, 3, 4};
        setValues(expected);
        reset(rows[row]).click();
        expected[row] = defaults[row];
        EXPECT_EQ(values(), expected);
    }
}

TEST_F(SettingsDialogTest, okStoresEverythingBeforeItSaysSo) {
    open(true);
    const Values chosen{11, 6, 31, 7};
    setValues(chosen);
    press(QDialogButtonBox::Ok);
    EXPECT_THAT(m_events, ElementsAre("adjust", "saved 11"));
    for (std::size_t row = 0; row < chosen.size(); ++row)
        EXPECT_EQ(stored(rows[row].key), QVariant(chosen[row])) << rows[row].key;
    EXPECT_EQ(stored("ShowDebugMessages"), QVariant(QLibraryInfo::isDebugBuild()));
    EXPECT_EQ(m_store->allKeys().size(), 5);
    open();
    EXPECT_EQ(values(), chosen);
}

TEST_F(SettingsDialogTest, everyOtherWayOutReportsThePacketFlagAndStoresNothing) {
    const std::vector<std::function<void()>> ways{
        [this] { press(QDialogButtonBox::Cancel); },
        [this] { m_dialog->close(); },
        [this] { QTest::keyClick(m_dialog, Qt::Key_Escape); },
        [this] { delete m_dialog; },
    };
    for (const auto& leave : ways) {
        m_events.clear();
        open(false);
        widget<QCheckBox>("autoAdjustCheckBox").click();
        setValues({1, 2, 3, 4});
        leave();
        EXPECT_TRUE(QTest::qWaitFor([this] { return m_dialog.isNull(); }));
        EXPECT_THAT(m_events, ElementsAre("adjust"));
        EXPECT_TRUE(m_store->allKeys().isEmpty());
    }
}

TEST_F(SettingsDialogTest, debugMessagesAreSwitchedByTheHiddenQuestionAndOk) {
    const char* const key = "ShowDebugMessages";
    open();
    EXPECT_TRUE(answerDebugQuestion(QMessageBox::Yes));
    press(QDialogButtonBox::Cancel);
    EXPECT_FALSE(stored(key).isValid());

    open();
    EXPECT_FALSE(answerDebugQuestion(QMessageBox::Yes, Qt::ControlModifier));
    EXPECT_FALSE(answerDebugQuestion(QMessageBox::Yes, Qt::ShiftModifier));
    EXPECT_TRUE(answerDebugQuestion(QMessageBox::Yes));
    EXPECT_TRUE(answerDebugQuestion(QMessageBox::Cancel));
    EXPECT_FALSE(stored(key).isValid()) << "stored before OK";
    press(QDialogButtonBox::Ok);
    open();
    press(QDialogButtonBox::Ok);
    EXPECT_EQ(stored(key), QVariant(true)) << "not stored, or not loaded";

    open();
    EXPECT_TRUE(answerDebugQuestion(QMessageBox::No));
    press(QDialogButtonBox::Ok);
    EXPECT_EQ(stored(key), QVariant(false));
}

TEST_F(SettingsDialogTest, paletteDecidesTheColoursOfWarningsAndTheResetIcons) {
    const struct {
        int lightness;
        const char *style, *icon;
    } looks[] = {{99, "color: rgba(56,111,251,255);", "delete_darkmode"},
                 {100, "color: rgba(50,95,201,255);", "delete"}};
    for (const auto& look : looks) {
        QApplication::setPalette(QColor(look.lightness, look.lightness, look.lightness));
        if (m_dialog.isNull())
            open();
        for (const char* name :
             {"cameraWarningLabel", "usbInterfaceWarningLabel", "gigeInterfaceWarningLabel"})
            EXPECT_EQ(widget<QLabel>(name).styleSheet(), QLatin1String(look.style)) << name;
        for (const Row& row : rows)
            EXPECT_EQ(imageOf(reset(row).icon()), programImage(look.icon));
    }
    QApplication::setPalette(QApplication::style()->standardPalette());
}

TEST_F(SettingsDialogTest, loadsOddValuesAsNumbersInRange) {
    const char* const key = rows[2].key;
    const std::pair<QVariant, int> cases[] = {
        {QStringLiteral("ten"), 0},  {QStringLiteral("-3"), 0},
        {QStringLiteral("200"), 50}, {QStringLiteral("12"), 12},
        {QStringLiteral("12.7"), 0}, {QStringList{QStringLiteral("1"), QStringLiteral("2")}, 0},
        {QStringLiteral(""), 0},
    };
    for (const auto& [odd, shown] : cases) {
        m_store->setValue(QLatin1String(key), odd);
        open();
        EXPECT_EQ(values(), (Values{10, 5, shown, 5}));
        EXPECT_EQ(warnings(), shown < 30 ? "InterfaceUSB" : "");
        press(QDialogButtonBox::Cancel);
        EXPECT_EQ(stored(key), odd);
        open();
        press(QDialogButtonBox::Ok);
        EXPECT_EQ(stored(key), QVariant(shown));
    }
}

} // namespace
