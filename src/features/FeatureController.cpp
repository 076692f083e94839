// SPDX-License-Identifier: BSD-3-Clause
#include "features/FeatureController.h"

#include "logging/Log.h"
#include "sdk/OrvCameraWrapper.h"
#include "sdk/OrvFeatureWrapper.h"
#include "sdk/OrvInterfaceWrapper.h"
#include "sdk/OrvLocalDeviceWrapper.h"
#include "sdk/OrvStreamWrapper.h"
#include "sdk/OrvTransportLayerWrapper.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>
#include <variant>

/// A feature of the camera, and what has been read of it that never changes while it is open.
struct KnownFeature {
    std::shared_ptr<OrvFeatureWrapper> feature;
    std::optional<std::string> name;
    std::optional<std::string> category;
    std::optional<std::string> displayName;
    std::optional<std::string> description;
    std::optional<std::string> representation;
    std::optional<std::string> toolTip;
    std::optional<std::string> unit;
    std::optional<OrvFeatureVisibilityType> visibility;
    std::optional<OrvFeatureDataType> dataType;
    std::optional<std::vector<std::string>> values;
};

namespace {

constexpr const char* noModule = ": Cannot get module: '";
constexpr const char* noFeature = ": Cannot get feature: '";
constexpr const char* noDisplayName = ": Cannot get feature display name for '";
constexpr const char* noWritability = ": Cannot get feature writability for '";

template <typename T> using Getter = OrvErrorType (OrvFeatureWrapper::*)(T&) const;

/// Reads what never changes: from memory once the SDK has answered.
template <typename T>
OrvErrorType readOnce(const KnownFeature& from, std::optional<T>& known, Getter<T> get, T& field) {
    if (!known) {
        T read{};
        const OrvErrorType error = ((*from.feature).*get)(read);
        if (error != OrvErrorSuccess) {
            return error;
        }
        known = std::move(read);
    }
    field = *known;
    return OrvErrorSuccess;
}

OrvErrorType readDataType(KnownFeature& known, OrvFeatureDataType& type) {
    return readOnce(known, known.dataType, &OrvFeatureWrapper::GetDataType, type);
}

template <typename T>
OrvErrorType readValueAs(const OrvFeatureWrapper& feature, FeatureValue& value) {
    T read{};
    const OrvErrorType error = feature.GetValue(read);
    if (error == OrvErrorSuccess) {
        value = std::move(read);
    }
    return error;
}

/// Reads a feature's value in the alternative of its data type; one without a value succeeds and
/// leaves \p value as it is.
OrvErrorType readValue(const OrvFeatureWrapper& feature, OrvFeatureDataType type,
                       FeatureValue& value) {
    switch (type) {
    case OrvFeatureDataInt:
        return readValueAs<std::int64_t>(feature, value);
    case OrvFeatureDataFloat:
        return readValueAs<double>(feature, value);
    case OrvFeatureDataEnum:
    case OrvFeatureDataString:
        return readValueAs<std::string>(feature, value);
    case OrvFeatureDataBool:
        return readValueAs<bool>(feature, value);
    default:
        return OrvErrorSuccess;
    }
}

const char* valueMessage(OrvFeatureDataType type) {
    switch (type) {
    case OrvFeatureDataInt:
        return ": Cannot get feature value (int) for '";
    case OrvFeatureDataFloat:
        return ": Cannot get feature value (double) for '";
    case OrvFeatureDataBool:
        return ": Cannot get feature value (bool) for '";
    default:
        return ": Cannot get feature value (string) for '";
    }
}

/// Fills the description of one feature, attribute by attribute. What cannot be read is logged and
/// keeps its default.
class InfoReader {
public:
    InfoReader(KnownFeature& known, const std::string& name, const std::string& prefix)
        : m_known(known), m_feature(*known.feature), m_name(name), m_prefix(prefix) {}

    FeatureInfo read() const {
        FeatureInfo info;
        const OrvErrorType error =
            readOnce(m_known, m_known.name, &OrvFeatureWrapper::GetName, info.name);
        if (error != OrvErrorSuccess) {
            // The one message without a name.
            logDebug(m_prefix + ": Cannot get feature name", error);
        }
        readAttributes(info);
        check(readValue(m_feature, info.dataType, info.value), valueMessage(info.dataType));
        switch (info.dataType) {
        case OrvFeatureDataInt:
            readLimits<std::int64_t>(info);
            break;
        case OrvFeatureDataFloat:
            readLimits<double>(info);
            break;
        case OrvFeatureDataEnum:
            readEntries(info);
            break;
        default:
            break;
        }
        return info;
    }

