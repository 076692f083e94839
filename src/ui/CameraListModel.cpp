// SPDX-License-Identifier: BSD-3-Clause
#include "ui/CameraListModel.h"

#include "engine/CameraHandler.h"

#include <QFont>

#include <algorithm>
#include <map>
#include <utility>

namespace {

QString toText(const std::string& text) {
    return QString::fromStdString(text);
}

QString typeName(OrvTransportLayerType type) {
    const auto& names = transportLayerTypeNames();
    const auto found = names.find(type);
    return found == names.end() ? CameraListModel::tr("Unknown TL") : toText(found->second);
}

/// Bits per second as whole megabytes per second.
quint64 megabytes(std::uint64_t bitsPerSecond) {
    return bitsPerSecond / 1000 / 1000 / 8;
}

QVector<QVariant> statisticsValues(const QVariant& name, const FrameStatistics& statistics) {
    return {name,
            quint64{statistics.reserved},
            statistics.framesPerSecond,
            static_cast<double>(statistics.payloadBytes) / 1000 / 1000,
            quint64{statistics.receivedFrames},
            static_cast<quint64>(statistics.lastFrameId),
            static_cast<quint64>(std::max<std::int64_t>(statistics.lostFrames, 0)),
            quint64{statistics.incompleteFrames}};
}

std::unique_ptr<CameraTreeItem> makeCameraItem(const QString& text,
                                               const std::shared_ptr<CameraHandler>& handler) {
    auto item = std::make_unique<CameraTreeItem>(QVector<QVariant>{text}, handler);
    item->setChecked(handler->isOpened());
    item->setEnabled(handler->isOpened());
    item->setWarningText(toText(handler->getWarningText()));
    return item;
}

bool isCamera(const BasicTreeItem& item) {
    return item.childCount() == 0;
}

} // namespace

CameraListModel::CameraListModel(std::shared_ptr<SystemController> controller, QObject* parent)
    : BasicTreeModel(parent), m_controller(std::move(controller)),
      m_warningIcon(QStringLiteral(":/images/images/warning.png")) {
    qRegisterMetaType<InterfaceList>("InterfaceList");
}

CameraListModel::~CameraListModel() = default;

QVariant CameraListModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid())
        return {};
    const BasicTreeItem* item = itemAt(index);
    if (role == Qt::DisplayRole) {
        const QVariant value = item->value(index.column());
        const bool decimals = index.column() == FrameRateColumn || index.column() == PayloadColumn;
        return decimals && value.isValid() ? QString::number(value.toDouble(), 'f', 2) : value;
    }
    if (index.column() != NameColumn)
        return {};
    if (isCamera(*item))
        return cameraData(*cameraItem(index), role);
    if (role != Qt::FontRole)
        return {};
    QFont font;
    font.setWeight(item == m_selectedInterface ? QFont::Bold : QFont::Normal);
    return font;
}

QVariant CameraListModel::cameraData(const CameraTreeItem& item, int role) const {
    if (role == Qt::CheckStateRole)
        return item.isChecked() ? Qt::Checked : Qt::Unchecked;
    if (item.warningText().isEmpty())
        return {};
    if (role == Qt::DecorationRole)
        return m_warningIcon;
    if (role == Qt::ToolTipRole)
        return item.warningText();
    return {};
}

bool CameraListModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    CameraTreeItem* camera = cameraItem(index);
    if (role == Qt::CheckStateRole && camera != nullptr && index.column() == NameColumn) {
        camera->setChecked(value.toBool());
        camera->handler()->setOpened(camera->isChecked());
        emit dataChanged(index, index, {role});
        return true;
    }
    if (role == Qt::EditRole) {
        const bool isInterface = index.isValid() && camera == nullptr;
        if (!isInterface || index.column() != BandwidthColumn)
            return false;
        itemAt(index)->setValue(index.column(), value);
        emit dataChanged(index, index, {Qt::DisplayRole, role});
        return true;
    }
    return BasicTreeModel::setData(index, value, role);
}

Qt::ItemFlags CameraListModel::flags(const QModelIndex& index) const {
    if (!index.isValid())
        return Qt::NoItemFlags;
    Qt::ItemFlags result = BasicTreeModel::flags(index);
    const CameraTreeItem* camera = cameraItem(index);
    if (camera == nullptr)
        return result;
    switch (index.column()) {
    case NameColumn:
        result |= Qt::ItemIsSelectable | Qt::ItemIsUserCheckable;
        result.setFlag(Qt::ItemIsEnabled, camera->isEnabled());
        break;
    case BandwidthColumn:
        result.setFlag(Qt::ItemIsEnabled, camera->isChecked() && camera->isEnabled());
        break;
    default:
        result.setFlag(Qt::ItemIsEnabled, camera->isChecked());
    }
    return result;
}

QVariant CameraListModel::headerData(int section, Qt::Orientation orientation, int role) const {
    const QString toolTip = headerToolTips().value(section);
    if (orientation == Qt::Horizontal && role == Qt::ToolTipRole && !toolTip.isEmpty())
        return toolTip;
    return BasicTreeModel::headerData(section, orientation, role);
}

std::shared_ptr<CameraHandler> CameraListModel::cameraHandler(const QModelIndex& index) const {
    const CameraTreeItem* camera = cameraItem(index);
    return camera != nullptr ? camera->handler() : nullptr;
}

QModelIndex CameraListModel::selectedInterface() const {
    return indexOf(m_selectedInterface);
}

int CameraListModel::cameraCount() const {
    return selectedCameras().size();
}

int CameraListModel::autoSettableCameraCount() const {
    const QVector<CameraTreeItem*> cameras = selectedCameras();
    return static_cast<int>(
        std::count_if(cameras.begin(), cameras.end(),
                      [](const CameraTreeItem* item) { return !item->handler()->isLocked(); }));
}

