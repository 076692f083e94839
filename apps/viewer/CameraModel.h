// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "viewer/CameraEntry.h"

#include <QAbstractListModel>

namespace viewer {

/// The camera list of the viewer's window, one row per camera. Bound to the GUI thread.
class CameraModel : public QAbstractListModel {
    Q_OBJECT

public:
    enum Role {
        InterfaceRole = Qt::UserRole,
        AccessRole,
        /// "Available", "In use", "No answer" or "Live".
        AccessTextRole
    };

    using QAbstractListModel::QAbstractListModel;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

    /// Sets the list. With the same cameras in the same order, the rows and the view's selection
    /// stay.
    void setCameras(std::vector<CameraEntry> cameras);
    const std::vector<CameraEntry>& cameras() const;
    /// Row of the camera with this ID, -1 when there is none.
    int rowOf(const QString& id) const;
    void setAccess(int row, CameraAccess access);

private:
    std::vector<CameraEntry> m_cameras;
};

} // namespace viewer
