// SPDX-License-Identifier: BSD-3-Clause
#include "ui/features/FeatureTreeDialog.h"

#include "ui/Theme.h"
#include "ui/features/FeatureItemDelegate.h"
#include "ui/features/FeatureTreeModel.h"
#include "ui/features/FeatureTreeProxyModel.h"
#include "ui/features/FeatureTreeView.h"
#include "ui_FeatureTreeDialog.h"

#include <QCloseEvent>
#include <QHeaderView>
#include <QScreen>
#include <QStyledItemDelegate>

#include <utility>

namespace {

/// Names whose colour can be read on a dark background, too, with a gap before the values.
class NameDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        constexpr int gap = 12;
        return QStyledItemDelegate::sizeHint(option, index) + QSize(gap, 0);
    }

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
        const bool dark = Theme::isDark(option->palette);
        QStyledItemDelegate::initStyleOption(option, index);
        FeatureItemDelegate::strengthenDisabled(option->palette);
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
    fitSize();
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    if (m_controller)
        setUpTree();
    connect(m_form->checkFilter, &QCheckBox::toggled, this,
            &FeatureTreeDialog::onActivateProxyModel);
    connect(m_form->closeButton, &QPushButton::clicked, this, &QDialog::close);
    setUpEditing();
    m_form->treeFeatures->setSizeAdjustPolicy(QAbstractScrollArea::AdjustToContents);
    onActivateProxyModel(m_form->checkFilter->isChecked());
}

FeatureTreeDialog::~FeatureTreeDialog() = default;

void FeatureTreeDialog::fitSize() {
    constexpr int characters = 68;
    constexpr int lines = 27;
    const QSize contents(characters * fontMetrics().averageCharWidth(),
                         lines * fontMetrics().lineSpacing());
    const int titleBar = style()->pixelMetric(QStyle::PM_TitleBarHeight);
    const QSize available = screen()->availableSize() - QSize(0, titleBar);
    resize(size().expandedTo(contents.boundedTo(available)));
}

void FeatureTreeDialog::setUpEditing() {
    QTreeView* tree = m_form->treeFeatures;
    m_delegate = new FeatureItemDelegate(tree);
    tree->setItemDelegateForColumn(FeatureTreeModel::NameColumn, new NameDelegate(tree));
    tree->setItemDelegateForColumn(FeatureTreeModel::ValueColumn, m_delegate);
    connect(this, &FeatureTreeDialog::commitChanges, m_delegate, &FeatureItemDelegate::onClose);
    connect(m_delegate, &FeatureItemDelegate::aboutToEdit, this,
            [this](const QModelIndex& index) { m_model->readAgain(m_proxy->mapToSource(index)); });
}

void FeatureTreeDialog::setUpTree() {
    QTreeView* tree = m_form->treeFeatures;
    m_model = new FeatureTreeModel(m_controller, this);
    m_model->setupModelData();
    m_model->setHeaderLabels({tr("Feature Name"), tr("Value")});
    m_proxy = new FeatureTreeProxyModel(this);
    m_proxy->setRecursiveFilteringEnabled(true);
    m_proxy->setSourceModel(m_model);
    tree->setModel(m_proxy);
    // The colours of names depend on values, too: they show what is writable.
    connect(m_proxy, &QAbstractItemModel::dataChanged, tree->viewport(),
            qOverload<>(&QWidget::update));
    QHeaderView* header = tree->header();
    // The model leaves room for labels of two lines.
    header->setMaximumHeight(2 * header->fontMetrics().height());
    // Only the rows on view: measuring those of a large tree takes long.
    header->setResizeContentsPrecision(0);
    header->setSectionResizeMode(QHeaderView::ResizeToContents);
}

/// Reads again: while another window was in use, the bandwidth may have been set there.
bool FeatureTreeDialog::event(QEvent* event) {
    if (event->type() == QEvent::WindowDeactivate)
        m_wasLeft = true;
    const bool isBack = event->type() == QEvent::WindowActivate && m_wasLeft;
    if (isBack && m_model != nullptr) {
        m_wasLeft = false;
        m_model->outdateValues();
    }
    return QDialog::event(event);
}

/// Collapses before all rows are shown, and filters before expanding: the features of an expanded
/// row are sorted, which reads them from the camera.
void FeatureTreeDialog::onActivateProxyModel(bool active) {
    QTreeView* tree = m_form->treeFeatures;
    // The filter may remove its row.
    m_delegate->commitAndCloseEditor();
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
    // close() calls reject() again.
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
