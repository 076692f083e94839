// SPDX-License-Identifier: BSD-3-Clause

/// Leaks of libraries that are not ours, for the address sanitizer: Qt's offscreen platform never
/// deletes its screen, and the font configuration keeps a cache. And one that is ours: an installed
/// translation stays for as long as the process lives. Compiled in rather than read from a file, so
/// that a test program runs by itself, too, and not only under ctest.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions() {
    return "leak:libqoffscreen.so\nleak:libfontconfig.so\nleak:installTranslation\n";
}

extern "C" __attribute__((visibility("default"))) const char* __lsan_default_options() {
    return "print_suppressions=0";
}