void CameraListModel::readInterfaceSpeed(const QModelIndex& interfaceRow) {
    const QString id = interfaceRow.siblingAtColumn(NameColumn).data().toString();
    setData(interfaceRow.siblingAtColumn(BandwidthColumn),
            megabytes(m_controller->getInterfaceSpeed(id.toStdString())));
}

void CameraListModel::updateItemData() {
    for (CameraTreeItem* item : selectedCameras()) {
        const CameraHandler& handler = *item->handler();
        item->setValues(statisticsValues(toText(cameraDisplayText(handler.getCameraInfo())),
                                         handler.getFrameStatistics()));
        item->setWarningText(toText(handler.getWarningText()));
        emit dataChanged(indexOf(item), indexOf(item, columnCount() - 1));
    }
}

void CameraListModel::selectInterface(int interfaceListRow) {
    BasicTreeItem* item = interfaceItems().value(interfaceListRow);
    if (item != nullptr)
        select(item);
}

void CameraListModel::select(BasicTreeItem* interfaceItem) {
    BasicTreeItem* previous = std::exchange(m_selectedInterface, interfaceItem);
    for (BasicTreeItem* changed : {previous, interfaceItem}) {
        if (changed != nullptr && previous != interfaceItem)
            emit dataChanged(indexOf(changed), indexOf(changed), {Qt::FontRole});
    }
    emit interfaceSelected(indexOf(interfaceItem));
}

void CameraListModel::onStartStopBenchmark(bool isRunning) {
    enableWidgets(!isRunning);
}

void CameraListModel::enableWidgets(bool enabled) {
    const QVector<CameraTreeItem*> cameras = selectedCameras();
    if (cameras.isEmpty())
        return;
    for (CameraTreeItem* item : cameras)
        item->setEnabled(enabled);
    emit dataChanged(indexOf(cameras.first(), NameColumn), indexOf(cameras.last(), BandwidthColumn),
                     {Qt::UserRole});
}

void CameraListModel::setupModelData() {
    beginResetModel();
    setRoot(std::make_unique<CameraTreeItem>(QVector<QVariant>{tr("Interfaces/Cameras")}));
    m_selectedInterface = nullptr;
    std::map<const BasicTreeItem*, int> indexes;
    for (const CameraList& cameras : m_controller->enumerate()) {
        if (!cameras.empty())
            indexes.emplace(appendInterface(cameras), static_cast<int>(indexes.size()));
    }
    const QVector<BasicTreeItem*> items = interfaceItems();
    m_selectedInterface = items.value(0);
    endResetModel();

    // After the reset: during it a view still has indexes of the old tree, and at its end a view
    // clears its current row.
    InterfaceList interfaces;
    for (const BasicTreeItem* item : items)
        interfaces.append({item->value(NameColumn).toString(), indexes.at(item)});
    emit interfaceListChanged(interfaces);
    if (!items.isEmpty())
        select(items.first());
}

BasicTreeItem* CameraListModel::typeRow(OrvTransportLayerType type) {
    const QString name = typeName(type);
    for (int row = 0; row < root()->childCount(); ++row) {
        BasicTreeItem* item = root()->child(row);
        if (item->value(NameColumn).toString().startsWith(name, Qt::CaseInsensitive))
            return item;
    }
    const int row = type == OrvTransportLayerTypeGEV ? 0 : root()->childCount();
    return root()->insertChild(row, std::make_unique<CameraTreeItem>(QVector<QVariant>{name}));
}

BasicTreeItem* CameraListModel::appendInterface(const CameraList& cameras) {
    const CameraInfo first = cameras.front()->getCameraInfo();
    BasicTreeItem* type = typeRow(first.transportLayerType);

    // A manual maximum is kept until the next refresh.
    m_controller->clearMaxBandwidths();
    const quint64 speed = megabytes(m_controller->getInterfaceSpeed(first.interfaceName));
    BasicTreeItem* item = type->appendChild(
        std::make_unique<CameraTreeItem>(QVector<QVariant>{toText(first.interfaceName), speed}));

    std::vector<std::pair<QString, std::shared_ptr<CameraHandler>>> rows;
    for (const auto& handler : cameras)
        rows.emplace_back(toText(cameraDisplayText(handler->getCameraInfo())), handler);
    std::stable_sort(rows.begin(), rows.end(),
                     [](const auto& left, const auto& right) { return left.first < right.first; });
    for (const auto& [text, handler] : rows)
        item->appendChild(makeCameraItem(text, handler));
    return item;
}

CameraTreeItem* CameraListModel::cameraItem(const QModelIndex& index) const {
    const bool camera = index.isValid() && isCamera(*itemAt(index));
    return camera ? static_cast<CameraTreeItem*>(itemAt(index)) : nullptr;
}

QVector<CameraTreeItem*> CameraListModel::selectedCameras() const {
    QVector<CameraTreeItem*> cameras;
    const int count = m_selectedInterface != nullptr ? m_selectedInterface->childCount() : 0;
    for (int row = 0; row < count; ++row)
        cameras.append(static_cast<CameraTreeItem*>(m_selectedInterface->child(row)));
    return cameras;
}

QVector<BasicTreeItem*> CameraListModel::interfaceItems() const {
    QVector<BasicTreeItem*> items;
    for (int type = 0; type < root()->childCount(); ++type) {
        const BasicTreeItem* typeItem = root()->child(type);
        for (int row = 0; row < typeItem->childCount(); ++row) {
            if (typeItem->child(row)->childCount() > 0)
                items.append(typeItem->child(row));
        }
    }
    return items;
}
