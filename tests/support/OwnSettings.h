// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <memory>

/// Redirects the user settings of this process to a store that is empty at first and removed with
/// the object. At most one object lives at a time.
class OwnSettings {
public:
    OwnSettings();
    ~OwnSettings();

private:
    struct Store;
    std::unique_ptr<Store> m_store;
};
