// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "session/StreamingLimits.h"
#include "viewer/CameraEntry.h"
#include "viewer/LiveCamera.h"
#include "viewer/SpanletLoader.h"

#include <QElapsedTimer>
#include <QMainWindow>

#include <memory>
#include <optional>
#include <vector>

class QCheckBox;
class QLabel;
class QListView;
class QSettings;
class QSplitter;

namespace OrvCPP {
class OrvSystem;
}

namespace viewer {

class CameraListWatcher;
class CameraModel;
class ImageView;
class LossWatch;
class ThroughputDock;
struct StreamCounters;

/// The viewer's window: the cameras on the left, the live image of the selected one on the right,
/// and Spanlet in its menu. Bound to the GUI thread.
class ViewerWindow : public QMainWindow {
    Q_OBJECT

public:
    /// \p system is started and outlives the window. Spanlet is looked for in \p pluginFolder.
    /// \p limits reads the host's settings. \p settings, which outlives the window, keeps its place
    /// and what is shown in it; without it they are not kept.
    ViewerWindow(OrvCPP::OrvSystem& system, const QString& pluginFolder,
                 session::StreamingLimits limits = session::StreamingLimits(),
                 QSettings* settings = nullptr);
    ~ViewerWindow() override;

    /// Releases the viewer's camera, runs Spanlet's dialog until it is closed, and resumes the
    /// live image; does nothing while the dialog is open. \return why Spanlet could not be loaded;
    /// empty when it could.
    QString openSpanlet();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void buildMenus();
    QWidget* buildCameraPanel();
    void buildStatusBar();
    void buildThroughput();
    /// At its usual size where nothing was kept.
    void restorePlace();

    /// Reads the SDK's camera list anew; keeps the selected camera and its live image.
    void refreshCameras();
    void takeOver(std::vector<CameraEntry> cameras);
    /// Shows below the list which settings of the host are too low for the cameras.
    void showStreamingLimits();
    /// The selected camera; one without an ID when none is selected.
    CameraEntry currentCamera() const;
    int firstAvailableRow() const;
    /// Shows the live image of the camera in this row, or why there is none; -1 for no camera.
    void showCamera(int row);
    void releaseCamera();
    void showFailure(const QString& name, OrvErrorType error);
    void showNoCamera();
    /// Watches the live camera \p entry for lost frames.
    void watchLosses(const CameraEntry& entry);
    /// Shows below the list where frames of the live camera were lost; hides an empty \p text.
    void showLosses(const QString& text);
    void updateFigures();
    void updateFrameRate();
    /// Adds what was counted until now to the plot of the throughput.
    void sampleThroughput();
    /// Of the live camera, and of those that Spanlet has open; nothing of others.
    std::optional<StreamCounters> streamCounters(const CameraEntry& entry) const;
    /// MB/s; nothing where the host does not tell.
    std::optional<double> linkSpeed(const QString& interfaceName) const;

    OrvCPP::OrvSystem& m_system;
    SpanletLoader m_loader;
    session::StreamingLimits m_streamingLimits;
    LiveCamera m_live;
    /// ID of the camera that is live; empty when none is.
    QString m_liveId;
    /// Of the live camera; empty when none is live.
    std::unique_ptr<LossWatch> m_losses;
    /// Of the last live camera, when it was disconnected; empty otherwise.
    QString m_disconnectedId;
    QString m_disconnectedName;
    bool m_isHandedOver = false;

    std::shared_ptr<CameraListWatcher> m_watcher;
    CameraModel* m_model;
    QListView* m_list;
    ImageView* m_view;
    QCheckBox* m_automaticPacketSize;
    QLabel* m_cameraCount;
    QLabel* m_streamingWarning;
    QLabel* m_lossNotice;
    QLabel* m_formatLabel;
    QLabel* m_rateLabel;
    QSplitter* m_splitter;
    ThroughputDock* m_throughput;
    QSettings* m_settings;

    QElapsedTimer m_sinceLastRate;
    std::uint64_t m_framesAtLastRate = 0;
    int m_ratesUntilLook = 0;
};

} // namespace viewer
