// SPDX-License-Identifier: BSD-3-Clause

/// For the thread sanitizer: GLib and Aravis are not built for it, so it sees neither their locks
/// nor, by their allocator, that memory changes hands. What they do themselves is left out; every
/// access of our own counts.
extern "C" __attribute__((visibility("default"))) const char* __tsan_default_suppressions() {
    return "called_from_lib:libglib-2.0.so.0\ncalled_from_lib:libgobject-2.0.so.0\n"
           "called_from_lib:libgio-2.0.so.0\ncalled_from_lib:libaravis-0.8.so.0\n";
}
