// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <limits>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace orv {

/// A mistake in a configuration or scenario file, with a text to show. Thrown by the readers; the
/// system object answers it as a text and a result code.
class FormatError : public std::runtime_error {
public:
    explicit FormatError(const QString& message) : std::runtime_error(message.toStdString()) {}
};

/// Reads one JSON object strictly: a missing key, a wrong type, a value out of range and an unknown
/// key are errors that name the key's path and what was expected.
class ObjectReader {
public:
    /// \p file and \p path say where the object stands, for messages.
    ObjectReader(QJsonObject object, QString file, QString path);

    bool has(const char* key) const;
    /// Path of a key below this object, for example "cameras[2].sensor.width".
    QString pathOf(const char* key) const;
    /// File and path of a key, as messages begin with them.
    std::string originOf(const char* key) const;
    /// Raises the error that \p key is not as expected.
    [[noreturn]] void fail(const char* key, const QString& expected) const;

    std::string text(const char* key);
    std::string text(const char* key, const std::string& absent);
    bool boolean(const char* key, bool absent);
    /// The limits are inclusive.
    double number(const char* key, double minimum, double maximum);
    double number(const char* key, double minimum, double maximum, double absent);
    std::int64_t integer(const char* key, std::int64_t minimum, std::int64_t maximum);
    std::int64_t integer(const char* key, std::int64_t minimum, std::int64_t maximum,
                         std::int64_t absent);
    /// Index of the text among \p choices.
    std::size_t choice(const char* key, const QStringList& choices);
    std::size_t choice(const char* key, const QStringList& choices, std::size_t absent);
    /// An array of texts, empty when absent.
    std::vector<std::string> texts(const char* key);
    /// An object, or an empty one when absent.
    ObjectReader object(const char* key);
    /// An array of objects, empty when absent.
    std::vector<ObjectReader> objects(const char* key);

    /// Raises an error when the object has a key that was not read.
    void finish() const;

private:
    QJsonValue take(const char* key);
    [[noreturn]] void failAt(const QString& path, const QString& expected,
                             const QJsonValue& found) const;

    QJsonObject m_object;
    QString m_file;
    QString m_path;
    QStringList m_known;
};

/// Reads a file whose top level is an object.
ObjectReader readObject(const QString& file);

} // namespace orv