    FeatureInfo readOutline() const {
        FeatureInfo info;
        readStatic(info.displayName, m_known.displayName, &OrvFeatureWrapper::GetDisplayName,
                   noDisplayName);
        readFlag(info.writable, &OrvFeatureWrapper::IsWritable, noWritability);
        return info;
    }

private:
    bool check(OrvErrorType error, const char* text) const {
        if (error != OrvErrorSuccess) {
            logDebug(m_prefix + text + m_name + "'", error);
        }
        return error == OrvErrorSuccess;
    }

    template <typename T>
    void readStatic(T& field, std::optional<T>& known, Getter<T> get, const char* text) const {
        check(readOnce(m_known, known, get, field), text);
    }

    void readFlag(bool& field, Getter<bool> get, const char* text) const {
        bool read = false;
        if (check((m_feature.*get)(read), text)) {
            field = read;
        }
    }

    void readAttributes(FeatureInfo& info) const {
        using Feature = OrvFeatureWrapper;
        KnownFeature& known = m_known;
        readStatic(info.category, known.category, &Feature::GetCategory,
                   ": Cannot get feature category for '");
        readStatic(info.displayName, known.displayName, &Feature::GetDisplayName, noDisplayName);
        readStatic(info.description, known.description, &Feature::GetDescription,
                   ": Cannot get feature description for '");
        readStatic(info.representation, known.representation, &Feature::GetRepresentation,
                   ": Cannot get feature representation for '");
        readStatic(info.toolTip, known.toolTip, &Feature::GetToolTip,
                   ": Cannot get feature tooltip for '");
        readStatic(info.unit, known.unit, &Feature::GetUnit, ": Cannot get feature unit for '");
        readFlag(info.readable, &Feature::IsReadable, ": Cannot get feature readability for '");
        readFlag(info.writable, &Feature::IsWritable, noWritability);
        readStatic(info.visibility, known.visibility, &Feature::GetVisibility,
                   ": Cannot get feature visibility for '");
        check(readDataType(known, info.dataType), ": Cannot get feature data type for '");
    }

    template <typename Number> void readLimits(FeatureInfo& info) const {
        Number minimum{};
        Number maximum{};
        if (check(m_feature.GetRange(minimum, maximum), ": Cannot get feature range for '")) {
            info.minimum = minimum;
            info.maximum = maximum;
        }
        Number increment{};
        if (check(m_feature.GetIncrement(increment), ": Cannot get feature increment for '")) {
            info.increment = increment;
        }
    }

    void readEntries(FeatureInfo& info) const {
        readStatic<std::vector<std::string>>(info.values, m_known.values,
                                             &OrvFeatureWrapper::GetValues,
                                             ": Cannot get feature values list for '");
        for (const std::string& entry : info.values) {
            bool available = false;
            if (check(m_feature.IsValueAvailable(entry.c_str(), available),
                      ": Cannot determine if feature is available for '") &&
                available) {
                info.availableValues.emplace_back(entry);
            }
        }
    }

    KnownFeature& m_known;
    const OrvFeatureWrapper& m_feature;
    const std::string& m_name;
    const std::string& m_prefix;
};

std::string keyOf(const std::string& module, const std::string& name) {
    return module + '/' + name;
}

/// Writes a value with the SDK operation of its alternative.
struct Setter {
    OrvFeatureWrapper& feature;

    OrvErrorType operator()(const std::string& value) const {
        return feature.SetValue(value.c_str());
    }
    template <typename T> OrvErrorType operator()(T value) const { return feature.SetValue(value); }
};

} // namespace

FeatureController::FeatureController(std::shared_ptr<OrvCameraWrapper> camera,
                                     std::string messagePrefix)
    : m_messagePrefix(std::move(messagePrefix)) {
    if (!camera) {
        return;
    }
    const auto add = [this](const char* name, const auto& answer, const char* failure) {
        const auto& [module, error] = answer;
        if (error != OrvErrorSuccess || !module) {
            logWarning(m_messagePrefix + failure, error);
        } else {
            m_modules.emplace_back(name, module);
        }
    };
    add("Transport Layer", camera->GetTransportLayer(), ": Unable to get Transport Layer features");
    add("Interface", camera->GetInterface(), ": Unable to get Interface features");
    add(localDeviceModule, camera->GetLocalDevice(), ": Unable to get Local Device features");
    m_modules.emplace_back(cameraModule, camera);
    addStreams(*camera);
}

