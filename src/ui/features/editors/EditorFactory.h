// SPDX-License-Identifier: BSD-3-Clause
#pragma once

class DelegateWidget;
class QWidget;
struct FeatureInfo;

/// Which editor a feature has. Bound to the GUI thread.
namespace EditorFactory {

/// Whether a feature of that kind can be edited.
bool canEdit(const FeatureInfo& info);
/// An editor that shows the feature's value, owned by \p parent; null for a feature that cannot be
/// edited.
DelegateWidget* make(const FeatureInfo& info, QWidget* parent);

} // namespace EditorFactory
