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
    /// What is known of a feature beyond what the tree was built with.
    enum class Known {
        /// Nothing that would still be right: it was never read, or has become outdated.
        Nothing,
        /// The name on view, and whether the feature is writable.
        Outline,
        Everything,
    };

    /// A module or a category: nothing is left to be read.
    explicit FeatureTreeItem(const QString& text);
    /// A feature whose description is still to be read.
    FeatureTreeItem(std::string module, std::string category, std::string name);
    ~FeatureTreeItem() override;

    bool isFeature() const { return !m_module.empty(); }
    Known known() const { return m_known; }
    /// Name of the module that the feature belongs to.
    const std::string& module() const { return m_module; }
    /// What was last read, outdated or not; of a feature that was not, the name and the category.
    /// Empty for modules and categories.
    const FeatureInfo& info() const { return m_info; }

    /// Takes over the name on view and whether the feature is writable.
    void setOutline(const FeatureInfo& outline);
    /// Takes over a description, and shows its value. What identifies the feature stays as the tree
    /// was built with, and the name on view as it was first read: rows are sorted by it.
    void setInfo(FeatureInfo info);
    /// Takes over a value that the camera accepted, and shows it.
    void setFeatureValue(const FeatureValue& value);
    /// Has everything but the name on view read again.
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
