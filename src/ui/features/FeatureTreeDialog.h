// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class FeatureTreeDialog;
}
class FeatureController;
class FeatureItemDelegate;
class FeatureTreeModel;
class FeatureTreeProxyModel;

/// Shows the features of a camera, at first those that matter for bandwidth, and lets the user edit
/// them.
///
/// Visible values are read again when the window is activated, and a feature before its editor
/// opens.
///
/// Shown non-modally; deletes itself when it is closed. It shares the controller and may outlive
/// the camera; writes then fail with a line in the log. Bound to the GUI thread.
class FeatureTreeDialog : public QDialog {
    Q_OBJECT

public:
    /// \p controller is the camera's. When it is empty, the tree is empty.
    explicit FeatureTreeDialog(std::shared_ptr<FeatureController> controller,
                               QWidget* parent = nullptr);
    ~FeatureTreeDialog() override;

    /// The controller that it was made with.
    const std::shared_ptr<FeatureController>& controller() const { return m_controller; }

signals:
    /// An open editor is to commit and close.
    void commitChanges();
    /// After commitChanges, when the user closes the dialog in whatever way.
    void closed();

public slots:
    /// Shows the features that matter for bandwidth, expanded, or the modules of all features.
    void onActivateProxyModel(bool active);
    /// Closes the dialog as its button does: the Escape key loses no edit.
    void reject() override;

protected:
    bool event(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void setUpTree();
    /// Enlarges the form's size for a large font, as far as the screen allows.
    void fitSize();
    void setUpEditing();

    std::unique_ptr<Ui::FeatureTreeDialog> m_form;
    std::shared_ptr<FeatureController> m_controller;
    FeatureTreeModel* m_model = nullptr;
    FeatureTreeProxyModel* m_proxy = nullptr;
    FeatureItemDelegate* m_delegate = nullptr;
    bool m_closing = false;
    /// Another window was in use since the values were outdated.
    bool m_wasLeft = false;
};
