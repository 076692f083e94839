// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "features/FeatureFilter.h"

#include <QSortFilterProxyModel>

/// The feature tree, sorted by the names on view and, while active, reduced to the features that a
/// settings file lists: "plugins/Spanlet_Settings.json" below the host application's directory.
/// Bound to the GUI thread.
///
/// Filtering asks the camera for nothing, and only the rows of a parent that a view has expanded
/// are sorted, which reads their descriptions.
class FeatureTreeProxyModel : public QSortFilterProxyModel {
    Q_OBJECT

public:
    /// Reads the settings file, once; without it an active filter hides every feature. Not active
    /// at first.
    explicit FeatureTreeProxyModel(QObject* parent = nullptr);
    /// With another settings file.
    explicit FeatureTreeProxyModel(const QString& settingsFile, QObject* parent = nullptr);
    ~FeatureTreeProxyModel() override;

    bool isActive() const { return m_active; }
    /// Runs the filter anew.
    void setActive(bool active);

    bool hasChildren(const QModelIndex& parent = {}) const override;

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const override;
    bool lessThan(const QModelIndex& left, const QModelIndex& right) const override;

private:
    QString moduleOf(QModelIndex index) const;

    bool m_active = false;
    const FeatureFilter m_filter;
};
