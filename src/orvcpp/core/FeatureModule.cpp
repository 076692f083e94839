// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/core/FeatureModule.h"

#include "orvcpp/core/ArrayOutput.h"
#include "orvcpp/core/MemoryFeature.h"
#include "orvcpp/core/ObserverList.h"

#include <algorithm>
#include <utility>

namespace orv {

FeatureModule::FeatureModule(std::shared_ptr<ProviderCalls> calls, std::shared_ptr<Device> device,
                             FeatureSet features)
    : m_calls(std::move(calls)), m_device(std::move(device)), m_features(std::move(features)) {
    for (const auto& node : m_features.nodes()) {
        if (node->type() == OrvFeatureDataCommand)
            m_commands.push_back(node.get());
    }
}

OrvErrorType FeatureModule::getFeatureByName(const char* name,
                                             std::shared_ptr<OrvCPP::Feature>& feature) {
    return guarded(false, [&] {
        if (!name)
            return OrvErrorType{OrvErrorBadParameter};
        FeatureNode* node = m_features.find(name);
        if (!node)
            return OrvErrorType{OrvErrorNotFound};
        feature = featureOf(*node);
        return OrvErrorType{OrvErrorSuccess};
    });
}

OrvErrorType FeatureModule::getFeatures(std::shared_ptr<OrvCPP::Feature>* features,
                                        std::uint32_t& count) {
    const OrvErrorType error = guarded(false, [&] {
        std::vector<std::shared_ptr<OrvCPP::Feature>> found(m_features.nodes().size());
        if (features)
            std::transform(m_features.nodes().begin(), m_features.nodes().end(), found.begin(),
                           [this](const auto& node) { return featureOf(*node); });
        return writeArray(found, features, count);
    });
    if (error != OrvErrorSuccess && error != OrvErrorMoreData)
        count = 0;
    return error;
}

void FeatureModule::appendFeatures(std::vector<std::shared_ptr<OrvCPP::Feature>>& features) {
    for (const auto& node : m_features.nodes())
        features.push_back(featureOf(*node));
}

OrvErrorType FeatureModule::getFeatures(const std::vector<std::string>& names,
                                        std::shared_ptr<OrvCPP::Feature>* features,
                                        std::uint32_t& count) {
    return guarded(false, [&] {
        std::vector<std::shared_ptr<OrvCPP::Feature>> found;
        for (const std::string& name : names) {
            if (FeatureNode* node = m_features.find(name))
                found.push_back(featureOf(*node));
        }
        return writeArray(found, features, count);
    });
}

OrvErrorType
FeatureModule::registerObserver(const FeatureNode& node,
                                const std::shared_ptr<OrvCPP::IFeatureObserver>& observer) {
    return guarded(false, [&] {
        if (!observer)
            return OrvErrorType{OrvErrorBadParameter};
        return addObserver(m_observers[&node], observer);
    });
}

OrvErrorType
FeatureModule::unregisterObserver(const FeatureNode& node,
                                  const std::shared_ptr<OrvCPP::IFeatureObserver>& observer) {
    return guarded(false, [&] { return removeObserver(m_observers[&node], observer); });
}

void FeatureModule::tellObservers(const FeatureNode* written) {
    std::vector<std::pair<std::shared_ptr<OrvCPP::Feature>, Observers>> told;
    {
        const std::lock_guard lock(m_device->mutex());
        for (const auto& [node, observers] : m_observers) {
            if (!observers.empty() && (node == written || node->isDependent()))
                told.emplace_back(featureOf(*m_features.find(node->name())), observers);
        }
    }
    for (const auto& [feature, observers] : told) {
        for (const auto& observer : observers)
            observer->FeatureChanged(feature);
    }
}

void FeatureModule::forgetObservers() {
    // Destroyed without the lock: an observer may hold features, whose destructors run then.
    std::map<const FeatureNode*, Observers> forgotten;
    const std::lock_guard lock(m_device->mutex());
    forgotten.swap(m_observers);
}

bool FeatureModule::settleCommands() {
    const auto now = Clock::now();
    bool settled = false;
    for (FeatureNode* command : m_commands)
        settled = command->settle(now) || settled;
    if (settled)
        m_device->changed();
    return settled;
}

std::shared_ptr<OrvCPP::Feature> FeatureModule::featureOf(FeatureNode& node) {
    return std::make_shared<MemoryFeature>(shared_from_this(), node);
}

} // namespace orv
