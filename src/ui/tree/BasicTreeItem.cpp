// SPDX-License-Identifier: BSD-3-Clause
#include "ui/tree/BasicTreeItem.h"

#include <algorithm>
#include <utility>

BasicTreeItem::BasicTreeItem(QVector<QVariant> values) : m_values(std::move(values)) {}

BasicTreeItem::~BasicTreeItem() = default;

BasicTreeItem* BasicTreeItem::child(int row) const {
    return row >= 0 && row < childCount() ? m_children[static_cast<std::size_t>(row)].get()
                                          : nullptr;
}

int BasicTreeItem::childCount() const {
    return static_cast<int>(m_children.size());
}

int BasicTreeItem::columnCount() const {
    return m_values.size();
}

QVariant BasicTreeItem::value(int column) const {
    return m_values.value(column);
}

void BasicTreeItem::setValue(int column, const QVariant& value) {
    if (column >= m_values.size())
        m_values.resize(column + 1);
    m_values[column] = value;
}

void BasicTreeItem::setValues(QVector<QVariant> values) {
    m_values = std::move(values);
}

BasicTreeItem* BasicTreeItem::appendChild(std::unique_ptr<BasicTreeItem> child) {
    return insertChild(childCount(), std::move(child));
}

BasicTreeItem* BasicTreeItem::insertChild(int row, std::unique_ptr<BasicTreeItem> child) {
    const int position = std::clamp(row, 0, childCount());
    child->m_parent = this;
    const auto inserted = m_children.insert(m_children.begin() + position, std::move(child));
    for (int i = position; i < childCount(); ++i)
        m_children[static_cast<std::size_t>(i)]->m_row = i;
    return inserted->get();
}
