// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "plugin/SpanletInterface.h"

/// The plug-in's root object. Has no state. Bound to the GUI thread.
class SpanletPlugin : public SpanletInterface {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "SpanletInterface")
    Q_INTERFACES(SpanletInterface)

public:
    int runDialog(OrvCPP::OrvSystem& system, bool autoAdjustPacketSize) override;
};
