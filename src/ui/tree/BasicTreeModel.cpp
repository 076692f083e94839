// SPDX-License-Identifier: BSD-3-Clause
#include "ui/tree/BasicTreeModel.h"

#include <QFont>
#include <QFontMetrics>

#include <utility>

namespace {

QFont headerFont() {
    QFont font;
    font.setWeight(QFont::Bold);
    return font;
}

/// Room for labels of two lines.
QSize headerSize() {
    return {100, 2 * QFontMetrics(headerFont()).height() + 20};
}

} // namespace

BasicTreeModel::BasicTreeModel(QObject* parent)
    : QAbstractItemModel(parent), m_root(std::make_unique<BasicTreeItem>()) {}

BasicTreeModel::~BasicTreeModel() = default;

QModelIndex BasicTreeModel::index(int row, int column, const QModelIndex& parent) const {
    return hasIndex(row, column, parent) ? createIndex(row, column, itemAt(parent)->child(row))
                                         : QModelIndex();
}

QModelIndex BasicTreeModel::parent(const QModelIndex& child) const {
    return child.isValid() ? indexOf(itemAt(child)->parent()) : QModelIndex();
}

int BasicTreeModel::rowCount(const QModelIndex& parent) const {
    return parent.column() > 0 ? 0 : itemAt(parent)->childCount();
}

int BasicTreeModel::columnCount(const QModelIndex& /*parent*/) const {
    return m_headerLabels.size();
}

QVariant BasicTreeModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole)
        return m_headerLabels.value(section);
    if (role == Qt::FontRole)
        return headerFont();
    if (role == Qt::SizeHintRole)
        return headerSize();
    return QAbstractItemModel::headerData(section, orientation, role);
}

bool BasicTreeModel::setHeaderData(int section, Qt::Orientation orientation, const QVariant& value,
                                   int role) {
    const bool isLabel = section >= 0 && section < m_headerLabels.size();
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || !isLabel)
        return false;
    m_headerLabels[section] = value.toString();
    emit headerDataChanged(orientation, section, section);
    return true;
}

void BasicTreeModel::setHeaderLabels(const QStringList& labels) {
    beginResetModel();
    m_headerLabels = labels;
    endResetModel();
}

void BasicTreeModel::setHeaderToolTips(const QStringList& toolTips) {
    m_headerToolTips = toolTips;
}

QModelIndexList BasicTreeModel::childIndexes(const QModelIndex& parent) const {
    QModelIndexList children;
    const int rows = rowCount(parent);
    children.reserve(rows);
    for (int row = 0; row < rows; ++row)
        children.append(index(row, 0, parent));
    return children;
}

BasicTreeItem* BasicTreeModel::itemAt(const QModelIndex& index) const {
    return index.isValid() ? static_cast<BasicTreeItem*>(index.internalPointer()) : m_root.get();
}

QModelIndex BasicTreeModel::indexOf(BasicTreeItem* item, int column) const {
    const bool isRow = item != nullptr && item != m_root.get();
    return isRow ? createIndex(item->row(), column, item) : QModelIndex();
}

void BasicTreeModel::setRoot(std::unique_ptr<BasicTreeItem> root) {
    m_root = std::move(root);
}
