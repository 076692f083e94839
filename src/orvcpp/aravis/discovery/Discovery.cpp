// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/discovery/Discovery.h"

#include "gige/BootstrapRegisters.h"
#include "gige/DiscoveryBroadcast.h"
#include "gige/Gvcp.h"
#include "orvcpp/aravis/GObjects.h"
#include "orvcpp/core/SdkThread.h"
#include "platform/Ipv4Address.h"
#include "platform/NetworkAdapters.h"

#include <algorithm>
#include <utility>

namespace orv::aravis {

namespace {

/// From the end of a search to the next.
constexpr std::chrono::seconds pauseBetweenLooks{1};
constexpr std::chrono::milliseconds nameWait{100};
constexpr int nameTries = 2;
/// A search does not wait for a camera that asks for more time.
constexpr std::chrono::milliseconds noPending{0};

/// The library answers nothing where a camera has no text.
std::string text(const char* given) {
    return given ? given : "";
}

CameraRecord readRecord(ArvInterface* interface, unsigned index, OrvTransportLayerType type) {
    CameraRecord record;
    record.type = type;
    record.hardwareId = text(arv_interface_get_device_physical_id(interface, index));
    record.vendor = text(arv_interface_get_device_vendor(interface, index));
    record.model = text(arv_interface_get_device_model(interface, index));
    record.serialNumber = text(arv_interface_get_device_serial_nbr(interface, index));
    record.place = text(arv_interface_get_device_address(interface, index));
    return record;
}

std::vector<CameraRecord> askInterface(ArvInterface* interface, OrvTransportLayerType type) {
    arv_interface_update_device_list(interface);
    std::vector<CameraRecord> records;
    for (unsigned i = 0; i < arv_interface_get_n_devices(interface); ++i)
        records.push_back(readRecord(interface, i, type));
    return records;
}

CameraRecord readRecord(const gige::DiscoveredCamera& camera) {
    CameraRecord record;
    record.type = OrvTransportLayerTypeGEV;
    record.hardwareId = platform::macText(camera.macAddress);
    record.vendor = camera.vendor;
    record.model = camera.model;
    record.serialNumber = camera.serialNumber;
    record.place = platform::addressText(camera.address);
    return record;
}

/// Needed since the library's own discovery lists only one of several cameras with the same maker,
/// model and serial number.
void addMissing(std::vector<CameraRecord>& records,
                const std::vector<gige::DiscoveredCamera>& answers) {
    for (const gige::DiscoveredCamera& answer : answers) {
        CameraRecord added = readRecord(answer);
        const bool isKnown =
            std::any_of(records.begin(), records.end(),
                        [&](const CameraRecord& known) { return known.place == added.place; });
        if (!isKnown)
            records.push_back(std::move(added));
    }
}

void complete(CameraRecord& record) {
    if (platform::macNumber(record.hardwareId) == 0)
        record.hardwareId = record.serialNumber;
    const auto address = platform::parseAddress(record.place);
    if (!address)
        return;
    record.address = *address;
    record.adapter = platform::adapterTowards(*address);
    const auto name = gige::Gvcp(*address, nameWait, nameTries, noPending)
                          .readMemory(gige::userNameRegister, gige::userNameSize);
    record.userName = name ? gige::Gvcp::text(*name) : std::string();
}

/// Compares with a text of the kernel, which drops trailing blanks.
bool isSame(const std::string& text, const std::string& kernels) {
    return text.substr(0, text.find_last_not_of(' ') + 1) == kernels;
}

/// Sets the kernel's device of a camera and takes it from the list, so that equal cameras get
/// different ones.
void locate(CameraRecord& record, std::vector<platform::UsbDevice>& devices) {
    const auto found =
        std::find_if(devices.begin(), devices.end(), [&](const platform::UsbDevice& device) {
            return isSame(record.serialNumber, device.serialNumber) &&
                   isSame(record.model, device.product) &&
                   isSame(record.vendor, device.manufacturer);
        });
    if (record.hardwareId.empty())
        record.hardwareId = record.serialNumber;
    if (found == devices.end())
        return;
    record.usb = *found;
    record.place = found->location();
    devices.erase(found);
}

} // namespace

Discovery::Discovery(std::filesystem::path sysfs, Found found)
    : m_sysfs(std::move(sysfs)), m_found(std::move(found)) {}

Discovery::~Discovery() {
    stop();
}

void Discovery::start() {
    std::unique_lock lock(m_mutex);
    m_thread = std::thread(&Discovery::run, this);
    m_changed.wait(lock, [this] { return m_hasLooked; });
}

void Discovery::askToStop() {
    {
        const std::lock_guard lock(m_mutex);
        m_quit = true;
    }
    m_changed.notify_all();
}

void Discovery::stop() {
    askToStop();
    if (m_thread.joinable())
        m_thread.join();
}

void Discovery::run() {
    setCurrentSdkThread(SdkThread::Events);
    std::unique_lock lock(m_mutex);
    while (!m_quit) {
        lock.unlock();
        const auto begun = Clock::now();
        m_found(look(), begun);
        lock.lock();
        m_hasLooked = true;
        m_changed.notify_all();
        m_changed.wait_for(lock, pauseBetweenLooks, [this] { return m_quit; });
    }
}

std::vector<CameraRecord> Discovery::look() const {
    const gige::DiscoveryBroadcast call(gige::Reach::OwnSubnets);
    // Takes a second, in which the broadcast is answered, too.
    std::vector<CameraRecord> records =
        askInterface(arv_gv_interface_get_instance(), OrvTransportLayerTypeGEV);
    addMissing(records, call.answers());
    for (CameraRecord& record : records)
        complete(record);
    std::vector<CameraRecord> usb =
        askInterface(arv_uv_interface_get_instance(), OrvTransportLayerTypeU3V);
    std::vector<platform::UsbDevice> devices =
        usb.empty() ? std::vector<platform::UsbDevice>() : platform::usbDevices(m_sysfs);
    for (CameraRecord& record : usb) {
        locate(record, devices);
        records.push_back(std::move(record));
    }
    return records;
}

} // namespace orv::aravis
