// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QDialog>
#include <QPointer>

#include <memory>

namespace Ui {
class SupportDialog;
}
class QSettings;

/// The Get Started page: first steps, hints for the best performance, and where to read on.
///
/// Application-modal, yet to be opened with show(); deletes itself when it is closed. Bound to the
/// GUI thread.
class SupportDialog : public QDialog {
    Q_OBJECT

public:
    /// \p settings stores whether the page opens at start; not null, not owned. A dialog that
    /// outlives it stores nothing.
    explicit SupportDialog(QSettings* settings, QWidget* parent = nullptr);
    ~SupportDialog() override;

public slots:
    /// Stores at once whether the page opens at start.
    void onCheckboxClicked(bool status);

protected:
    void changeEvent(QEvent* event) override;

private:
    void loadPage();

    std::unique_ptr<Ui::SupportDialog> m_form;
    QPointer<QSettings> m_settings;
};
