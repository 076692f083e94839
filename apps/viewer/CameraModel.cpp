// SPDX-License-Identifier: BSD-3-Clause
#include "viewer/CameraModel.h"

#include <algorithm>
#include <utility>

namespace viewer {

namespace {

QString toolTip(const CameraEntry& entry) {
    return CameraModel::tr("%1\nSerial number: %2\nID: %3")
        .arg(entry.model, entry.serialNumber, entry.id);
}

QString accessText(CameraAccess access) {
    switch (access) {
    case CameraAccess::InUse:
        return CameraModel::tr("In use");
    case CameraAccess::NoAnswer:
        return CameraModel::tr("No answer");
    case CameraAccess::Live:
        return CameraModel::tr("Live");
    case CameraAccess::Available:
        break;
    }
    return CameraModel::tr("Available");
}

} // namespace

int CameraModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_cameras.size());
}

QVariant CameraModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const CameraEntry& entry = m_cameras[static_cast<std::size_t>(index.row())];
    switch (role) {
    case Qt::DisplayRole:
        return entry.name;
    case Qt::ToolTipRole:
        return toolTip(entry);
    case InterfaceRole:
        return entry.interfaceName;
    case AccessRole:
        return static_cast<int>(entry.access);
    case AccessTextRole:
        return accessText(entry.access);
    default:
        return {};
    }
}

void CameraModel::setCameras(std::vector<CameraEntry> cameras) {
    const bool sameCameras =
        std::equal(m_cameras.begin(), m_cameras.end(), cameras.begin(), cameras.end(),
                   [](const auto& left, const auto& right) { return left.id == right.id; });
    if (!sameCameras) {
        beginResetModel();
        m_cameras = std::move(cameras);
        endResetModel();
    } else if (!cameras.empty()) {
        m_cameras = std::move(cameras);
        emit dataChanged(index(0), index(rowCount() - 1));
    }
}

const std::vector<CameraEntry>& CameraModel::cameras() const {
    return m_cameras;
}

int CameraModel::rowOf(const QString& id) const {
    const auto found = std::find_if(m_cameras.begin(), m_cameras.end(),
                                    [&id](const CameraEntry& entry) { return entry.id == id; });
    return found == m_cameras.end() ? -1 : static_cast<int>(found - m_cameras.begin());
}

void CameraModel::setAccess(int row, CameraAccess access) {
    if (row >= 0 && row < rowCount()) {
        m_cameras[static_cast<std::size_t>(row)].access = access;
        emit dataChanged(index(row), index(row), {AccessRole, AccessTextRole});
    }
}

} // namespace viewer
