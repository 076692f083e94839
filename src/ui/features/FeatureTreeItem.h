// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "features/FeatureInfo.h"
#include "ui/tree/BasicTreeItem.h"

#include <QString>

#include <string>

/// A row of the feature tree: a module or a category, or a feature with its description. Bound to
/// the GUI thread.
class FeatureTreeItem : public BasicTreeItem {
public:
    /// What was read of a feature since the tree was built.
    enum class Known {
        /// Nothing, or it is outdated.
        Nothing,
        /// The display name, and whether the feature is writable.
        Outline,
        Everything,
    };

    /// A module or a category.
    explicit FeatureTreeItem(const QString& text);
    /// A feature whose description is still to be read.
    FeatureTreeItem(std::string module, std::string category, std::string name);
    ~FeatureTreeItem() override;

    bool isFeature() const { return !m_module.empty(); }
    Known known() const { return m_known; }
    /// Name of the module that the feature belongs to.
    const std::string& module() const { return m_module; }
    /// What was last read, outdated or not; before the first reading, name and category only. Empty
    /// for modules and categories.
    const FeatureInfo& info() const { return m_info; }

    /// Sets the display name and whether the feature is writable.
    void setOutline(const FeatureInfo& outline);
    /// Sets the description and shows its value. Name and category stay as the tree was built with,
    /// and the display name as it was first read: rows are sorted by it.
    void setInfo(FeatureInfo info);
    /// Sets a value that the camera accepted, and shows it.
    void setFeatureValue(const FeatureValue& value);
    /// Marks all but the display name to be read again.
    void markOutdated();

private:
    void setDisplayName(const std::string& displayName);

    std::string m_module;
    FeatureInfo m_info;
    Known m_known = Known::Everything;
};

/// The value by itself: integer, double, boolean or text.
QVariant toVariant(const FeatureValue& value);

/// What the value column shows of a feature: its value, as a text where its representation asks for
/// hexadecimal digits, an IPv4 or a MAC address. Invalid for a feature that cannot be read and for
/// a value that does not fit its representation.
QVariant valueOnView(const FeatureInfo& info);
