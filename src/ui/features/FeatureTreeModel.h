// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "ui/features/FeatureTreeItem.h"
#include "ui/tree/BasicTreeModel.h"

#include <memory>
#include <string>

class FeatureController;

/// All features of a camera with their values, by module and category. Bound to the GUI thread.
///
/// Building the tree asks the camera for names and categories only. A feature's description is read
/// when a view first asks for its value or tool tip, and kept. For its name and flags alone, only
/// the display name and whether it is writable are read: a tree view sorts and lays out rows that
/// are out of sight. A write or a command outdates everything that was read, since features depend
/// on each other. Call outdateValues() when something else may have written to the camera. Outdated
/// features on view are read again at once, the others when a view asks.
class FeatureTreeModel : public BasicTreeModel {
    Q_OBJECT

public:
    enum Column { NameColumn, ValueColumn };
    /// The FeatureInfo of a feature as it was last read, without reading: before the first reading
    /// it has name and category only.
    static constexpr int InfoRole = Qt::UserRole;
    /// The FeatureInfo of a feature as it is now: what is outdated is read from the camera.
    static constexpr int PresentInfoRole = Qt::UserRole + 1;

    /// When \p controller is empty, there are no features.
    explicit FeatureTreeModel(std::shared_ptr<FeatureController> controller,
                              QObject* parent = nullptr);
    ~FeatureTreeModel() override;

    void setupModelData() override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    /// Writes a value to the camera or runs a command; any value but false does that. False when
    /// the camera refused, and when the value is the present one and nothing was written.
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

    /// Marks all but the display names to be read again, and announces all features as changed.
    void outdateValues();
    /// Reads the feature at \p index again, at once; nothing for any other row.
    void readAgain(const QModelIndex& index);

private:
    FeatureTreeItem& itemOf(const QModelIndex& index) const;
    FeatureTreeItem* featureAt(const QModelIndex& index) const;
    void addModule(FeatureTreeItem& parent, const std::string& module) const;
    QVariant groupData(const FeatureTreeItem& group, int column, int role) const;
    QVariant featureData(FeatureTreeItem& feature, int column, int role) const;
    void readOutline(FeatureTreeItem& feature) const;
    void readInfo(FeatureTreeItem& feature) const;
    bool isWritable(FeatureTreeItem& feature) const;
    bool runCommand(const FeatureTreeItem& feature, const QVariant& value);
    bool writeValue(FeatureTreeItem& feature, const QVariant& value);
    void outdateValuesBelow(BasicTreeItem& parent);

    std::shared_ptr<FeatureController> m_controller;
    bool m_loadsLazily = false;
};
