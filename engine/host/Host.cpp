// SPDX-License-Identifier: BSD-3-Clause
#include "engine/host/Host.h"
