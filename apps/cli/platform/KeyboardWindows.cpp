// SPDX-License-Identifier: BSD-3-Clause
#include "cli/platform/Keyboard.h"

#include <windows.h>

namespace cli {

namespace {

std::optional<Key> keyOf(WORD code) {
    switch (code) {
    case VK_UP:
        return Key::Up;
    case VK_DOWN:
        return Key::Down;
    case VK_PRIOR:
        return Key::PageUp;
    case VK_NEXT:
        return Key::PageDown;
    case VK_HOME:
        return Key::Home;
    case VK_END:
        return Key::End;
    case 'Q':
        return Key::Quit;
    default:
        return std::nullopt;
    }
}

} // namespace

/// Reading the console's events shows no keys, whatever its mode.
void restoreTerminalMode() {}

Keyboard::Keyboard() {
    DWORD mode = 0;
    m_isActive = GetConsoleMode(GetStdHandle(STD_INPUT_HANDLE), &mode) != 0;
}

Keyboard::~Keyboard() = default;

std::optional<Key> Keyboard::read() {
    const HANDLE input = GetStdHandle(STD_INPUT_HANDLE);
    DWORD count = 0;
    while (m_isActive && GetNumberOfConsoleInputEvents(input, &count) != 0 && count > 0) {
        INPUT_RECORD event{};
        if (ReadConsoleInputW(input, &event, 1, &count) == 0)
            break;
        if (event.EventType != KEY_EVENT || event.Event.KeyEvent.bKeyDown == 0)
            continue;
        if (const auto key = keyOf(event.Event.KeyEvent.wVirtualKeyCode))
            return key;
    }
    return std::nullopt;
}

} // namespace cli
