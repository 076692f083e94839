// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QWidget>

#include <map>
#include <memory>

namespace Ui {
class InterfaceSpeedWidget;
}

/// Shows how much of an interface's bandwidth its cameras are assigned: "used / maximum" in MB/s
/// beside a bar, whose colour tells whether the interface's safety margin is kept. A right
/// click, the menu key or a double click lets the user overwrite the maximum. Bound to the GUI
/// thread.
class InterfaceSpeedWidget : public QWidget {
    Q_OBJECT

public:
    /// \p maxBandwidth is the interface's, in MB/s; 0 when it is not known.
    explicit InterfaceSpeedWidget(int maxBandwidth, QWidget* parent = nullptr);
    ~InterfaceSpeedWidget() override;

    /// Shows another maximum, in MB/s, without a signal.
    void setMaxBandwidth(int maxBandwidth);

signals:
    /// The user has overwritten the maximum; in MB/s.
    void maxBandwidthChanged(int value);

public slots:
    /// \p safetyMargin is the percentage of the maximum that should stay free.
    void updateColor(int safetyMargin);
    /// Sets the bandwidth that a camera is assigned, in MB/s. \p cameraNo is the camera's row under
    /// the interface.
    void setValue(int cameraNo, int safetyMargin, int value);
    /// Asks the user for the maximum.
    void manualSetMaxBandwidth();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void showUsage();
    void showMenu(const QPoint& globalPosition);

    std::unique_ptr<Ui::InterfaceSpeedWidget> m_form;
    int m_maxBandwidth;
    int m_usedBandwidth = 0;
    double m_safetyMargin = 0.0;
    std::map<int, int> m_cameraBandwidths;
};
