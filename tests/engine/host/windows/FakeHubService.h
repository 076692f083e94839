// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <type_traits>

/// Runs the fake hub driver. Throws std::runtime_error when it cannot start, and on real Windows:
/// the tests write devices into the registry.
class FakeHubService {
public:
    /// \p fileName is the driver, in the folder of the running program.
    explicit FakeHubService(const std::string& fileName);
    ~FakeHubService();
    FakeHubService(const FakeHubService&) = delete;
    FakeHubService& operator=(const FakeHubService&) = delete;

private:
    struct Closer {
        void operator()(SC_HANDLE handle) const { CloseServiceHandle(handle); }
    };
    using Handle = std::unique_ptr<std::remove_pointer_t<SC_HANDLE>, Closer>;

    Handle m_manager;
    Handle m_service;
};
