// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/OrvTypes.h"
#include "features/FeatureValue.h"
#include "sdk/WrapperDeclarations.h"

#include <memory>
#include <string>
#include <vector>

class OrvFeatureWrapper;

namespace settings {

/// One feature of an open camera, as saving and restoring see it. A failed call is repeated, since
/// a busy camera may refuse one. Nothing throws or logs: errors are returned. Bound to the thread
/// of the camera.
class Setting {
public:
    explicit Setting(std::shared_ptr<OrvFeatureWrapper> feature);

    /// Reads what never changes. Its error makes the other operations meaningless.
    OrvErrorType describe();

    const std::string& name() const { return m_name; }
    OrvFeatureDataType type() const { return m_type; }
    /// Whether the camera counts it among the settings that are saved.
    bool isStreamable() const { return m_isStreamable; }
    /// Names of the features that it selects.
    const std::vector<std::string>& selected() const { return m_selected; }

    OrvErrorType isReadable(bool& readable) const;
    OrvErrorType isWritable(bool& writable) const;
    OrvErrorType read(FeatureValue& value) const;
    OrvErrorType write(const FeatureValue& value) const;
    /// Why the camera would not take the value now, for a person; empty when it may take it.
    std::string refusal(const FeatureValue& value) const;
    /// Whether two values are the same for the camera: floats within half of its step, or within
    /// the precision of a 32-bit float where it has none.
    bool isSame(const FeatureValue& saved, const FeatureValue& present) const;
    /// The values that it takes now, of an enumeration, a boolean or an integer. An error for other
    /// types, and OrvErrorResources for more than 4096 values.
    OrvErrorType values(std::vector<FeatureValue>& values) const;

private:
    OrvErrorType entries(std::vector<FeatureValue>& values) const;
    OrvErrorType integers(std::vector<FeatureValue>& values) const;

    std::shared_ptr<OrvFeatureWrapper> m_feature;
    std::string m_name;
    OrvFeatureDataType m_type = OrvFeatureDataUnknown;
    bool m_isStreamable = false;
    std::vector<std::string> m_selected;
};

} // namespace settings
