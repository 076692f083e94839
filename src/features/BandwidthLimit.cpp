// SPDX-License-Identifier: BSD-3-Clause
#include "features/BandwidthLimit.h"

#include "features/FeatureController.h"
#include "features/OptionalFeatures.h"
#include "logging/Log.h"

#include <QtGlobal>

#include <algorithm>
#include <utility>
#include <variant>

namespace {

/// The feature that switches a limit on, and the value that does it.
struct Switch {
    std::string name;
    FeatureValue on;
};

Switch switchOf(const std::string& limit) {
    if (limit == BandwidthLimit::names.front())
        return {"DeviceLinkThroughputLimitMode", std::string("On")};
    return {"StreamFrameRateConstrain", true};
}

/// A value that is neither text nor boolean was not read, and counts as on.
bool isOffValue(const FeatureValue& value) {
    if (const auto* text = std::get_if<std::string>(&value))
        return *text != "On";
    const auto* flag = std::get_if<bool>(&value);
    return flag && !*flag;
}

} // namespace

bool BandwidthLimit::hasPart(const std::string& feature) {
    return std::any_of(names.begin(), names.end(), [&feature](const char* limit) {
        return feature == limit || feature == switchOf(limit).name;
    });
}

BandwidthLimit::BandwidthLimit(std::shared_ptr<FeatureController> features)
    : m_features(std::move(features)) {}

bool BandwidthLimit::find() {
    m_name.clear();
    for (const char* const tried : names) {
        if (m_features->hasFeature(cameraModule, tried)) {
            m_name = tried;
            break;
        }
    }
    return !m_name.empty();
}

void BandwidthLimit::switchOn() {
    if (!hasSwitch())
        return;
    const auto [name, on] = switchOf(m_name);
    if (m_features->setFeatureValue(cameraModule, name, on))
        logInfo(m_features->messagePrefix() + ": feature '" + name + "' set to '" + toText(on) +
                "'.");
    else
        qWarning("Cannot set feature '%s' to 'On'.", name.c_str());
}

bool BandwidthLimit::hasSwitch() const {
    return m_features->hasFeature(cameraModule, switchOf(m_name).name);
}

std::optional<FeatureValue> BandwidthLimit::readSwitch() const {
    return readIfPresent(*m_features, cameraModule, switchOf(m_name).name.c_str());
}

bool BandwidthLimit::writeSwitch(const FeatureValue& value) {
    return m_features->setFeatureValue(cameraModule, switchOf(m_name).name, value);
}

bool BandwidthLimit::isOff() const {
    return hasSwitch() &&
           isOffValue(m_features->getFeatureValue(cameraModule, switchOf(m_name).name));
}

void BandwidthLimit::warnWhenOff(bool isWritable) const {
    if (!isOff())
        return;
    const std::string name = switchOf(m_name).name;
    logWarning(isWritable ? "Please enable the Camera-feature '" + name +
                                "' to be able to change the bandwidth settings."
                          : m_features->messagePrefix() + ": Feature '" + name +
                                "' set to Off, which deactivates the feature '" + m_name + "'.");
}

FeatureInfo BandwidthLimit::read() {
    FeatureInfo info = m_features->getFeatureInfo(cameraModule, m_name);
    m_steps = StepGrid(integerOf(info.minimum).value_or(0), integerOf(info.maximum).value_or(0),
                       integerOf(info.increment).value_or(0));
    return info;
}

std::int64_t BandwidthLimit::value() const {
    return integerOf(m_features->getFeatureValue(cameraModule, m_name)).value_or(0);
}

std::optional<std::int64_t> BandwidthLimit::readValue() const {
    const auto value = m_features->readFeatureValue(cameraModule, m_name);
    return value ? integerOf(*value) : std::nullopt;
}

std::optional<std::int64_t> BandwidthLimit::write(std::int64_t value, std::int64_t atMost) {
    const bool isInRange = value >= m_steps.minimum() && value <= m_steps.maximum();
    const bool isStep = !isInRange || m_steps.atOrBelow(value) == value;
    if ((isStep || !m_takesStepsOnly) && set(value))
        return value;
    const std::int64_t step = m_steps.atOrBelow(atMost);
    if (isStep || !set(step))
        return std::nullopt;
    m_takesStepsOnly = true;
    return step;
}

bool BandwidthLimit::set(std::int64_t value) {
    return m_features->setFeatureValue(cameraModule, m_name, value);
}
