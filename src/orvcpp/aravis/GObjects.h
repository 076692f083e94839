// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <arv.h>

#include <memory>

namespace orv::aravis {

struct GObjectRelease {
    void operator()(gpointer object) const { g_object_unref(object); }
};

/// Owns one reference of a GObject.
template <typename T> using GObjectPtr = std::unique_ptr<T, GObjectRelease>;

} // namespace orv::aravis
