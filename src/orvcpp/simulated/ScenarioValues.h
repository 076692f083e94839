// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/core/ObjectReader.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <string>

namespace orv::simulated {

/// Highest port number of a USB hub.
constexpr std::int64_t maximumPort = 31;

inline QString toQString(const std::string& text) {
    return QString::fromStdString(text);
}

/// Names of the elements of a list, for references and messages.
template <typename List, typename Name> QStringList namesOf(const List& list, const Name& name) {
    QStringList names;
    for (const auto& element : list)
        names.append(toQString(name(element)));
    return names;
}

/// A speed in Mbit/s, as bits per second.
std::uint64_t readSpeed(ObjectReader& reader, const char* key, double absentMbps);
/// The same for a USB port: one of the speeds that USB has, up to 20 Gbit/s.
std::uint64_t readUsbSpeed(ObjectReader& reader, const char* key, double absentMbps);
/// An IPv4 address, in host byte order.
std::uint32_t readAddress(ObjectReader& reader, const char* key, const std::string& absent);
std::uint64_t readMac(ObjectReader& reader, const char* key, std::uint64_t absent);

} // namespace orv::simulated
