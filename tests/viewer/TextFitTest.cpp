// SPDX-License-Identifier: BSD-3-Clause
#include "OrvCPP/OrvSystem.h"
#include "session/SdkSession.h"
#include "tests/support/OwnSettings.h"
#include "tests/support/Resources.h"
#include "tests/support/WidgetParts.h"
#include "ui/SettingsDialog.h"
#include "ui/SpanletDialog.h"
#include "ui/features/FeatureTreeDialog.h"
#include "ui/features/editors/DelegateWidget.h"
#include "viewer/Appearance.h"
#include "viewer/ProgramResources.h"
#include "viewer/ViewerWindow.h"

#include <QtWidgets>
#include <gmock/gmock.h>

#include <set>
#include <typeinfo>

namespace {

using testing::IsEmpty;

/// Pixels of a screen that shows 1280 x 720 at 96 dpi: their number grows with the resolution.
QSize smallScreen() {
    return QSize(1280, 720) * qEnvironmentVariableIntValue("QT_FONT_DPI") / 96;
}

/// The place that a style gives the text of a spin box or combo box.
QSize fieldOf(const QWidget& box) {
    if (const auto* combo = qobject_cast<const QComboBox*>(&box)) {
        QStyleOptionComboBox option;
        option.initFrom(combo);
        return box.style()
            ->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, combo)
            .size();
    }
    QStyleOptionSpinBox option;
    option.initFrom(&box);
    return box.style()
        ->subControlRect(QStyle::CC_SpinBox, &option, QStyle::SC_SpinBoxEditField, &box)
        .size();
}

/// The place of a button's text.
QSize placeOf(const QAbstractButton& button) {
    QStyleOptionButton option;
    option.initFrom(&button);
    if (qobject_cast<const QCheckBox*>(&button) != nullptr)
        return button.style()->subElementRect(QStyle::SE_CheckBoxContents, &option, &button).size();
    const auto* push = qobject_cast<const QPushButton*>(&button);
    if (push == nullptr)
        return button.size();
    const bool hasMenu = push->menu() != nullptr;
    const int arrow = hasMenu ? button.style()->pixelMetric(QStyle::PM_MenuButtonIndicator) : 0;
    return button.size() - QSize(arrow, 0);
}

/// Texts of a window that are larger than their place, with both sizes.
class CutTexts {
public:
    explicit CutTexts(QWidget& window) {
        QCoreApplication::processEvents();
        for (const QWidget* widget : window.findChildren<QWidget*>()) {
            if (widget->isVisible())
                look(*widget);
        }
    }
    const std::vector<std::string>& found() const { return m_found; }
    int count() const { return m_count; }

private:
    void compare(const QWidget& widget, const QString& text, QSize needed, QSize place) {
        ++m_count;
        if (needed.width() <= place.width() && needed.height() <= place.height())
            return;
        m_found.push_back(QStringLiteral("%1 \"%2\": %3 x %4 in %5 x %6")
                              .arg(widget.objectName(), text)
                              .arg(needed.width())
                              .arg(needed.height())
                              .arg(place.width())
                              .arg(place.height())
                              .toStdString());
    }

    void look(const QWidget& widget) {
        const QFontMetrics metrics = widget.fontMetrics();
        const auto lineOf = [&metrics](const QString& text) {
            return metrics.size(Qt::TextSingleLine | Qt::TextShowMnemonic, text);
        };
        if (const auto* label = qobject_cast<const QLabel*>(&widget)) {
            const bool wraps = label->wordWrap();
            const QSize needed =
                wraps ? QSize(0, label->heightForWidth(label->width())) : label->minimumSizeHint();
            if (!label->text().isEmpty())
                compare(widget, label->text().left(30), needed, label->size());
        } else if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) {
            if (!button->text().isEmpty())
                compare(widget, button->text(), lineOf(button->text()), placeOf(*button));
        } else if (const auto* group = qobject_cast<const QGroupBox*>(&widget)) {
            compare(widget, group->title(), lineOf(group->title()), group->size());
        } else if (const auto* combo = qobject_cast<const QComboBox*>(&widget)) {
            compare(widget, combo->currentText(), lineOf(combo->currentText()), fieldOf(*combo));
        } else if (const auto* spin = qobject_cast<const QAbstractSpinBox*>(&widget)) {
            compare(widget, spin->text(), lineOf(spin->text()), fieldOf(*spin));
        } else if (const auto* bar = qobject_cast<const QProgressBar*>(&widget)) {
            compare(widget, bar->text(), lineOf(bar->text()), bar->size());
        } else if (const auto* header = qobject_cast<const QHeaderView*>(&widget)) {
            lookAtHeader(*header);
        }
    }

    void lookAtHeader(const QHeaderView& header) {
        if (header.orientation() != Qt::Horizontal)
            return;
        for (int section = 0; section < header.count(); ++section) {
            const auto data = [&header, section](int role) {
                return header.model()->headerData(section, Qt::Horizontal, role);
            };
            const QFont font = qvariant_cast<QFont>(data(Qt::FontRole)).resolve(header.font());
            const QSize place(header.sectionSize(section), header.height());
            const QString text = data(Qt::DisplayRole).toString();
            const QRect needed = QFontMetrics(font).boundingRect(
                QRect(QPoint(), place), static_cast<int>(header.defaultAlignment()), text);
            compare(header, text, needed.size(), place);
        }
    }

    std::vector<std::string> m_found;
    int m_count = 0;
};

