// SPDX-License-Identifier: BSD-3-Clause
// No guard: it is included once for each kind of packet.
#include "/usr/include/wine/wine/windows/pktdef.h"
