// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/core/Device.h"
#include "orvcpp/core/FeatureSet.h"
#include "orvcpp/core/ProviderCalls.h"

#include "OrvCPP/Feature.h"

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace orv {

/// The features of one module as its SDK objects reach them. Thread-safe.
class FeatureModule : public std::enable_shared_from_this<FeatureModule> {
public:
    FeatureModule(std::shared_ptr<ProviderCalls> calls, std::shared_ptr<Device> device,
                  FeatureSet features);

    /// \p written is called after every change by a write, without a lock. Set it before the module
    /// is used.
    void whenWritten(std::function<void()> written) { m_written = std::move(written); }

    /// Begins a call that concerns no feature.
    OrvErrorType enter() { return m_calls->enter(); }

    OrvErrorType getFeatureByName(const char* name, std::shared_ptr<OrvCPP::Feature>& feature);
    OrvErrorType getFeatures(std::shared_ptr<OrvCPP::Feature>* features, std::uint32_t& count);
    /// Appends all of them; they are there also while calls fail.
    void appendFeatures(std::vector<std::shared_ptr<OrvCPP::Feature>>& features);
    /// The features with these names, without those that the module does not have.
    OrvErrorType getFeatures(const std::vector<std::string>& names,
                             std::shared_ptr<OrvCPP::Feature>* features, std::uint32_t& count);

    /// One call that changes nothing: \p ask answers a result code.
    template <typename Ask> OrvErrorType read(const Ask& ask) { return guarded(false, ask); }
    /// One call that changes a value; calls the observers afterwards, without a lock.
    template <typename Change> OrvErrorType write(const FeatureNode& node, const Change& change) {
        const OrvErrorType error = guarded(true, [&] {
            const OrvErrorType result = change();
            if (result == OrvErrorSuccess)
                m_device->changed();
            return result;
        });
        if (error == OrvErrorSuccess)
            tellObservers(&node);
        if (error == OrvErrorSuccess && m_written)
            m_written();
        return error;
    }

    /// Whether the feature can be written now, also by the access mode of its device.
    OrvErrorType isWritable(const FeatureNode& node, bool& writable) {
        return guarded(false, [&] {
            writable = node.isWritable() && m_device->admits(true) == OrvErrorSuccess;
            return OrvErrorType{OrvErrorSuccess};
        });
    }

    OrvErrorType registerObserver(const FeatureNode& node,
                                  const std::shared_ptr<OrvCPP::IFeatureObserver>& observer);
    OrvErrorType unregisterObserver(const FeatureNode& node,
                                    const std::shared_ptr<OrvCPP::IFeatureObserver>& observer);
    /// Tells the observers of \p written and of every feature that depends on others.
    void tellObservers(const FeatureNode* written);
    void forgetObservers();

private:
    using Observers = std::vector<std::shared_ptr<OrvCPP::IFeatureObserver>>;

    template <typename Call> OrvErrorType guarded(bool writing, const Call& call) {
        if (const OrvErrorType error = m_calls->enter(); error != OrvErrorSuccess)
            return error;
        bool settled = false;
        const OrvErrorType error = [&]() -> OrvErrorType {
            const std::lock_guard lock(m_device->mutex());
            if (const OrvErrorType refused = m_device->admits(writing); refused != OrvErrorSuccess)
                return refused;
            settled = settleCommands();
            return call();
        }();
        if (settled)
            tellObservers(nullptr);
        return error;
    }
    /// Completes the commands that are due; true if there was one.
    bool settleCommands();
    std::shared_ptr<OrvCPP::Feature> featureOf(FeatureNode& node);

    const std::shared_ptr<ProviderCalls> m_calls;
    const std::shared_ptr<Device> m_device;
    FeatureSet m_features;
    std::function<void()> m_written;
    std::vector<FeatureNode*> m_commands;
    /// Guarded by the device's mutex, as the features are.
    std::map<const FeatureNode*, Observers> m_observers;
};

} // namespace orv
