// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "features/FeatureInfo.h"
#include "features/FeatureValue.h"
#include "sdk/WrapperDeclarations.h"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

struct KnownFeature;

/// Names of modules that every camera has; a GigE camera's stream driver is in the first stream.
inline constexpr char cameraModule[] = "Camera";
inline constexpr char interfaceModule[] = "Interface";
inline constexpr char localDeviceModule[] = "Local Device";
inline constexpr char firstStreamModule[] = "Stream0";

/// Access by name to the features of all modules of one opened camera: "Transport Layer",
/// "Interface", "Local Device", "Camera", and "Stream0", "Stream1" and so on. Every failure is
/// logged and answered by an empty or false result; nothing throws. Bound to the GUI thread.
///
/// What never changes while a camera is open (a feature's texts, visibility, data type and the
/// names of its entries) is read from the camera once; a failed read is repeated next time.
///
/// Owned through a shared pointer made with the class itself, so its destructor is not virtual.
class FeatureController {
public:
    /// Category to the names of its features.
    using Categories = std::map<std::string, std::vector<std::string>>;

    /// \p messagePrefix identifies the camera and begins every message.
    FeatureController(std::shared_ptr<OrvCameraWrapper> camera, std::string messagePrefix);

    FeatureController(const FeatureController&) = delete;
    FeatureController& operator=(const FeatureController&) = delete;

    virtual std::vector<std::string> getModuleNames() const;
    /// In the module's order, without the invisible ones.
    virtual Categories getFeaturesByCategory(const std::string& module) const;
    /// Enumerations are set by the name of an entry.
    virtual bool setFeatureValue(const std::string& module, const std::string& feature,
                                 const FeatureValue& value);
    /// The value in the alternative of the feature's data type; true for a command, the integer 0
    /// for a feature without a value and on a failure.
    virtual FeatureValue getFeatureValue(const std::string& module,
                                         const std::string& feature) const;
    virtual FeatureInfo getFeatureInfo(const std::string& module, const std::string& feature) const;
    virtual bool hasFeature(const std::string& module, const std::string& feature) const;
    /// Runs a command and polls until it is done; false when it could not be started or took
    /// longer than \p timeoutMs. Blocks for as long.
    virtual bool runCommand(const std::string& module, const std::string& feature,
                            double timeoutMs);
    /// Reads only the display name and whether the feature is writable: far fewer SDK calls than
    /// getFeatureInfo().
    virtual FeatureInfo getFeatureOutline(const std::string& module,
                                          const std::string& feature) const;
    /// Like getFeatureValue, but nothing on a failure.
    std::optional<FeatureValue> readFeatureValue(const std::string& module,
                                                 const std::string& feature) const;

    /// The module of that name; empty when the camera has none.
    std::shared_ptr<OrvFeatureContainerWrapper> getModule(const std::string& name) const;
    /// Begins every message.
    const std::string& messagePrefix() const { return m_messagePrefix; }
    void setMessagePrefix(std::string prefix) { m_messagePrefix = std::move(prefix); }

private:
    /// Leaves out a feature that is invisible or whose name cannot be read.
    void addToCategory(const std::string& module, const std::shared_ptr<OrvFeatureWrapper>& feature,
                       Categories& categories) const;
    void addStreams(const OrvCameraWrapper& camera);
    std::shared_ptr<OrvFeatureContainerWrapper> getModuleOrWarn(const std::string& name) const;
    OrvErrorType findFeature(const std::string& module, const OrvFeatureContainerWrapper& container,
                             const std::string& name, std::shared_ptr<KnownFeature>& found) const;
    /// Logs \p warning with the name and the code when the module has no such feature.
    std::shared_ptr<KnownFeature> findFeatureOrWarn(const std::string& module,
                                                    const std::string& name,
                                                    const char* warning) const;
    std::shared_ptr<KnownFeature> remember(const std::string& module, const std::string& name,
                                           std::shared_ptr<OrvFeatureWrapper> feature) const;
    bool waitUntilDone(const OrvFeatureWrapper& command, const std::string& name,
                       double timeoutMs) const;
    std::string message(const char* text, const std::string& name) const;

    std::vector<std::pair<std::string, std::shared_ptr<OrvFeatureContainerWrapper>>> m_modules;
    std::string m_messagePrefix;
    /// Features that were looked up or listed, by module and name.
    mutable std::map<std::string, std::shared_ptr<KnownFeature>> m_features;
};
