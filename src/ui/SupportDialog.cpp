// SPDX-License-Identifier: BSD-3-Clause
#include "ui/SupportDialog.h"

#include "ui/SettingsKeys.h"
#include "ui/Theme.h"
#include "ui_SupportDialog.h"

#include <QEvent>
#include <QFile>
#include <QScreen>
#include <QStyle>

SupportDialog::SupportDialog(QSettings* settings, QWidget* parent)
    : QDialog(parent), m_form(std::make_unique<Ui::SupportDialog>()), m_settings(settings) {
    setAttribute(Qt::WA_DeleteOnClose);
    m_form->setupUi(this);
    setWindowModality(Qt::ApplicationModal);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    const int most =
        screen()->availableSize().height() - style()->pixelMetric(QStyle::PM_TitleBarHeight);
    resize(width(), qMin(height(), most));
    loadPage();
    Theme::fillBox(*m_form->checkBox);
    m_form->checkBox->setChecked(
        SettingsKeys::read(*m_settings, SettingsKeys::supportDialogActive));
    connect(m_form->checkBox, &QCheckBox::toggled, this, &SupportDialog::onCheckboxClicked);
}

SupportDialog::~SupportDialog() = default;

void SupportDialog::loadPage() {
    QFile page(tr(":/pages/pages/GetStarted.html",
                  "The file of the page: each language names one of its own"));
    if (!page.exists())
        page.setFileName(QStringLiteral(":/pages/pages/GetStarted.html"));
    if (page.open(QIODevice::ReadOnly))
        m_form->labelPage->setText(QString::fromUtf8(page.readAll()));
    // The page's own colours cover neither what is below its text nor the marks of its lists.
    QPalette paper = m_form->labelPage->palette();
    paper.setColor(QPalette::Window, QColor(QStringLiteral("#f5f5f5")));
    paper.setColor(QPalette::WindowText, QColor(QStringLiteral("#22282e")));
    m_form->labelPage->setPalette(paper);
}

void SupportDialog::onCheckboxClicked(bool status) {
    if (m_settings)
        m_settings->setValue(SettingsKeys::supportDialogActive.key, status);
}

void SupportDialog::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange)
        Theme::fillBox(*m_form->checkBox);
    QDialog::changeEvent(event);
}
