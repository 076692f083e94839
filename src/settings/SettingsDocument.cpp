// SPDX-License-Identifier: BSD-3-Clause
#include "settings/SettingsDocument.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <array>
#include <cmath>
#include <stdexcept>

namespace settings {

namespace {

constexpr int currentVersion = 1;
const QLatin1String formatName("spanlet-settings");
/// Integers up to here are exact as JSON numbers, which are doubles.
constexpr std::int64_t mostExact = std::int64_t{1} << 53;

struct TypeName {
    OrvFeatureDataType type;
    const char* name;
};

constexpr std::array<TypeName, 6> typeNames{{{OrvFeatureDataInt, "integer"},
                                             {OrvFeatureDataFloat, "float"},
                                             {OrvFeatureDataEnum, "enumeration"},
                                             {OrvFeatureDataString, "string"},
                                             {OrvFeatureDataBool, "boolean"},
                                             {OrvFeatureDataRaw, "register"}}};

QString typeName(OrvFeatureDataType type) {
    for (const TypeName& each : typeNames) {
        if (each.type == type)
            return QLatin1String(each.name);
    }
    return {};
}

struct JsonOf {
    QJsonValue operator()(std::int64_t value) const {
        return value >= -mostExact && value <= mostExact ? QJsonValue(static_cast<qint64>(value))
                                                         : QJsonValue(QString::number(value));
    }
    QJsonValue operator()(double value) const { return value; }
    QJsonValue operator()(bool value) const { return value; }
    QJsonValue operator()(const std::string& value) const { return QString::fromStdString(value); }
};

QJsonValue text(const std::string& value) {
    return QString::fromStdString(value);
}

QJsonObject describe(const SavedFeature& feature) {
    QJsonObject object{{QStringLiteral("name"), text(feature.name)},
                       {QStringLiteral("type"), typeName(feature.type)},
                       {QStringLiteral("value"), toJson(feature.value)}};
    QJsonArray selection;
    for (const auto& [selector, value] : feature.selection)
        selection.append(QJsonObject{{QStringLiteral("selector"), text(selector)},
                                     {QStringLiteral("value"), toJson(value)}});
    if (!selection.isEmpty())
        object[QStringLiteral("selection")] = selection;
    return object;
}

QJsonObject describe(const SavedCamera& camera) {
    QJsonArray features;
    for (const SavedFeature& feature : camera.features)
        features.append(describe(feature));
    return {{QStringLiteral("id"), text(camera.id)},
            {QStringLiteral("name"), text(camera.name)},
            {QStringLiteral("model"), text(camera.model)},
            {QStringLiteral("serialNumber"), text(camera.serialNumber)},
            {QStringLiteral("features"), features}};
}

QJsonObject describe(const SavedDivision& division) {
    QJsonArray shares;
    for (const SavedShare& share : division.shares) {
        const QJsonValue limit = share.limitBytesPerSecond ? toJson(*share.limitBytesPerSecond)
                                                           : QJsonValue(QJsonValue::Null);
        shares.append(QJsonObject{{QStringLiteral("camera"), text(share.cameraId)},
                                  {QStringLiteral("limitBytesPerSecond"), limit}});
    }
    return {{QStringLiteral("interface"), text(division.interfaceName)},
            {QStringLiteral("id"), text(division.interfaceId)},
            {QStringLiteral("bitsPerSecond"), static_cast<qint64>(division.bitsPerSecond)},
            {QStringLiteral("cameras"), shares}};
}

class FormatError : public std::runtime_error {
public:
    explicit FormatError(const QString& message) : std::runtime_error(message.toStdString()) {}
};

/// A value of the document and its place. Its functions throw a FormatError.
class Member {
public:
    Member(QJsonValue value, QString place)
        : m_value(std::move(value)), m_place(std::move(place)) {}

