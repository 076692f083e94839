// SPDX-License-Identifier: BSD-3-Clause
#include "ui/InterfaceSpeedWidget.h"

#include "ui/BandwidthColumn.h"

#include <QTest>
#include <QtWidgets>
#include <gmock/gmock.h>

#include <functional>
#include <limits>
#include <memory>
#include <vector>

namespace {

constexpr int most = std::numeric_limits<int>::max();

struct Look {
    const char *color, *textColor, *toolTip;
};
const Look green{"#009640", "#c0c0c0", "Interface bandwidth usage is OK."};
const Look amber{
    "#fcc234", "#000000",
    "Bandwidth used by connected cameras affects safety margin on the interface (10%)."};
const Look red{"#dc143c", "#c0c0c0",
               "Bandwidth used by connected cameras is greater than it is available on this "
               "interface."};

class InterfaceSpeedTest : public testing::Test {
protected:
    void make(int maximum) {
        m_widget = std::make_unique<InterfaceSpeedWidget>(maximum);
        m_bar = m_widget->findChild<QProgressBar*>();
        QObject::connect(m_widget.get(), &InterfaceSpeedWidget::maxBandwidthChanged,
                         [this](int value) { m_told.push_back(value); });
        m_widget->show();
    }
    void expectShown(const char* label, const Look& look) const {
        SCOPED_TRACE(label);
        const auto& shown = *m_widget->findChild<QLabel*>();
        EXPECT_EQ(shown.text(), QLatin1String(label));
        EXPECT_GE(shown.minimumWidth(), qMax(30, shown.sizeHint().width()));
        EXPECT_EQ(m_bar->styleSheet(),
                  QStringLiteral("QProgressBar::chunk { width: 10px; background-color: %1; } "
                                 "QProgressBar{ border: 2px solid grey; border-radius: 2px; "
                                 "text-align: center; color: %2; }")
                      .arg(QLatin1String(look.color), QLatin1String(look.textColor)));
        EXPECT_EQ(m_bar->toolTip(), QLatin1String(look.toolTip));
    }
    /// Opens the question for the maximum by \p open and answers it.
    void answer(const std::function<void()>& open, int maximum, QInputDialog::DialogCode code) {
        bool isAsked = false;
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, [&] {
            auto* dialog = qobject_cast<QInputDialog*>(QApplication::activeModalWidget());
            if (dialog == nullptr)
                return;
            timer.stop();
            isAsked = true;
            dialog->setIntValue(maximum);
            dialog->done(code);
        });
        timer.start(0);
        open();
        EXPECT_TRUE(QTest::qWaitFor([&] { return isAsked; }));
    }
    QMenu* menu() const { return m_widget->findChild<QMenu*>(); }

    std::unique_ptr<InterfaceSpeedWidget> m_widget;
    QProgressBar* m_bar = nullptr;
    std::vector<int> m_told;
};

TEST_F(InterfaceSpeedTest, colourTellsWhetherTheMarginIsKept) {
    const struct {
        int maximum;
        std::vector<int> cameras;
        const char* label;
        int shown;
        Look look;
    } cases[] = {
        {1000, {400, 450, 100}, "950 / 1000", 950, amber},
        {1000, {400, 450, 151}, "1001 / 1000", 1000, red},
        {1000, {900}, "900 / 1000", 900, green},
        {1000, {909}, "909 / 1000", 909, green},
        {0, {0}, "0 / 0", 0, green},
        {0, {1}, "1 / 0", 1, red},
        {-5, {0}, "0 / 0", 0, green},
        {most, {most, most}, "2147483647 / 2147483647", most, amber},
    };
    for (const auto& row : cases) {
        make(row.maximum);
        int camera = 0;
        for (const int bandwidth : row.cameras)
            m_widget->setValue(camera++, 10, bandwidth);
        expectShown(row.label, row.look);
        EXPECT_EQ(m_bar->value(), row.shown) << row.label;
        EXPECT_GT(m_bar->maximum(), 0) << "a busy bar";
    }
}

TEST_F(InterfaceSpeedTest, followsCamerasMarginAndMaximum) {
    make(1000);
    EXPECT_EQ(m_bar->text(), QStringLiteral("0%"));
    m_widget->setValue(3, 10, 500);
    m_widget->setValue(0, 10, 450);
    m_widget->setValue(3, 10, 100);
    expectShown("550 / 1000", green);
    m_widget->updateColor(50);
    EXPECT_TRUE(m_bar->toolTip().contains(QStringLiteral("(50%)")));
    m_widget->setMaxBandwidth(600);
    expectShown("550 / 600", amber);
    EXPECT_TRUE(m_told.empty());
}

TEST_F(InterfaceSpeedTest, menuAndDoubleClickOverwriteTheMaximum) {
    make(1000);
    m_widget->setValue(0, 10, 950);
    QTest::mouseClick(m_bar, Qt::LeftButton);
    EXPECT_EQ(menu(), nullptr);
    const auto useMouse = [this] {
        QTest::mouseClick(m_bar, Qt::RightButton);
        QAction* action = menu()->actions().value(0);
        EXPECT_EQ(action->text(), QStringLiteral("Overwrite max. bandwidth"));
        QTest::mouseClick(menu(), Qt::LeftButton, {}, menu()->actionGeometry(action).center());
    };
    const auto useKeys = [this] {
        QContextMenuEvent event(QContextMenuEvent::Keyboard, {});
        QApplication::sendEvent(m_widget.get(), &event);
        QTest::keyClick(menu(), Qt::Key_Down);
        QTest::keyClick(menu(), Qt::Key_Return);
    };
    answer(useMouse, 400, QInputDialog::Rejected);
    expectShown("950 / 1000", amber);
    EXPECT_TRUE(m_told.empty());
    answer(useMouse, 400, QInputDialog::Accepted);
    expectShown("950 / 400", red);
    EXPECT_EQ(m_bar->value(), 400);
    EXPECT_EQ(menu(), nullptr) << "not deleted";
    answer(useKeys, most, QInputDialog::Accepted);
    expectShown("950 / 2147483647", green);
    answer([this] { QTest::mouseDClick(m_bar, Qt::LeftButton); }, 0, QInputDialog::Accepted);
    expectShown("950 / 0", red);
    EXPECT_THAT(m_told, testing::ElementsAre(400, most, 0));
}

/// In the colour that each style gives the texts of a selected row.
TEST_F(InterfaceSpeedTest, isLegibleInASelectedRow) {
    for (const QString& name : QStyleFactory::keys()) {
        make(1000);
        const std::unique_ptr<QStyle> style(QStyleFactory::create(name));
        m_widget->setStyle(style.get());
        const bool isPale = name.toLower() == QLatin1String("windowsvista");
        for (const bool isSelected : {true, false}) {
            BandwidthColumn::showSelected(*m_widget, isSelected);
            EXPECT_EQ(m_widget->foregroundRole(),
                      isSelected && !isPale ? QPalette::HighlightedText : QPalette::WindowText)
                << name.toStdString();
        }
        m_widget.reset();
    }
}

TEST_F(InterfaceSpeedTest, mayBeDeletedWhileItAsks) {
    make(1000);
    QTimer::singleShot(0, qApp, [this] { m_widget.reset(); });
    m_widget->manualSetMaxBandwidth();
    EXPECT_EQ(m_widget, nullptr);
    EXPECT_TRUE(m_told.empty());
}

} // namespace
