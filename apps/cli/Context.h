// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "cli/Arguments.h"
#include "cli/Failure.h"
#include "session/CameraSource.h"

#include <memory>

namespace cli {

class CameraNames;
class Cameras;
class Interruption;
class NamedCamera;
class Terminal;

/// Arguments, output and cameras of a command. Bound to one thread.
class Context {
public:
    Context(const Arguments& given, Terminal& output, Interruption& ending,
            session::CameraSource source, bool json);
    ~Context();

    /// Starts the camera SDK and opens its cameras at the first call. They stay open until the
    /// context ends, which is after the report is printed: closing a camera that was disconnected
    /// may take some seconds.
    Cameras& openCameras();
    /// Closes the cameras that openCameras() opened, for commands that ask them otherwise
    /// afterwards.
    void closeCameras();
    /// The same as openCameras() with one camera only, for commands that need no other; see
    /// NamedCamera.
    NamedCamera& openCamera(const QString& wanted);
    /// The names of all cameras, which stay closed.
    CameraNames& readNames();
    /// Whether the cameras that were opened or named are simulated.
    bool areCamerasSimulated() const;
    /// Throws a Failure when the program is to end. Call it where no result would be lost.
    void checkInterruption() const;

    const Arguments arguments;
    Terminal& terminal;
    Interruption& interruption;
    /// Whether the output is one JSON document.
    const bool wantsJson;

private:
    const session::CameraSource m_source;
    std::unique_ptr<Cameras> m_cameras;
    /// Of cameras that were closed.
    bool m_wereSimulated = false;
    std::unique_ptr<NamedCamera> m_camera;
    std::unique_ptr<CameraNames> m_names;
};

} // namespace cli
