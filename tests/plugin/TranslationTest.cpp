// SPDX-License-Identifier: BSD-3-Clause
#include "tests/plugin/HostedDialog.h"
#include "tests/support/OwnSettings.h"

#include <QtWidgets>
#include <gtest/gtest.h>

#include <iostream>
#include <string>

namespace {

/// Set before main: Qt reads the system's locale once, with the application.
const bool isAustrian = qputenv("LC_ALL", "de_AT.UTF-8");

/// Absolute, drive included, since the tests change the current directory.
const QString titlesFolder = QFileInfo(QStringLiteral(TITLES_FOLDER)).absoluteFilePath();
const QString germanFile = QFileInfo(QStringLiteral(GERMAN_FILE)).absoluteFilePath();

/// Buttons, selectors and labels have room for their texts, and each mnemonic is unique.
void expectWholeTexts(const QWidget& dialog) {
    QStringList mnemonics;
    for (const auto* button : dialog.findChildren<QAbstractButton*>()) {
        const QString text = button->text();
        EXPECT_TRUE(text.isEmpty() || button->width() >= button->minimumSizeHint().width())
            << text.toStdString();
        const QString key = QKeySequence::mnemonic(text).toString();
        EXPECT_FALSE(!key.isEmpty() && mnemonics.contains(key)) << key.toStdString();
        mnemonics << key;
    }
    for (const auto* combo : dialog.findChildren<QComboBox*>())
        EXPECT_GT(combo->width(), combo->sizeHint().width());
    for (const auto* label : dialog.findChildren<QLabel*>()) {
        const bool isRead = label->isVisible() && !label->text().isEmpty();
        EXPECT_TRUE(!isRead || label->width() >= label->minimumSizeHint().width())
            << label->text().toStdString();
    }
}

/// No word is wider than its column.
void expectWholeWords(const QHeaderView& header) {
    for (int column = 0; column < header.count(); ++column) {
        const auto label = [&](int role) {
            return header.model()->headerData(column, Qt::Horizontal, role);
        };
        const QFontMetrics metrics(label(Qt::FontRole).value<QFont>());
        for (const QString& word : label(Qt::DisplayRole)
                                       .toString()
                                       .split(QRegularExpression(QStringLiteral("[ \n\\x{ad}]"))))
            EXPECT_LE(metrics.horizontalAdvance(word), header.sectionSize(column))
                << word.toStdString();
    }
}

class TranslationTest : public testing::Test {
protected:
    TranslationTest() {
        switchOffHelpAtStart();
        QDir::setCurrent(m_folder.path());
        EXPECT_EQ(OrvCPP::OrvSystem::GetInstance().Startup(), OrvErrorSuccess);
    }
    ~TranslationTest() override {
        OrvCPP::OrvSystem::GetInstance().Shutdown();
        QDir::setCurrent(QDir::rootPath());
    }

    /// Puts a translation where the plug-in looks.
    static void use(const QString& file) {
        QDir().mkdir(QStringLiteral("qm"));
        EXPECT_TRUE(QFile::copy(file, QStringLiteral("qm/") + QFileInfo(file).fileName()));
    }
    std::string title() {
        std::string result;
        m_host.run(false, [&](QDialog& dialog) {
            result = dialog.windowTitle().toStdString();
            dialog.close();
        });
        return result;
    }

    const OwnSettings m_store;
    QTemporaryDir m_folder;
    HostedDialog m_host;
};

TEST_F(TranslationTest, prefersTheLocaleThenTheLanguageThenEnglish) {
    ASSERT_TRUE(isAustrian);
    ASSERT_EQ(QLocale::system().name(), QStringLiteral("de_AT"));
    EXPECT_EQ(title(), "Orvia Spanlet");
    // They translate the window's title only.
    use(titlesFolder + QStringLiteral("/Spanlet_de.qm"));
    EXPECT_EQ(title(), "Deutsch");
    use(titlesFolder + QStringLiteral("/Spanlet_de_AT.qm"));
    EXPECT_EQ(title(), "Oesterreich");
}

/// With the build's German texts on an Austrian system, in fonts of several sizes.
class FontSizes : public TranslationTest, public testing::WithParamInterface<int> {};

INSTANTIATE_TEST_SUITE_P(Points, FontSizes, testing::Values(9, 12));

TEST_P(FontSizes, showEveryDialogInGermanWithoutCuttingTextsOff) {
    use(germanFile);
    QFont usual = QApplication::font();
    usual.setPointSize(GetParam());
    QApplication::setFont(usual);
    m_host.run(false, [&](QDialog& dialog) {
        EXPECT_EQ(partOf<QPushButton>(dialog, "buttonSettings").text(),
                  QStringLiteral("&Einstellungen..."));
        dialog.resize(dialog.minimumSize());
        expectWholeTexts(dialog);
        auto& tree = *dialog.findChild<QTreeView*>();
        tree.setIndentation(200); // As wide as long names.
        QCoreApplication::processEvents();
        expectWholeWords(*tree.header());
        const QModelIndex selected = tree.currentIndex();
        tree.setCurrentIndex(selected.model()->index(0, 0, selected));
        std::cerr << "verloren" << std::endl;
        EXPECT_EQ(dialog.findChild<QTableWidget*>()->item(0, 0)->text(), QStringLiteral("FEHLER"));

        std::string titles;
        for (const char* name : {"buttonSettings", "buttonFeatureTree", "buttonSupport"}) {
            partOf<QPushButton>(dialog, name).click();
            auto* opened = dialog.findChildren<QDialog*>().constLast();
            titles += opened->windowTitle().section(QStringLiteral(" von"), 0, 0).toStdString();
            QCoreApplication::processEvents();
            expectWholeTexts(*opened);
            for (const auto* label : opened->findChildren<QLabel*>(QStringLiteral("labelPage")))
                EXPECT_TRUE(label->text().contains(QStringLiteral("<h1>Erste Schritte</h1>")));
            delete opened;
            titles += '\n';
        }
        EXPECT_EQ(titles, "Einstellungen f\u00fcr Auto Set\nFeature-Baum\nSpanlet\n");
        dialog.close();
    });
}

} // namespace
