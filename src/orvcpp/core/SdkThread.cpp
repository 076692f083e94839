// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/core/SdkThread.h"

namespace orv {

namespace {
thread_local SdkThread current = SdkThread::Foreign;
}

SdkThread currentSdkThread() {
    return current;
}

void setCurrentSdkThread(SdkThread thread) {
    current = thread;
}

} // namespace orv
