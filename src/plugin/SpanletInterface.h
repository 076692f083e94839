// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/OrvSystem.h"

#include <QObject>
#include <QtPlugin>

/// The interface of Spanlet for a camera viewer. A host loads the plug-in with QPluginLoader, casts
/// its instance to this interface and calls runDialog; it must be built against this same
/// declaration.
class SpanletInterface : public QObject {
    Q_OBJECT

public:
    /// Shows the main dialog and returns when the user has closed it. The host keeps the camera
    /// SDK started meanwhile and has closed its own cameras: full access to a camera is exclusive.
    /// \p autoAdjustPacketSize is the host's choice whether GigE packet sizes are adjusted. Returns
    /// that choice as the user left it, 1 or 0. Bound to the GUI thread.
    virtual int runDialog(OrvCPP::OrvSystem& system, bool autoAdjustPacketSize) = 0;
};

Q_DECLARE_INTERFACE(SpanletInterface, "dev.spanlet.Plugin.SpanletInterface/1.0")
