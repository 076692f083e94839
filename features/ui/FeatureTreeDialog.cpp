// SPDX-License-Identifier: BSD-3-Clause
#include "features/ui/FeatureTreeDialog.h"

#include "features/ui/FeatureTreeModel.h"
#include "features/ui/FeatureTreeProxyModel.h"
#include "ui_FeatureTreeDialog.h"

#include <QCloseEvent>
#include <QHeaderView>
#include <QScrollBar>
#include <QStyledItemDelegate>

#include <algorithm>
#include <utility>

namespace {

/// Below this lightness of the window's colour the palette is a dark one.
constexpr int darkLightness = 100;

/// Rows in which an editor has room, and whose colours can be read on a dark background, too.
class RowDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        constexpr int editorHeight = 27;
        const QSize size = QStyledItemDelegate::sizeHint(option, index);
        return {size.width(), std::max(size.height(), editorHeight)};
    }

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
        const bool dark = option->palette.color(QPalette::Window).lightness() < darkLightness;
        QStyledItemDelegate::initStyleOption(option, index);
        const auto colour = index.data(Qt::ForegroundRole).value<QColor>();
        if (dark && colour.isValid())
            option->palette.setColor(QPalette::Text, QColor::fromHsl(colour.hslHue(), 130, 150));
    }
};

} // namespace

FeatureTreeDialog::FeatureTreeDialog(std::shared_ptr<FeatureController> controller, QWidget* parent)
    : QDialog(parent), m_form(std::make_unique<Ui::FeatureTreeDialog>()),
      m_controller(std::move(controller)) {
    m_form->setupUi(this);
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    if (m_controller)
        setUpTree();
    connect(m_form->checkFilter, &QCheckBox::toggled, this,
            &FeatureTreeDialog::onActivateProxyModel);
    connect(m_form->closeButton, &QPushButton::clicked, this, &QDialog::close);
    m_form->treeFeatures->setItemDelegate(new RowDelegate(this));
    m_form->treeFeatures->setSizeAdjustPolicy(QAbstractScrollArea::AdjustToContents);
    onActivateProxyModel(m_form->checkFilter->isChecked());
}

FeatureTreeDialog::~FeatureTreeDialog() = default;

void FeatureTreeDialog::setUpTree() {
    QTreeView* tree = m_form->treeFeatures;
    m_model = new FeatureTreeModel(m_controller, this);
    m_model->setupModelData();
    m_model->setHeaderLabels({tr("Feature Name"), tr("Value")});
    m_proxy = new FeatureTreeProxyModel(this);
    m_proxy->setSourceModel(m_model);
    m_proxy->setRecursiveFilteringEnabled(true);
    tree->setModel(m_proxy);
    // Whether a feature can be written shows in the colour of its name, too.
    connect(m_proxy, &QAbstractItemModel::dataChanged, tree->viewport(),
            qOverload<>(&QWidget::update));
    QHeaderView* header = tree->header();
    // Only the rows on view: others would be read from the camera to be measured.
    header->setResizeContentsPrecision(0);
    header->setSectionResizeMode(QHeaderView::ResizeToContents);
    connect(tree->verticalScrollBar(), &QScrollBar::valueChanged, this,
            &FeatureTreeDialog::fitNameColumn);
}

/// Rows that are scrolled into view may have longer names. The column only grows meanwhile, so that
/// it does not twitch.
void FeatureTreeDialog::fitNameColumn() {
    const QAbstractItemView* tree = m_form->treeFeatures;
    QHeaderView* header = m_form->treeFeatures->header();
    if (tree->sizeHintForColumn(FeatureTreeModel::NameColumn) >
        header->sectionSize(FeatureTreeModel::NameColumn))
        header->resizeSections(QHeaderView::ResizeToContents);
}

/// Whatever is to be hidden is collapsed before, and filtered before the rest is expanded: the
/// features of an expanded row are sorted, which reads them from the camera.
void FeatureTreeDialog::onActivateProxyModel(bool active) {
    QTreeView* tree = m_form->treeFeatures;
    if (!active) {
        QModelIndex current = tree->currentIndex();
        while (current.parent().isValid())
            current = current.parent();
        tree->setCurrentIndex(current);
        tree->collapseAll();
    }
    if (m_proxy != nullptr)
        m_proxy->setActive(active);
    if (active)
        tree->expandAll();
}

void FeatureTreeDialog::reject() {
    // Closing comes back here.
    if (m_closing)
        QDialog::reject();
    else
        close();
}

void FeatureTreeDialog::closeEvent(QCloseEvent* event) {
    m_closing = true;
    emit commitChanges();
    emit closed();
    QDialog::closeEvent(event);
}
