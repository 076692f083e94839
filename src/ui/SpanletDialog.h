// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "ui/CameraListModel.h"

#include <QDialog>
#include <QModelIndex>
#include <QTimer>
#include <QVector>

#include <map>
#include <memory>
#include <string>

namespace Logging {
class LogMessageWidget;
class ThreadLogStream;
} // namespace Logging
namespace OrvCPP {
class OrvSystem;
}
namespace Ui {
class SpanletDialog;
}
class BandwidthColumn;
class QAction;
class QHeaderView;
class QItemSelection;
class QSettings;

/// The main dialog: the cameras of the host by interface, and the benchmark of an interface.
///
/// While it exists, its log table shows Qt's messages and the lines that the process writes to its
/// standard streams. Construction looks for the cameras and can take seconds. The result is always
/// the auto-adjust flag. Bound to the GUI thread.
class SpanletDialog : public QDialog {
    Q_OBJECT

public:
    /// \p system must be started and outlive the dialog. \p autoAdjustPacketSize: whether
    /// benchmarks adjust the packet sizes of GigE cameras. An empty \p controller is replaced by
    /// one of the system's cameras.
    SpanletDialog(OrvCPP::OrvSystem& system, bool autoAdjustPacketSize, QWidget* parent = nullptr,
                  std::shared_ptr<SystemController> controller = {});
    ~SpanletDialog() override;

signals:
    void autoSetInterfaceFinished();
    void autoSetCameraFinished(QModelIndex cameraIndex);
    void settingsSaved();
    /// Emitted right before the dialog is shown.
    void dialogIsReadyLoaded();

public slots:
    /// Enables the widgets of rows whose cells the model has enabled, and disables the others.
    void onDisableItems(QModelIndex upperLeft, QModelIndex bottomRight, QVector<int> roles);
    /// Shows the present bandwidth of the camera whose features were edited.
    void onFeatureTreeClosed();
    /// Updates what is offered for the interface in row \p index.
    void onSelectInterface(QModelIndex index);
    void onSetInterfaceSelector(InterfaceList interfaces);
    void onStartStopBenchmark();
    void onTimerTimeout();
    void onRefreshButtonClicked();
    /// Shows the features of the current camera.
    void onShowFeatureTreeDialog();
    void onSettingsButtonClicked();
    /// Follows the current row: an interface's row selects the interface.
    void onClickTreeView(QModelIndex current, QModelIndex previous);
    /// Shows the Get Started page.
    void onSupportButtonClicked();
    /// Shows the versions of the program and of the camera SDK.
    void onAboutButtonClicked();
    void onAutoAdjustPacketsize(bool state);
    /// Divides the selected interface's bandwidth among its cameras.
    void onAutoSetButtonClicked();
    /// Gives the current camera the bandwidth that it needs.
    void onAutoSetCameraButtonClicked();
    /// Updates the widget of a changed row from the model.
    void onChangeItemData(QModelIndex topLeft);

    /// Closes the dialog with the auto-adjust flag as its result, whatever \p code is.
    void done(int code) override;

protected:
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void updateRefreshIcon();
    /// The size at which neither a text nor a column is cut off.
    QSize sizeOfContents() const;
    /// Widens what is too narrow for its text in the current font.
    void fitTexts();
    /// Makes room for labels that take more lines than usual in a narrow column.
    void fitHeaderHeight(QHeaderView& header);
    void setUpLogging();
    void setUpAutoSetMenu();
    void setUpTree();
    void connectTree();
    void setUpBandwidthColumn();
    void setUpHelp();
    /// Colours the widgets of rows whose selection has changed.
    void colourRowWidgets(const QItemSelection& selected, const QItemSelection& deselected);
    void startBenchmark();
    void stopBenchmarkByUser();
    /// Stops the interface's cameras and enables the controls again.
    void finishBenchmark();
    /// Ends a running benchmark as if its time was over.
    void endBenchmark();
    int interfaceIndex() const;
    /// Processes pending events during a long operation.
    void processEvents() const;
    /// What may change what is offered: the selected interface and its cameras, the current row, or
    /// the user's end of a benchmark.
    enum class Change { Interface, CurrentRow, EndOfBenchmark };
    /// Enables the actions that are possible after \p change; the only place that does. \p row is
    /// the changed interface's row or the current one. When an interface's row becomes current, its
    /// Auto Set is always enabled. A change of an interface does not change the feature tree's
    /// button, unless there are no cameras.
    void updateOffers(Change change, const QModelIndex& row = {});
    bool isInterface(const QModelIndex& row) const;
    /// Ends all that runs or is open: writes open edits of features, lets the settings report their
    /// packet-size flag, stops the benchmark. May be called again.
    void end();
    int autoAdjustResult() const { return m_autoAdjustPacketSize ? 1 : 0; }

    std::unique_ptr<Ui::SpanletDialog> m_form;
    std::shared_ptr<SystemController> m_controller;
    QTimer m_timer;
    CameraListModel* m_model = nullptr;
    /// Whether the tree's current row steers the dialog: not from the start of a benchmark until
    /// the user stops one.
    bool m_followsTree = true;
    BandwidthColumn* m_bandwidthColumn = nullptr;
    /// Camera ID of each open feature tree. A tree stays open over a refresh, which gives the row
    /// of its camera another handler.
    std::map<const QObject*, std::string> m_camerasOfTrees;
    int m_remainingMs = 0;
    bool m_endless = false;
    bool m_autoAdjustPacketSize;
    QSettings* m_settings;
    QAction* m_autoSetInterfaceAction = nullptr;
    QAction* m_autoSetCameraAction = nullptr;
    std::unique_ptr<Logging::LogMessageWidget> m_logReceiver;
    std::unique_ptr<Logging::ThreadLogStream> m_outputStream;
    std::unique_ptr<Logging::ThreadLogStream> m_errorStream;
};
