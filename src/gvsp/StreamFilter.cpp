// SPDX-License-Identifier: BSD-3-Clause
#include "gvsp/StreamFilter.h"

#include "gige/BigEndian.h"
#include "gige/BootstrapRegisters.h"
#include "gige/IpDatagram.h"
#include "gvsp/Gvsp.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <tuple>
#include <utility>

#include <netinet/in.h>

namespace gvsp {

namespace {

constexpr std::uint32_t wholePacket = 0xFFFFFFFF;
constexpr std::uint32_t largestIpHeader = 60;
/// Largest answer to a control command: its header and 540 bytes (GigE Vision).
constexpr std::uint32_t mostOfAnswer = 548;
/// Bytes 4 to 7 of a leader's header: its format, and the packet number 0, or 0 with extended IDs.
constexpr std::uint32_t leaderMask = 0x0FFFFFFF;
constexpr std::uint32_t leaderWord = 0x01000000;
/// Scratch memory of a program. The kernel turns a load from the packet into about 14 instructions
/// and a load from here into one, and limits their sum (net.core.optmem_max).
constexpr std::uint32_t senderSlot = 0;
constexpr std::uint32_t portSlot = 1;
constexpr std::uint32_t hostSlot = 2;
/// Endpoints that are compared one by one instead of dividing them further.
constexpr std::ptrdiff_t fewEndpoints = 4;

/// Builds one program. Every function appends instructions.
class FilterProgram {
public:
    using Endpoint = std::vector<StreamEndpoint>::const_iterator;

    /// Refuses other packets than unfragmented UDP. Leaves the length of the IP header in X.
    void requireWholeUdp();
    /// Refuses other packets than UDP, and accepts the IP headers of fragments without the first
    /// one's ports. Leaves the length of the IP header in X.
    void requireUdpBegin();
    /// Loads the addresses and the port into the scratch memory.
    void loadKeys();
    /// Finds the packet's endpoint among those of one host, which are sorted by port.
    void selectHost(Endpoint first, Endpoint last);
    /// Accepts the answers of cameras to control commands.
    void acceptControl();
    /// Ends the program: targets of the jumps for packets of no endpoint, and for accepted ones.
    void refuseOthers();
    void acceptOthersIfLeaders();
    void accept();
    /// Ends the program: accepts every packet that is left.
    void acceptAll() { add(BPF_RET | BPF_K, wholePacket); }

    std::vector<sock_filter> take() { return std::move(m_code); }

private:
    void add(unsigned code, std::uint32_t value, unsigned ifTrue = 0, unsigned ifFalse = 0);
    void load(std::uint32_t slot) { add(BPF_LD | BPF_MEM, slot); }
    void refuse() { add(BPF_RET | BPF_K, 0); }
    void requireUdp();
    /// A jump whose target is not known yet; only these reach further than 255 instructions.
    std::size_t jump();
    /// Lets a jump lead to the next instruction.
    void land(std::size_t jump);
    /// Expects the port in the accumulator; so do the next two.
    void selectPort(Endpoint first, Endpoint last);
    void comparePorts(Endpoint first, Endpoint last);
    void compare(const StreamEndpoint& endpoint);

