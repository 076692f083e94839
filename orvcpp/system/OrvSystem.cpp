// SPDX-License-Identifier: BSD-3-Clause
#include "OrvCPP/OrvSystem.h"
