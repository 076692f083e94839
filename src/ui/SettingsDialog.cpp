// SPDX-License-Identifier: BSD-3-Clause
#include "ui/SettingsDialog.h"

#include "ui/SettingsKeys.h"
#include "ui/Theme.h"
#include "ui_SettingsDialog.h"

#include <QKeyEvent>
#include <QLibraryInfo>
#include <QMessageBox>
#include <QScreen>
#include <QStyle>

#include <algorithm>

namespace {

const QString& warningStyle(bool dark) {
    static const QString darkStyle = QStringLiteral("color: rgba(56,111,251,255);");
    static const QString lightStyle = QStringLiteral("color: rgba(50,95,201,255);");
    return dark ? darkStyle : lightStyle;
}

QIcon resetIcon(bool dark) {
    return QIcon(dark ? QStringLiteral(":/images/images/delete_darkmode.png")
                      : QStringLiteral(":/images/images/delete.png"));
}

bool isBelowDefault(const QSpinBox& spinBox, const SettingsKeys::Setting<int>& setting) {
    return spinBox.value() < setting.defaultValue;
}

} // namespace

SettingsDialog::SettingsDialog(bool autoAdjustPacketSize, QSettings* settings, QWidget* parent)
    : QDialog(parent), m_form(std::make_unique<Ui::SettingsDialog>()), m_settings(settings) {
    setAttribute(Qt::WA_DeleteOnClose);
    m_form->setupUi(this);
    const QSize firstSize = size();
    applyPalette();
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    m_form->autoAdjustCheckBox->setChecked(autoAdjustPacketSize);
    loadSettings();
    connectWidgets();
    onChangeSafetyCamera();
    // The first size leaves room for warnings. It grows when that is not enough.
    fit(firstSize);
}

SettingsDialog::~SettingsDialog() {
    emit activateAutoAdjustPacketsize(m_form->autoAdjustCheckBox->isChecked());
    if (result() == Accepted && m_settings) {
        saveSettings();
        emit settingsSaved();
    }
}

void SettingsDialog::loadSettings() {
    using namespace SettingsKeys;
    m_form->GigEInterfaceSpinBox->setValue(readMargin<int>(*m_settings, interfaceGigE));
    m_form->USBInterfaceSpinBox->setValue(readMargin<int>(*m_settings, interfaceUsb));
    m_form->GigECameraSpinBox->setValue(readMargin<int>(*m_settings, cameraGigE));
    m_form->USBCameraSpinBox->setValue(readMargin<int>(*m_settings, cameraUsb));
    // With a debug build of Qt the default is to show the messages; OK stores it.
    m_showDebugMessages =
        read(*m_settings, Setting<bool>{showDebugMessages.key, QLibraryInfo::isDebugBuild()});
}

void SettingsDialog::saveSettings() {
    using namespace SettingsKeys;
    m_settings->setValue(interfaceGigE.key, m_form->GigEInterfaceSpinBox->value());
    m_settings->setValue(interfaceUsb.key, m_form->USBInterfaceSpinBox->value());
    m_settings->setValue(cameraGigE.key, m_form->GigECameraSpinBox->value());
    m_settings->setValue(cameraUsb.key, m_form->USBCameraSpinBox->value());
    m_settings->setValue(showDebugMessages.key, m_showDebugMessages);
}

void SettingsDialog::connectWidgets() {
    connect(m_form->GigEInterfacePushButton, &QPushButton::clicked, this,
            &SettingsDialog::onResetValueGigEInterface);
    connect(m_form->GigECameraPushButton, &QPushButton::clicked, this,
            &SettingsDialog::onResetValueGigECamera);
    connect(m_form->USBInterfacePushButton, &QPushButton::clicked, this,
            &SettingsDialog::onResetValueUSBInterface);
    connect(m_form->USBCameraPushButton, &QPushButton::clicked, this,
            &SettingsDialog::onResetValueUSBCamera);
    for (const QSpinBox* spinBox : {m_form->GigEInterfaceSpinBox, m_form->GigECameraSpinBox,
                                    m_form->USBInterfaceSpinBox, m_form->USBCameraSpinBox}) {
        connect(spinBox, qOverload<int>(&QSpinBox::valueChanged), this,
                &SettingsDialog::onChangeSafetyCamera);
    }
    connect(m_form->buttonBox, &QDialogButtonBox::accepted, this, &SettingsDialog::accept);
    connect(m_form->buttonBox, &QDialogButtonBox::rejected, this, &SettingsDialog::reject);
}

