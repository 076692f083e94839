// SPDX-License-Identifier: BSD-3-Clause
#pragma once

namespace fakecamera {

/// FakeCamera.xml, the GenICam description of the camera's features.
extern const char* const builtInDescription;

} // namespace fakecamera
