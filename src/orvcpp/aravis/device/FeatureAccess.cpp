// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/device/FeatureAccess.h"

#include "orvcpp/aravis/device/GenicamFeature.h"
#include "orvcpp/core/ArrayOutput.h"
#include "orvcpp/core/ObserverList.h"

#include <algorithm>

namespace orv::aravis {

FeatureAccess::FeatureAccess(std::shared_ptr<ProviderCalls> calls,
                             std::shared_ptr<DeviceConnection> device)
    : m_calls(std::move(calls)), m_device(std::move(device)) {}

void FeatureAccess::add(std::shared_ptr<FeatureModule> made) {
    m_made = std::move(made);
    m_made->whenWritten([kept = weak_from_this()] {
        if (const auto access = kept.lock())
            access->tellOwnObservers();
    });
}

OrvErrorType FeatureAccess::enter(bool writing) const {
    const OrvErrorType error = m_calls->enter();
    return error != OrvErrorSuccess ? error : m_device->admits(writing);
}

std::shared_ptr<OrvCPP::Feature> FeatureAccess::featureOf(const Description& description) {
    return std::make_shared<GenicamFeature>(shared_from_this(), description);
}

OrvErrorType FeatureAccess::getFeatureByName(const char* name,
                                             std::shared_ptr<OrvCPP::Feature>& feature) {
    if (const OrvErrorType error = enter(false); error != OrvErrorSuccess)
        return error;
    if (!name)
        return OrvErrorBadParameter;
    const Description found = m_device->features()->find(name);
    if (!found)
        return m_made ? m_made->getFeatureByName(name, feature) : OrvErrorNotFound;
    feature = featureOf(found);
    return OrvErrorSuccess;
}

OrvErrorType FeatureAccess::getFeatures(std::shared_ptr<OrvCPP::Feature>* features,
                                        std::uint32_t& count) {
    if (const OrvErrorType error = enter(false); error != OrvErrorSuccess) {
        count = 0;
        return error;
    }
    std::vector<std::shared_ptr<OrvCPP::Feature>> found(m_device->features()->features().size());
    if (features)
        std::transform(m_device->features()->features().begin(),
                       m_device->features()->features().end(), found.begin(),
                       [this](const Description& feature) { return featureOf(feature); });
    if (m_made)
        m_made->appendFeatures(found);
    return writeArray(found, features, count);
}

OrvErrorType FeatureAccess::getFeatures(const std::vector<std::string>& names,
                                        std::shared_ptr<OrvCPP::Feature>* features,
                                        std::uint32_t& count) {
    if (const OrvErrorType error = enter(false); error != OrvErrorSuccess)
        return error;
    std::vector<std::shared_ptr<OrvCPP::Feature>> found;
    for (const std::string& name : names) {
        if (const Description feature = m_device->features()->find(name))
            found.push_back(featureOf(feature));
    }
    return writeArray(found, features, count);
}

OrvErrorType
FeatureAccess::registerObserver(const std::string& feature,
                                const std::shared_ptr<OrvCPP::IFeatureObserver>& observer) {
    if (const OrvErrorType error = enter(false); error != OrvErrorSuccess)
        return error;
    if (!observer)
        return OrvErrorBadParameter;
    const std::lock_guard lock(m_mutex);
    return addObserver(m_observers, Observer(feature, observer));
}

OrvErrorType
FeatureAccess::unregisterObserver(const std::string& feature,
                                  const std::shared_ptr<OrvCPP::IFeatureObserver>& observer) {
    if (const OrvErrorType error = enter(false); error != OrvErrorSuccess)
        return error;
    const std::lock_guard lock(m_mutex);
    return removeObserver(m_observers, Observer(feature, observer));
}

OrvErrorType FeatureAccess::noteWrite(const std::string& written) {
    OrvErrorType error = OrvErrorSuccess;
    if (const auto& limit = m_device->delayLimit()) {
        if (written == "GevSCPSPacketSize")
            error = m_device->call([limit](ArvDevice*) { return limit->followPacketSize(); });
        else if (written == "GevSCPD" || written == "UserSetLoad")
            m_device->call([limit](ArvDevice*) { return limit->noteDelay(); });
    }
    tellObservers();
    return error;
}

void FeatureAccess::tellObservers() {
    tellOwnObservers();
    if (m_made)
        m_made->tellObservers(nullptr);
}

void FeatureAccess::tellOwnObservers() {
    std::vector<Observer> told;
    {
        const std::lock_guard lock(m_mutex);
        told = m_observers;
    }
    for (const auto& [name, observer] : told) {
        if (const Description feature = m_device->features()->find(name))
            observer->FeatureChanged(featureOf(feature));
    }
}

void FeatureAccess::forgetObservers() {
    // Destroyed without the lock: an observer may hold features, whose destructors run then.
    std::vector<Observer> forgotten;
    const std::lock_guard lock(m_mutex);
    forgotten.swap(m_observers);
}

} // namespace orv::aravis
