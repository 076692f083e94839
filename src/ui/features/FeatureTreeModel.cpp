// SPDX-License-Identifier: BSD-3-Clause
#include "ui/features/FeatureTreeModel.h"

#include "features/FeatureController.h"
#include "features/FeatureMetaTypes.h"

#include <QColor>
#include <QFont>

#include <cstddef>
#include <cstdint>
#include <utility>

namespace {

constexpr double commandTimeoutMs = 1000.0;

/// The category below \p parent with that text, made where there is none.
FeatureTreeItem& categoryBelow(BasicTreeItem& parent, const QString& text) {
    for (int row = 0; row < parent.childCount(); ++row) {
        auto& child = static_cast<FeatureTreeItem&>(*parent.child(row));
        // A feature has no display name before it was read.
        if (child.value(FeatureTreeModel::NameColumn).toString() == text)
            return child;
    }
    return static_cast<FeatureTreeItem&>(
        *parent.appendChild(std::make_unique<FeatureTreeItem>(text)));
}

/// Indices of FeatureValue's alternatives.
enum Alternative : std::size_t { IntegerValue, FloatValue, BooleanValue, TextValue };

/// Index of the alternative for the feature's type. Its value may have another: one that could not
/// be read is the integer 0.
std::size_t alternativeOf(const FeatureInfo& info) {
    switch (info.dataType) {
    case OrvFeatureDataInt:
        return IntegerValue;
    case OrvFeatureDataFloat:
        return FloatValue;
    case OrvFeatureDataBool:
        return BooleanValue;
    case OrvFeatureDataEnum:
    case OrvFeatureDataString:
        return TextValue;
    default:
        return info.value.index();
    }
}

} // namespace

FeatureTreeModel::FeatureTreeModel(std::shared_ptr<FeatureController> controller, QObject* parent)
    : BasicTreeModel(parent), m_controller(std::move(controller)) {
    qRegisterMetaType<FeatureInfo>("FeatureInfo");
    setHeaderLabels({tr("Feature"), QString()});
}

FeatureTreeModel::~FeatureTreeModel() = default;

void FeatureTreeModel::setupModelData() {
    beginResetModel();
    auto root = std::make_unique<FeatureTreeItem>(tr("Feature"));
    if (m_controller) {
        for (const std::string& module : m_controller->getModuleNames())
            addModule(*root, module);
    }
    setRoot(std::move(root));
    m_loadsLazily = true;
    endResetModel();
}

void FeatureTreeModel::addModule(FeatureTreeItem& parent, const std::string& module) const {
    BasicTreeItem& moduleItem =
        *parent.appendChild(std::make_unique<FeatureTreeItem>(QString::fromStdString(module)));
    for (const auto& [category, features] : m_controller->getFeaturesByCategory(module)) {
        BasicTreeItem* group = &moduleItem;
        const QString path = QString::fromStdString(category);
        for (const QString& part : path.split(QLatin1Char('/'), Qt::SkipEmptyParts))
            group = &categoryBelow(*group, part);
        for (const std::string& name : features)
            group->appendChild(std::make_unique<FeatureTreeItem>(module, category, name));
    }
}

FeatureTreeItem& FeatureTreeModel::itemOf(const QModelIndex& index) const {
    return static_cast<FeatureTreeItem&>(*itemAt(index));
}

/// Null for any other index.
FeatureTreeItem* FeatureTreeModel::featureAt(const QModelIndex& index) const {
    return index.isValid() && itemOf(index).isFeature() ? &itemOf(index) : nullptr;
}

QVariant FeatureTreeModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid())
        return {};
    FeatureTreeItem& item = itemOf(index);
    return item.isFeature() ? featureData(item, index.column(), role)
                            : groupData(item, index.column(), role);
}

QVariant FeatureTreeModel::groupData(const FeatureTreeItem& group, int column, int role) const {
    if (role == Qt::DisplayRole || role == Qt::EditRole)
        return group.value(column);
    if (role != Qt::FontRole || column == ValueColumn)
        return {};
    QFont font;
    font.setWeight(QFont::Bold);
    return font;
}

