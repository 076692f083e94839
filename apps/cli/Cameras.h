// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "engine/CameraInfo.h"
#include "engine/SystemController.h"
#include "session/SdkSession.h"
#include "session/StreamingLimits.h"

#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

namespace cli {

/// One host interface with its cameras.
struct HostInterface {
    /// Index in the controller's list.
    int index = 0;
    /// The engine's key of an interface.
    QString name;
    QString id;
    CameraList cameras;
    /// Names of the other interfaces on the same network adapter or USB host controller, as far as
    /// that is known.
    QStringList sharing;
    /// Bytes per second that its cameras send to other applications, as far as that is known: on a
    /// simulated host.
    double otherTraffic = 0;
};

/// Starts the camera SDK and opens all cameras that it finds. Throws a Failure when the SDK cannot
/// be started, or a name is unknown. Bound to one thread.
class Cameras {
public:
    explicit Cameras(const session::CameraSource& source);

    SystemController& controller() { return *m_controller; }
    const SystemController& controller() const { return *m_controller; }
    const std::vector<HostInterface>& interfaces() const { return m_interfaces; }
    bool areSimulated() const { return m_session.isSimulated(); }

    /// How many of the cameras are real ones.
    RealCameras countReal() const { return realCameras(m_session.system()); }

    /// Warns at the first call when the host has too little memory for the cameras' streams.
    void warnOfLimits() { m_limits.check(m_session.system()); }

    /// Warns when the limits of an interface's open cameras, and of those that share its link, add
    /// up to more than its speed less the margin that is recommended for its type. What cameras
    /// send to other applications counts, too. Silent where the speed is unknown.
    void warnOfExcess(const HostInterface& interface) const;
    /// The same with another margin, 0 to 100.
    void warnOfExcess(const HostInterface& interface, double marginPercent) const;

    /// By name or ID.
    const HostInterface& findInterface(const QString& wanted) const;
    /// By ID, or by user-defined name or serial number where these are unique.
    std::shared_ptr<CameraHandler> findCamera(const QString& wanted) const;
    /// The interface and those that share its link, in the order of the list.
    std::vector<const HostInterface*> onLinkOf(const HostInterface& interface) const;

private:
    void findSharing();
    void findOtherTraffic();

    /// Declared first, so that it is destroyed last.
    session::SdkSession m_session;
    session::StreamingLimits m_limits;
    std::shared_ptr<SystemController> m_controller;
    std::vector<HostInterface> m_interfaces;
};

/// Finds a camera in a list as Cameras::findCamera does.
std::shared_ptr<CameraHandler> findCamera(const CameraList& cameras, const QString& wanted);

/// The same for one name, which may contain commas, or for several names separated by commas.
CameraList findCameras(const CameraList& cameras, const QString& wanted);

QString cameraId(const CameraHandler& camera);
/// Throws a Failure with the reason unless the camera could be opened.
void requireOpened(const CameraHandler& camera);
/// Adds "sharesLinkWith" to the document of an interface that shares its link.
void addSharing(QJsonObject& document, const HostInterface& interface);
/// That member for a heading: ", shares its link with A, B"; empty where it is absent.
QString sharingText(const QJsonObject& document);
/// "id", "name", "model" and "serialNumber" of a camera.
QJsonObject cameraIdentity(const CameraInfo& info);
/// The same, and "opened".
QJsonObject cameraIdentity(const CameraHandler& camera);

} // namespace cli
