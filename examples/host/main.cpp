// SPDX-License-Identifier: BSD-3-Clause
// A host of Spanlet: a window with a button that opens the dialog. "host SECONDS" presses it by
// itself, prints the dialog's title and closes the dialog after that time.
#include <OrvCPP/OrvSystem.h>
#include <SpanletInterface.h>

#include <QtWidgets>

#include <cstdio>

namespace {

/// Null, after a message, when there is no usable plug-in.
SpanletInterface* loadSpanlet(QPluginLoader& loader) {
    // Before any of the plug-in's code runs.
    if (loader.metaData()[QStringLiteral("IID")] == QStringLiteral("SpanletInterface")) {
        if (auto* spanlet = qobject_cast<SpanletInterface*>(loader.instance()))
            return spanlet;
    }
    qCritical("%s is no plug-in of this interface. %s", qUtf8Printable(loader.fileName()),
              qUtf8Printable(loader.errorString()));
    return nullptr;
}

/// With the help that it opens at its first start.
void closeDialog() {
    while (QWidget* dialog = QApplication::activeModalWidget()) {
        std::printf("%s\n", qUtf8Printable(dialog->windowTitle()));
        dialog->close();
    }
}

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    OrvCPP::OrvSystem& system = OrvCPP::OrvSystem::GetInstance();
    // Simulated cameras; Startup(L":genicam") has the real ones.
    if (system.Startup() != OrvErrorSuccess)
        return 1;

    QPluginLoader loader(QStringLiteral(SPANLET_PLUGIN));
    SpanletInterface* spanlet = loadSpanlet(loader);
    int result = spanlet == nullptr ? 1 : 0;
    if (spanlet != nullptr) {
        QPushButton button(QStringLiteral("Spanlet..."));
        // A viewer closes its own cameras here: full access to a camera is exclusive.
        QObject::connect(&button, &QPushButton::clicked, [&] { spanlet->runDialog(system, true); });
        button.show();
        if (argc > 1) {
            QTimer::singleShot(1000 * QString::fromLocal8Bit(argv[1]).toInt(), closeDialog);
            button.click();
        } else {
            result = QApplication::exec();
        }
    }
    system.Shutdown();
    return result;
}
