// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "features/FeatureMetaTypes.h"
#include "features/ui/FeatureTreeItem.h"

#include <QAbstractTableModel>

#include <string>
#include <utility>
#include <vector>

/// Features in rows, with the roles of the feature tree's model; remembers what is written to it.
class FeatureRows : public QAbstractTableModel {
public:
    explicit FeatureRows(std::vector<FeatureInfo> features) : m_features(std::move(features)) {}

    std::vector<FeatureValue> writes;
    bool refuses = false;

    int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(m_features.size());
    }
    int columnCount(const QModelIndex& /*parent*/ = {}) const override { return 2; }

    QVariant data(const QModelIndex& index, int role) const override {
        const FeatureInfo& info = m_features[static_cast<std::size_t>(index.row())];
        if (role == Qt::UserRole)
            return QVariant::fromValue(info);
        if (role != Qt::DisplayRole && role != Qt::EditRole)
            return {};
        return index.column() == 0 ? QString::fromStdString(info.name) : valueOnView(info);
    }

    bool setData(const QModelIndex& index, const QVariant& value, int /*role*/) override {
        FeatureInfo& info = m_features[static_cast<std::size_t>(index.row())];
        const bool isCommand = info.dataType == OrvFeatureDataCommand;
        writes.push_back(toFeatureValue(value, isCommand ? 2 : info.value.index()));
        if (!refuses && !isCommand)
            info.value = writes.back();
        return !refuses;
    }

    Qt::ItemFlags flags(const QModelIndex& index) const override {
        return QAbstractTableModel::flags(index) | Qt::ItemIsEditable;
    }

private:
    std::vector<FeatureInfo> m_features;
};

inline FeatureInfo makeFeature(const char* name, OrvFeatureDataType type, FeatureValue value,
                               const char* representation = "") {
    FeatureInfo info;
    info.name = name;
    info.dataType = type;
    info.value = std::move(value);
    info.representation = representation;
    info.readable = info.writable = true;
    return info;
}

template <class Number>
FeatureInfo makeRanged(const char* name, Number value, Number minimum, Number maximum,
                       Number increment, const char* representation = "") {
    const bool isFloat = FeatureValue(value).index() == 1;
    FeatureInfo info =
        makeFeature(name, isFloat ? OrvFeatureDataFloat : OrvFeatureDataInt, value, representation);
    info.minimum = minimum;
    info.maximum = maximum;
    info.increment = increment;
    return info;
}

inline FeatureInfo makeEnumeration(const char* name, const char* value,
                                   const std::vector<std::string>& available) {
    FeatureInfo info = makeFeature(name, OrvFeatureDataEnum, std::string(value));
    info.availableValues.assign(available.begin(), available.end());
    return info;
}
