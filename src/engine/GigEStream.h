// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "sdk/WrapperDeclarations.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

/// The stream of an opened GigE camera: its driver and its packet size. Failures are logged under
/// the camera's name. Bound to the GUI thread.
class GigEStream {
public:
    /// \p cameraName begins every message. \p packetSizeLimit is how long the camera may take to
    /// negotiate its packet size.
    GigEStream(std::shared_ptr<OrvStreamWrapper> stream, std::string cameraName,
               std::chrono::milliseconds packetSizeLimit);

    /// Also false when the driver cannot be read.
    bool usesSocketDriver() const;
    /// Lets frames be counted without their images, which saves most of the processor time of
    /// receiving them. Does nothing, and logs nothing, where the SDK does not offer it or the
    /// camera streams.
    void setHeadersOnly(bool headersOnly) const;
    /// Lets the camera negotiate its largest packet size; true on success. Blocks for at most the
    /// constructor's packetSizeLimit. After a timeout, later calls return false at once.
    bool negotiatePacketSize();

private:
    std::shared_ptr<OrvFeatureWrapper> find(const char* feature) const;
    template <typename Value> std::optional<Value> read(const char* feature) const;
    bool runNegotiation();

    const std::shared_ptr<OrvStreamWrapper> m_stream;
    const std::string m_cameraName;
    const std::chrono::milliseconds m_packetSizeLimit;
    bool m_stuck = false;
};
