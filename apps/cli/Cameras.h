// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "engine/SystemController.h"
#include "session/SdkSession.h"
#include "session/StreamingLimits.h"

#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

class FeatureController;

namespace cli {

/// One host interface with its cameras.
struct HostInterface {
    /// Place in the controller's list.
    int index;
    /// The engine's key of an interface.
    QString name;
    QString id;
    CameraList cameras;
};

/// The camera SDK, started, and the cameras that it has found, opened. What cannot be started or
/// found is thrown as a Failure. Bound to one thread.
class Cameras {
public:
    explicit Cameras(const session::CameraSource& source);

    SystemController& controller() { return *m_controller; }
    const std::vector<HostInterface>& interfaces() const { return m_interfaces; }

    /// Warns where the host has too little memory for what the cameras stream, at the first call.
    void warnOfLimits() { m_limits.check(m_session.system()); }

    /// Warns where the cameras of an interface may send more than it can use.
    void warnOfExcess(const HostInterface& interface) const;

    /// By name or ID.
    const HostInterface& findInterface(const QString& wanted) const;
    /// By ID, or by user-defined name or serial number where that leaves no choice.
    std::shared_ptr<CameraHandler> findCamera(const QString& wanted) const;
    /// The features of such a camera, which must be open.
    std::shared_ptr<FeatureController> findFeatures(const QString& wanted) const;

private:
    /// First, so that it ends last.
    session::SdkSession m_session;
    session::StreamingLimits m_limits;
    std::shared_ptr<SystemController> m_controller;
    std::vector<HostInterface> m_interfaces;
};

/// Bytes per second that the open cameras of an interface may send together.
double limitsOf(const HostInterface& interface);

/// Warns when cameras' limits, in bytes per second, exceed the speed of their interface less its
/// safety margin by more than half a percent, which is how exactly Auto Set divides it. Nothing is
/// known to exceed a speed of 0.
void warnOfExcess(const HostInterface& interface, double limits, double bitsPerSecond,
                  double marginPercent);

/// The camera of that name among some, in the way of Cameras::findCamera.
std::shared_ptr<CameraHandler> findCamera(const CameraList& cameras, const QString& wanted);

QString cameraId(const CameraHandler& camera);
/// What tells cameras apart: "id", "name", "model", "serialNumber" and whether it is "opened".
QJsonObject cameraIdentity(const CameraHandler& camera);

} // namespace cli
