// SPDX-License-Identifier: BSD-3-Clause
#include "tests/plugin/HostedDialog.h"
#include "tests/support/OwnSettings.h"

#include <QCborMap>
#include <QCborValue>
#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QJsonObject>
#include <QPushButton>
#include <QSplashScreen>
#include <QTest>
#include <QTreeView>
#include <gtest/gtest.h>

#include <algorithm>

namespace {

/// The metadata that Qt's loader reads without loading the plug-in's code.
QCborMap rawMetaData() {
    QFile file(QStringLiteral(SPANLET_PLUGIN_FILE));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray bytes = file.readAll();
    const QByteArray magic("QTMETADATA !");
    constexpr int versionBytes = 4;
    const int start = bytes.indexOf(magic);
    return start < 0 ? QCborMap()
                     : QCborValue::fromCbor(bytes.mid(start + magic.size() + versionBytes)).toMap();
}

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
    const QCborMap raw = rawMetaData();
    ASSERT_EQ(raw.size(), 2);
    EXPECT_EQ(raw.value(qint64{2}).toString(), QStringLiteral("SpanletInterface"));
    EXPECT_EQ(raw.value(qint64{3}).toString(), QStringLiteral("SpanletPlugin"));
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
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    }
}

} // namespace
