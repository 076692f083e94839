// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/device/DeviceConnection.h"

#include "gige/BootstrapRegisters.h"
#include "gige/Gvcp.h"
#include "orvcpp/aravis/LibraryError.h"
#include "orvcpp/aravis/device/DescriptionSource.h"
#include "orvcpp/aravis/device/DetachableThreads.h"
#include "orvcpp/aravis/device/GrantedAccess.h"
#include "orvcpp/aravis/device/LibraryMessages.h"
#include "orvcpp/aravis/device/ParserGate.h"
#include "orvcpp/aravis/device/SettingsLock.h"
#include "orvcpp/core/DescriptionCheck.h"
#include "orvcpp/core/SdkLog.h"
#include "orvcpp/core/SdkThread.h"

#include <utility>

namespace orv::aravis {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr milliseconds watchInterval{250};
/// Silence after which a camera is asked whether it is there.
constexpr milliseconds quietLimit{500};
constexpr milliseconds askWait{250};
/// Silence after which a camera is lost; longer during a call, as some cameras answer nothing else
/// meanwhile.
constexpr milliseconds lostLimit{1500};
constexpr milliseconds busyLostLimit{2200};
/// Time after which calls of a camera that only asks for more time end.
constexpr milliseconds stallLimit{2000};
/// The watch asks again anyway.
constexpr milliseconds noPending{0};
constexpr int privilegeTries = 3;

std::int64_t nowNanoseconds() {
    return std::chrono::nanoseconds(Clock::now().time_since_epoch()).count();
}

std::chrono::nanoseconds sinceNanoseconds(const std::atomic<std::int64_t>& moment) {
    return std::chrono::nanoseconds(nowNanoseconds() - moment.load(std::memory_order_relaxed));
}

GObjectPtr<GInetAddress> inetAddress(std::uint32_t address) {
    const guint8 bytes[] = {static_cast<guint8>(address >> 24U),
                            static_cast<guint8>(address >> 16U), static_cast<guint8>(address >> 8U),
                            static_cast<guint8>(address)};
    return GObjectPtr<GInetAddress>(g_inet_address_new_from_bytes(bytes, G_SOCKET_FAMILY_IPV4));
}

/// Does not use the library's list of cameras: it belongs to the discovery's thread and is locked
/// during a search, for a second.
GObjectPtr<ArvDevice> makeDevice(const CameraRecord& record, LibraryError& failure) {
    // A camera without a GUID goes by its serial number.
    if (record.type == OrvTransportLayerTypeU3V && record.hardwareId == record.serialNumber)
        return GObjectPtr<ArvDevice>(arv_uv_device_new(record.vendor.c_str(), record.model.c_str(),
                                                       record.serialNumber.c_str(), failure.out()));
    if (record.type == OrvTransportLayerTypeU3V)
        return GObjectPtr<ArvDevice>(
            arv_uv_device_new_from_guid(record.hardwareId.c_str(), failure.out()));
    const auto local = inetAddress(record.adapter ? record.adapter->address : 0);
    const auto remote = inetAddress(record.address);
    return GObjectPtr<ArvDevice>(arv_gv_device_new(local.get(), remote.get(), failure.out()));
}

/// The library opens a GigE camera without an error, but without control, while another program
/// controls it.
OrvErrorType settleControl(ArvDevice* device, OrvAccessModeType mode) {
    if (!ARV_IS_GV_DEVICE(device))
        return OrvErrorSuccess;
    const bool hasControl = arv_gv_device_is_controller(ARV_GV_DEVICE(device));
    if (mode == OrvAccessModeFull)
        return hasControl ? OrvErrorSuccess : OrvErrorInvalidAccess;
    if (!hasControl)
        return OrvErrorSuccess;
    LibraryError failure;
    arv_gv_device_leave_control(ARV_GV_DEVICE(device), failure.out());
    return failure.code();
}

/// 0 for a camera without this register.
std::uint32_t readControllerPort(ArvDevice* device) {
    guint32 port = 0;
    LibraryError failure;
    if (ARV_IS_GV_DEVICE(device) &&
        !arv_device_read_register(device, gige::controllerPortRegister, &port, failure.out()))
        port = 0;
    return port;
}

OrvErrorType refuse(const CameraRecord& record, const std::string& fault) {
    logWarning(record.id() + ": The camera's description cannot be used: " + fault + '.');
    return OrvErrorFeaturesUnavailable;
}

/// Asks a GigE camera where its description is, before the library does.
OrvErrorType checkSource(const CameraRecord& record) {
    if (record.type != OrvTransportLayerTypeGEV)
        return OrvErrorSuccess;
    const SourceCheck check = checkDescriptionSource(record.address);
    return check.fault.empty() ? check.error : refuse(record, check.fault);
}

/// The library has parsed the description, but evaluated no node.
OrvErrorType checkDescription(const CameraRecord& record, ArvDevice* device) {
    std::size_t size = 0;
    const char* const description = arv_device_get_genicam_xml(device, &size);
    if (!description || !arv_device_get_genicam(device))
        return OrvErrorFeaturesUnavailable;
    const std::string fault = descriptionFault(description, size);
    return fault.empty() ? OrvErrorSuccess : refuse(record, fault);
}

/// Opens a camera when its turn has come.
OrvErrorType makeAtGate(const CameraRecord& record, ParserGate& gate,
                        const std::shared_ptr<ParserGate::Ticket>& ticket,
                        GObjectPtr<ArvDevice>& made) {
    std::string stuck;
    if (!gate.enter(ticket, stuck)) {
        if (!stuck.empty())
            logWarning(record.id() + ": Not opened, since the opening of " + stuck +
                       " is stuck. It ends within a minute.");
        return OrvErrorBusy;
    }
    const std::unique_ptr<ParserGate, void (*)(ParserGate*)> leaving(
        &gate, [](ParserGate* entered) { entered->leave(); });
    LibraryError failure;
    made = makeDevice(record, failure);
    if (made)
        return OrvErrorSuccess;
    return failure.code() != OrvErrorSuccess ? failure.code() : OrvErrorUnspecified;
}

void setPolicies(ArvDevice* device) {
    // No cache: the camera may change any value by itself. No checks: NodeAccess checks range and
    // access before each call.
    arv_device_set_register_cache_policy(device, ARV_REGISTER_CACHE_POLICY_DISABLE);
    arv_device_set_range_check_policy(device, ARV_RANGE_CHECK_POLICY_DISABLE);
    arv_device_set_access_check_policy(device, ARV_ACCESS_CHECK_POLICY_DISABLE);
}

/// What opening a camera finds.
struct Opening {
    std::shared_ptr<const FeatureCatalogue> features;
    std::shared_ptr<DelayLimit> delayLimit;
    std::uint32_t controllerPort = 0;

