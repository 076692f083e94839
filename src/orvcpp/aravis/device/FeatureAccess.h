// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/aravis/device/DeviceConnection.h"
#include "orvcpp/aravis/device/FeatureDescription.h"
#include "orvcpp/core/FeatureModule.h"
#include "orvcpp/core/ProviderCalls.h"

#include "OrvCPP/Feature.h"

#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace orv::aravis {

/// Hands out the features of an opened camera and keeps their observers. Thread-safe.
class FeatureAccess : public std::enable_shared_from_this<FeatureAccess> {
public:
    FeatureAccess(std::shared_ptr<ProviderCalls> calls, std::shared_ptr<DeviceConnection> device);

    /// Adds features that are made by this host, behind those of the camera. Once, before any
    /// other call.
    void add(std::shared_ptr<FeatureModule> made);

    OrvErrorType getFeatureByName(const char* name, std::shared_ptr<OrvCPP::Feature>& feature);
    OrvErrorType getFeatures(std::shared_ptr<OrvCPP::Feature>* features, std::uint32_t& count);
    OrvErrorType getFeatures(const std::vector<std::string>& names,
                             std::shared_ptr<OrvCPP::Feature>* features, std::uint32_t& count);

    /// Counts a call; the error that it has to answer, if any.
    OrvErrorType enter(bool writing) const;
    DeviceConnection& device() const { return *m_device; }

    OrvErrorType registerObserver(const std::string& feature,
                                  const std::shared_ptr<OrvCPP::IFeatureObserver>& observer);
    OrvErrorType unregisterObserver(const std::string& feature,
                                    const std::shared_ptr<OrvCPP::IFeatureObserver>& observer);
    /// After a write to the feature \p written. Calls every observer: writing one feature may
    /// change any other. An error when a limit made of the packet delay cannot be kept.
    OrvErrorType noteWrite(const std::string& written);
    /// Calls every observer.
    void tellObservers();
    void forgetObservers();

private:
    using Description = std::shared_ptr<const FeatureDescription>;
    using Observer = std::pair<std::string, std::shared_ptr<OrvCPP::IFeatureObserver>>;

    std::shared_ptr<OrvCPP::Feature> featureOf(const Description& description);
    void tellOwnObservers();

    const std::shared_ptr<ProviderCalls> m_calls;
    const std::shared_ptr<DeviceConnection> m_device;
    /// Null for a camera without such features.
    std::shared_ptr<FeatureModule> m_made;
    std::mutex m_mutex;
    /// Guarded by the mutex.
    std::vector<Observer> m_observers;
};

} // namespace orv::aravis
