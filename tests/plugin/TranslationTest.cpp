// SPDX-License-Identifier: BSD-3-Clause
#include "tests/plugin/HostedDialog.h"

#include <QDataStream>
#include <QDir>
#include <QFile>
#include <QLocale>
#include <QSettings>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <string>

namespace {

/// Qt reads the system's locale once, when the application is made, so it is chosen before main.
const bool isAustrian = qputenv("LC_ALL", "de_AT.UTF-8");

constexpr char windowTitle[] = "Orvia Spanlet";

/// The hash by which a translation file finds a source text.
quint32 elfHash(const char* text) {
    quint32 hash = 0;
    for (; *text != '\0'; ++text) {
        hash = (hash << 4) + static_cast<uchar>(*text);
        const quint32 high = hash & 0xf0000000;
        hash = (hash ^ (high >> 24)) & ~high;
    }
    return hash == 0 ? 1 : hash;
}

/// Writes a translation file that translates the window title only.
void writeTranslation(const QString& path, const QString& title) {
    QByteArray message;
    QDataStream messageStream(&message, QIODevice::WriteOnly);
    messageStream << quint8{3} << title << quint8{1};
    QByteArray hashes;
    QDataStream(&hashes, QIODevice::WriteOnly) << elfHash(windowTitle) << quint32{0};

    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QByteArray::fromHex("3cb86418caef9c95cd211cbf60a1bddd"));
    QDataStream(&file) << quint8{0x42} << hashes << quint8{0x69} << message;
}

class TranslationTest : public testing::Test {
protected:
    TranslationTest() {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_folder.path());
        switchOffHelpAtStart();
        QDir::setCurrent(m_folder.path());
        EXPECT_EQ(OrvCPP::OrvSystem::GetInstance().Startup(), OrvErrorSuccess);
    }
    ~TranslationTest() override {
        OrvCPP::OrvSystem::GetInstance().Shutdown();
        QDir::setCurrent(QDir::rootPath());
    }

    std::string title() {
        std::string result;
        m_host.run(false, [&](QDialog& dialog) {
            result = dialog.windowTitle().toStdString();
            dialog.close();
        });
        return result;
    }

    QTemporaryDir m_folder;
    HostedDialog m_host;
};

TEST_F(TranslationTest, PrefersTheLocaleThenTheLanguageThenEnglish) {
    ASSERT_TRUE(isAustrian);
    ASSERT_EQ(QLocale::system().name(), QStringLiteral("de_AT"));
    EXPECT_EQ(title(), windowTitle);

    ASSERT_TRUE(QDir().mkdir(QStringLiteral("qm")));
    writeTranslation(QStringLiteral("qm/Spanlet_de.qm"), QStringLiteral("Deutsch"));
    EXPECT_EQ(title(), "Deutsch");

    writeTranslation(QStringLiteral("qm/Spanlet_de_AT.qm"), QStringLiteral("Oesterreich"));
    EXPECT_EQ(title(), "Oesterreich");
}

} // namespace
