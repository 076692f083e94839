// SPDX-License-Identifier: BSD-3-Clause
#include "features/ui/FeatureTreeItem.h"

#include "features/ui/FeatureTreeModel.h"

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

/// The lowest \p count bytes, the most significant one first.
QString bytesText(std::uint64_t value, int count, int base, int digits, QChar separator) {
    QString text;
    for (int byte = count - 1; byte >= 0; --byte) {
        text += QStringLiteral("%1").arg((value >> (8 * byte)) & 0xFFU, digits, base, QChar(u'0'));
        if (byte > 0)
            text += separator;
    }
    return text;
}

bool represents(const FeatureInfo& info, const char* representation) {
    return info.representation.find(representation) != std::string::npos;
}

} // namespace

FeatureTreeItem::FeatureTreeItem(const QString& text) : BasicTreeItem({text, QString()}) {}

FeatureTreeItem::FeatureTreeItem(std::string module, std::string category, std::string name)
    : m_module(std::move(module)), m_loading(Loading::NotLoaded) {
    m_info.category = std::move(category);
    m_info.name = std::move(name);
}

FeatureTreeItem::~FeatureTreeItem() = default;

void FeatureTreeItem::setInfo(FeatureInfo info) {
    info.category = std::move(m_info.category);
    info.name = std::move(m_info.name);
    m_info = std::move(info);
    if (m_loading == Loading::NotLoaded) {
        // A camera that does not answer leaves at least the name to look at.
        const std::string& name = m_info.displayName.empty() ? m_info.name : m_info.displayName;
        setValue(FeatureTreeModel::NameColumn, QString::fromStdString(name));
    }
    setValue(FeatureTreeModel::ValueColumn, valueOnView(m_info));
    m_loading = Loading::Loaded;
}

void FeatureTreeItem::setFeatureValue(const FeatureValue& value) {
    m_info.value = value;
    setValue(FeatureTreeModel::ValueColumn, valueOnView(m_info));
}

void FeatureTreeItem::markOutdated() {
    if (isFeature() && m_loading == Loading::Loaded)
        m_loading = Loading::Outdated;
}

QVariant toVariant(const FeatureValue& value) {
    return std::visit(ToVariant(), value);
}

QVariant valueOnView(const FeatureInfo& info) {
    if (info.dataType == OrvFeatureDataCommand)
        return FeatureTreeModel::tr("[ COMMAND ]");
    if (!info.readable)
        return {};
    const bool isHex = represents(info, "HexNumber");
    const bool isIp = represents(info, "IPV4Address");
    if (!isHex && !isIp && !represents(info, "MACAddress"))
        return toVariant(info.value);
    const auto* integer = std::get_if<std::int64_t>(&info.value);
    if (integer == nullptr)
        return {};
    const auto bits = static_cast<std::uint64_t>(*integer);
    if (isHex)
        return QString::number(bits, 16);
    return isIp ? bytesText(bits, 4, 10, 0, QChar(u'.')) : bytesText(bits, 6, 16, 2, QChar(u':'));
}