void SettingsDialog::onResetValueGigEInterface() {
    m_form->GigEInterfaceSpinBox->setValue(SettingsKeys::interfaceGigE.defaultValue);
}

void SettingsDialog::onResetValueGigECamera() {
    m_form->GigECameraSpinBox->setValue(SettingsKeys::cameraGigE.defaultValue);
}

void SettingsDialog::onResetValueUSBInterface() {
    m_form->USBInterfaceSpinBox->setValue(SettingsKeys::interfaceUsb.defaultValue);
}

void SettingsDialog::onResetValueUSBCamera() {
    m_form->USBCameraSpinBox->setValue(SettingsKeys::cameraUsb.defaultValue);
}

void SettingsDialog::onChangeSafetyCamera() {
    using namespace SettingsKeys;
    m_form->frameWarningCamera->setVisible(isBelowDefault(*m_form->GigECameraSpinBox, cameraGigE) ||
                                           isBelowDefault(*m_form->USBCameraSpinBox, cameraUsb));
    m_form->frameWarningInterfaceGigE->setVisible(
        isBelowDefault(*m_form->GigEInterfaceSpinBox, interfaceGigE));
    m_form->frameWarningInterfaceUSB->setVisible(
        isBelowDefault(*m_form->USBInterfaceSpinBox, interfaceUsb));
    fit({});
}

void SettingsDialog::fit(QSize least) {
    const QLayout& contents = *m_form->scrollAreaWidgetContents->layout();
    const QMargins margins = layout()->contentsMargins();
    const int beside = margins.left() + margins.right();
    const int below = margins.top() + layout()->spacing() + m_form->buttonBox->sizeHint().height() +
                      margins.bottom();
    const int width = std::max(least.width(), contents.sizeHint().width() + beside);
    const int wanted = contents.totalHeightForWidth(width - beside) + below;
    const int most =
        screen()->availableSize().height() - style()->pixelMetric(QStyle::PM_TitleBarHeight);
    const int height = std::min(std::max(least.height(), wanted), most);
    const int scrollBar = style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    resize(width + (wanted > height ? scrollBar : 0), height);
}

void SettingsDialog::applyPalette() {
    const bool dark = Theme::isDark(palette());
    Theme::fillBox(*m_form->autoAdjustCheckBox);
    for (QLabel* label : {m_form->cameraWarningLabel, m_form->usbInterfaceWarningLabel,
                          m_form->gigeInterfaceWarningLabel}) {
        label->setStyleSheet(warningStyle(dark));
    }
    for (QPushButton* button : {m_form->GigEInterfacePushButton, m_form->GigECameraPushButton,
                                m_form->USBInterfacePushButton, m_form->USBCameraPushButton}) {
        button->setIcon(resetIcon(dark));
    }
}

void SettingsDialog::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange)
        applyPalette();
    QDialog::changeEvent(event);
}

void SettingsDialog::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_D && event->modifiers().testFlag(Qt::ShiftModifier) &&
        event->modifiers().testFlag(Qt::ControlModifier))
        askForDebugMessages();
    QDialog::keyPressEvent(event);
}

void SettingsDialog::askForDebugMessages() {
    const QMessageBox::StandardButton answer = QMessageBox::question(
        this, tr("Logging"),
        tr("Should the Debug-messages be activated?\nWill be saved with submitting the "
           "'Settings'-dialog with 'OK'."),
        QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
    if (answer != QMessageBox::Cancel)
        m_showDebugMessages = answer == QMessageBox::Yes;
}
