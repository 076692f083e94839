// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/aravis/device/FeatureDescription.h"

#include <cstdint>
#include <string>
#include <vector>

/// Reads and writes one feature of an opened camera. Checks what the library does not:
/// availability, lock, range and increment. On the device's thread only.
namespace orv::aravis::node {

using Bytes = std::vector<std::uint8_t>;

template <typename T> struct Limits {
    T minimum{};
    T maximum{};
    /// 0 when there is none.
    T increment{};
};

/// Success when the feature can be read (be written) now.
OrvErrorType admitsReading(const FeatureDescription& feature);
OrvErrorType admitsWriting(const FeatureDescription& feature);

/// An enumeration answers its entry's number.
OrvErrorType get(const FeatureDescription& feature, std::int64_t& value);
OrvErrorType get(const FeatureDescription& feature, double& value);
OrvErrorType get(const FeatureDescription& feature, bool& value);
/// An enumeration answers its entry's name.
OrvErrorType get(const FeatureDescription& feature, std::string& value);
OrvErrorType get(const FeatureDescription& feature, Bytes& value);

OrvErrorType set(const FeatureDescription& feature, std::int64_t value);
OrvErrorType set(const FeatureDescription& feature, double value);
OrvErrorType set(const FeatureDescription& feature, bool value);
OrvErrorType set(const FeatureDescription& feature, const std::string& value);
OrvErrorType set(const FeatureDescription& feature, const Bytes& value);

OrvErrorType limits(const FeatureDescription& feature, Limits<std::int64_t>& limits);
OrvErrorType limits(const FeatureDescription& feature, Limits<double>& limits);
/// OrvErrorInvalidValue when there is no such entry.
OrvErrorType isAvailable(const FeatureDescription& feature, const std::string& entry,
                         bool& available);

OrvErrorType run(const FeatureDescription& command);
/// True at once for a command that cannot be polled.
OrvErrorType isDone(const FeatureDescription& command, bool& done);

} // namespace orv::aravis::node
