// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/simulated/CameraDevice.h"

#include "orvcpp/core/SdkThread.h"

#include <utility>

namespace orv::simulated {

namespace {

OrvAccessModeType bits(unsigned modes) {
    return static_cast<OrvAccessModeType>(modes);
}

OrvAccessModeType grantedModes(Access access) {
    if (access == Access::Full)
        return bits(OrvAccessModeFull | OrvAccessModeRead | OrvAccessModeExclusive);
    return access == Access::Read ? OrvAccessModeRead : OrvAccessModeNone;
}

} // namespace

CameraDevice::CameraDevice(std::shared_ptr<ProviderCalls> calls, std::shared_ptr<Link> link,
                           std::shared_ptr<PatternStore> patterns, const CameraData& data,
                           bool isUsb)
    : m_calls(std::move(calls)), m_link(std::move(link)), m_patterns(std::move(patterns)),
      m_isUsb(isUsb), m_settings(data) {
    m_link->addTraffic(static_cast<double>(data.otherTraffic));
}

OrvErrorType CameraDevice::mayOpen(OrvAccessModeType mode) const {
    if (mode != OrvAccessModeFull && mode != OrvAccessModeRead && mode != OrvAccessModeExclusive)
        return OrvErrorBadParameter;
    if (!m_isPlugged)
        return OrvErrorNotFound;
    const unsigned granted = m_mode == OrvAccessModeNone ? grantedModes(data().access) : 0U;
    if ((granted & mode) == 0)
        return OrvErrorInvalidAccess;
    return data().faults.openError;
}

OrvErrorType CameraDevice::open(OrvAccessModeType mode) {
    if (isFrameThread())
        return OrvErrorInvalidCall;
    const std::lock_guard control(m_control);
    const std::lock_guard lock(mutex());
    if (!m_calls->isRunning())
        return OrvErrorApiNotStarted;
    if (const OrvErrorType error = mayOpen(mode); error != OrvErrorSuccess)
        return error;
    m_mode = mode;
    return OrvErrorSuccess;
}

OrvErrorType CameraDevice::close() {
    if (isFrameThread())
        return OrvErrorInvalidCall;
    const std::lock_guard control(m_control);
    stopStreaming();
    const std::lock_guard lock(mutex());
    if (m_mode == OrvAccessModeNone)
        return OrvErrorDeviceNotOpen;
    m_mode = OrvAccessModeNone;
    m_isGone = false;
    return OrvErrorSuccess;
}

FrameSourceSettings CameraDevice::sourceSettings(int bufferCount) const {
    FrameSourceSettings settings;
    settings.bufferCount = bufferCount;
    settings.geometry = {static_cast<std::uint32_t>(m_settings.width),
                         static_cast<std::uint32_t>(m_settings.height), m_settings.format()};
    settings.firstId = m_isUsb ? 0 : 1;
    settings.lossRate = data().faults.lossRate;
    settings.incompleteRate = data().faults.incompleteRate;
    settings.frameCount = data().faults.stopAfterFrames;
    settings.seed = data().seed;
    return settings;
}

OrvErrorType CameraDevice::start(int bufferCount,
                                 const std::shared_ptr<OrvCPP::IFrameObserver>& observer) {
    if (isFrameThread())
        return OrvErrorInvalidCall;
    if (bufferCount < 1 || bufferCount > 1024 || !observer)
        return OrvErrorBadParameter;
    const std::lock_guard control(m_control);
    const std::lock_guard lock(mutex());
    if (!m_calls->isRunning())
        return OrvErrorApiNotStarted;
    if (const OrvErrorType error = admits(true); error != OrvErrorSuccess)
        return error;
    if (m_source)
        return OrvErrorAlreadyDone;
    m_source = std::make_shared<FrameSource>(sourceSettings(bufferCount), observer, m_statistics,
                                             m_patterns);
    m_source->announceFrames();
    m_settings.isStreaming = true;
    m_link->attach(m_source, m_settings.demand());
    return OrvErrorSuccess;
}

OrvErrorType CameraDevice::stop() {
    if (isFrameThread())
        return OrvErrorInvalidCall;
    const std::lock_guard control(m_control);
    return stopStreaming();
}

OrvErrorType CameraDevice::stopStreaming() {
    std::shared_ptr<FrameSource> source;
    {
        const std::lock_guard lock(mutex());
        if (m_mode == OrvAccessModeNone)
            return OrvErrorDeviceNotOpen;
        if (!m_source)
            return OrvErrorAlreadyDone;
        source.swap(m_source);
        m_settings.isStreaming = false;
    }
    m_link->detach(*source);
    return OrvErrorSuccess;
}

OrvAccessModeType CameraDevice::permittedAccess() {
    const std::lock_guard lock(mutex());
    return m_isPlugged && m_mode == OrvAccessModeNone ? grantedModes(data().access)
                                                      : OrvAccessModeNone;
}

bool CameraDevice::isPlugged() {
    const std::lock_guard lock(mutex());
    return m_isPlugged;
}

bool CameraDevice::setPlugged(bool plugged) {
    const std::lock_guard lock(mutex());
    if (m_isPlugged == plugged)
        return false;
    m_isPlugged = plugged;
    m_isGone = m_mode != OrvAccessModeNone;
    if (m_source)
        m_link->drop(*m_source);
    const auto traffic = static_cast<double>(data().otherTraffic);
    m_link->addTraffic(plugged ? traffic : -traffic);
    if (plugged)
        m_settings.reset();
    return true;
}

OrvErrorType CameraDevice::checkOpen() {
    const std::lock_guard lock(mutex());
    return admits(false);
}

OrvErrorType CameraDevice::admits(bool writing) const {
    if (!m_isPlugged || m_isGone)
        return OrvErrorNotFound;
    if (m_mode == OrvAccessModeNone)
        return OrvErrorDeviceNotOpen;
    return writing && m_mode == OrvAccessModeRead ? OrvErrorInvalidAccess : OrvErrorSuccess;
}

void CameraDevice::changed() {
    if (m_source) {
        m_link->change(*m_source, m_settings.demand());
        if (m_settings.softwareTrigger)
            m_link->trigger(*m_source);
    }
    m_settings.softwareTrigger = false;
}

} // namespace orv::simulated
