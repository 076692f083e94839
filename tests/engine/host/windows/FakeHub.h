// SPDX-License-Identifier: BSD-3-Clause
#pragma once

/// Messages between the tests and the fake hub driver, which has no standard library.
namespace fakehub {

constexpr unsigned portCount = 16;

/// Answers of a hub for one port.
struct Port {
    bool answersFirst;
    bool answersSecond;
    unsigned char status;
    unsigned char speed;
    unsigned flags;
};

struct Hub {
    /// As Windows opens it: "\\?\usb#root_hub30#...". Ends with a zero.
    wchar_t path[260];
    /// Port 0 is unused.
    Port ports[portCount];
};

/// Name of the device that takes the messages.
constexpr wchar_t controlPath[] = L"\\\\?\\spanlet-fake-hubs";

/// Takes a Hub: adds it.
constexpr unsigned long plugIn = 0x222000;
/// Takes nothing: removes all hubs.
constexpr unsigned long unplugAll = 0x222004;
/// Answers an unsigned: how many handles of hubs are open.
constexpr unsigned long countHandles = 0x222008;

} // namespace fakehub