void FeatureController::addStreams(const OrvCameraWrapper& camera) {
    std::vector<std::shared_ptr<OrvStreamWrapper>> streams;
    const OrvErrorType error = camera.GetStreams(streams);
    if (error != OrvErrorSuccess) {
        logWarning(m_messagePrefix + ": Unable to get Streams", error);
        return;
    }
    for (std::size_t i = 0; i < streams.size(); ++i) {
        m_modules.emplace_back("Stream" + std::to_string(i), streams[i]);
    }
}

std::vector<std::string> FeatureController::getModuleNames() const {
    std::vector<std::string> names;
    names.reserve(m_modules.size());
    for (const auto& [name, module] : m_modules) {
        names.push_back(name);
    }
    return names;
}

std::map<std::string, std::vector<std::string>>
FeatureController::getFeaturesByCategory(const std::string& module) const {
    std::map<std::string, std::vector<std::string>> categories;
    const auto container = getModuleOrWarn(module);
    if (!container) {
        return categories;
    }
    std::vector<std::shared_ptr<OrvFeatureWrapper>> features;
    const OrvErrorType listError = container->GetFeatures(features);
    if (listError != OrvErrorSuccess) {
        logWarning(message(": Cannot get features of module: '", module), listError);
        return categories;
    }
    for (const auto& feature : features) {
        std::string name;
        if (const OrvErrorType error = feature->GetName(name); error != OrvErrorSuccess) {
            logWarning(m_messagePrefix + ": Unable to get feature name.", error);
            continue;
        }
        const auto known = remember(module, name, feature);
        known->name = name;
        std::string category;
        if (const OrvErrorType error =
                readOnce(*known, known->category, &OrvFeatureWrapper::GetCategory, category);
            error != OrvErrorSuccess) {
            logWarning(message(": Unable to get Category of the feature '", name), error);
        }
        OrvFeatureVisibilityType visibility = OrvFeatureVisibilityUnknown;
        if (const OrvErrorType error =
                readOnce(*known, known->visibility, &OrvFeatureWrapper::GetVisibility, visibility);
            error != OrvErrorSuccess) {
            logWarning(message(": Unable to get Visibility of the feature '", name), error);
        }
        if (visibility != OrvFeatureVisibilityInvisible) {
            categories[category].push_back(std::move(name));
        }
    }
    return categories;
}

bool FeatureController::setFeatureValue(const std::string& module, const std::string& feature,
                                        const FeatureValue& value) {
    const auto container = getModuleOrWarn(module);
    if (!container) {
        return false;
    }
    std::shared_ptr<KnownFeature> found;
    if (const OrvErrorType error = findFeature(module, *container, feature, found);
        error != OrvErrorSuccess) {
        logWarning(message(noFeature, feature), error);
        return false;
    }
    const OrvErrorType error = std::visit(Setter{*found->feature}, value);
    if (error != OrvErrorSuccess) {
        logWarning(message(": Cannot set feature '", feature) + " to value: " + toText(value),
                   error);
    }
    return error == OrvErrorSuccess;
}

FeatureValue FeatureController::getFeatureValue(const std::string& module,
                                                const std::string& feature) const {
    return readFeatureValue(module, feature).value_or(FeatureValue());
}

std::optional<FeatureValue> FeatureController::readFeatureValue(const std::string& module,
                                                                const std::string& feature) const {
    const auto container = getModuleOrWarn(module);
    if (!container) {
        return std::nullopt;
    }
    FeatureValue value;
    std::shared_ptr<KnownFeature> found;
    OrvFeatureDataType type = OrvFeatureDataUnknown;
    OrvErrorType error = findFeature(module, *container, feature, found);
    if (error == OrvErrorSuccess) {
        error = readDataType(*found, type);
    }
    if (error == OrvErrorSuccess) {
        error = readValue(*found->feature, type, value);
    }
    if (error != OrvErrorSuccess) {
        logWarning(message(": Cannot get feature value: '", feature), error);
        return std::nullopt;
    }
    return type == OrvFeatureDataCommand ? FeatureValue{true} : value;
}