/// On the simulated cameras of a scenario, in the language and at the resolution of this process.
class TextFit : public testing::Test {
protected:
    TextFit() {
        EXPECT_TRUE(m_session.isStarted());
        initResources();
        switchOffHelpAtStart();
    }

    /// \p leastTexts guards against a window whose texts are not looked at.
    static void expectWholeTexts(QWidget& window, int leastTexts) {
        window.show();
        const CutTexts texts(window);
        EXPECT_THAT(texts.found(), IsEmpty());
        EXPECT_GE(texts.count(), leastTexts);
        const QSize least = window.minimumSizeHint().expandedTo(window.minimumSize());
        EXPECT_EQ(least.boundedTo(smallScreen()), least);
    }

    const OwnSettings m_store;
    const session::SdkSession m_session{{QStringLiteral(":oversubscribed")}};
    OrvCPP::OrvSystem& m_system = OrvCPP::OrvSystem::GetInstance();
};

TEST_F(TextFit, ofTheDialog) {
    SpanletDialog dialog(m_system, false);
    expectWholeTexts(dialog, 30);
    // A wide screen has room for all of it.
    dialog.resize(dialog.width() * 4, dialog.height());
    const CutTexts texts(dialog);
    EXPECT_THAT(texts.found(), IsEmpty());
}

TEST_F(TextFit, ofTheSettings) {
    QSettings settings(QStringLiteral("Meridane"), QStringLiteral("Spanlet"));
    auto* dialog = new SettingsDialog(true, &settings);
    for (QSpinBox* spin : dialog->findChildren<QSpinBox*>())
        spin->setValue(spin->minimum());
    expectWholeTexts(*dialog, 15);
    delete dialog;
}

TEST_F(TextFit, ofTheFeatures) {
    SpanletDialog dialog(m_system, false);
    auto& tree = partOf<QTreeView>(dialog, "treeViewCameras");
    const QAbstractItemModel& model = *tree.model();
    tree.setCurrentIndex(model.index(0, 0, model.index(0, 0, model.index(0, 0))));
    partOf<QPushButton>(dialog, "buttonFeatureTree").click();
    auto* features = dialog.findChild<FeatureTreeDialog*>();
    ASSERT_NE(features, nullptr);
    expectWholeTexts(*features, 4);

    auto& rows = partOf<QTreeView>(*features, "treeFeatures");
    std::set<std::string> editors;
    for (QModelIndex row = rows.indexAt({}); row.isValid(); row = rows.indexBelow(row)) {
        rows.setCurrentIndex(row.siblingAtColumn(1));
        rows.edit(rows.currentIndex());
        for (const DelegateWidget* editor : rows.findChildren<DelegateWidget*>())
            editors.insert(typeid(*editor).name());
        EXPECT_THAT(CutTexts(*features).found(), IsEmpty());
    }
    EXPECT_GE(editors.size(), 3U);
}

TEST_F(TextFit, ofTheViewer) {
    viewer::ViewerWindow window(m_system, QStringLiteral("/nowhere"));
    expectWholeTexts(window, 2);
    EXPECT_TRUE(
        QRect(QPoint(), window.screen()->availableSize()).contains(QRect({}, window.size())));
    // With a title bar and the desktop's own bar.
    EXPECT_EQ(window.size().boundedTo(smallScreen() * 0.9), window.size());
    const bool isGerman = QLocale::system().language() == QLocale::German;
    EXPECT_EQ(partOf<QDockWidget>(window, "dockThroughput").windowTitle(),
              isGerman ? QStringLiteral("Durchsatz") : QStringLiteral("Throughput"));
}

} // namespace

/// With the font of the viewer, and the texts of the system's language.
int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    QApplication application(argc, argv);
    viewer::applyAppearance(false);
    QTranslator texts;
    QTranslator viewerTexts;
    if (QLocale::system().language() == QLocale::German) {
        if (!texts.load(QStringLiteral(GERMAN_FILE)) ||
            !viewer::loadTexts(viewerTexts, QLocale::system()))
            return 1;
        QCoreApplication::installTranslator(&texts);
        QCoreApplication::installTranslator(&viewerTexts);
    }
    return RUN_ALL_TESTS();
}
