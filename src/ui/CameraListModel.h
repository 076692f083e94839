// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "engine/SystemController.h"
#include "ui/CameraTreeItem.h"
#include "ui/tree/BasicTreeModel.h"

#include <QIcon>
#include <QPair>
#include <QString>
#include <QVector>

#include <memory>

/// One pair per interface that has cameras: its ID and its index in the controller's list.
using InterfaceList = QVector<QPair<QString, int>>;

/// The host's interfaces and cameras as a tree: a row per transport-layer type, below it its
/// interfaces, below them their cameras with the statistics of the last benchmark. One interface
/// is the selected one. data() answers from memory; setupModelData() and updateItemData() read the
/// cameras. Bound to the GUI thread.
class CameraListModel : public BasicTreeModel {
    Q_OBJECT

public:
    /// Columns, as the header labels name them.
    enum Column {
        NameColumn,
        BandwidthColumn,
        FrameRateColumn,
        PayloadColumn,
        ReceivedColumn,
        SentColumn,
        LostColumn,
        IncompleteColumn
    };

    explicit CameraListModel(std::shared_ptr<SystemController> controller,
                             QObject* parent = nullptr);
    ~CameraListModel() override;

    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    /// Takes the check state of a camera and the bandwidth of an interface.
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

    /// The handler of a camera row; empty for any other index.
    std::shared_ptr<CameraHandler> cameraHandler(const QModelIndex& index) const;
    /// Row of the selected interface; invalid when there is none.
    QModelIndex selectedInterface() const;
    /// Number of cameras on the selected interface.
    int cameraCount() const;
    /// Number of those among them that are not locked.
    int autoSettableCameraCount() const;
    /// Shows the speed that an interface has now.
    void readInterfaceSpeed(const QModelIndex& interfaceRow);

signals:
    /// In the order of the interface rows.
    void interfaceListChanged(InterfaceList interfaces);
    void interfaceSelected(QModelIndex index);

public slots:
    /// Shows the present statistics and warnings of the selected interface's cameras.
    void updateItemData();
    /// Selects the interface with this position among the interface rows; nothing when there is
    /// none.
    void selectInterface(int interfaceListRow);
    /// While a benchmark runs, the widgets of the selected interface's cameras cannot be used.
    void onStartStopBenchmark(bool isRunning);
    /// Enables or disables the widgets of the selected interface's cameras.
    void enableWidgets(bool enabled);
    /// Finds interfaces and cameras anew, selects the first interface that has a camera, and then
    /// emits the list of interfaces and the selection.
    void setupModelData() override;

private:
    CameraTreeItem* cameraItem(const QModelIndex& index) const;
    QVector<CameraTreeItem*> selectedCameras() const;
    /// Interface rows that have cameras, in the order of the tree.
    QVector<BasicTreeItem*> interfaceItems() const;
    BasicTreeItem* typeRow(OrvTransportLayerType type);
    BasicTreeItem* appendInterface(const CameraList& cameras);
    void select(BasicTreeItem* interfaceItem);
    QVariant cameraData(const CameraTreeItem& item, int role) const;

    std::shared_ptr<SystemController> m_controller;
    BasicTreeItem* m_selectedInterface = nullptr;
    const QIcon m_warningIcon;
};