FeatureInfo FeatureController::getFeatureInfo(const std::string& module,
                                              const std::string& feature) const {
    const auto found = findFeatureOrWarn(module, feature);
    return found ? InfoReader(*found, feature, m_messagePrefix).read() : FeatureInfo();
}

FeatureInfo FeatureController::getFeatureOutline(const std::string& module,
                                                 const std::string& feature) const {
    const auto found = findFeatureOrWarn(module, feature);
    return found ? InfoReader(*found, feature, m_messagePrefix).readOutline() : FeatureInfo();
}

bool FeatureController::hasFeature(const std::string& module, const std::string& feature) const {
    const auto container = getModule(module);
    std::shared_ptr<KnownFeature> found;
    return container && findFeature(module, *container, feature, found) == OrvErrorSuccess;
}

bool FeatureController::runCommand(const std::string& module, const std::string& feature,
                                   double timeoutMs) {
    const auto container = getModuleOrWarn(module);
    if (!container) {
        return false;
    }
    std::shared_ptr<KnownFeature> found;
    if (const OrvErrorType error = findFeature(module, *container, feature, found);
        error != OrvErrorSuccess) {
        logWarning(message(": Cannot get feature '", feature), error);
        return false;
    }
    if (const OrvErrorType error = found->feature->RunCommand(); error != OrvErrorSuccess) {
        logWarning(message(": Error while executing '", feature), error);
        return false;
    }
    return waitUntilDone(*found->feature, feature, timeoutMs);
}

bool FeatureController::waitUntilDone(const OrvFeatureWrapper& command, const std::string& name,
                                      double timeoutMs) const {
    using std::chrono::steady_clock;
    const auto start = steady_clock::now();
    while (true) {
        bool done = false;
        // A command that cannot be asked was started all the same.
        if (command.IsCommandDone(done) != OrvErrorSuccess) {
            return true;
        }
        const auto elapsed =
            std::chrono::duration_cast<std::chrono::milliseconds>(steady_clock::now() - start)
                .count();
        // Time first: what is done only after the limit has timed out.
        if (static_cast<double>(elapsed) > timeoutMs) {
            logInfo("Timeout while executing '" + name +
                    "', duration(ms) = " + std::to_string(elapsed));
            return false;
        }
        if (done) {
            return true;
        }
    }
}

std::shared_ptr<OrvFeatureContainerWrapper>
FeatureController::getModule(const std::string& name) const {
    for (const auto& [moduleName, module] : m_modules) {
        if (moduleName == name) {
            return module;
        }
    }
    return {};
}

std::shared_ptr<OrvFeatureContainerWrapper>
FeatureController::getModuleOrWarn(const std::string& name) const {
    auto module = getModule(name);
    if (!module) {
        logWarning(message(noModule, name));
    }
    return module;
}

/// A feature whose camera has gone stays known; its own operations then answer the error.
OrvErrorType FeatureController::findFeature(const std::string& module,
                                            const OrvFeatureContainerWrapper& container,
                                            const std::string& name,
                                            std::shared_ptr<KnownFeature>& found) const {
    if (const auto known = m_features.find(keyOf(module, name)); known != m_features.end()) {
        found = known->second;
        return OrvErrorSuccess;
    }
    auto feature = std::make_shared<OrvFeatureWrapper>();
    const OrvErrorType error = container.GetFeatureByName(name.c_str(), feature);
    if (error == OrvErrorSuccess) {
        found = remember(module, name, std::move(feature));
    }
    return error;
}

/// A feature that is known already stays what it is.
std::shared_ptr<KnownFeature> FeatureController::findFeatureOrWarn(const std::string& module,
                                                                   const std::string& name) const {
    std::shared_ptr<KnownFeature> found;
    const auto container = getModuleOrWarn(module);
    if (!container) {
        return found;
    }
    if (const OrvErrorType error = findFeature(module, *container, name, found);
        error != OrvErrorSuccess) {
        logWarning(message(noFeature, name), error);
        return {};
    }
    return found;
}

std::shared_ptr<KnownFeature>
FeatureController::remember(const std::string& module, const std::string& name,
                            std::shared_ptr<OrvFeatureWrapper> feature) const {
    std::shared_ptr<KnownFeature>& known = m_features[keyOf(module, name)];
    if (!known) {
        known = std::make_shared<KnownFeature>();
        known->feature = std::move(feature);
    }
    return known;
}

std::string FeatureController::message(const char* text, const std::string& name) const {
    return m_messagePrefix + text + name + "'";
}
