// SPDX-License-Identifier: BSD-3-Clause
#include "ui/features/FeatureTreeItem.h"

#include "features/FeatureText.h"
#include "ui/features/FeatureTreeModel.h"

#include <cstdint>
#include <utility>
#include <variant>

namespace {

struct ToVariant {
    QVariant operator()(std::int64_t value) const { return qlonglong{value}; }
    QVariant operator()(double value) const { return value; }
    QVariant operator()(bool value) const { return value; }
    QVariant operator()(const std::string& value) const { return QString::fromStdString(value); }
};

} // namespace

FeatureTreeItem::FeatureTreeItem(const QString& text) : BasicTreeItem({text, QString()}) {}

FeatureTreeItem::FeatureTreeItem(std::string module, std::string category, std::string name)
    : m_module(std::move(module)), m_known(Known::Nothing) {
    m_info.category = std::move(category);
    m_info.name = std::move(name);
}

FeatureTreeItem::~FeatureTreeItem() = default;

void FeatureTreeItem::setOutline(const FeatureInfo& outline) {
    setDisplayName(outline.displayName);
    m_info.writable = outline.writable;
    m_known = Known::Outline;
}

void FeatureTreeItem::setInfo(FeatureInfo info) {
    info.category = std::move(m_info.category);
    info.name = std::move(m_info.name);
    m_info = std::move(info);
    setDisplayName(m_info.displayName);
    setValue(FeatureTreeModel::ValueColumn, valueOnView(m_info));
    m_known = Known::Everything;
}

/// Without a display name, as from a camera that does not answer, the feature's name is shown.
void FeatureTreeItem::setDisplayName(const std::string& displayName) {
    if (!value(FeatureTreeModel::NameColumn).isValid())
        setValue(FeatureTreeModel::NameColumn,
                 QString::fromStdString(displayName.empty() ? m_info.name : displayName));
}

void FeatureTreeItem::setFeatureValue(const FeatureValue& value) {
    m_info.value = value;
    setValue(FeatureTreeModel::ValueColumn, valueOnView(m_info));
}

void FeatureTreeItem::markOutdated() {
    if (isFeature())
        m_known = Known::Nothing;
}

QVariant toVariant(const FeatureValue& value) {
    return std::visit(ToVariant(), value);
}

QVariant valueOnView(const FeatureInfo& info) {
    if (info.dataType == OrvFeatureDataCommand)
        return FeatureTreeModel::tr("[ COMMAND ]");
    if (!info.readable)
        return {};
    const IntegerNotation notation = notationOf(info.representation);
    if (notation == IntegerNotation::Decimal)
        return toVariant(info.value);
    const auto integer = integerOf(info.value);
    return integer ? toIntegerText(*integer, notation) : QVariant();
}
