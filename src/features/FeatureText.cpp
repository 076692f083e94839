// SPDX-License-Identifier: BSD-3-Clause
#include "features/FeatureText.h"

#include <QLocale>
#include <QStringList>

#include <cmath>
#include <utility>

namespace {

/// Reads an address from the texts of its bytes in \p base, the most significant one first.
std::optional<std::int64_t> fromBytes(const QStringList& bytes, int count, int base) {
    if (bytes.size() != count)
        return std::nullopt;
    std::uint64_t result = 0;
    for (const QString& byte : bytes) {
        bool isNumber = false;
        const ushort value = byte.toUShort(&isNumber, base);
        if (!isNumber || value > 0xff)
            return std::nullopt;
        result = result << 8 | value;
    }
    return static_cast<std::int64_t>(result);
}

} // namespace

IntegerNotation notationOf(const std::string& representation) {
    constexpr std::pair<const char*, IntegerNotation> notations[] = {
        {"HexNumber", IntegerNotation::Hexadecimal},
        {"IPV4Address", IntegerNotation::IpAddress},
        {"MACAddress", IntegerNotation::MacAddress}};
    for (const auto& [name, notation] : notations) {
        if (representation.find(name) != std::string::npos)
            return notation;
    }
    return IntegerNotation::Decimal;
}

QString toIntegerText(std::int64_t value, IntegerNotation notation) {
    switch (notation) {
    case IntegerNotation::Hexadecimal:
        return toHexText(value);
    case IntegerNotation::IpAddress:
        return toIpText(value);
    case IntegerNotation::MacAddress:
        return toMacText(value);
    default:
        return QString::number(static_cast<qint64>(value));
    }
}

std::optional<std::int64_t> fromIntegerText(const QString& text, IntegerNotation notation) {
    switch (notation) {
    case IntegerNotation::Hexadecimal:
        return fromHexText(text);
    case IntegerNotation::IpAddress:
        return fromIpText(text);
    case IntegerNotation::MacAddress:
        return fromMacText(text);
    default:
        break;
    }
    bool isInteger = false;
    const qint64 value = text.toLongLong(&isInteger);
    return isInteger ? std::optional<std::int64_t>(value) : std::nullopt;
}

QString toHexText(std::int64_t value) {
    return QString::number(static_cast<quint64>(value), 16);
}

std::optional<std::int64_t> fromHexText(const QString& text) {
    bool isNumber = false;
    const quint64 value = text.toULongLong(&isNumber, 16);
    return isNumber ? std::optional(static_cast<std::int64_t>(value)) : std::nullopt;
}

QString toIpText(std::int64_t value) {
    return QStringLiteral("%1.%2.%3.%4")
        .arg(value >> 24 & 0xff)
        .arg(value >> 16 & 0xff)
        .arg(value >> 8 & 0xff)
        .arg(value & 0xff);
}

std::optional<std::int64_t> fromIpText(const QString& text) {
    return fromBytes(text.split(QLatin1Char('.')), 4, 10);
}

QString toMacText(std::int64_t value) {
    QStringList bytes;
    for (int shift = 40; shift >= 0; shift -= 8)
        bytes << QStringLiteral("%1").arg(value >> shift & 0xff, 2, 16, QLatin1Char('0'));
    return bytes.join(QLatin1Char(':'));
}

std::optional<std::int64_t> fromMacText(const QString& text) {
    QString colons = text;
    return fromBytes(colons.replace(QLatin1Char('-'), QLatin1Char(':')).split(QLatin1Char(':')), 6,
                     16);
}

QString toDoubleText(double value) {
    constexpr int decimals = 10;
    const double size = std::abs(value);
    const bool shows = size == 0.0 || (size >= 1e-6 && size < 1e15);
    if (!shows)
        return QString::number(value, 'g', QLocale::FloatingPointShortest);
    QString text = QString::number(value, 'f', decimals);
    int end = text.size();
    while (text.at(end - 1) == QLatin1Char('0'))
        --end;
    if (text.at(end - 1) == QLatin1Char('.'))
        --end;
    return text.left(end);
}

std::optional<double> fromDoubleText(const QString& text) {
    bool isNumber = false;
    const double value = text.toDouble(&isNumber);
    return isNumber ? std::optional(value) : std::nullopt;
}
