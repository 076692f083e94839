// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <optional>
#include <string>

namespace cli {

enum class Key { Up, Down, PageUp, PageDown, Home, End, Quit };

/// Reads keys of the terminal as they are pressed, and keeps them from being shown, while it
/// exists. No effect where the standard input stream is no terminal, or belongs to another program
/// since this one runs in the background. A signal that ends or stops the program restores the
/// terminal's mode first, except SIGKILL and SIGSTOP, which cannot be caught. At most one instance
/// at a time. Bound to one thread.
class Keyboard {
public:
    Keyboard();
    ~Keyboard();

    Keyboard(const Keyboard&) = delete;
    Keyboard& operator=(const Keyboard&) = delete;

    bool isActive() const { return m_isActive; }
    /// The next key that was pressed. Does not wait; skips all other keys.
    std::optional<Key> read();

private:
    bool m_isActive = false;
    /// Bytes that were read and are not a key yet.
    std::string m_pending;
};

/// Gives the terminal the mode back that it had before a Keyboard. For signal handlers.
void restoreTerminalMode();

} // namespace cli
