// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "fake-camera/CameraRegisters.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace fakecamera {

/// The sets of settings that a camera keeps: those of the factory and two of the user. The camera
/// starts with the one that UserSetDefault names. Bound to one thread.
class UserSets {
public:
    /// \p file keeps the sets of the user when the camera is off; without it, they are lost then.
    UserSets(CameraRegisters& registers, std::string file);

    /// Takes the present settings for those of the factory, reads the file, and loads the set with
    /// which the camera starts. Throws std::runtime_error when the file is not one of settings.
    void begin();
    /// Loads the selected set, or stores the settings in it.
    void obey(std::uint32_t command);
    /// Writes the file.
    void remember() const;

private:
    using Settings = std::vector<std::uint32_t>;

    Settings present() const;
    void load(std::uint32_t number);

    CameraRegisters& m_registers;
    const std::string m_file;
    /// Empty where none was stored.
    std::array<Settings, userSets> m_sets;
};

} // namespace fakecamera
