// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QString>

#include <cstdint>
#include <optional>
#include <string>

// Texts of feature values, for the feature tree, its editors and the command line. The same in
// every locale. All functions are thread-safe; a text of another form is read as nothing.

enum class IntegerNotation { Decimal, Hexadecimal, IpAddress, MacAddress };

/// The notation of an integer feature with this GenICam representation.
IntegerNotation notationOf(const std::string& representation);
/// Hexadecimal without a prefix.
QString toIntegerText(std::int64_t value, IntegerNotation notation);
std::optional<std::int64_t> fromIntegerText(const QString& text, IntegerNotation notation);

/// Lower-case hexadecimal digits without a prefix; a negative value in two's complement.
QString toHexText(std::int64_t value);
/// Up to 16 digits of either case.
std::optional<std::int64_t> fromHexText(const QString& text);

/// The low 32 bits as a dotted address, most significant byte first.
QString toIpText(std::int64_t value);
/// Four decimal numbers from 0 to 255; leading zeros do not make them octal.
std::optional<std::int64_t> fromIpText(const QString& text);

/// The low 48 bits as in "02:ab:00:00:00:1f", most significant byte first.
QString toMacText(std::int64_t value);
/// Six pairs of hexadecimal digits, colons or hyphens between them.
std::optional<std::int64_t> fromMacText(const QString& text);

/// Up to ten decimals after a point, without zeros at the end; sizes below 1e-6 and from 1e15 on
/// with an exponent.
QString toDoubleText(double value);
std::optional<double> fromDoubleText(const QString& text);
