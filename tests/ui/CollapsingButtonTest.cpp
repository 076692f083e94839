// SPDX-License-Identifier: BSD-3-Clause
#include "ui/CollapsingButton.h"

#include <QTest>
#include <QtWidgets>
#include <gtest/gtest.h>

namespace {

class CollapsingButtonTest : public testing::Test {
protected:
    CollapsingButtonTest() {
        auto* layout = new QVBoxLayout(&m_window);
        layout->addWidget(&m_above, 3);
        layout->addWidget(&m_button);
        layout->addWidget(&m_content, 2);
        m_button.setContent(&m_content);
        m_window.resize(600, 1000);
        m_window.show();
    }

    void click() { QTest::mouseClick(&m_button, Qt::LeftButton); }
    void clickAndSettle() {
        click();
        animations().setCurrentTime(m_button.isChecked() ? animations().totalDuration() : 0);
        EXPECT_EQ(animations().state(), QAbstractAnimation::Stopped);
    }
    QParallelAnimationGroup& animations() {
        return *m_button.findChild<QParallelAnimationGroup*>();
    }

    QWidget m_window;
    QTreeView m_above;
    CollapsingButton m_button;
    QTableWidget m_content;
};

TEST_F(CollapsingButtonTest, foldsOpenAndShut) {
    const auto& height = *m_button.findChild<QPropertyAnimation*>();
    EXPECT_EQ(m_button.arrowType(), Qt::RightArrow);
    EXPECT_FALSE(m_content.isVisible());
    clickAndSettle();
    EXPECT_EQ(m_button.arrowType(), Qt::DownArrow);
    EXPECT_EQ(height.endValue(), m_content.sizeHint().height() + 10);
    EXPECT_EQ(height.duration(), 300);
    EXPECT_TRUE(QTest::qWaitFor([this] { return m_content.height() > 350; })) << m_content.height();
    EXPECT_NEAR(m_content.height() * 3, m_above.height() * 2, 10) << "not its share";
    clickAndSettle();
    EXPECT_EQ(m_button.arrowType(), Qt::RightArrow);
    click();
    animations().setCurrentTime(150);
    EXPECT_GT(m_content.maximumHeight(), 0);
    clickAndSettle();
    EXPECT_EQ(m_content.maximumHeight(), 0) << "turned round halfway";
    EXPECT_FALSE(m_content.isVisible());
}

} // namespace
