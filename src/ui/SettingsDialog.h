// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QDialog>
#include <QPointer>

#include <memory>

namespace Ui {
class SettingsDialog;
}
class QSettings;

/// Edits the safety margins of Auto Set, the automatic packet size and, on Ctrl+Shift+D, whether
/// debug messages are logged.
///
/// Shown non-modally; deletes itself when it is closed, and only then reports and stores what the
/// user chose. Bound to the GUI thread.
class SettingsDialog : public QDialog {
    Q_OBJECT

public:
    /// \p autoAdjustPacketSize: whether packet sizes are adjusted now; not kept in the store.
    /// \p settings is the store, not null, not owned. A dialog that outlives it stores nothing.
    SettingsDialog(bool autoAdjustPacketSize, QSettings* settings, QWidget* parent = nullptr);
    /// Emits the signals below; stores the settings if the dialog was accepted.
    ~SettingsDialog() override;

signals:
    /// The state of the check box, on accepting and on cancelling alike.
    void activateAutoAdjustPacketsize(bool state);
    /// The store holds what the user accepted.
    void settingsSaved();

public slots:
    void onResetValueGigEInterface();
    void onResetValueGigECamera();
    void onResetValueUSBInterface();
    void onResetValueUSBCamera();
    /// Shows the warnings of all margins below their defaults, of interfaces and of cameras, and
    /// hides the others.
    void onChangeSafetyCamera();

protected:
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void loadSettings();
    void applyPalette();
    /// Takes the size that shows all texts, at least \p least. What is higher than the screen
    /// scrolls.
    void fit(QSize least);
    void connectWidgets();
    void askForDebugMessages();
    void saveSettings();

    std::unique_ptr<Ui::SettingsDialog> m_form;
    QPointer<QSettings> m_settings;
    bool m_showDebugMessages = false;
};
