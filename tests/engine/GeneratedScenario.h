// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QByteArray>

#include <cstdint>
#include <map>
#include <string>

/// A scenario the cameras of which ask for more than each of its interfaces carries.
struct GeneratedScenario {
    QByteArray json;
    /// Bytes per second that each camera would send on a link of its own, by the camera's name.
    std::map<std::string, double> asked;
};

/// One or two interfaces of each type, each with three to seven cameras of random sensors, formats,
/// rates, features, ranges and triggers. The names of those that are meant to be locked contain
/// "locked". The same seed gives the same scenario on every platform.
GeneratedScenario generateScenario(std::uint32_t seed);
