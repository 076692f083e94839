// SPDX-License-Identifier: BSD-3-Clause
#include "plugin/SpanletPlugin.h"

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

/// Looks in "qm" below the current directory, first for the system's locale (de_AT), then for its
/// language alone (de). Without a file the texts stay English.
void installTranslation() {
    const QString locale = QLocale::system().name();
    const QString directory = QDir::currentPath() + QStringLiteral("/qm");
    const QString prefix = QStringLiteral("Spanlet_");
    auto translator = std::make_unique<QTranslator>();
    if (!translator->load(prefix + locale, directory))
        translator->load(prefix + locale.left(2), directory);
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
