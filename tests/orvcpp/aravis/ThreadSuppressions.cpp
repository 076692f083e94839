// SPDX-License-Identifier: BSD-3-Clause

/// For the thread sanitizer: GLib, Aravis and Qt are not built with it, so it does not see their
/// locks and their allocator. Their own accesses are left out; every access of ours is checked.
extern "C" __attribute__((visibility("default"))) const char* __tsan_default_suppressions() {
    return "called_from_lib:libglib-2.0.so.0\ncalled_from_lib:libgobject-2.0.so.0\n"
           "called_from_lib:libgio-2.0.so.0\ncalled_from_lib:libaravis-0.8.so.0\n"
           "called_from_lib:libQt5Core.so.5\n";
}
