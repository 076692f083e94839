// SPDX-License-Identifier: BSD-3-Clause
#include "tests/orvcpp/ThreadCount.h"

#include <windows.h>

#include <tlhelp32.h>

int threadCount() {
    const HANDLE all = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    THREADENTRY32 thread{};
    thread.dwSize = sizeof(thread);
    int count = 0;
    for (BOOL found = Thread32First(all, &thread); found != 0; found = Thread32Next(all, &thread))
        count += thread.th32OwnerProcessID == GetCurrentProcessId() ? 1 : 0;
    CloseHandle(all);
    return count;
}