QVariant FeatureTreeModel::featureData(FeatureTreeItem& feature, int column, int role) const {
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        // Names do not become outdated.
        if (column == ValueColumn)
            readInfo(feature);
        else if (!feature.value(column).isValid())
            readOutline(feature);
        return feature.value(column);
    case Qt::ForegroundRole:
        return column != ValueColumn && isWritable(feature) ? QColor(0x00, 0x64, 0x00) : QVariant();
    case Qt::ToolTipRole:
        readInfo(feature);
        return tr("<b>%1</b><br>%2")
            .arg(QString::fromStdString(feature.info().name).toHtmlEscaped(),
                 QString::fromStdString(feature.info().toolTip).toHtmlEscaped());
    case PresentInfoRole:
        readInfo(feature);
        [[fallthrough]];
    case InfoRole:
        return QVariant::fromValue(feature.info());
    default:
        return {};
    }
}

Qt::ItemFlags FeatureTreeModel::flags(const QModelIndex& index) const {
    Qt::ItemFlags flags = BasicTreeModel::flags(index);
    FeatureTreeItem* feature = featureAt(index);
    if (feature == nullptr)
        return flags;
    const bool writable = isWritable(*feature);
    flags.setFlag(Qt::ItemIsEnabled, writable);
    flags.setFlag(Qt::ItemIsEditable, writable && index.column() == ValueColumn);
    return flags;
}

bool FeatureTreeModel::isWritable(FeatureTreeItem& feature) const {
    readOutline(feature);
    return feature.info().writable;
}

void FeatureTreeModel::readOutline(FeatureTreeItem& feature) const {
    if (m_loadsLazily && feature.known() == FeatureTreeItem::Known::Nothing)
        feature.setOutline(m_controller->getFeatureOutline(feature.module(), feature.info().name));
}

void FeatureTreeModel::readInfo(FeatureTreeItem& feature) const {
    if (m_loadsLazily && feature.known() != FeatureTreeItem::Known::Everything)
        feature.setInfo(m_controller->getFeatureInfo(feature.module(), feature.info().name));
}

bool FeatureTreeModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    FeatureTreeItem* feature = featureAt(index);
    if (feature == nullptr || index.column() != ValueColumn || role != Qt::EditRole)
        return BasicTreeModel::setData(index, value, role);
    readInfo(*feature);
    if (feature->info().dataType == OrvFeatureDataCommand)
        return runCommand(*feature, value);
    return writeValue(*feature, value);
}

bool FeatureTreeModel::runCommand(const FeatureTreeItem& feature, const QVariant& value) {
    if (value.type() == QVariant::Bool && !value.toBool())
        return false;
    const bool done =
        m_controller->runCommand(feature.module(), feature.info().name, commandTimeoutMs);
    // A command that timed out may have had its effect, too.
    outdateValues();
    return done;
}

bool FeatureTreeModel::writeValue(FeatureTreeItem& feature, const QVariant& value) {
    const FeatureValue& current = feature.info().value;
    const std::size_t alternative = alternativeOf(feature.info());
    const bool wasRead = current.index() == alternative;
    if (wasRead && value == toVariant(current))
        return false;
    const FeatureValue written = toFeatureValue(value, alternative);
    if (!m_controller->setFeatureValue(feature.module(), feature.info().name, written))
        return false;
    feature.setFeatureValue(written);
    outdateValues();
    return true;
}

void FeatureTreeModel::outdateValues() {
    outdateValuesBelow(*root());
}

void FeatureTreeModel::readAgain(const QModelIndex& index) {
    FeatureTreeItem* feature = featureAt(index);
    if (feature == nullptr)
        return;
    feature->markOutdated();
    readInfo(*feature);
    emit dataChanged(indexOf(feature, ValueColumn), indexOf(feature, ValueColumn));
}

/// Announces the value column only: for changed names a tree view asks for the flags of all rows,
/// which would read them from the camera.
void FeatureTreeModel::outdateValuesBelow(BasicTreeItem& parent) {
    bool outdated = false;
    const int rows = parent.childCount();
    for (int row = 0; row < rows; ++row) {
        auto& child = static_cast<FeatureTreeItem&>(*parent.child(row));
        outdated =
            outdated || (child.isFeature() && child.known() != FeatureTreeItem::Known::Nothing);
        child.markOutdated();
        outdateValuesBelow(child);
    }
    if (outdated)
        emit dataChanged(indexOf(parent.child(0), ValueColumn),
                         indexOf(parent.child(rows - 1), ValueColumn));
}