    Member operator[](const char* name) const {
        requireType(QJsonValue::Object, "an object");
        const QString member = QLatin1String(name);
        const QString place = m_place.isEmpty() ? member : m_place + QLatin1Char('.') + member;
        return {m_value.toObject().value(member), place};
    }
    bool has(const char* name) const { return !(*this)[name].m_value.isUndefined(); }
    std::vector<Member> items() const {
        requireType(QJsonValue::Array, "an array");
        std::vector<Member> members;
        const QJsonArray array = m_value.toArray();
        for (int i = 0; i < array.size(); ++i)
            members.emplace_back(array[i], QStringLiteral("%1[%2]").arg(m_place).arg(i));
        return members;
    }
    std::string text() const {
        requireType(QJsonValue::String, "a text");
        return m_value.toString().toStdString();
    }
    std::int64_t integer() const {
        if (m_value.isString()) {
            bool isNumber = false;
            const qlonglong number = m_value.toString().toLongLong(&isNumber);
            return isNumber ? number : fail(QStringLiteral("an integer"));
        }
        requireType(QJsonValue::Double, "an integer");
        const double number = m_value.toDouble();
        const bool isExact =
            std::floor(number) == number && std::abs(number) <= static_cast<double>(mostExact);
        return isExact ? static_cast<std::int64_t>(number) : fail(QStringLiteral("an integer"));
    }
    double number() const {
        requireType(QJsonValue::Double, "a number");
        return m_value.toDouble();
    }
    bool boolean() const {
        requireType(QJsonValue::Bool, "true or false");
        return m_value.toBool();
    }
    /// The bytes of a register, in lower case.
    std::string hexadecimal() const {
        const std::string digits = text();
        const bool isRight = digits.size() % 2 == 0 &&
                             digits.find_first_not_of("0123456789abcdefABCDEF") == digits.npos;
        if (!isRight)
            fail(QStringLiteral("an even number of hexadecimal digits"));
        return QString::fromStdString(digits).toLower().toStdString();
    }
    bool isNull() const { return m_value.isNull(); }
    /// A value of any type: that of a selector.
    FeatureValue value() const {
        if (m_value.isBool())
            return m_value.toBool();
        if (m_value.isString())
            return text();
        return integer();
    }
    FeatureValue value(OrvFeatureDataType type) const {
        switch (type) {
        case OrvFeatureDataInt:
            return integer();
        case OrvFeatureDataFloat:
            return number();
        case OrvFeatureDataBool:
            return boolean();
        case OrvFeatureDataRaw:
            return hexadecimal();
        default:
            return text();
        }
    }
    /// Throws: \p expected is not what is there.
    [[noreturn]] std::int64_t fail(const QString& expected) const {
        QString found =
            QString::fromUtf8(QJsonDocument(QJsonArray{m_value}).toJson(QJsonDocument::Compact));
        found = m_value.isUndefined() ? QStringLiteral("it is missing")
                                      : QStringLiteral("found ") + found.mid(1, found.size() - 2);
        const QString place = m_place.isEmpty() ? QStringLiteral("the file") : m_place;
        throw FormatError(QStringLiteral("%1: expected %2, %3").arg(place, expected, found));
    }

private:
    void requireType(QJsonValue::Type type, const char* expected) const {
        if (m_value.type() != type)
            fail(QLatin1String(expected));
    }

    QJsonValue m_value;
    QString m_place;
};

OrvFeatureDataType parseType(const Member& member) {
    const std::string name = member.text();
    QStringList known;
    for (const TypeName& each : typeNames) {
        if (name == each.name)
            return each.type;
        known.append(QLatin1String(each.name));
    }
    member.fail(QStringLiteral("one of ") + known.join(QStringLiteral(", ")));
}

SavedFeature parseFeature(const Member& member) {
    SavedFeature feature;
    feature.name = member["name"].text();
    feature.type = parseType(member["type"]);
    feature.value = member["value"].value(feature.type);
    if (!member.has("selection"))
        return feature;
    for (const Member& each : member["selection"].items())
        feature.selection.emplace_back(each["selector"].text(), each["value"].value());
    return feature;
}

SavedCamera parseCamera(const Member& member) {
    SavedCamera camera;
    camera.id = member["id"].text();
    camera.name = member["name"].text();
    camera.model = member["model"].text();
    camera.serialNumber = member["serialNumber"].text();
    for (const Member& feature : member["features"].items())
        camera.features.push_back(parseFeature(feature));
    return camera;
}

SavedDivision parseDivision(const Member& member) {
    SavedDivision division;
    division.interfaceName = member["interface"].text();
    division.interfaceId = member["id"].text();
    division.bitsPerSecond = member["bitsPerSecond"].integer();
    for (const Member& each : member["cameras"].items()) {
        const Member limit = each["limitBytesPerSecond"];
        SavedShare share{each["camera"].text(), std::nullopt};
        if (!limit.isNull())
            share.limitBytesPerSecond = limit.integer();
        division.shares.push_back(share);
    }
    return division;
}

SavedSettings parseDocument(const Member& document) {
    if (document["format"].text() != formatName.latin1())
        document["format"].fail(QLatin1Char('"') + formatName + QLatin1Char('"'));
    if (const std::int64_t version = document["version"].integer(); version != currentVersion)
        document["version"].fail(QString::number(currentVersion));
    SavedSettings settings;
    settings.savedAt = document["savedAt"].text();
    for (const Member& camera : document["cameras"].items())
        settings.cameras.push_back(parseCamera(camera));
    for (const Member& division : document["divisions"].items())
        settings.divisions.push_back(parseDivision(division));
    return settings;
}

} // namespace

QJsonValue toJson(const FeatureValue& value) {
    return std::visit(JsonOf(), value);
}

QJsonObject toDocument(const SavedSettings& settings) {
    QJsonArray cameras;
    for (const SavedCamera& camera : settings.cameras)
        cameras.append(describe(camera));
    QJsonArray divisions;
    for (const SavedDivision& division : settings.divisions)
        divisions.append(describe(division));
    return {{QStringLiteral("format"), formatName},
            {QStringLiteral("version"), currentVersion},
            {QStringLiteral("savedAt"), text(settings.savedAt)},
            {QStringLiteral("cameras"), cameras},
            {QStringLiteral("divisions"), divisions}};
}

std::optional<SavedSettings> parseSettings(const QByteArray& text, QString& error) {
    QJsonParseError syntax;
    const QJsonDocument document = QJsonDocument::fromJson(text, &syntax);
    if (syntax.error != QJsonParseError::NoError) {
        error = QStringLiteral("line %1: %2")
                    .arg(text.left(syntax.offset).count('\n') + 1)
                    .arg(syntax.errorString());
        return std::nullopt;
    }
    try {
        return parseDocument(
            {document.isObject() ? QJsonValue(document.object()) : QJsonValue(document.array()),
             {}});
    } catch (const FormatError& wrong) {
        error = QString::fromUtf8(wrong.what());
        return std::nullopt;
    }
}

} // namespace settings
