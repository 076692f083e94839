// SPDX-License-Identifier: BSD-3-Clause
#include "cli/NamedFeature.h"

#include "cli/Failure.h"
#include "features/FeatureText.h"

#include <QJsonArray>

#include <tuple>
#include <utility>

namespace cli {

namespace {

QString toQString(const std::string& text) {
    return QString::fromStdString(text);
}

QStringList toQStrings(const std::vector<std::string>& texts) {
    QStringList result;
    for (const std::string& text : texts)
        result.append(toQString(text));
    return result;
}

QString typeName(OrvFeatureDataType type) {
    switch (type) {
    case OrvFeatureDataInt:
        return QStringLiteral("integer");
    case OrvFeatureDataFloat:
        return QStringLiteral("float");
    case OrvFeatureDataEnum:
        return QStringLiteral("enumeration");
    case OrvFeatureDataString:
        return QStringLiteral("string");
    case OrvFeatureDataBool:
        return QStringLiteral("boolean");
    case OrvFeatureDataCommand:
        return QStringLiteral("command");
    case OrvFeatureDataRaw:
        return QStringLiteral("raw");
    default:
        return QStringLiteral("unknown");
    }
}

bool hasValue(OrvFeatureDataType type) {
    return type >= OrvFeatureDataInt && type <= OrvFeatureDataBool;
}

bool isNumber(OrvFeatureDataType type) {
    return type == OrvFeatureDataInt || type == OrvFeatureDataFloat;
}

QString visibilityName(OrvFeatureVisibilityType visibility) {
    switch (visibility) {
    case OrvFeatureVisibilityBeginner:
        return QStringLiteral("beginner");
    case OrvFeatureVisibilityExpert:
        return QStringLiteral("expert");
    case OrvFeatureVisibilityGuru:
        return QStringLiteral("guru");
    case OrvFeatureVisibilityInvisible:
        return QStringLiteral("invisible");
    default:
        return QStringLiteral("unknown");
    }
}

struct ToJson {
    QJsonValue operator()(std::int64_t value) const { return static_cast<qint64>(value); }
    QJsonValue operator()(double value) const { return value; }
    QJsonValue operator()(bool value) const { return value; }
    QJsonValue operator()(const std::string& value) const { return toQString(value); }
};

struct ToText {
    const FeatureInfo& info;

