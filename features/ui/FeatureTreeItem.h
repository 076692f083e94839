// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "features/FeatureInfo.h"
#include "tree/BasicTreeItem.h"

#include <QString>

#include <string>

/// A row of the feature tree: a module or a category, or a feature with its description. Bound to
/// the GUI thread.
class FeatureTreeItem : public BasicTreeItem {
public:
    enum class Loading {
        /// Only the name and the category of the feature are known.
        NotLoaded,
        /// The description was read, but what can change of it may have changed since.
        Outdated,
        Loaded,
    };

    /// A module or a category: nothing is left to be read.
    explicit FeatureTreeItem(const QString& text);
    /// A feature whose description is still to be read.
    FeatureTreeItem(std::string module, std::string category, std::string name);
    ~FeatureTreeItem() override;

    bool isFeature() const { return !m_module.empty(); }
    Loading loading() const { return m_loading; }
    /// Name of the module that the feature belongs to.
    const std::string& module() const { return m_module; }
    /// Empty for modules and categories; only name and category until it is loaded.
    const FeatureInfo& info() const { return m_info; }

    /// Takes over a description that was read, and shows it. What identifies the feature stays as
    /// the tree was built with, and the name on view as it was first read: rows are sorted by it.
    void setInfo(FeatureInfo info);
    /// Takes over a value that the camera accepted, and shows it.
    void setFeatureValue(const FeatureValue& value);
    /// Lets a description that was read be read again.
    void markOutdated();

private:
    std::string m_module;
    FeatureInfo m_info;
    Loading m_loading = Loading::Loaded;
};

/// The value by itself: integer, double, boolean or text.
QVariant toVariant(const FeatureValue& value);

/// What the value column shows of a feature: its value, as a text where its representation asks for
/// hexadecimal digits, an IPv4 or a MAC address. Invalid for a feature that cannot be read and for
/// a value that does not fit its representation.
QVariant valueOnView(const FeatureInfo& info);
