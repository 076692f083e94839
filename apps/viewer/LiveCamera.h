// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/OrvTypes.h"
#include "losses/FrameStatistics.h"

#include <QImage>
#include <QObject>
#include <QString>

#include <memory>

namespace OrvCPP {
class Camera;
}

namespace viewer {

class FrameMailbox;

/// The one camera that the viewer has open, in full access, and whose images it shows.
/// Bound to the GUI thread.
class LiveCamera : public QObject {
    Q_OBJECT

public:
    explicit LiveCamera(QObject* parent = nullptr);
    /// Stops and closes.
    ~LiveCamera() override;

    /// Opens the camera and lets it stream, after releasing the one before. On an error nothing is
    /// open, and the SDK's code is returned.
    /// \p type is that of its interface.
    OrvErrorType start(const std::shared_ptr<OrvCPP::Camera>& camera, OrvTransportLayerType type);
    /// Stops and closes the camera, if one runs, so that others can open it in full access.
    void stop();
    bool isRunning() const;
    /// Of the frames since the start, those that were not shown included; without the frame rate.
    FrameStatistics frameStatistics() const;

signals:
    /// A complete frame arrived; others that came since the last one were dropped.
    void imageReady(const QImage& image, const QString& pixelFormat);
    /// A complete frame arrived whose pixels cannot be shown.
    void imageNotShown(const QString& pixelFormat);

private:
    void showLatest();

    std::shared_ptr<OrvCPP::Camera> m_camera;
    std::shared_ptr<FrameMailbox> m_mailbox;
};

} // namespace viewer
