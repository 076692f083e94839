// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <memory>
#include <string>

class FeatureController;

namespace settings {

/// Which pair of commands tells a camera that all of its settings are about to be read or written
/// (GenICam SFNC, device control).
enum class Persistence {
    /// DeviceFeaturePersistenceStart and -End.
    Reading,
    /// DeviceRegistersStreamingStart and -End: the camera checks its settings at the end only.
    Writing
};

/// Runs the first of the two commands when it is made, and the second one when it ends, where the
/// camera has them. Nothing throws; failures are logged. Bound to the GUI thread.
class PersistenceCommands {
public:
    PersistenceCommands(std::shared_ptr<FeatureController> camera, Persistence kind);
    ~PersistenceCommands() { end(); }

    PersistenceCommands(const PersistenceCommands&) = delete;
    PersistenceCommands& operator=(const PersistenceCommands&) = delete;

    /// Whether the camera has the commands and took the first one.
    bool isBegun() const { return m_isBegun; }
    /// Runs the second command. Returns what is wrong then, for a person; empty when nothing is.
    std::string end();

private:
    bool run(const std::string& command);

    const std::shared_ptr<FeatureController> m_camera;
    const std::string m_name;
    bool m_isBegun = false;
    /// The first command was sent, so the second one is due.
    bool m_isOpen = false;
};

} // namespace settings
