// SPDX-License-Identifier: BSD-3-Clause
#pragma once

namespace orv {

/// What the calling thread is to the SDK. Calls that wait for such a thread to finish are refused
/// on it, with OrvErrorInvalidCall.
enum class SdkThread {
    /// A thread of the SDK's user.
    Foreign,
    /// Delivers frames.
    Frames,
    /// Tells list observers of changes.
    Events
};

/// What the calling thread is. A thread of the SDK says so of itself when it begins.
SdkThread currentSdkThread();
void setCurrentSdkThread(SdkThread thread);
/// Whether the calling thread delivers frames.
inline bool isFrameThread() {
    return currentSdkThread() == SdkThread::Frames;
}

} // namespace orv
