// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/device/DelayLimitFeatures.h"

#include "orvcpp/aravis/device/DelayLimit.h"
#include "orvcpp/aravis/device/DeviceConnection.h"

#include <limits>
#include <utility>

namespace orv::aravis {

namespace {

using Connection = std::shared_ptr<DeviceConnection>;

constexpr std::int64_t off = 0;
constexpr std::int64_t on = 1;
constexpr double anyRate = 1e6;

/// Runs \p work with the limit on the device's thread.
template <typename Work> OrvErrorType call(const Connection& device, Work work) {
    return device->call([limit = device->delayLimit(), work](ArvDevice*) { return work(*limit); });
}

/// Reads a value by \p read, which writes to memory of its own: it may run after a timeout.
template <typename T>
OrvErrorType ask(const Connection& device, T& value, OrvErrorType (DelayLimit::*read)(T&) const) {
    const auto answer = std::make_shared<T>();
    const OrvErrorType error =
        call(device, [answer, read](const DelayLimit& limit) { return (limit.*read)(*answer); });
    if (error == OrvErrorSuccess)
        value = *answer;
    return error;
}

std::function<bool()> admitted(const Connection& device,
                               OrvErrorType (DelayLimit::*admits)() const) {
    return [device, admits] {
        return call(device, [admits](const DelayLimit& limit) { return (limit.*admits)(); }) ==
               OrvErrorSuccess;
    };
}

void addMode(FeatureSet& set, const Connection& device) {
    set.enumeration("DeviceLinkThroughputLimitMode")
        .about("Whether the limit holds. Off: the camera has its shortest packet delay (GevSCPD).")
        .expert()
        .entry("Off", off)
        .entry("On", on)
        .writtenBy([device](const Value& value) {
            const bool isOn = std::get<std::int64_t>(value) == on;
            return call(device, [isOn](DelayLimit& limit) { return limit.switchTo(isOn); });
        })
        .readBy([device](Value& value) {
            bool isOn = false;
            const OrvErrorType error = ask(device, isOn, &DelayLimit::isOn);
            value = isOn ? on : off;
            return error;
        })
        .writableIf(admitted(device, &DelayLimit::admitsSwitching));
}

void addLimit(FeatureSet& set, const Connection& device) {
    set.integer("DeviceLinkThroughputLimit")
        .about("Most bytes that the camera sends in a second, with the headers of packets. The "
               "camera has no such limit: it is made of the packet delay (GevSCPD), and changes "
               "that.")
        .unit("B/s")
        .limits([device] {
            IntegerLimits limits{0, std::numeric_limits<std::int64_t>::max(), 1};
            ask(device, limits, &DelayLimit::limits);
            return limits;
        })
        .writtenBy([device](const Value& value) {
            const auto bytes = std::get<std::int64_t>(value);
            return call(device, [bytes](DelayLimit& limit) { return limit.set(bytes); });
        })
        .readBy([device](Value& value) {
            return ask(device, value.emplace<std::int64_t>(), &DelayLimit::get);
        })
        .writableIf(admitted(device, &DelayLimit::admitsWriting));
}

void addFrameRate(FeatureSet& set, const Connection& device) {
    set.floating("AcquisitionFrameRateLimit")
        .about("Most frames per second with the present packet delay (GevSCPD).")
        .unit("Hz")
        .floatLimits(0, anyRate)
        .readOnly()
        .readBy([device](Value& value) {
            return ask(device, value.emplace<double>(), &DelayLimit::frameRate);
        });
}

} // namespace

FeatureSet makeDelayLimitFeatures(const std::shared_ptr<DeviceConnection>& device) {
    FeatureSet set;
    set.category("/DeviceControl");
    addMode(set, device);
    addLimit(set, device);
    set.category("/AcquisitionControl");
    if (device->delayLimit()->hasFrameRate())
        addFrameRate(set, device);
    return set;
}

} // namespace orv::aravis
