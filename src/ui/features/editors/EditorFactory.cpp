// SPDX-License-Identifier: BSD-3-Clause
#include "ui/features/editors/EditorFactory.h"

#include "features/FeatureText.h"
#include "ui/features/editors/BooleanEditor.h"
#include "ui/features/editors/CommandEditor.h"
#include "ui/features/editors/EnumerationEditor.h"
#include "ui/features/editors/FloatEditor.h"
#include "ui/features/editors/IntegerEditor.h"
#include "ui/features/editors/TextEditor.h"

namespace {

using Read = std::optional<FeatureValue>;

constexpr TextForm plain{
    [](const FeatureValue& v) { return QString::fromStdString(valueAs<std::string>(v)); },
    [](const QString& text) { return Read(text.toStdString()); },
};

constexpr TextForm hex{
    [](const FeatureValue& v) { return toHexText(valueAs<std::int64_t>(v)); },
    [](const QString& text) { return Read(fromHexText(text)); },
    &DelegateWidget::onEditingFinishedHex,
    "([0-9a-fA-F]){1,8}",
    QT_TRANSLATE_NOOP("DelegateWidget", "Up to 8 hexadecimal digits"),
    "0x",
};

constexpr TextForm ip{
    [](const FeatureValue& v) { return toIpText(valueAs<std::int64_t>(v)); },
    [](const QString& text) { return Read(fromIpText(text)); },
    &DelegateWidget::onEditingFinishedIP,
    "(([01]?[0-9]?[0-9]|2[0-4][0-9]|25[0-5])\\.){3}([01]?[0-9]?[0-9]|2[0-4][0-9]|25[0-5])",
    QT_TRANSLATE_NOOP("DelegateWidget", "An IPv4 address, such as 192.168.0.1"),
};

constexpr TextForm mac{
    [](const FeatureValue& v) { return toMacText(valueAs<std::int64_t>(v)); },
    [](const QString& text) { return Read(fromMacText(text)); },
    &DelegateWidget::onEditingFinished,
    "^([0-9A-Fa-f]{2}[:-]){5}([0-9A-Fa-f]{2})$",
    QT_TRANSLATE_NOOP("DelegateWidget", "A MAC address, such as 02:00:00:00:00:01"),
};

/// One row of the table of editors.
struct Kind {
    bool (*suits)(const FeatureInfo& info);
    DelegateWidget* (*make)(const FeatureInfo& info, QWidget* parent);
};

template <OrvFeatureDataType type> bool isOf(const FeatureInfo& info) {
    return info.dataType == type;
}

bool represents(const FeatureInfo& info, const char* representation) {
    return info.dataType == OrvFeatureDataInt &&
           info.representation.find(representation) != std::string::npos;
}

template <class Editor> DelegateWidget* make(const FeatureInfo& info, QWidget* parent) {
    return new Editor(info, parent);
}

template <const TextForm& form> DelegateWidget* makeText(const FeatureInfo& info, QWidget* parent) {
    return new TextEditor(info, form, parent);
}

/// The first row that suits a feature counts.
constexpr Kind kinds[] = {
    {isOf<OrvFeatureDataCommand>, make<CommandEditor>},
    {isOf<OrvFeatureDataBool>, make<BooleanEditor>},
    {isOf<OrvFeatureDataEnum>, make<EnumerationEditor>},
    {isOf<OrvFeatureDataString>, makeText<plain>},
    {[](const FeatureInfo& info) { return represents(info, "HexNumber"); }, makeText<hex>},
    {[](const FeatureInfo& info) { return represents(info, "IPV4Address"); }, makeText<ip>},
    {[](const FeatureInfo& info) { return represents(info, "MACAddress"); }, makeText<mac>},
    {isOf<OrvFeatureDataInt>, make<IntegerEditor>},
    {isOf<OrvFeatureDataFloat>, make<FloatEditor>},
};

const Kind* kindOf(const FeatureInfo& info) {
    for (const Kind& kind : kinds)
        if (kind.suits(info))
            return &kind;
    return nullptr;
}

} // namespace

bool EditorFactory::canEdit(const FeatureInfo& info) {
    return kindOf(info) != nullptr;
}

DelegateWidget* EditorFactory::make(const FeatureInfo& info, QWidget* parent) {
    const Kind* kind = kindOf(info);
    if (kind == nullptr)
        return nullptr;
    DelegateWidget* editor = kind->make(info, parent);
    editor->setValue(info.value);
    return editor;
}
