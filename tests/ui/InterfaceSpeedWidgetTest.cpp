// SPDX-License-Identifier: BSD-3-Clause
#include "ui/InterfaceSpeedWidget.h"

#include "ui/BandwidthColumn.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QInputDialog>
#include <QLabel>
#include <QMenu>
#include <QProgressBar>
#include <QStyle>
#include <QStyleFactory>
#include <QTest>
#include <QTimer>
#include <gmock/gmock.h>

#include <functional>
#include <limits>
#include <memory>
#include <vector>

namespace {

constexpr int most = std::numeric_limits<int>::max();

struct Look {
    QLatin1String chunk, text, toolTip;
};
const QLatin1String grey("#c0c0c0");
const Look green{QLatin1String("#009640"), grey, QLatin1String("Interface bandwidth usage is OK.")};
const Look amber{
    QLatin1String("#fcc234"), QLatin1String("#000000"),
    QLatin1String(
        "Bandwidth used by connected cameras affects safety margin on the interface (%1%).")};
const Look red{
    QLatin1String("#dc143c"), grey,
    QLatin1String(
        "Bandwidth used by connected cameras is greater than it is available on this interface.")};

class InterfaceSpeedTest : public testing::Test {
protected:
    void make(int maximum) {
        m_widget = std::make_unique<InterfaceSpeedWidget>(maximum);
        m_bar = m_widget->findChild<QProgressBar*>();
        QObject::connect(m_widget.get(), &InterfaceSpeedWidget::maxBandwidthChanged,
                         [this](int value) { m_told.push_back(value); });
        m_widget->show();
    }
    void expectShown(const char* label, const Look& look, int margin = 10) const {
        const auto& shown = *m_widget->findChild<QLabel*>();
        EXPECT_EQ(shown.text(), QLatin1String(label));
        EXPECT_GE(shown.minimumWidth(), qMax(30, shown.sizeHint().width()));
        EXPECT_EQ(m_bar->styleSheet(),
                  QStringLiteral("QProgressBar::chunk { width: 10px; background-color: %1; } "
                                 "QProgressBar{ border: 2px solid grey; border-radius: 2px; "
                                 "text-align: center; color: %2; }")
                      .arg(look.chunk, look.text))
            << label;
        EXPECT_EQ(m_bar->toolTip(),
                  QString(look.toolTip).replace(QLatin1String("%1"), QString::number(margin)))
            << label;
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
            EXPECT_EQ(dialog->windowTitle(), QStringLiteral("Interface Bandwidth"));
            EXPECT_EQ(
                dialog->labelText(),
                QStringLiteral("Please enter the maximal bandwidth on this interface (MBytes/s):"));
            EXPECT_EQ(dialog->intStep(), 10);
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
        int maximum, margin;
        std::vector<int> cameras;
        const char* label;
        int shown;
        Look look;
    } cases[] = {
        {1000, 10, {400, 450, 100}, "950 / 1000", 950, amber},
        {1000, 10, {400, 450, 151}, "1001 / 1000", 1000, red},
        {1000, 10, {900}, "900 / 1000", 900, green},
        {1000, 10, {909}, "909 / 1000", 909, green},
        {1000, 20, {810}, "810 / 1000", 810, amber},
        {0, 10, {0}, "0 / 0", 0, green},
        {0, 10, {1}, "1 / 0", 1, red},
        {-5, 100, {0}, "0 / 0", 0, green},
        {most, 30, {most, most}, "2147483647 / 2147483647", most, amber},
    };
    for (const auto& row : cases) {
        make(row.maximum);
        int camera = 0;
        for (const int bandwidth : row.cameras)
            m_widget->setValue(camera++, row.margin, bandwidth);
        expectShown(row.label, row.look, row.margin);
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
    expectShown("550 / 1000", amber, 50);
    m_widget->setMaxBandwidth(600);
    expectShown("550 / 600", amber);
    m_widget->setMaxBandwidth(500);
    expectShown("550 / 500", red);
    EXPECT_TRUE(m_told.empty());
}

TEST_F(InterfaceSpeedTest, menuAndDoubleClickOverwriteTheMaximum) {
    make(1000);
    m_widget->setValue(0, 10, 950);
    QTest::mouseClick(m_bar, Qt::LeftButton);
    EXPECT_EQ(menu(), nullptr);
    const auto useMouse = [this] {
        QTest::mouseClick(m_bar, Qt::RightButton);
        ASSERT_NE(menu(), nullptr);
        QAction* action = menu()->actions().value(0);
        EXPECT_EQ(action->text(), QStringLiteral("Overwrite max. bandwidth"));
        QTest::mouseClick(menu(), Qt::LeftButton, {}, menu()->actionGeometry(action).center());
    };
    const auto useKeys = [this] {
        QContextMenuEvent event(QContextMenuEvent::Keyboard, {});
        QApplication::sendEvent(m_widget.get(), &event);
        ASSERT_NE(menu(), nullptr);
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
