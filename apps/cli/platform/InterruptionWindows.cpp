// SPDX-License-Identifier: BSD-3-Clause
#include "cli/platform/Interruption.h"

#include <atomic>

#include <windows.h>

namespace cli {

namespace {

/// Set when the end was requested. Global, since the console's handler gets the event only.
HANDLE requested = nullptr;
std::atomic<bool> isSecond{false};

/// Runs on a thread of the system, which ends the program if this returns FALSE.
BOOL WINAPI onControl(DWORD control) {
    if (isSecond.exchange(true))
        return FALSE;
    SetEvent(requested);
    // After a closed console or a shutdown, the system ends the program when this returns.
    if (control != CTRL_C_EVENT && control != CTRL_BREAK_EVENT)
        Sleep(5000);
    return TRUE;
}

} // namespace

Interruption::Interruption() {
    requested = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    isSecond = false;
    SetConsoleCtrlHandler(onControl, TRUE);
}

Interruption::~Interruption() {
    SetConsoleCtrlHandler(onControl, FALSE);
    CloseHandle(requested);
    requested = nullptr;
}

bool Interruption::wait(std::chrono::milliseconds time) {
    return WaitForSingleObject(requested, static_cast<DWORD>(time.count())) == WAIT_OBJECT_0;
}

} // namespace cli
