// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QByteArray>

#include <cstdint>

/// A scenario of one or two interfaces of each type, each with four to eight cameras of random
/// sensors, formats, rates, features, ranges and triggers, which ask for more than it carries. The
/// names of the cameras that are meant to be locked contain "locked". The same seed gives the same
/// scenario on every platform.
QByteArray generateScenario(std::uint32_t seed);
