// SPDX-License-Identifier: BSD-3-Clause
#pragma once

namespace orv {

/// Role of the calling thread. A call that would wait for its own thread answers
/// OrvErrorInvalidCall.
enum class SdkThread {
    /// A thread of the SDK's user.
    Foreign,
    /// Delivers frames.
    Frames,
    /// Tells list observers of changes.
    Events
};

/// Threads of the SDK set their role when they begin.
SdkThread currentSdkThread();
void setCurrentSdkThread(SdkThread thread);
/// Whether the calling thread delivers frames.
inline bool isFrameThread() {
    return currentSdkThread() == SdkThread::Frames;
}

} // namespace orv
