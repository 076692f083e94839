// SPDX-License-Identifier: BSD-3-Clause
#pragma once

/// Threads that this process has now.
int threadCount();