    /// Reads what is needed of a device that the library has just made.
    OrvErrorType prepare(const CameraRecord& record, OrvAccessModeType mode, ArvDevice* device) {
        if (const OrvErrorType refused = settleControl(device, mode); refused != OrvErrorSuccess)
            return refused;
        if (const OrvErrorType refused = checkDescription(record, device);
            refused != OrvErrorSuccess)
            return refused;
        setPolicies(device);
        features = std::make_shared<FeatureCatalogue>(arv_device_get_genicam(device));
        // A program that died during an acquisition leaves them locked, and nobody else controls
        // the camera now.
        if (mode == OrvAccessModeFull)
            lockSettings(*features, false);
        delayLimit = DelayLimit::make(*features, record);
        controllerPort = readControllerPort(device);
        return OrvErrorSuccess;
    }
};

} // namespace

DeviceConnection::DeviceConnection(CameraRecord record, OrvAccessModeType mode,
                                   DetachableThreads& threads, std::function<void()> quiet,
                                   std::function<void()> lost)
    : m_record(std::move(record)), m_mode(mode), m_thread(DeviceThread::begin(threads)),
      m_quiet(std::move(quiet)), m_lost(std::move(lost)) {}

DeviceConnection::~DeviceConnection() {
    close();
}

OrvErrorType DeviceConnection::open() {
    noteLife();
    m_watch = std::thread(&DeviceConnection::watch, this);
    const auto gate = ParserGate::ofProcess();
    const auto ticket = std::make_shared<ParserGate::Ticket>(m_record.id());
    const auto opening = std::make_shared<Opening>();
    const OrvErrorType error = m_thread->call(
        [device = m_device, record = m_record, mode = m_mode, gate, ticket,
         opening]() -> OrvErrorType {
            setMessagesOfThread(std::make_shared<CameraMessages>(record.id()));
            if (const OrvErrorType refused = checkSource(record); refused != OrvErrorSuccess)
                return refused;
            GObjectPtr<ArvDevice> made;
            if (const OrvErrorType failed = makeAtGate(record, *gate, ticket, made);
                failed != OrvErrorSuccess)
                return failed;
            if (const OrvErrorType failed = opening->prepare(record, mode, made.get());
                failed != OrvErrorSuccess)
                return failed;
            *device = std::move(made);
            return OrvErrorSuccess;
        },
        longCallLimit);
    gate->giveUp(*ticket);
    if (error != OrvErrorSuccess)
        return error;
    m_features = opening->features;
    m_delayLimit = opening->delayLimit;
    m_controllerPort = opening->controllerPort;
    m_isOpen = true;
    return OrvErrorSuccess;
}

