// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "plugin/SpanletInterface.h"
#include "tests/support/WidgetParts.h"

#include <QtWidgets>

#include <functional>

/// Loads the plug-in and runs its dialog as a host does.
class HostedDialog {
public:
    /// Null when the file is no plug-in of the interface.
    SpanletInterface* plugin() { return qobject_cast<SpanletInterface*>(m_loader.instance()); }
    QPluginLoader& loader() { return m_loader; }

    /// Runs the dialog, and \p user on it once it is shown; \p user must close the dialog.
    int run(bool autoAdjustPacketSize, std::function<void(QDialog&)> user) {
        QTimer poll;
        QObject::connect(&poll, &QTimer::timeout, [&] {
            auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            if (dialog == nullptr || !dialog->isVisible())
                return;
            poll.stop();
            user(*dialog);
        });
        poll.start(10);
        return plugin()->runDialog(OrvCPP::OrvSystem::GetInstance(), autoAdjustPacketSize);
    }

private:
    QPluginLoader m_loader{QStringLiteral(SPANLET_PLUGIN_FILE)};
};
