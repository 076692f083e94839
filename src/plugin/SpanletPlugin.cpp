// SPDX-License-Identifier: BSD-3-Clause
#include "plugin/SpanletPlugin.h"

#include "platform/InstalledData.h"
#include "ui/SpanletDialog.h"

#include <QApplication>
#include <QDir>
#include <QImage>
#include <QLocale>
#include <QPixmap>
#include <QSplashScreen>
#include <QTranslator>

#include <memory>

namespace {

/// Looks for the system's locale (de_AT), then for its language alone (de).
bool loadTranslation(QTranslator& translator, const QString& directory) {
    const QString locale = QLocale::system().name();
    const QString prefix = QStringLiteral("Spanlet_");
    return translator.load(prefix + locale, directory) ||
           translator.load(prefix + locale.left(2), directory);
}

/// Looks in "qm" below the current directory, then in the installation of the plug-in. Without a
/// file the texts stay English.
void installTranslation() {
    const auto installed = QString::fromStdString(
        (platform::installedDataFolder() / "translations").generic_u8string());
    auto translator = std::make_unique<QTranslator>();
    if (!loadTranslation(*translator, QDir::currentPath() + QStringLiteral("/qm")))
        loadTranslation(*translator, installed);
    // Stays installed until the host ends.
    if (!translator->isEmpty())
        QCoreApplication::installTranslator(translator.release());
}

} // namespace

int SpanletPlugin::runDialog(OrvCPP::OrvSystem& system, bool autoAdjustPacketSize) {
    Q_INIT_RESOURCE(resources);
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const QImage image(QStringLiteral(":/images/images/Spanlet-pleaseWait.png"));
    QSplashScreen splash(QPixmap::fromImage(image));
    splash.show();
    // The host's windows must not get input inside of their own call: before the dialog is modal, a
    // second click would call the plug-in again.
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    installTranslation();

    SpanletDialog dialog(system, autoAdjustPacketSize);
    connect(&dialog, &SpanletDialog::dialogIsReadyLoaded, &splash, &QSplashScreen::close);
    QApplication::restoreOverrideCursor();
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    return dialog.exec();
}
