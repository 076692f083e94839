// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// The interface of graphics tablets as Qt's sources want it: Wine's header (package libwine-dev),
// and what that expects of the rest of Wine's headers.

#include <windows.h>

#define API WINAPI
#define DECL_WINELIB_TYPE_AW(type) typedef type##W type;
#define WINELIB_NAME_AW(name) name##W

#include "/usr/include/wine/wine/windows/wintab.h"
