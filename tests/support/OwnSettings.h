// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <memory>

/// While it lives, what this process keeps for its user is kept in a store of its own, which is
/// empty at first and gone with the object. At most one lives at a time.
class OwnSettings {
public:
    OwnSettings();
    ~OwnSettings();

private:
    struct Store;
    std::unique_ptr<Store> m_store;
};
