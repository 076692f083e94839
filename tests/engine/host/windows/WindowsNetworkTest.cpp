// SPDX-License-Identifier: BSD-3-Clause
// The order of these headers is the platform's: addresses before the IP helper.
#include <winsock2.h>

#include <ws2tcpip.h>

#include <iphlpapi.h>

#include "engine/InterfaceHandlerGigE.h"
#include "engine/host/HostNetwork.h"
#include "tests/support/CapturedLog.h"

#include <functional>
#include <gmock/gmock.h>
#include <limits>
#include <map>

namespace {

/// Answers in place of the system's; the system answers where there are none.
struct Answers {
    /// Fills the table in a buffer of \p size bytes, or sets the size that it needs.
    std::function<DWORD(PMIB_IPADDRTABLE, ULONG& size)> table;
    std::map<NET_IFINDEX, MIB_IF_ROW2> entries;
};

Answers& answers() {
    static Answers instance;
    return instance;
}

} // namespace

// The linker redirects the calls to these functions (--wrap).
extern "C" {

DWORD WINAPI __real_GetIpAddrTable(PMIB_IPADDRTABLE table, PULONG size, BOOL sorted);
DWORD WINAPI __real_GetIfEntry2(PMIB_IF_ROW2 row);

DWORD WINAPI __wrap_GetIpAddrTable(PMIB_IPADDRTABLE table, PULONG size, BOOL sorted) {
    EXPECT_FALSE(sorted);
    const auto& answer = answers().table;
    return answer ? answer(table, *size) : __real_GetIpAddrTable(table, size, sorted);
}

DWORD WINAPI __wrap_GetIfEntry2(PMIB_IF_ROW2 row) {
    const auto found = answers().entries.find(row->InterfaceIndex);
    if (found == answers().entries.end())
        return __real_GetIfEntry2(row);
    *row = found->second;
    return NO_ERROR;
}

} // extern "C"

namespace {

constexpr std::uint64_t gigabit = 1'000'000'000;
constexpr std::uint64_t address = 0xC0A8010A;
constexpr DWORD addressInTable = 0x0A01A8C0;

ULONG sizeOf(std::size_t rows) {
    return static_cast<ULONG>(offsetof(MIB_IPADDRTABLE, table) + rows * sizeof(MIB_IPADDRROW));
}

class WindowsNetwork : public testing::Test {
protected:
    WindowsNetwork() { answers() = {}; }
    ~WindowsNetwork() override { answers() = {}; }

    /// An adapter with the address of these tests.
    void add(ULONG64 linkSpeed, const std::wstring& alias = L"") {
        MIB_IF_ROW2 entry{};
        entry.TransmitLinkSpeed = linkSpeed;
        alias.copy(entry.Alias, std::size(entry.Alias) - 1);
        // Above the indexes of real adapters.
        const auto index = static_cast<DWORD>(70000 + m_rows.size());
        answers().entries[index] = entry;
        MIB_IPADDRROW row{};
        row.dwAddr = addressInTable;
        row.dwIndex = index;
        m_rows.push_back(row);
        answers().table = [this](PMIB_IPADDRTABLE table, ULONG& size) {
            return give(table, size);
        };
    }

    DWORD give(PMIB_IPADDRTABLE table, ULONG& size) {
        const ULONG needed = sizeOf(m_rows.size());
        const bool fits = table != nullptr && size >= needed;
        size = needed;
        if (!fits)
            return ERROR_INSUFFICIENT_BUFFER;
        table->dwNumEntries = static_cast<DWORD>(m_rows.size());
        std::copy(m_rows.begin(), m_rows.end(), table->table);
        return NO_ERROR;
    }

    std::vector<MIB_IPADDRROW> m_rows;
    const CapturedLog m_errors{std::cerr};
};

TEST_F(WindowsNetwork, listsTheAdaptersOfThisMachine) {
    const auto network = host::makeSystemNetwork();
    std::vector<host::AddressRow> rows;
    ASSERT_TRUE(network->addressTable(rows));
    const auto loopback = std::find_if(rows.begin(), rows.end(), [](const auto& row) {
        return row.address == htonl(INADDR_LOOPBACK);
    });
    ASSERT_NE(loopback, rows.end());
    EXPECT_EQ(loopback->mask, htonl(0xFF000000));
    EXPECT_NE(network->interfaceEntry(loopback->interfaceIndex).alias, u"");
    const host::InterfaceEntry none = network->interfaceEntry(70000);
    EXPECT_EQ(none.transmitLinkSpeed, 0U);
    EXPECT_EQ(none.alias + none.description, u"");
    EXPECT_EQ(m_errors.text(), "");
}

TEST_F(WindowsNetwork, hasNoSpeedWhereWindowsHasNone) {
    const std::pair<ULONG64, std::uint64_t> cases[] = {
        {0, 0},
        {std::numeric_limits<ULONG64>::max(), 0},
        {1, 1},
        {400 * gigabit, 400 * gigabit},
    };
    for (const auto& [told, expected] : cases) {
        m_rows.clear();
        add(told);
        EXPECT_EQ(InterfaceHandlerGigE().GetLinkSpeed(address), expected) << told;
    }
}

TEST_F(WindowsNetwork, readsNamesWithUmlautsUpToTheLastCharacter) {
    const std::wstring longest(std::size(MIB_IF_ROW2{}.Alias) - 1, L'\u00fc');
    add(gigabit, L"Kamera-B\u00fcro \u2116 7");
    add(gigabit, longest);
    const auto network = host::makeSystemNetwork();
    EXPECT_EQ(network->interfaceEntry(m_rows[0].dwIndex).alias, u"Kamera-B\u00fcro \u2116 7");
    EXPECT_EQ(network->interfaceEntry(m_rows[1].dwIndex).alias,
              std::u16string(longest.begin(), longest.end()));
}

TEST_F(WindowsNetwork, takesATableThatShrinksBetweenTheCallsOrIsMissing) {
    add(gigabit);
    add(10 * gigabit);
    answers().table = [this](PMIB_IPADDRTABLE table, ULONG& size) {
        if (table != nullptr && m_rows.size() > 1)
            m_rows.pop_back();
        return give(table, size);
    };
    EXPECT_EQ(InterfaceHandlerGigE().GetLinkSpeed(address), gigabit);
    m_rows.clear();
    EXPECT_EQ(InterfaceHandlerGigE().GetLinkSpeed(address), 0U) << "a table without rows";
    EXPECT_EQ(m_errors.text(), "");
    answers().table = [](auto&&...) -> DWORD {
        return ERROR_NO_DATA;
    };
    EXPECT_EQ(InterfaceHandlerGigE().GetLinkSpeed(address), 0U);
    EXPECT_EQ(m_errors.text(), "Unable to get ip address table\n");
}

} // namespace
