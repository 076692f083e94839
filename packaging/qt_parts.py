# SPDX-License-Identifier: BSD-3-Clause
"""The parts by others that are in the Qt libraries for Windows.

Qt's sources describe each one in a file qt_attribution.json, which scripts/windows-libraries has kept."""

import json

# Parts of Qt's sources that are for other systems, or left out by cmake/windows/qt-options.
NOT_BUILT = (
    "src/3rdparty/VulkanMemoryAllocator",
    "src/3rdparty/android",
    "src/3rdparty/angle",
    "src/3rdparty/forkfd",
    "src/3rdparty/gradle",
    "src/3rdparty/harfbuzz/",
    "src/3rdparty/libjpeg",
    "src/3rdparty/pixman",
    "src/3rdparty/wasm",
    "src/3rdparty/xcb",
    "src/corelib/kernel",
    "src/dbus",
    "src/gui/opengl",
    "src/gui/vulkan",
    "src/plugins/platforms/cocoa",
    "src/testlib",
)


def parts_in(kept):
    """The folder and the description of each part, of the folder with Qt's licences."""
    found = []
    for file in sorted(kept.rglob("qt_attribution.json")):
        if (str(file.parent.relative_to(kept)) + "/").startswith(NOT_BUILT):
            continue
        # Their texts contain line ends, which the standard does not allow.
        parts = json.loads(file.read_text(), strict=False)
        found += [(file.parent, part) for part in (parts if isinstance(parts, list) else [parts])]
    return found
