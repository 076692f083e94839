// SPDX-License-Identifier: BSD-3-Clause
#include "tests/engine/host/windows/FakeHubService.h"

#include <filesystem>
#include <stdexcept>

namespace {

std::wstring besideThisProgram(const std::string& fileName) {
    std::wstring program(MAX_PATH, L'\0');
    program.resize(GetModuleFileNameW(nullptr, program.data(), static_cast<DWORD>(program.size())));
    return std::filesystem::path(program).replace_filename(fileName).wstring();
}

bool isWine() {
    return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}

} // namespace

FakeHubService::FakeHubService(const std::string& fileName) {
    if (!isWine())
        throw std::runtime_error("This test is for Wine, not for a real machine");
    constexpr wchar_t name[] = L"SpanletFakeHubs";
    const std::wstring driver = besideThisProgram(fileName);
    m_manager.reset(OpenSCManagerW(nullptr, nullptr, SC_MANAGER_ALL_ACCESS));
    m_service.reset(CreateServiceW(m_manager.get(), name, name, SERVICE_ALL_ACCESS,
                                   SERVICE_KERNEL_DRIVER, SERVICE_DEMAND_START,
                                   SERVICE_ERROR_NORMAL, driver.c_str(), nullptr, nullptr, nullptr,
                                   nullptr, nullptr));
    if (!m_service || !StartServiceW(m_service.get(), 0, nullptr))
        throw std::runtime_error("Cannot start the fake hub driver: error " +
                                 std::to_string(GetLastError()));
}

FakeHubService::~FakeHubService() {
    SERVICE_STATUS status{};
    ControlService(m_service.get(), SERVICE_CONTROL_STOP, &status);
    DeleteService(m_service.get());
}
