// SPDX-License-Identifier: BSD-3-Clause
#include "tests/support/OwnSettings.h"

#include <string>

#include <windows.h>

struct OwnSettings::Store {
    std::wstring path = L"Software\\Spanlet test " + std::to_wstring(GetCurrentProcessId());
    HKEY key = nullptr;
};

/// Redirects what this process writes below the user's registry key to a key of the test.
OwnSettings::OwnSettings() : m_store(std::make_unique<Store>()) {
    RegCreateKeyExW(HKEY_CURRENT_USER, m_store->path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                    KEY_ALL_ACCESS, nullptr, &m_store->key, nullptr);
    RegOverridePredefKey(HKEY_CURRENT_USER, m_store->key);
}

OwnSettings::~OwnSettings() {
    RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
    RegCloseKey(m_store->key);
    RegDeleteTreeW(HKEY_CURRENT_USER, m_store->path.c_str());
}
