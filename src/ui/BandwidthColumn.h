// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QModelIndex>
#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <string>

class BandwidthSliderWidget;
class CameraListModel;
class InterfaceSpeedWidget;
class QSettings;
class QTreeView;
class QWidget;
class SystemController;

/// The widgets in the bandwidth column of the camera tree: a usage bar on every interface row and a
/// slider on every camera row. Keeps them in step with each other, with the cameras, the
/// interfaces' maxima and the safety margins of the settings. Bound to the GUI thread.
class BandwidthColumn : public QObject {
    Q_OBJECT

public:
    /// \p tree, which shows \p model, and \p settings must outlive the column.
    BandwidthColumn(QTreeView& tree, CameraListModel& model,
                    std::shared_ptr<SystemController> controller, const QSettings& settings,
                    QObject* parent);

    /// Gives a row's widget the colours of the row's other cells, which depend on the selection.
    static void showSelected(QWidget& widget, bool isSelected);

    /// Removes all widgets. To be called before the model removes rows.
    void clear();
    /// Puts a widget on every row. \p afterEachCamera is called after each camera, since reading
    /// one can take a while.
    void fill(const std::function<void()>& afterEachCamera);

    /// Shows a camera's bandwidth and outcome after its Auto Set.
    void reloadCamera(const QModelIndex& camera);
    /// Calls reloadCamera() for the cameras of an interface that took part in its Auto Set.
    void reloadInterface(const QString& interfaceId);
    /// Shows the bandwidth of the camera with this ID as it is now.
    void reloadValue(const std::string& cameraId);
    /// Shows the maximum that the model has for a row, when it is an interface's.
    void updateMaximum(const QModelIndex& row);
    /// Colours all usage bars by the current margins.
    void updateMargins();

signals:
    /// The user has locked or unlocked a camera.
    void lockChanged();
    /// The user has overwritten the maximum of an interface.
    void maximumChanged();

private:
    void placeBar(const QModelIndex& interfaceRow);
    void placeSlider(const QModelIndex& camera);
    void place(const QModelIndex& row, QWidget& widget);
    void showUsage(const QModelIndex& camera, int bandwidth);
    void overwriteMaximum(const QModelIndex& interfaceRow, int bandwidth);
    /// Column 0 of all interface rows.
    QModelIndexList interfaceRows() const;
    /// None when the row carries another widget, or none.
    InterfaceSpeedWidget* barOf(const QModelIndex& interfaceRow) const;
    BandwidthSliderWidget* sliderOf(const QModelIndex& camera) const;
    /// Percentage of the interface's bandwidth that should stay free.
    int marginOf(const QModelIndex& interfaceRow) const;

    QTreeView& m_tree;
    CameraListModel& m_model;
    const std::shared_ptr<SystemController> m_controller;
    const QSettings& m_settings;
};
