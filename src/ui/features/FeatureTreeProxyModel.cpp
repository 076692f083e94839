// SPDX-License-Identifier: BSD-3-Clause
#include "ui/features/FeatureTreeProxyModel.h"

#include "features/FeatureMetaTypes.h"
#include "ui/features/FeatureTreeModel.h"

FeatureTreeProxyModel::FeatureTreeProxyModel(QObject* parent)
    : FeatureTreeProxyModel(FeatureFilter::shippedFile(), parent) {}

FeatureTreeProxyModel::FeatureTreeProxyModel(const QString& settingsFile, QObject* parent)
    : QSortFilterProxyModel(parent), m_filter(settingsFile) {
    sort(FeatureTreeModel::NameColumn);
}

FeatureTreeProxyModel::~FeatureTreeProxyModel() = default;

void FeatureTreeProxyModel::setActive(bool active) {
    m_active = active;
    invalidate();
}

/// The base class would filter and sort the children of every row on view, and sorting reads their
/// descriptions. While every row is accepted, the source model has the answer.
bool FeatureTreeProxyModel::hasChildren(const QModelIndex& parent) const {
    return m_active || sourceModel() == nullptr ? QSortFilterProxyModel::hasChildren(parent)
                                                : sourceModel()->hasChildren(mapToSource(parent));
}

bool FeatureTreeProxyModel::filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const {
    if (!m_active)
        return true;
    const QModelIndex index = sourceModel()->index(sourceRow, filterKeyColumn(), sourceParent);
    if (!index.isValid())
        return QSortFilterProxyModel::filterAcceptsRow(sourceRow, sourceParent);
    const auto info = index.data(FeatureTreeModel::InfoRole).value<FeatureInfo>();
    return m_filter.accepts(moduleOf(index), QString::fromStdString(info.category),
                            QString::fromStdString(info.name));
}

QString FeatureTreeProxyModel::moduleOf(QModelIndex index) const {
    while (index.parent().isValid())
        index = index.parent();
    return index.siblingAtColumn(FeatureTreeModel::NameColumn).data(filterRole()).toString();
}

bool FeatureTreeProxyModel::lessThan(const QModelIndex& left, const QModelIndex& right) const {
    // Modules keep the order from the host to the stream.
    if (!left.parent().isValid())
        return false;
    const auto name = [](const QModelIndex& index) {
        return index.siblingAtColumn(FeatureTreeModel::NameColumn).data().toString();
    };
    return QString::localeAwareCompare(name(left), name(right)) < 0;
}
