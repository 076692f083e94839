// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/simulated/ScenarioValues.h"

#include <QRegularExpression>

#include <algorithm>
#include <cmath>
#include <iterator>

namespace orv::simulated {

namespace {
constexpr double maximumMbps = 1e6;
/// Low, full, high and super speed, and super speed plus with one lane and with two (USB 3.2).
constexpr double usbMbps[] = {1.5, 12, 480, 5000, 10000, 20000};
} // namespace

std::uint64_t readSpeed(ObjectReader& reader, const char* key, double absentMbps) {
    return static_cast<std::uint64_t>(
        std::llround(reader.number(key, 0.001, maximumMbps, absentMbps) * 1e6));
}

std::uint64_t readUsbSpeed(ObjectReader& reader, const char* key, double absentMbps) {
    const std::uint64_t bitsPerSecond = readSpeed(reader, key, absentMbps);
    const auto isSpeed = [bitsPerSecond](double mbps) {
        return bitsPerSecond == static_cast<std::uint64_t>(mbps * 1e6);
    };
    if (std::none_of(std::begin(usbMbps), std::end(usbMbps), isSpeed))
        reader.fail(key,
                    QStringLiteral("a speed of USB: 1.5, 12, 480, 5000, 10000 or 20000 Mbit/s"));
    return bitsPerSecond;
}

std::uint32_t readAddress(ObjectReader& reader, const char* key, const std::string& absent) {
    const QStringList parts = toQString(reader.text(key, absent)).split(QLatin1Char('.'));
    std::uint32_t address = 0;
    bool valid = parts.size() == 4;
    for (const QString& part : parts) {
        bool isNumber = false;
        const uint number = part.toUInt(&isNumber);
        valid = valid && isNumber && number < 256;
        address = (address << 8U) | (number & 0xFFU);
    }
    if (!valid)
        reader.fail(key, QStringLiteral("an IPv4 address such as \"192.168.10.1\""));
    return address;
}

std::uint64_t readMac(ObjectReader& reader, const char* key, std::uint64_t absent) {
    QString text = toQString(reader.text(key, {}));
    if (!reader.has(key))
        return absent;
    static const QRegularExpression form(QStringLiteral("^([0-9A-Fa-f]{2}:){5}[0-9A-Fa-f]{2}$"));
    if (!form.match(text).hasMatch())
        reader.fail(key, QStringLiteral("a MAC address such as \"4c:52:44:00:00:01\""));
    return text.remove(QLatin1Char(':')).toULongLong(nullptr, 16);
}

} // namespace orv::simulated
