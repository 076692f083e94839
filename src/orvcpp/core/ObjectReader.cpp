// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/core/ObjectReader.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonParseError>

#include <cmath>
#include <utility>

namespace orv {

namespace {

QString describe(const QJsonValue& value) {
    switch (value.type()) {
    case QJsonValue::Undefined:
        return QStringLiteral("nothing");
    case QJsonValue::Null:
        return QStringLiteral("null");
    case QJsonValue::Bool:
        return value.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    case QJsonValue::Double:
        return QString::number(value.toDouble(), 'g', 15);
    case QJsonValue::String:
        return QStringLiteral("\"%1\"").arg(value.toString());
    case QJsonValue::Array:
        return QStringLiteral("an array");
    case QJsonValue::Object:
        return QStringLiteral("an object");
    }
    return {};
}

QString quoted(const QStringList& names) {
    return QStringLiteral("\"%1\"").arg(names.join(QStringLiteral("\", \"")));
}

} // namespace

ObjectReader::ObjectReader(QJsonObject object, QString file, QString path)
    : m_object(std::move(object)), m_file(std::move(file)), m_path(std::move(path)) {}

bool ObjectReader::has(const char* key) const {
    return m_object.contains(QLatin1String(key));
}

QString ObjectReader::pathOf(const char* key) const {
    return m_path.isEmpty() ? QString::fromLatin1(key)
                            : QStringLiteral("%1.%2").arg(m_path, QLatin1String(key));
}

std::string ObjectReader::originOf(const char* key) const {
    return QStringLiteral("%1: %2").arg(m_file, pathOf(key)).toStdString();
}

void ObjectReader::fail(const char* key, const QString& expected) const {
    failAt(pathOf(key), expected, m_object.value(QLatin1String(key)));
}

void ObjectReader::failAt(const QString& path, const QString& expected,
                          const QJsonValue& found) const {
    throw FormatError(QStringLiteral("%1: %2: expected %3, found %4")
                          .arg(m_file, path, expected, describe(found)));
}

QJsonValue ObjectReader::take(const char* key) {
    m_known.append(QString::fromLatin1(key));
    return m_object.value(QLatin1String(key));
}

std::string ObjectReader::text(const char* key) {
    const QJsonValue value = take(key);
    if (!value.isString() || value.toString().isEmpty())
        fail(key, QStringLiteral("a text that is not empty"));
    return value.toString().toStdString();
}

std::string ObjectReader::text(const char* key, const std::string& absent) {
    const QJsonValue value = take(key);
    if (value.isUndefined())
        return absent;
    if (!value.isString())
        fail(key, QStringLiteral("a text"));
    return value.toString().toStdString();
}

bool ObjectReader::boolean(const char* key, bool absent) {
    const QJsonValue value = take(key);
    if (value.isUndefined())
        return absent;
    if (!value.isBool())
        fail(key, QStringLiteral("true or false"));
    return value.toBool();
}

double ObjectReader::number(const char* key, double minimum, double maximum) {
    const QJsonValue value = take(key);
    if (!value.isDouble() || !(value.toDouble() >= minimum && value.toDouble() <= maximum))
        fail(key, QStringLiteral("a number from %1 to %2").arg(minimum).arg(maximum));
    return value.toDouble();
}

double ObjectReader::number(const char* key, double minimum, double maximum, double absent) {
    if (has(key))
        return number(key, minimum, maximum);
    take(key);
    return absent;
}

std::int64_t ObjectReader::integer(const char* key, std::int64_t minimum, std::int64_t maximum) {
    const QJsonValue value = take(key);
    const double found = value.toDouble();
    if (!value.isDouble() || found != std::floor(found) || found < static_cast<double>(minimum) ||
        found > static_cast<double>(maximum))
        fail(key, QStringLiteral("an integer from %1 to %2").arg(minimum).arg(maximum));
    return static_cast<std::int64_t>(found);
}

std::int64_t ObjectReader::integer(const char* key, std::int64_t minimum, std::int64_t maximum,
                                   std::int64_t absent) {
    if (has(key))
        return integer(key, minimum, maximum);
    take(key);
    return absent;
}

std::size_t ObjectReader::choice(const char* key, const QStringList& choices) {
    const QJsonValue value = take(key);
    const int index = value.isString() ? choices.indexOf(value.toString()) : -1;
    if (index < 0)
        fail(key, QStringLiteral("one of %1").arg(quoted(choices)));
    return static_cast<std::size_t>(index);
}

std::size_t ObjectReader::choice(const char* key, const QStringList& choices, std::size_t absent) {
    if (has(key))
        return choice(key, choices);
    take(key);
    return absent;
}

std::vector<std::string> ObjectReader::texts(const char* key) {
    const QJsonValue value = take(key);
    if (value.isUndefined())
        return {};
    if (!value.isArray())
        fail(key, QStringLiteral("an array of texts"));
    std::vector<std::string> result;
    for (const QJsonValue element : value.toArray()) {
        if (!element.isString())
            failAt(QStringLiteral("%1[%2]").arg(pathOf(key)).arg(result.size()),
                   QStringLiteral("a text"), element);
        result.push_back(element.toString().toStdString());
    }
    return result;
}

ObjectReader ObjectReader::object(const char* key) {
    const QJsonValue value = take(key);
    if (!value.isUndefined() && !value.isObject())
        fail(key, QStringLiteral("an object"));
    return {value.toObject(), m_file, pathOf(key)};
}

std::vector<ObjectReader> ObjectReader::objects(const char* key) {
    const QJsonValue value = take(key);
    if (value.isUndefined())
        return {};
    if (!value.isArray())
        fail(key, QStringLiteral("an array of objects"));
    std::vector<ObjectReader> result;
    for (const QJsonValue element : value.toArray()) {
        const QString path = QStringLiteral("%1[%2]").arg(pathOf(key)).arg(result.size());
        if (!element.isObject())
            failAt(path, QStringLiteral("an object"), element);
        result.emplace_back(element.toObject(), m_file, path);
    }
    return result;
}

void ObjectReader::finish() const {
    for (const QString& key : m_object.keys()) {
        if (!m_known.contains(key))
            throw FormatError(QStringLiteral("%1: %2: unknown key, expected one of %3")
                                  .arg(m_file, pathOf(key.toUtf8().constData()), quoted(m_known)));
    }
}

ObjectReader readObject(const QString& file) {
    QFile source(file);
    if (!source.open(QIODevice::ReadOnly))
        throw FormatError(
            QStringLiteral("%1: expected a readable file: %2").arg(file, source.errorString()));
    const QByteArray text = source.readAll();
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (error.error != QJsonParseError::NoError) {
        const QByteArray before = text.left(error.offset);
        // One call of arg(): the file's name may contain a place marker.
        throw FormatError(QStringLiteral("%1: line %2, column %3: expected valid JSON: %4")
                              .arg(file, QString::number(before.count('\n') + 1),
                                   QString::number(before.size() - before.lastIndexOf('\n')),
                                   error.errorString()));
    }
    if (!document.isObject())
        throw FormatError(QStringLiteral("%1: line 1: expected an object").arg(file));
    return {document.object(), file, QString()};
}

} // namespace orv
