// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <type_traits>

/// The fake hub driver, which runs while this lives. Throws where it cannot be started, as on any
/// Windows but Wine: the tests that need it put devices into the registry, which is no thing to do
/// to a real machine.
class FakeHubService {
public:
    /// \p fileName is the driver's, in the folder of the running program.
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
