// SPDX-License-Identifier: BSD-3-Clause
#include "ui/features/FeatureItemDelegate.h"

#include "features/FeatureMetaTypes.h"
#include "features/FeatureText.h"
#include "ui/features/FeatureTreeModel.h"
#include "ui/features/editors/DelegateWidget.h"
#include "ui/features/editors/EditorFactory.h"

#include <QPersistentModelIndex>

#include <algorithm>

namespace {

/// Room for the tallest editor with a line above and below.
constexpr int rowHeight = 27;
/// Room for a slider and its spin box, in pixels and, for large fonts, in characters.
constexpr int columnWidth = 280;
constexpr int columnCharacters = 40;

FeatureInfo infoOf(const QModelIndex& index) {
    return index.data(FeatureTreeModel::PresentInfoRole).value<FeatureInfo>();
}

/// NaN is the same as NaN here.
bool isSame(const FeatureValue& left, const FeatureValue& right) {
    return left == right || (left != left && right != right);
}

} // namespace

FeatureItemDelegate::FeatureItemDelegate(QObject* parent) : QStyledItemDelegate(parent) {
    connect(this, &FeatureItemDelegate::onClose, this, &FeatureItemDelegate::commitAndCloseEditor);
}

FeatureItemDelegate::~FeatureItemDelegate() = default;

QWidget* FeatureItemDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& /*option*/,
                                           const QModelIndex& index) const {
    emit aboutToEdit(index);
    const FeatureInfo info = infoOf(index);
    // After reading: the feature may no longer be writable.
    if (!index.flags().testFlag(Qt::ItemIsEditable))
        return nullptr;
    m_editor = EditorFactory::make(info, parent);
    if (m_editor == nullptr) {
        qDebug("Cannot create delegate widget for %s", info.name.c_str());
        return nullptr;
    }
    connect(m_editor, &DelegateWidget::newBoolValueToSet, this, &FeatureItemDelegate::commitEditor);
    connect(m_editor, &DelegateWidget::newStringValueToSet, this,
            &FeatureItemDelegate::commitEditor);
    connect(m_editor, &DelegateWidget::newIntValueToSet, this, &FeatureItemDelegate::commitEditor);
    connect(m_editor, &DelegateWidget::editingFinished, this,
            &FeatureItemDelegate::commitAndCloseEditor);
    return m_editor;
}

void FeatureItemDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const {
    if (auto* widget = qobject_cast<DelegateWidget*>(editor))
        widget->refreshValue(infoOf(index).value);
}

void FeatureItemDelegate::setModelData(QWidget* editor, QAbstractItemModel* model,
                                       const QModelIndex& index) const {
    auto* widget = qobject_cast<DelegateWidget*>(editor);
    if (widget == nullptr)
        return;
    const FeatureInfo info = infoOf(index);
    if (!EditorFactory::canEdit(info)) {
        qDebug("Cannot set value for type [%d]", static_cast<int>(info.dataType));
        return;
    }
    const auto input = widget->input();
    if (!input || isSame(*input, widget->value()))
        return;
    const QPersistentModelIndex edited(index);
    model->setData(index, toVariant(*input));
    // Otherwise closing the editor would write the value again.
    if (edited.isValid())
        widget->setValue(infoOf(edited).value);
}

void FeatureItemDelegate::updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                                               const QModelIndex& /*index*/) const {
    const QSize needed = editor->minimumSizeHint();
    QRect place(option.rect);
    place.setWidth(std::max(place.width(), needed.width()));
    // An editor that is wider than what is left for its column takes the room of the name.
    const int beyond = place.right() - editor->parentWidget()->rect().right();
    place.moveLeft(place.left() - std::clamp(beyond, 0, std::max(0, place.left())));
    const int more = std::max(0, needed.height() - place.height());
    editor->setGeometry(place.adjusted(0, -more / 2, 0, more - more / 2));
}

QSize FeatureItemDelegate::sizeHint(const QStyleOptionViewItem& option,
                                    const QModelIndex& /*index*/) const {
    return {std::max(columnWidth, columnCharacters * option.fontMetrics.averageCharWidth()),
            std::max(rowHeight, option.fontMetrics.height() + 4)};
}

QString FeatureItemDelegate::displayText(const QVariant& value, const QLocale& locale) const {
    switch (static_cast<QMetaType::Type>(value.type())) {
    case QMetaType::Double:
        return toDoubleText(value.toDouble());
    case QMetaType::LongLong:
        return QString::number(value.toLongLong());
    default:
        return QStyledItemDelegate::displayText(value, locale);
    }
}

void FeatureItemDelegate::strengthenDisabled(QPalette& palette) {
    const QColor text = palette.color(QPalette::Active, QPalette::Text);
    const QColor base = palette.color(QPalette::Active, QPalette::Base);
    const auto between = [](int strong, int faint) {
        return (3 * strong + 2 * faint) / 5;
    };
    palette.setColor(QPalette::Disabled, QPalette::Text,
                     {between(text.red(), base.red()), between(text.green(), base.green()),
                      between(text.blue(), base.blue())});
}

void FeatureItemDelegate::initStyleOption(QStyleOptionViewItem* option,
                                          const QModelIndex& index) const {
    QStyledItemDelegate::initStyleOption(option, index);
    strengthenDisabled(option->palette);
    const auto info = index.data(FeatureTreeModel::InfoRole).value<FeatureInfo>();
    if (DelegateWidget::hasUnit(info) && !option->text.isEmpty())
        option->text += QLatin1Char(' ') + QString::fromStdString(info.unit);
}

void FeatureItemDelegate::commitEditor() {
    emit commitData(qobject_cast<QWidget*>(sender()));
}

void FeatureItemDelegate::commitAndCloseEditor() {
    auto* editor = qobject_cast<DelegateWidget*>(sender());
    if (editor == nullptr)
        editor = m_editor;
    if (editor == nullptr)
        return;
    emit commitData(editor);
    emit closeEditor(editor);
}
