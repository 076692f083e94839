// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/device/GenicamCamera.h"

#include "orvcpp/aravis/LibraryError.h"
#include "orvcpp/core/ArrayOutput.h"
#include "orvcpp/core/SdkLog.h"
#include "orvcpp/core/SdkThread.h"

#include <utility>

namespace orv::aravis {

namespace {

constexpr int largestBufferCount = 1024;
/// Most bytes of one ReadMemory.
constexpr std::uint32_t memoryLimit = 1024 * 1024;

OrvErrorType stopStreaming(AcquisitionSlot& acquisitions) {
    const std::shared_ptr<Acquisition> ending = acquisitions.end();
    if (!ending)
        return OrvErrorAlreadyDone;
    ending->stop();
    acquisitions.keep(*ending);
    return OrvErrorSuccess;
}

} // namespace

GenicamCamera::GenicamCamera(CameraContext context, std::string id,
                             std::weak_ptr<OrvCPP::TransportLayer> layer)
    : m_context(std::move(context)), m_id(std::move(id)), m_layer(std::move(layer)) {}

GenicamCamera::~GenicamCamera() = default;

void GenicamCamera::found(const CameraRecord& record, std::shared_ptr<OrvCPP::Interface> interface,
                          Clock::time_point begun) {
    const std::lock_guard lock(m_mutex);
    m_record = record;
    m_interface = std::move(interface);
    if (m_silentSince && begun > *m_silentSince)
        m_silentSince.reset();
}

bool GenicamCamera::isSilent() const {
    const std::lock_guard lock(m_mutex);
    return m_silentSince.has_value();
}

std::optional<OrvAccessModeType> GenicamCamera::ask() const {
    const std::lock_guard asking(m_ask);
    if (isSilent())
        return std::nullopt;
    const auto modes = permittedAccess(record());
    if (!modes)
        noteSilence();
    return modes;
}

void GenicamCamera::noteSilence() const {
    const std::lock_guard lock(m_mutex);
    m_silentSince = Clock::now();
}

std::optional<OrvAccessModeType> GenicamCamera::permitted() const {
    const bool wasSilent = isSilent();
    const auto modes = ask();
    if (!modes && !wasSilent)
        m_context.fellSilent();
    return modes;
}

CameraRecord GenicamCamera::record() const {
    const std::lock_guard lock(m_mutex);
    return m_record;
}

std::shared_ptr<OrvCPP::Interface> GenicamCamera::interface() const {
    const std::lock_guard lock(m_mutex);
    return m_interface;
}

std::shared_ptr<OpenedCamera> GenicamCamera::opened() const {
    const std::lock_guard lock(m_mutex);
    return m_opened;
}

bool GenicamCamera::isAlive() const {
    const auto open = opened();
    return open && !open->device->isLost();
}

OrvErrorType GenicamCamera::enterOpened(std::shared_ptr<OpenedCamera>& found) const {
    if (const OrvErrorType error = m_context.calls->enter(); error != OrvErrorSuccess)
        return error;
    found = opened();
    return found ? found->device->admits(false) : OrvErrorDeviceNotOpen;
}

void GenicamCamera::tell(OrvUpdateTriggerType reason) {
    m_context.changed(shared_from_this(), reason);
}

OrvErrorType GenicamCamera::GetFeatureByName(const char* name,
                                             std::shared_ptr<OrvCPP::Feature>& feature) const {
    const auto open = opened();
    if (open)
        return open->features->getFeatureByName(name, feature);
    const OrvErrorType error = m_context.calls->enter();
    return error != OrvErrorSuccess ? error : OrvErrorDeviceNotOpen;
}

OrvErrorType GenicamCamera::GetFeatures(std::shared_ptr<OrvCPP::Feature>* features,
                                        std::uint32_t& count) const {
    const auto open = opened();
    if (open)
        return open->features->getFeatures(features, count);
    count = 0;
    const OrvErrorType error = m_context.calls->enter();
    return error != OrvErrorSuccess ? error : OrvErrorDeviceNotOpen;
}

OrvErrorType GenicamCamera::Open(OrvAccessModeType mode) {
    if (const OrvErrorType error = m_context.calls->enter(); error != OrvErrorSuccess)
        return error;
    const OrvErrorType error = open(mode);
    if (error == OrvErrorSuccess)
        tell(OrvUpdateTriggerOpenStateChanged);
    return error;
}

OrvErrorType GenicamCamera::open(OrvAccessModeType mode) {
    if (isFrameThread())
        return OrvErrorInvalidCall;
    if (mode != OrvAccessModeFull && mode != OrvAccessModeRead)
        return mode == OrvAccessModeExclusive ? OrvErrorNotSupported : OrvErrorBadParameter;
    const std::lock_guard control(m_control);
    if (opened())
        return OrvErrorInvalidAccess;
    CameraRecord found = record();
    // The search may have run while the adapter was away.
    if (found.type == OrvTransportLayerTypeGEV && !found.adapter)
        found.adapter = platform::adapterTowards(found.address);
    // Checked first: opening an absent camera takes the library seconds.
    const auto modes = permitted();
    if (!modes) {
        if (found.type == OrvTransportLayerTypeGEV && !found.adapter)
            logWarning(m_id +
                       ": No network adapter of this computer has an address in the network "
                       "of the camera, " +
                       found.place + '.');
        return OrvErrorNotFound;
    }
    if ((*modes & mode) == 0)
        return OrvErrorInvalidAccess;
    auto device = std::make_shared<DeviceConnection>(
        found, mode, *m_context.threads, m_context.fellSilent, [kept = weak_from_this()] {
            if (const auto camera = kept.lock())
                camera->tell(OrvUpdateTriggerPluggedOut);
        });
    if (const OrvErrorType error = device->open(); error != OrvErrorSuccess) {
        // The caller's next GetPermittedAccess must not wait again.
        if (device->isLost())
            noteSilence();
        return error;
    }
    auto made = makeOpenedCamera(m_context.calls, std::move(device), m_context.receivers,
                                 m_context.packetSocket, m_id);
    const std::lock_guard lock(m_mutex);
    m_opened = std::move(made);
    return m_context.calls->isRunning() ? OrvErrorSuccess : OrvErrorApiNotStarted;
}

OrvErrorType GenicamCamera::Close() {
    if (const OrvErrorType error = m_context.calls->enter(); error != OrvErrorSuccess)
        return error;
    const OrvErrorType error = close();
    if (error == OrvErrorSuccess)
        tell(OrvUpdateTriggerOpenStateChanged);
    return error;
}

OrvErrorType GenicamCamera::close() {
    if (isFrameThread())
        return OrvErrorInvalidCall;
    std::shared_ptr<OpenedCamera> closing;
    {
        const std::lock_guard control(m_control);
        {
            const std::lock_guard lock(m_mutex);
            closing.swap(m_opened);
        }
        if (!closing)
            return OrvErrorDeviceNotOpen;
        stopStreaming(*closing->acquisitions);
        closing->device->close();
    }
    // Without a lock: observers belong to the user.
    closing->forgetObservers();
    return OrvErrorSuccess;
}

OrvErrorType GenicamCamera::answerText(const std::string& text, char* buffer,
                                       std::uint32_t& length) const {
    const OrvErrorType error = m_context.calls->enter();
    return error != OrvErrorSuccess ? error : writeArray(text, buffer, length);
}

OrvErrorType GenicamCamera::GetID(char* buffer, std::uint32_t& length, bool extended) const {
    return answerText(extended ? record().key() : m_id, buffer, length);
}

OrvErrorType GenicamCamera::GetName(char* buffer, std::uint32_t& length) const {
    const CameraRecord known = record();
    return answerText(known.userName.empty() ? known.model : known.userName, buffer, length);
}

OrvErrorType GenicamCamera::GetModel(char* buffer, std::uint32_t& length) const {
    return answerText(record().model, buffer, length);
}

OrvErrorType GenicamCamera::GetSerialNumber(char* buffer, std::uint32_t& length) const {
    return answerText(record().serialNumber, buffer, length);
}

OrvErrorType GenicamCamera::GetInterfaceType(OrvTransportLayerType& type) const {
    const OrvErrorType error = m_context.calls->enter();
    if (error == OrvErrorSuccess)
        type = record().type;
    return error;
}

OrvErrorType GenicamCamera::GetInterface(std::shared_ptr<OrvCPP::Interface>& found) const {
    const OrvErrorType error = m_context.calls->enter();
    if (error == OrvErrorSuccess)
        found = interface();
    return error;
}

OrvErrorType GenicamCamera::GetLocalDevice(std::shared_ptr<OrvCPP::LocalDevice>& device) const {
    std::shared_ptr<OpenedCamera> open;
    const OrvErrorType error = enterOpened(open);
    if (error == OrvErrorSuccess)
        device = open->localDevice;
    return error;
}

OrvErrorType
GenicamCamera::GetTransportLayer(std::shared_ptr<OrvCPP::TransportLayer>& layer) const {
    if (const OrvErrorType error = m_context.calls->enter(); error != OrvErrorSuccess)
        return error;
    layer = m_layer.lock();
    return layer ? OrvErrorSuccess : OrvErrorNotFound;
}

OrvErrorType GenicamCamera::GetStreams(std::shared_ptr<OrvCPP::Stream>* streams,
                                       std::uint32_t& count) const {
    std::shared_ptr<OpenedCamera> open;
    if (const OrvErrorType error = enterOpened(open); error != OrvErrorSuccess) {
        count = 0;
        return error;
    }
    return writeArray(std::vector<std::shared_ptr<OrvCPP::Stream>>{open->stream}, streams, count);
}

OrvErrorType GenicamCamera::GetPermittedAccess(OrvAccessModeType& modes) const {
    if (const OrvErrorType error = m_context.calls->enter(); error != OrvErrorSuccess)
        return error;
    if (opened()) {
        modes = OrvAccessModeNone;
        return OrvErrorSuccess;
    }
    const auto granted = permitted();
    if (granted)
        modes = *granted;
    return granted ? OrvErrorSuccess : OrvErrorNotFound;
}

OrvErrorType GenicamCamera::ReadMemory(std::uint64_t address, std::uint8_t* buffer,
                                       std::uint32_t size, std::uint32_t& completeReads) const {
    completeReads = 0;
    std::shared_ptr<OpenedCamera> open;
    if (const OrvErrorType error = enterOpened(open); error != OrvErrorSuccess)
        return error;
    if (!buffer || size == 0 || size > memoryLimit)
        return OrvErrorBadParameter;
    const auto bytes = std::make_shared<std::vector<std::uint8_t>>(size);
    const OrvErrorType error = open->device->call([address, bytes](ArvDevice* device) {
        LibraryError failure;
        arv_device_read_memory(device, address, static_cast<guint32>(bytes->size()), bytes->data(),
                               failure.out());
        return failure.code();
    });
    if (error != OrvErrorSuccess)
        return error;
    std::copy(bytes->begin(), bytes->end(), buffer);
    completeReads = size;
    return OrvErrorSuccess;
}

OrvErrorType GenicamCamera::StartContinuousImageAcquisition(
    int bufferCount, const std::shared_ptr<OrvCPP::IFrameObserver>& observer,
    OrvCPP::FrameAllocationMode /*mode*/) {
    if (isFrameThread())
        return OrvErrorInvalidCall;
    const std::lock_guard control(m_control);
    std::shared_ptr<OpenedCamera> open;
    if (const OrvErrorType error = enterOpened(open); error != OrvErrorSuccess)
        return error;
    if (bufferCount < 1 || bufferCount > largestBufferCount || !observer)
        return OrvErrorBadParameter;
    if (const OrvErrorType error = open->device->admits(true); error != OrvErrorSuccess)
        return error;
    if (open->acquisitions->isRunning())
        return OrvErrorAlreadyDone;
    // Counts as running before its first frame arrives.
    const auto acquisition = open->acquisitions->begin();
    const OrvErrorType error = acquisition->start(bufferCount, observer);
    if (error != OrvErrorSuccess)
        open->acquisitions->end();
    else
        open->features->tellObservers();
    return error;
}

OrvErrorType GenicamCamera::StopContinuousImageAcquisition() {
    if (isFrameThread())
        return OrvErrorInvalidCall;
    if (const OrvErrorType error = m_context.calls->enter(); error != OrvErrorSuccess)
        return error;
    const std::lock_guard control(m_control);
    const auto open = opened();
    if (!open)
        return OrvErrorDeviceNotOpen;
    const OrvErrorType error = stopStreaming(*open->acquisitions);
    if (error == OrvErrorSuccess)
        open->features->tellObservers();
    return error;
}

OrvErrorType GenicamCamera::QueueFrame(const std::shared_ptr<OrvCPP::Frame>& frame) {
    return queueFrame(frame);
}

} // namespace orv::aravis
