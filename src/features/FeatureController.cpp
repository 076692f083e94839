// SPDX-License-Identifier: BSD-3-Clause
#include "features/FeatureController.h"

#include "features/FeatureInfoReader.h"
#include "logging/Log.h"
#include "sdk/OrvCameraWrapper.h"
#include "sdk/OrvInterfaceWrapper.h"
#include "sdk/OrvLocalDeviceWrapper.h"
#include "sdk/OrvStreamWrapper.h"
#include "sdk/OrvTransportLayerWrapper.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <variant>

namespace {

constexpr const char* noModule = ": Cannot get module: '";
constexpr const char* noFeature = ": Cannot get feature: '";
constexpr const char* noValue = ": Cannot get feature value: '";

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
    if (!camera)
        return;
    const auto add = [this](const char* name, const auto& answer, const char* failure) {
        const auto& [module, error] = answer;
        if (error != OrvErrorSuccess || !module)
            logWarning(m_messagePrefix + failure, error);
        else
            m_modules.emplace_back(name, module);
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
    for (std::size_t i = 0; i < streams.size(); ++i)
        m_modules.emplace_back("Stream" + std::to_string(i), streams[i]);
}

std::vector<std::string> FeatureController::getModuleNames() const {
    std::vector<std::string> names;
    names.reserve(m_modules.size());
    for (const auto& [name, module] : m_modules)
        names.push_back(name);
    return names;
}

FeatureController::Categories
FeatureController::getFeaturesByCategory(const std::string& module) const {
    Categories categories;
    const auto container = getModuleOrWarn(module);
    if (!container)
        return categories;
    std::vector<std::shared_ptr<OrvFeatureWrapper>> features;
    const OrvErrorType listError = container->GetFeatures(features);
    if (listError != OrvErrorSuccess) {
        logWarning(message(": Cannot get features of module: '", module), listError);
        return categories;
    }
    for (const auto& feature : features)
        addToCategory(module, feature, categories);
    return categories;
}

void FeatureController::addToCategory(const std::string& module,
                                      const std::shared_ptr<OrvFeatureWrapper>& feature,
                                      Categories& categories) const {
    std::string name;
    OrvErrorType error = feature->GetName(name);
    if (error != OrvErrorSuccess) {
        logWarning(m_messagePrefix + ": Unable to get feature name.", error);
        return;
    }
    const auto known = remember(module, name, feature);
    known->name = name;
    std::string category;
    error = known->readOnce(known->category, &OrvFeatureWrapper::GetCategory, category);
    if (error != OrvErrorSuccess)
        logWarning(message(": Unable to get Category of the feature '", name), error);
    OrvFeatureVisibilityType visibility = OrvFeatureVisibilityUnknown;
    error = known->readOnce(known->visibility, &OrvFeatureWrapper::GetVisibility, visibility);
    if (error != OrvErrorSuccess)
        logWarning(message(": Unable to get Visibility of the feature '", name), error);
    if (visibility != OrvFeatureVisibilityInvisible)
        categories[category].push_back(std::move(name));
}

bool FeatureController::setFeatureValue(const std::string& module, const std::string& feature,
                                        const FeatureValue& value) {
    const auto found = findFeatureOrWarn(module, feature, noFeature);
    if (!found)
        return false;
    const OrvErrorType error = std::visit(Setter{*found->feature}, value);
    if (error != OrvErrorSuccess)
        logWarning(message(": Cannot set feature '", feature) + " to value: " + toText(value),
                   error);
    return error == OrvErrorSuccess;
}

FeatureValue FeatureController::getFeatureValue(const std::string& module,
                                                const std::string& feature) const {
    return readFeatureValue(module, feature).value_or(FeatureValue());
}

std::optional<FeatureValue> FeatureController::readFeatureValue(const std::string& module,
                                                                const std::string& feature) const {
    const auto found = findFeatureOrWarn(module, feature, noValue);
    if (!found)
        return std::nullopt;
    FeatureValue value;
    OrvFeatureDataType type = OrvFeatureDataUnknown;
    OrvErrorType error = found->readOnce(found->dataType, &OrvFeatureWrapper::GetDataType, type);
    if (error == OrvErrorSuccess)
        error = found->readValue(type, value);
    if (error != OrvErrorSuccess) {
        logWarning(message(noValue, feature), error);
        return std::nullopt;
    }
    return type == OrvFeatureDataCommand ? FeatureValue{true} : value;
}

FeatureInfo FeatureController::getFeatureInfo(const std::string& module,
                                              const std::string& feature) const {
    const auto found = findFeatureOrWarn(module, feature, noFeature);
    return found ? FeatureInfoReader(*found, feature, m_messagePrefix).read() : FeatureInfo();
}

FeatureInfo FeatureController::getFeatureOutline(const std::string& module,
                                                 const std::string& feature) const {
    const auto found = findFeatureOrWarn(module, feature, noFeature);
    return found ? FeatureInfoReader(*found, feature, m_messagePrefix).readOutline()
                 : FeatureInfo();
}

bool FeatureController::hasFeature(const std::string& module, const std::string& feature) const {
    const auto container = getModule(module);
    std::shared_ptr<KnownFeature> found;
    return container && findFeature(module, *container, feature, found) == OrvErrorSuccess;
}

bool FeatureController::runCommand(const std::string& module, const std::string& feature,
                                   double timeoutMs) {
    const auto found = findFeatureOrWarn(module, feature, ": Cannot get feature '");
    if (!found)
        return false;
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
        // A failed query is not a failed command.
        if (command.IsCommandDone(done) != OrvErrorSuccess)
            return true;
        const auto elapsed =
            std::chrono::duration_cast<std::chrono::milliseconds>(steady_clock::now() - start)
                .count();
        // Before \c done: a command that takes longer than the limit has timed out, done or not.
        if (static_cast<double>(elapsed) > timeoutMs) {
            logInfo("Timeout while executing '" + name +
                    "', duration(ms) = " + std::to_string(elapsed));
            return false;
        }
        if (done)
            return true;
    }
}

std::shared_ptr<OrvFeatureContainerWrapper>
FeatureController::getModule(const std::string& name) const {
    for (const auto& [moduleName, module] : m_modules) {
        if (moduleName == name)
            return module;
    }
    return {};
}

std::shared_ptr<OrvFeatureContainerWrapper>
FeatureController::getModuleOrWarn(const std::string& name) const {
    auto module = getModule(name);
    if (!module)
        logWarning(message(noModule, name));
    return module;
}

/// A known feature of a vanished camera is still found; its operations then return the error.
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
    if (error == OrvErrorSuccess)
        found = remember(module, name, std::move(feature));
    return error;
}

std::shared_ptr<KnownFeature> FeatureController::findFeatureOrWarn(const std::string& module,
                                                                   const std::string& name,
                                                                   const char* warning) const {
    std::shared_ptr<KnownFeature> found;
    const auto container = getModuleOrWarn(module);
    if (!container)
        return found;
    const OrvErrorType error = findFeature(module, *container, name, found);
    if (error != OrvErrorSuccess)
        logWarning(message(warning, name), error);
    return found;
}

/// Keeps the object of a feature that is known already.
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