void DeviceConnection::close() {
    if (m_isClosed.exchange(true))
        return;
    m_isOpen = false;
    const auto release = [device = m_device]() -> OrvErrorType {
        device->reset();
        return OrvErrorSuccess;
    };
    // Waits until the device has ended, so that the camera is free for others. It may still die
    // here, so it is watched until then.
    if (m_thread->call(release, callLimit) != OrvErrorSuccess)
        m_thread->post(release);
    stopWatching();
    m_thread->quit();
}

void DeviceConnection::callLater(std::function<void()> work) const {
    m_thread->post([work = std::move(work)]() -> OrvErrorType {
        work();
        return OrvErrorSuccess;
    });
}

OrvErrorType DeviceConnection::admits(bool writing) const {
    if (m_isClosed)
        return OrvErrorDeviceNotOpen;
    if (isLost())
        return OrvErrorNotFound;
    return writing && m_mode != OrvAccessModeFull ? OrvErrorInvalidAccess : OrvErrorSuccess;
}

void DeviceConnection::noteLife() {
    const std::int64_t now = nowNanoseconds();
    m_lastLife.store(now, std::memory_order_relaxed);
    m_lastWork.store(now, std::memory_order_relaxed);
}

DeviceConnection::Sign DeviceConnection::ask() const {
    if (m_record.type == OrvTransportLayerTypeU3V)
        return !m_record.usb || m_record.usb->isPresent() ? Sign::Life : Sign::None;
    // A camera that was switched off and on answers, but no program controls it. The same is true
    // while it is opened or closed, so m_isOpen is checked before the request and after the answer.
    const bool isControlled = m_isOpen && m_mode == OrvAccessModeFull;
    const auto answer =
        gige::Gvcp(m_record.address, askWait, 1, noPending).readRegister(gige::privilegeRegister);
    if (!answer)
        return Sign::None;
    if (gige::Gvcp::isBusy(*answer))
        return Sign::Busy;
    const bool isFree = gige::Gvcp::value(*answer) == 0U;
    return isControlled && (isFree || isOthers()) && m_isOpen ? Sign::ControlLost : Sign::Life;
}

bool DeviceConnection::isOthers() const {
    if (m_controllerPort == 0)
        return false;
    const auto answer = gige::Gvcp(m_record.address, askWait, 1, noPending)
                            .readRegister(gige::controllerPortRegister);
    const auto port = answer ? gige::Gvcp::value(*answer) : std::nullopt;
    return port && *port != 0 && *port != m_controllerPort;
}

void DeviceConnection::lookForLife() {
    if (sinceNanoseconds(m_lastWork) > quietLimit) {
        const Sign sign = ask();
        if (sign == Sign::Life)
            noteLife();
        if (sign == Sign::Busy)
            m_lastLife.store(nowNanoseconds(), std::memory_order_relaxed);
        if (sign == Sign::None)
            m_quiet();
        if (sign == Sign::ControlLost)
            m_thread->lose();
    }
    if (sinceNanoseconds(m_lastLife) > (m_thread->isBusy() ? busyLostLimit : lostLimit))
        m_thread->lose();
    endStalledCalls();
}

void DeviceConnection::endStalledCalls() {
    // A silent camera is lost instead.
    const bool isBusy =
        m_lastLife.load(std::memory_order_relaxed) > m_lastWork.load(std::memory_order_relaxed);
    if (isBusy && sinceNanoseconds(m_lastWork) > stallLimit)
        m_thread->interrupt();
}

void DeviceConnection::watch() {
    setCurrentSdkThread(SdkThread::Events);
    std::unique_lock lock(m_watchMutex);
    const auto ends = [this] {
        return m_watchEnds;
    };
    bool told = false;
    while (!m_watchChanged.wait_for(lock, watchInterval, ends) && !told) {
        lock.unlock();
        lookForLife();
        if (m_thread->isLost()) {
            told = true;
            m_lost();
        }
        lock.lock();
    }
}

void DeviceConnection::stopWatching() {
    {
        const std::lock_guard lock(m_watchMutex);
        m_watchEnds = true;
    }
    m_watchChanged.notify_all();
    if (m_watch.joinable())
        m_watch.join();
}

std::optional<OrvAccessModeType> permittedAccess(const CameraRecord& record) {
    if (record.type == OrvTransportLayerTypeU3V) {
        if (record.usb && !record.usb->isPresent())
            return std::nullopt;
        return record.usb && record.usb->isClaimed() ? OrvAccessModeNone : allModes;
    }
    const auto answer =
        gige::Gvcp(record.address, askWait, privilegeTries).readRegister(gige::privilegeRegister);
    // A camera that only asks for more time cannot be opened either.
    return answer && !gige::Gvcp::isBusy(*answer) ? std::optional(grantedBy(*answer))
                                                  : std::nullopt;
}

} // namespace orv::aravis
