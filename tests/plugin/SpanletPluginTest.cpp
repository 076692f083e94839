// SPDX-License-Identifier: BSD-3-Clause
#include "tests/plugin/HostedDialog.h"
#include "tests/support/OwnSettings.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

class SpanletPluginTest : public testing::Test {
protected:
    SpanletPluginTest() {
        switchOffHelpAtStart();
        EXPECT_EQ(OrvCPP::OrvSystem::GetInstance().Startup(), OrvErrorSuccess);
    }
    ~SpanletPluginTest() override { OrvCPP::OrvSystem::GetInstance().Shutdown(); }

    const OwnSettings m_store;
    HostedDialog m_host;
};

TEST_F(SpanletPluginTest, isFoundByItsMetaData) {
    const QJsonObject data = m_host.loader().metaData();
    EXPECT_EQ(data[QStringLiteral("IID")].toString(), QStringLiteral("SpanletInterface"));
    EXPECT_EQ(data[QStringLiteral("className")].toString(), QStringLiteral("SpanletPlugin"));
    EXPECT_TRUE(data[QStringLiteral("MetaData")].toObject().isEmpty());
    ASSERT_NE(m_host.plugin(), nullptr) << m_host.loader().errorString().toStdString();
    EXPECT_NE(m_host.plugin()->qt_metacast("dev.spanlet.Plugin.SpanletInterface/1.0"), nullptr);
}

TEST_F(SpanletPluginTest, answersTheFlagThatCameIn) {
    const auto isSplashVisible = [] {
        const QWidgetList windows = QApplication::topLevelWidgets();
        return std::any_of(windows.begin(), windows.end(), [](const QWidget* window) {
            return qobject_cast<const QSplashScreen*>(window) != nullptr && window->isVisible();
        });
    };
    for (const bool flag : {false, true}) {
        bool waiting = false;
        QTimer::singleShot(
            0, [&] { waiting = QApplication::overrideCursor() != nullptr && isSplashVisible(); });
        const int result = m_host.run(flag, [&](QDialog& dialog) {
            EXPECT_FALSE(isSplashVisible());
            EXPECT_EQ(QApplication::overrideCursor(), nullptr);
            dialog.close();
        });
        EXPECT_EQ(result, flag ? 1 : 0);
        EXPECT_TRUE(waiting);
    }
}

} // namespace
