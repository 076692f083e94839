// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/core/ArrayOutput.h"
#include "orvcpp/core/FeatureModule.h"

#include <memory>
#include <string>
#include <utility>

namespace orv {

/// Base of the SDK objects whose features are in this host's memory.
template <typename Base> class MemoryContainer : public Base {
public:
    OrvErrorType GetFeatureByName(const char* name,
                                  std::shared_ptr<OrvCPP::Feature>& feature) const final {
        return m_module->getFeatureByName(name, feature);
    }
    OrvErrorType GetFeatures(std::shared_ptr<OrvCPP::Feature>* features,
                             std::uint32_t& count) const final {
        return m_module->getFeatures(features, count);
    }

protected:
    explicit MemoryContainer(std::shared_ptr<FeatureModule> module) : m_module(std::move(module)) {}

    FeatureModule& module() const { return *m_module; }
    /// Counts a call; the error that it has to answer, if any.
    OrvErrorType enter() const { return m_module->enter(); }

    OrvErrorType answerText(const std::string& text, char* buffer, std::uint32_t& length) const {
        const OrvErrorType error = enter();
        return error != OrvErrorSuccess ? error : writeArray(text, buffer, length);
    }
    template <typename T, typename Given> OrvErrorType answer(T& result, const Given& given) const {
        const OrvErrorType error = enter();
        if (error == OrvErrorSuccess)
            result = given;
        return error;
    }
    /// Locks \p kept; OrvErrorNotFound when the object is gone.
    template <typename T>
    OrvErrorType answerKept(std::shared_ptr<T>& result, const std::weak_ptr<T>& kept) const {
        if (const OrvErrorType error = enter(); error != OrvErrorSuccess)
            return error;
        result = kept.lock();
        return result ? OrvErrorSuccess : OrvErrorNotFound;
    }

private:
    const std::shared_ptr<FeatureModule> m_module;
};

} // namespace orv