    std::vector<sock_filter> m_code;
    std::vector<std::size_t> m_otherJumps;
    std::vector<std::size_t> m_wholeJumps;
    std::vector<std::size_t> m_headerJumps;
};

void FilterProgram::add(unsigned code, std::uint32_t value, unsigned ifTrue, unsigned ifFalse) {
    m_code.push_back({static_cast<std::uint16_t>(code), static_cast<std::uint8_t>(ifTrue),
                      static_cast<std::uint8_t>(ifFalse), value});
}

std::size_t FilterProgram::jump() {
    add(BPF_JMP | BPF_JA, 0);
    return m_code.size() - 1;
}

void FilterProgram::land(std::size_t jump) {
    m_code[jump].k = static_cast<std::uint32_t>(m_code.size() - jump - 1);
}

void FilterProgram::requireUdp() {
    add(BPF_LD | BPF_B | BPF_ABS, 0);
    add(BPF_ALU | BPF_AND | BPF_K, 0xF0);
    add(BPF_JMP | BPF_JEQ | BPF_K, 0x40, 1, 0);
    refuse();
    add(BPF_LD | BPF_B | BPF_ABS, 9);
    add(BPF_JMP | BPF_JEQ | BPF_K, IPPROTO_UDP, 1, 0);
    refuse();
    add(BPF_LD | BPF_H | BPF_ABS, 6);
}

void FilterProgram::requireWholeUdp() {
    requireUdp();
    add(BPF_JMP | BPF_JSET | BPF_K, gige::fragmentBits, 0, 1);
    refuse();
    add(BPF_LDX | BPF_B | BPF_MSH, 0);
}

void FilterProgram::requireUdpBegin() {
    requireUdp();
    add(BPF_JMP | BPF_JSET | BPF_K, gige::fragmentOffsetBits, 0, 1);
    add(BPF_RET | BPF_K, largestIpHeader);
    add(BPF_LDX | BPF_B | BPF_MSH, 0);
}

void FilterProgram::loadKeys() {
    add(BPF_LD | BPF_W | BPF_ABS, 12);
    add(BPF_ST, senderSlot);
    add(BPF_LD | BPF_W | BPF_ABS, 16);
    add(BPF_ST, hostSlot);
    add(BPF_LD | BPF_H | BPF_IND, 2);
    add(BPF_ST, portSlot);
}

void FilterProgram::selectHost(Endpoint first, Endpoint last) {
    load(hostSlot);
    add(BPF_JMP | BPF_JEQ | BPF_K, first->host, 1, 0);
    const std::size_t otherHost = jump();
    load(portSlot);
    selectPort(first, last);
    land(otherHost);
}

void FilterProgram::selectPort(Endpoint first, Endpoint last) {
    const auto isBelow = [](const StreamEndpoint& endpoint, std::uint16_t port) {
        return endpoint.port < port;
    };
    const std::uint16_t middlePort = (first + std::distance(first, last) / 2)->port;
    const Endpoint middle = std::lower_bound(first, last, middlePort, isBelow);
    if (std::distance(first, last) <= fewEndpoints || middle == first) {
        comparePorts(first, last);
        return;
    }
    add(BPF_JMP | BPF_JGE | BPF_K, middlePort, 0, 1);
    const std::size_t upper = jump();
    selectPort(first, middle);
    land(upper);
    selectPort(middle, last);
}

void FilterProgram::comparePorts(Endpoint first, Endpoint last) {
    std::for_each(first, last, [this](const StreamEndpoint& endpoint) { compare(endpoint); });
    m_otherJumps.push_back(jump());
}

void FilterProgram::compare(const StreamEndpoint& endpoint) {
    add(BPF_JMP | BPF_JEQ | BPF_K, endpoint.port, 0, 4);
    load(senderSlot);
    add(BPF_JMP | BPF_JEQ | BPF_K, endpoint.camera, 0, 1);
    (endpoint.headersOnly ? m_headerJumps : m_wholeJumps).push_back(jump());
    load(portSlot);
}

void FilterProgram::acceptControl() {
    add(BPF_LD | BPF_H | BPF_IND, 0);
    add(BPF_JMP | BPF_JEQ | BPF_K, gige::controlPort, 0, 3);
    add(BPF_MISC | BPF_TXA, 0);
    add(BPF_ALU | BPF_ADD | BPF_K, gige::udpHeaderSize + mostOfAnswer);
    add(BPF_RET | BPF_A, 0);
}

void FilterProgram::refuseOthers() {
    for (const std::size_t jump : m_otherJumps)
        land(jump);
    refuse();
}

void FilterProgram::acceptOthersIfLeaders() {
    for (const std::size_t jump : m_otherJumps)
        land(jump);
    add(BPF_LD | BPF_H | BPF_IND, gige::udpHeaderSize);
    add(BPF_JMP | BPF_JEQ | BPF_K, 0, 1, 0);
    refuse();
    add(BPF_LD | BPF_W | BPF_IND, gige::udpHeaderSize + 4);
    add(BPF_ALU | BPF_AND | BPF_K, leaderMask);
    add(BPF_JMP | BPF_JEQ | BPF_K, leaderWord, 1, 0);
    refuse();
    acceptAll();
}

void FilterProgram::accept() {
    for (const std::size_t jump : m_headerJumps)
        land(jump);
    // As carriesPayload().
    add(BPF_LD | BPF_B | BPF_IND, gige::udpHeaderSize + 4);
    add(BPF_ALU | BPF_AND | BPF_K, 0xF);
    add(BPF_JMP | BPF_JEQ | BPF_K, 3, 2, 0);
    add(BPF_JMP | BPF_JGE | BPF_K, 5, 0, 4);
    add(BPF_JMP | BPF_JGT | BPF_K, 8, 3, 0);
    add(BPF_MISC | BPF_TXA, 0);
    add(BPF_ALU | BPF_ADD | BPF_K, gige::udpHeaderSize + keptOfPayload);
    add(BPF_RET | BPF_A, 0);
    for (const std::size_t jump : m_wholeJumps)
        land(jump);
    acceptAll();
}

void sort(std::vector<StreamEndpoint>& endpoints) {
    const auto key = [](const StreamEndpoint& endpoint) {
        return std::tuple(endpoint.host, endpoint.port, endpoint.camera, endpoint.headersOnly);
    };
    std::sort(endpoints.begin(), endpoints.end(),
              [key](const auto& left, const auto& right) { return key(left) < key(right); });
}

void selectHosts(FilterProgram& program, const std::vector<StreamEndpoint>& endpoints) {
    program.loadKeys();
    for (auto first = endpoints.cbegin(); first != endpoints.cend();) {
        const auto last = std::find_if(first, endpoints.cend(), [first](const auto& endpoint) {
            return endpoint.host != first->host;
        });
        program.selectHost(first, last);
        first = last;
    }
}

} // namespace

std::vector<sock_filter> streamFilter(std::vector<StreamEndpoint> endpoints) {
    sort(endpoints);
    FilterProgram program;
    program.requireWholeUdp();
    selectHosts(program, endpoints);
    program.refuseOthers();
    program.accept();
    return program.take();
}

std::vector<sock_filter> observerFilter(std::vector<StreamEndpoint> endpoints) {
    for (StreamEndpoint& endpoint : endpoints)
        endpoint.headersOnly = true;
    sort(endpoints);
    FilterProgram program;
    program.requireUdpBegin();
    program.acceptControl();
    selectHosts(program, endpoints);
    program.acceptOthersIfLeaders();
    program.accept();
    return program.take();
}

bool mayBeLeader(const gige::UdpDatagram& datagram) {
    return datagram.captured >= headerSize && gige::bigEndian16(datagram.data) == 0 &&
           (gige::bigEndian32(datagram.data + 4) & leaderMask) == leaderWord;
}

std::vector<sock_filter> unselectiveFilter() {
    FilterProgram program;
    program.requireWholeUdp();
    program.acceptAll();
    return program.take();
}

} // namespace gvsp
