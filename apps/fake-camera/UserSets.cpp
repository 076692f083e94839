// SPDX-License-Identifier: BSD-3-Clause
#include "fake-camera/UserSets.h"

#include <fstream>
#include <stdexcept>
#include <utility>

namespace fakecamera {

namespace {

/// Registers of the features that FakeCamera.xml calls streamable, first and last one.
constexpr std::pair<std::uint32_t, std::uint32_t> settingRegisters[] = {
    {Width, Height},
    {ExposureMicroseconds, ExposureMicroseconds},
    {PixelFormat, OffsetY},
    {TriggerMode, TriggerSource},
    {TriggerMode + 0x20, TriggerSource + 0x20},
    {HeartbeatMilliseconds, HeartbeatMilliseconds},
    {StreamPacketSize, PacketDelay},
    {Limit, FrameRate + 4},
    {ExposureMode, ExposureMode + 4},
    {TestFirst, SlowCommand - 4},
    {SlowCommand + 4, TestReadOnly - 4},
};

template <typename Act> void forEachSetting(const Act& act) {
    for (const auto& [first, last] : settingRegisters)
        for (std::uint32_t address = first; address <= last; address += 4)
            act(address);
}

} // namespace

UserSets::UserSets(CameraRegisters& registers, std::string file)
    : m_registers(registers), m_file(std::move(file)) {}

UserSets::Settings UserSets::present() const {
    Settings settings;
    forEachSetting([&](std::uint32_t address) { settings.push_back(m_registers.read(address)); });
    return settings;
}

void UserSets::begin() {
    m_sets.front() = present();
    std::ifstream file(m_file);
    std::uint32_t start = 0;
    if (!(file >> start))
        return;
    for (std::size_t number = 0; file >> number;) {
        Settings settings(m_sets.front().size());
        for (std::uint32_t& value : settings)
            file >> value;
        if (!file || number == 0 || number >= userSets)
            throw std::runtime_error("--user-sets: \"" + m_file + "\" has no settings");
        m_sets[number] = std::move(settings);
    }
    m_registers.write(UserSetDefault, start < userSets ? start : 0);
    load(m_registers.read(UserSetDefault));
}

void UserSets::obey(std::uint32_t command) {
    const std::uint32_t number = m_registers.read(UserSetSelector);
    m_registers.write(UserSetCommand, 0);
    if (command == loadUserSet) {
        load(number);
    } else {
        m_sets[number] = present();
        remember();
    }
}

void UserSets::load(std::uint32_t number) {
    // A set in which nothing was stored has the settings of the factory.
    const Settings& settings = m_sets[number].empty() ? m_sets.front() : m_sets[number];
    auto value = settings.begin();
    forEachSetting([&](std::uint32_t address) { m_registers.write(address, *value++); });
}

void UserSets::remember() const {
    if (m_file.empty())
        return;
    std::ofstream file(m_file);
    file << m_registers.read(UserSetDefault) << '\n';
    for (std::size_t number = 1; number < userSets; ++number) {
        if (m_sets[number].empty())
            continue;
        file << number;
        for (const std::uint32_t value : m_sets[number])
            file << ' ' << value;
        file << '\n';
    }
}

} // namespace fakecamera
