// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "engine/CameraInfo.h"
#include "engine/CameraNeed.h"
#include "features/FeatureValue.h"
#include "losses/FrameStatistics.h"
#include "sdk/WrapperDeclarations.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

class BandwidthLimit;
class FeatureController;
class FrameObserver;
class GigEStream;

/// Outcome of the last attempt to set a camera's bandwidth.
enum class AutosetStatus : std::int32_t {
    None = 0,
    NotSet = 1,
    BelowRequested = 2,
    RequestedReached = 3,
    ClampedToMaximum = 4
};

/// One camera: opens it, reads and writes its bandwidth limit, runs its benchmark, its Auto Set and
/// the checks of its settings. A camera that cannot be opened has a warning text, and its
/// operations return neutral values. Nothing throws; failures are logged under the camera's display
/// text. Bandwidth is in bytes per second. Bound to the GUI thread.
class CameraHandler {
public:
    /// Longest wait for a camera to negotiate its packet size; the wait blocks the GUI thread.
    /// Negotiation usually takes milliseconds.
    static constexpr std::chrono::milliseconds usualPacketSizeLimit{5000};

    /// Opens the camera in full access. An empty \p features is replaced by a new controller, made
    /// right after opening, since only an opened camera shows its local device and streams.
    /// \p packetSizeLimit is how long the camera may take to negotiate its packet size.
    explicit CameraHandler(std::shared_ptr<OrvCameraWrapper> camera,
                           std::shared_ptr<FeatureController> features = {},
                           std::chrono::milliseconds packetSizeLimit = usualPacketSizeLimit);

    CameraHandler(const CameraHandler&) = delete;
    CameraHandler& operator=(const CameraHandler&) = delete;

    virtual CameraInfo getCameraInfo() const;
    virtual FrameStatistics getFrameStatistics() const;
    virtual void startAcquisition();
    /// Lets a GigE camera negotiate its largest packet size, once. Returns true if this call did.
    /// Blocks for at most the constructor's packetSizeLimit. After a timeout, later calls return
    /// false at once.
    virtual bool adjustPacketSize(bool enabled);
    virtual void stopAcquisition();
    virtual bool isOpened() const;
    /// Chooses whether an opened camera takes part in benchmarks and Auto Set.
    virtual void setOpened(bool opened);
    virtual void setLocked(bool locked);
    /// A locked camera keeps its bandwidth during interface Auto Set.
    virtual bool isLocked() const;
    virtual std::int64_t getBandwidth() const;
    /// Bytes per second that the camera needs for its highest frame rate; 0 when unknown. Leaves
    /// the bandwidth at the last value tried.
    virtual std::int64_t autoSet(double cameraSafetyMargin);
    /// Writes the bandwidth and returns what the camera reports afterwards. \p requested is what
    /// the camera needs: the status compares the result with it. If \p value is below it and the
    /// camera takes steps only, writes no step above \p value. If \p requested is 0, writes
    /// nothing and returns 0.
    virtual std::int64_t setBandwidth(std::uint64_t value, std::uint64_t requested);
    virtual AutosetStatus getAutosetStatus() const;
    /// Never empty. For a camera that could not be opened it has no modules.
    virtual std::shared_ptr<FeatureController> getFeatureController() const;
    virtual std::string getWarningText() const;
    virtual bool isTriggered() const;
    /// Bytes per image; 0 when unknown.
    virtual std::int64_t getPayloadSize() const;
    /// Logs a warning when a USB camera's highest bandwidth is below USB 2 speed (480 Mbit/s).
    virtual void checkUsbSpeedLimit() const;
    /// Logs a warning when the host's link (bits per second) is slower than the camera's.
    virtual void checkLinkSpeed(std::uint64_t hostLinkSpeed) const;
    /// Stops a running acquisition and closes the camera, if this handler started and opened it.
    virtual ~CameraHandler();

    /// Whether an acquisition that this handler started has not been stopped yet.
    bool isAcquiring() const;
    /// Switches the camera's bandwidth limit on: while it is off, the limit's value has no effect.
    void switchBandwidthLimitOn();
    /// What the camera needs for the rate that it has at its present limit. Writes nothing.
    CameraNeed readNeed() const;
    /// Finds what the camera needs for its highest frame rate, and leaves the limit at the last
    /// value tried. Makes fewer SDK calls than autoSet(). Like it, searches only where the need
    /// with \p cameraSafetyMargin, a fraction, may be below the highest limit.
    CameraNeed findNeed(double cameraSafetyMargin);

private:
    std::string displayName() const;

    void readIdentity();
    void openCamera();
    void readInterface();
    void readUsbLocation();
    void readTransportLayer(OrvErrorType found, const OrvTransportLayerWrapper& layer,
                            OrvErrorType typeRead);
    void findStream();

    bool hasFeature(const char* feature) const;
    FeatureValue featureValue(const std::string& feature) const;
    /// Looks for the camera's bandwidth limit; logs an error when it has none.
    bool findBandwidthLimit() const;
    /// Writes the limit and classifies the outcome; requires a limit that was found.
    void writeBandwidth(std::uint64_t value, std::uint64_t requested);
    void logMissingFeature(const char* description) const;
    std::optional<std::string> frameRateFeature() const;
    double readFrameRate(const std::string& label) const;
    std::optional<std::int64_t> payloadFromPixelSize() const;

    /// Sets the warning text while the camera streams through the socket driver, and clears that
    /// text only.
    void checkDriver();
    void restoreImages() const;

    const std::shared_ptr<OrvCameraWrapper> m_camera;
    const std::chrono::milliseconds m_packetSizeLimit;
    std::shared_ptr<FeatureController> m_features;
    std::unique_ptr<BandwidthLimit> m_bandwidthLimit;
    /// Of an opened GigE camera; else empty.
    std::unique_ptr<GigEStream> m_stream;
    std::shared_ptr<FrameObserver> m_observer;
    CameraInfo m_info;
    std::string m_warningText;
    AutosetStatus m_autosetStatus = AutosetStatus::None;
    /// This handler opened the camera; unlike m_opened, the user cannot change it.
    bool m_openedHere = false;
    bool m_opened = false;
    bool m_locked = false;
    bool m_acquiring = false;
    bool m_packetSizeAdjusted = false;
};

/// Sets a camera's bandwidth to what it needs for its highest frame rate, plus \p safetyMargin (a
/// fraction of that). Ignores the other cameras of the interface.
void autoSetCamera(CameraHandler& camera, double safetyMargin);
