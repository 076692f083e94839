// SPDX-License-Identifier: BSD-3-Clause
#include "viewer/ParentConsole.h"

#include <windows.h>

#include <io.h>

namespace viewer {

namespace {

struct StandardStream {
    DWORD id;
    std::FILE* stream;
    HANDLE handle;
};

bool isConsole(HANDLE handle) {
    DWORD mode = 0;
    return GetConsoleMode(handle, &mode) != 0;
}

/// Whether output to \p handle goes anywhere but to a console. It is certain only once the program
/// has a console: before, the handle of one that was inherited looks like the null device.
bool isRedirected(HANDLE handle) {
    return handle != nullptr && handle != INVALID_HANDLE_VALUE &&
           GetFileType(handle) != FILE_TYPE_UNKNOWN && !isConsole(handle);
}

HANDLE handleOf(std::FILE* stream) {
    const int descriptor = _fileno(stream);
    return descriptor < 0 ? INVALID_HANDLE_VALUE
                          : reinterpret_cast<HANDLE>(_get_osfhandle(descriptor));
}

} // namespace

void attachParentConsole() {
    // Attaching replaces the standard handles, also those of redirected streams.
    StandardStream streams[] = {
        {STD_OUTPUT_HANDLE, stdout, GetStdHandle(STD_OUTPUT_HANDLE)},
        {STD_ERROR_HANDLE, stderr, GetStdHandle(STD_ERROR_HANDLE)},
    };
    if (AttachConsole(ATTACH_PARENT_PROCESS) == 0)
        return;
    for (StandardStream& standard : streams) {
        if (!isRedirected(standard.handle) &&
            std::freopen("CONOUT$", "w", standard.stream) != nullptr) {
            std::setvbuf(standard.stream, nullptr, _IONBF, 0);
            standard.handle = handleOf(standard.stream);
        }
        SetStdHandle(standard.id, standard.handle);
    }
}

void writeText(std::FILE* stream, const QString& text) {
    const HANDLE handle = handleOf(stream);
    if (isConsole(handle)) {
        std::fflush(stream);
        DWORD written = 0;
        WriteConsoleW(handle, text.utf16(), static_cast<DWORD>(text.size()), &written, nullptr);
        return;
    }
    std::fputs(text.toUtf8().constData(), stream);
    std::fflush(stream);
}

} // namespace viewer
