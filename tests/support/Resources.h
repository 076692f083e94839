// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <qglobal.h>

/// Makes the pictures and pages of the program known. Outside of any namespace, as the macro
/// demands.
inline void initResources() {
    Q_INIT_RESOURCE(resources);
}