    QString operator()(std::int64_t value) const {
        const IntegerNotation notation = notationOf(info.representation);
        const QString text = toIntegerText(value, notation);
        return notation == IntegerNotation::Hexadecimal ? QStringLiteral("0x") + text : text;
    }
    QString operator()(double value) const { return toDoubleText(value); }
    QString operator()(bool value) const {
        return value ? QStringLiteral("true") : QStringLiteral("false");
    }
    QString operator()(const std::string& value) const { return toQString(value); }
};

QString textOf(const FeatureInfo& info, const FeatureValue& value) {
    return std::visit(ToText{info}, value);
}

std::optional<std::int64_t> parseInteger(const FeatureInfo& info, const QString& text) {
    if (text.startsWith(QLatin1String("0x"), Qt::CaseInsensitive))
        return fromHexText(text.mid(2));
    const IntegerNotation notation = notationOf(info.representation);
    const bool isAddress =
        (notation == IntegerNotation::IpAddress && text.contains(QLatin1Char('.'))) ||
        (notation == IntegerNotation::MacAddress && text.size() > 12);
    return fromIntegerText(text, isAddress ? notation : IntegerNotation::Decimal);
}

std::optional<bool> parseBoolean(const QString& text) {
    const QString word = text.toLower();
    if (word == QLatin1String("true") || word == QLatin1String("on") || word == QLatin1String("1"))
        return true;
    if (word == QLatin1String("false") || word == QLatin1String("off") ||
        word == QLatin1String("0"))
        return false;
    return std::nullopt;
}

/// The module with that name, blanks and case ignored; empty when there is none.
std::string findModule(const FeatureController& controller, const QString& text) {
    const auto folded = [](QString name) {
        return name.remove(QLatin1Char(' ')).toCaseFolded();
    };
    for (const std::string& module : controller.getModuleNames()) {
        if (folded(toQString(module)) == folded(text))
            return module;
    }
    return {};
}

/// All features by their names on the command line.
QStringList allNames(const FeatureController& controller) {
    QStringList names;
    for (const std::string& module : controller.getModuleNames()) {
        const QString prefix =
            module == cameraModule ? QString() : toQString(module) + QLatin1Char(':');
        for (const auto& category : controller.getFeaturesByCategory(module)) {
            for (const std::string& name : category.second)
                names.append(prefix + toQString(name));
        }
    }
    return names;
}

/// The features of any module whose name contains that of \p text; else how to list all.
QString hint(const FeatureController& controller, const QString& text) {
    const QStringList similar =
        allNames(controller).filter(text.section(QLatin1Char(':'), -1), Qt::CaseInsensitive);
    return similar.isEmpty() ? QStringLiteral(" \"spanlet features CAMERA\" lists them.")
                             : thereIs(similar);
}

std::pair<std::string, std::string> findFeature(const FeatureController& controller,
                                                const QString& text) {
    const int colon = text.indexOf(QLatin1Char(':'));
    const QString moduleText = colon < 0 ? QStringLiteral("Camera") : text.left(colon);
    const std::string module = findModule(controller, moduleText);
    if (module.empty())
        throw Failure(QStringLiteral("There is no module \"%1\".").arg(moduleText) +
                      thereIs(toQStrings(controller.getModuleNames())));
    const std::string name = text.mid(colon + 1).toStdString();
    if (!controller.hasFeature(module, name))
        throw Failure(QStringLiteral("There is no feature \"%1\".").arg(text) +
                      hint(controller, text));
    return {module, name};
}

} // namespace

NamedFeature::NamedFeature(FeatureController& controller, const QString& text)
    : m_controller(controller) {
    std::tie(m_module, m_name) = findFeature(controller, text);
    read();
}

NamedFeature::NamedFeature(FeatureController& controller, std::string module, std::string name)
    : m_controller(controller), m_module(std::move(module)), m_name(std::move(name)) {
    read();
}

void NamedFeature::read() {
    m_info = m_controller.getFeatureInfo(m_module, m_name);
    m_value.reset();
    if (!m_info.readable || !hasValue(m_info.dataType))
        return;
    // A FeatureInfo holds the integer 0 when the value could not be read.
    m_value = m_info.value == FeatureValue() ? m_controller.readFeatureValue(m_module, m_name)
                                             : m_info.value;
}

QJsonObject NamedFeature::describe() const {
    QJsonObject row{
        {QStringLiteral("module"), module()},
        {QStringLiteral("category"), toQString(m_info.category)},
        {QStringLiteral("name"), name()},
        {QStringLiteral("displayName"), toQString(m_info.displayName)},
        {QStringLiteral("type"), typeName(m_info.dataType)},
        {QStringLiteral("visibility"), visibilityName(m_info.visibility)},
        {QStringLiteral("unit"), toQString(m_info.unit)},
        {QStringLiteral("readable"), m_info.readable},
        {QStringLiteral("writable"), m_info.writable},
    };
    if (m_value) {
        row[QStringLiteral("value")] = std::visit(ToJson(), *m_value);
        // A JSON number is exact up to 2^53 only.
        row[QStringLiteral("valueText")] = valueText();
    }
    if (isNumber(m_info.dataType)) {
        row[QStringLiteral("minimum")] = std::visit(ToJson(), m_info.minimum);
        row[QStringLiteral("maximum")] = std::visit(ToJson(), m_info.maximum);
        row[QStringLiteral("increment")] = std::visit(ToJson(), m_info.increment);
    }
    if (m_info.dataType == OrvFeatureDataEnum) {
        QJsonArray available;
        for (const FeatureValue& entry : m_info.availableValues)
            available.append(std::visit(ToJson(), entry));
        row[QStringLiteral("entries")] = QJsonArray::fromStringList(toQStrings(m_info.values));
        row[QStringLiteral("availableEntries")] = available;
    }
    return row;
}

QString NamedFeature::valueText() const {
    return m_value ? textOf(m_info, *m_value) : QString();
}

void NamedFeature::requireValue() const {
    if (m_info.dataType == OrvFeatureDataCommand)
        throw Failure(QStringLiteral("%1 is a command; \"spanlet run\" executes it.").arg(name()));
    if (!m_value)
        throw Failure(QStringLiteral("%1 cannot be read.").arg(name()));
}

void NamedFeature::requireNotation(const QString& text) const {
    if (m_info.dataType == OrvFeatureDataCommand || !hasValue(m_info.dataType))
        requireValue();
    parse(text);
}

void NamedFeature::write(const QString& text) {
    requireNotation(text);
    // An earlier write may have changed the range or access of this feature.
    read();
    if (!m_info.writable)
        throw Failure(QStringLiteral("%1 cannot be written.").arg(name()));
    if (!m_controller.setFeatureValue(m_module, m_name, parse(text)))
        throw Failure(QStringLiteral("%1 did not take \"%2\".").arg(name(), text) + limits());
    read();
}

bool NamedFeature::run(double timeoutMilliseconds) {
    if (m_info.dataType != OrvFeatureDataCommand)
        throw Failure(
            QStringLiteral("%1 is not a command; \"spanlet set\" writes it.").arg(name()));
    return m_controller.runCommand(m_module, m_name, timeoutMilliseconds);
}

FeatureValue NamedFeature::parse(const QString& text) const {
    const auto require = [&](const auto& parsed, const char* what) -> FeatureValue {
        if (!parsed)
            throw Failure(
                QStringLiteral("%1 takes %2, not \"%3\".").arg(name(), QLatin1String(what), text));
        return *parsed;
    };
    switch (m_info.dataType) {
    case OrvFeatureDataInt:
        return require(parseInteger(m_info, text), "an integer");
    case OrvFeatureDataFloat:
        return require(fromDoubleText(text), "a number");
    case OrvFeatureDataBool:
        return require(parseBoolean(text), "\"true\" or \"false\"");
    case OrvFeatureDataEnum:
        if (const QStringList entries = toQStrings(m_info.values); !entries.contains(text))
            throw Failure(QStringLiteral("%1 has no entry \"%2\".").arg(name(), text) + limits());
        break;
    default:
        break;
    }
    return text.toStdString();
}

QString NamedFeature::limits() const {
    if (m_info.dataType == OrvFeatureDataEnum) {
        QStringList entries;
        for (const FeatureValue& entry : m_info.availableValues)
            entries.append(textOf(m_info, entry));
        return QStringLiteral(" It takes %1.").arg(entries.join(QStringLiteral(", ")));
    }
    if (!isNumber(m_info.dataType))
        return {};
    const QString range = QStringLiteral(" It takes %1 to %2")
                              .arg(textOf(m_info, m_info.minimum), textOf(m_info, m_info.maximum));
    const QString step = textOf(m_info, m_info.increment);
    const bool hasStep = m_info.increment != FeatureValue() && step != QLatin1String("1");
    return range + (hasStep ? QStringLiteral(" in steps of %1.").arg(step) : QStringLiteral("."));
}

} // namespace cli
