// SPDX-License-Identifier: BSD-3-Clause
#include "observer/PacketRecord.h"
#include "observer/CaptureFile.h"
#include "tests/gvsp/StreamScript.h"

#include <gmock/gmock.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include <linux/if_packet.h>
#include <net/if_arp.h>
#include <unistd.h>

namespace {

using namespace observer;
using namespace std::chrono_literals;
using script::Bytes;
using std::chrono::nanoseconds;
using testing::ElementsAre;
using testing::Pair;

constexpr gvsp::StreamEndpoint stream{0x0A00000B, 0x0A000001, 4001, true};

/// Reads a file as its standard describes it, block by block.
struct FileReader {
    struct Packet {
        std::uint32_t adapter;
        std::uint64_t time;
        std::uint32_t size;
        Bytes bytes;
    };

    explicit FileReader(const std::filesystem::path& path) {
        std::ifstream file(path, std::ios::binary);
        const Bytes all{std::istreambuf_iterator<char>(file), {}};
        std::size_t at = 0;
        while (at + 12 <= all.size()) {
            const std::uint32_t length = number(all, at + 4);
            if (length % 4 != 0 || length < 12 || at + length > all.size() ||
                number(all, at + length - 4) != length)
                break;
            readBlock(number(all, at),
                      Bytes(all.begin() + offset(at + 8), all.begin() + offset(at + length - 4)));
            at += length;
        }
        isWhole = at == all.size();
    }

    static std::ptrdiff_t offset(std::size_t at) { return static_cast<std::ptrdiff_t>(at); }
    static std::uint32_t number(const Bytes& bytes, std::size_t at) {
        std::uint32_t value = 0;
        std::memcpy(&value, &bytes.at(at), sizeof value);
        return value;
    }
    void readBlock(std::uint32_t type, const Bytes& body) {
        if (type == 0x0A0D0D0A) {
            isSection = number(body, 0) == 0x1A2B3C4D && number(body, 4) == 1;
        } else if (type == 1) {
            EXPECT_EQ(number(body, 0), 113U) << "Linux cooked";
            const std::size_t size = number(body, 8) >> 16U;
            adapters.emplace_back(body.begin() + 12, body.begin() + 12 + offset(size));
            const std::size_t next = 12 + (size + 3) / 4 * 4;
            EXPECT_EQ(number(body, next), 9U | 1U << 16U) << "resolution";
            EXPECT_EQ(body.at(next + 4), 9U) << "nanoseconds";
        } else if (type == 5) {
            EXPECT_EQ(number(body, 12), 5U | 8U << 16U);
            missed[number(body, 0)] = number(body, 16);
        } else if (type == 6) {
            const auto end = body.begin() + 20 + offset(number(body, 12));
            packets.push_back({number(body, 0),
                               std::uint64_t{number(body, 4)} << 32U | number(body, 8),
                               number(body, 16), Bytes(body.begin() + 20, end)});
        }
    }

    /// Packets that were missed, by adapter.
    std::map<std::uint32_t, std::uint32_t> missed;
    bool isWhole = false;
    bool isSection = false;
    std::vector<std::string> adapters;
    std::vector<Packet> packets;
};

class PacketRecords : public testing::Test {
protected:
    PacketRecords() {
        std::filesystem::create_directory(folder);
        link.sll_hatype = ARPHRD_ETHER;
        link.sll_pkttype = PACKET_HOST;
        link.sll_halen = 6;
        link.sll_addr[0] = 0xAB;
    }
    ~PacketRecords() override { std::filesystem::remove_all(folder); }

    void add(PacketRecord& record, const Bytes& packet, std::chrono::nanoseconds time) const {
        gvsp::StreamDatagram datagram;
        // As the ring does, it has 28 bytes of image data.
        const std::size_t captured = packet[28 + 4] % 16 == script::Data ? 56 : packet.size();
        ASSERT_TRUE(gige::readIpFragment(packet.data(), captured, packet.size(), datagram));
        datagram.packet = packet.data();
        datagram.packetSize = static_cast<std::uint32_t>(packet.size());
        datagram.link = &link;
        datagram.arrival = time;
        record.add(datagram);
    }

    const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("capture" + std::to_string(::getpid()));
    const std::filesystem::path file = folder / "lost.pcapng";
    sockaddr_ll link{};
};

TEST_F(PacketRecords, areFilesOfHeadersSortedByTime) {
    PacketRecord first(0, std::size_t{4} << 20U);
    PacketRecord second(1, std::size_t{4} << 20U);
    const Bytes leader = script::ipPacket(stream, script::Camera().leader(7, 1));
    const Bytes data = script::ipPacket(stream, script::Camera().data(7, 1));
    const Bytes extended = script::ipPacket(stream, script::Camera{true}.data(7, 1));
    constexpr auto begin = 1'700'000'000s + 7ns;
    add(first, leader, begin);
    add(second, data, begin + 1ns);
    add(first, data, begin + 2ns);
    second.packets();
    add(second, extended, begin + 3ns);
    ASSERT_FALSE(writeCapture(file, {{"first", first.packets()}, {"other0", second.packets(), 7}}));

    const FileReader read(file);
    EXPECT_TRUE(read.isWhole && read.isSection);
    EXPECT_THAT(read.adapters, ElementsAre("first", "other0"));
    EXPECT_THAT(read.missed, ElementsAre(Pair(0, 0), Pair(1, 7)));
    std::vector<std::pair<std::uint32_t, std::uint32_t>> seen;
    for (std::size_t i = 0; i < read.packets.size(); ++i) {
        EXPECT_EQ(read.packets[i].time, 1'700'000'000'000'000'007U + i);
        seen.emplace_back(read.packets[i].adapter, read.packets[i].size);
    }
    const auto whole = static_cast<std::uint32_t>(16 + data.size());
    ASSERT_THAT(seen, ElementsAre(Pair(0, 16 + leader.size()), Pair(1, whole), Pair(0, whole),
                                  Pair(1, 16 + extended.size())));
    Bytes cooked{0, 0, 0, 1, 0, 6, 0xAB, 0, 0, 0, 0, 0, 0, 0, 8, 0};
    cooked.insert(cooked.end(), leader.begin(), leader.end());
    EXPECT_EQ(read.packets[0].bytes, cooked);
    EXPECT_EQ(read.packets[1].bytes.size(), 16 + 28 + 8 + 8U) << "up to the header of a part";
    EXPECT_EQ(read.packets[3].bytes.size(), 16 + 28 + 20 + 8U);
}

TEST_F(PacketRecords, keepTheLastMinuteWithinTheirMemory) {
    constexpr std::size_t megabyte = std::size_t{1} << 20U;
    PacketRecord record(0, 3 * megabyte);
    const Bytes data = script::ipPacket(stream, script::Camera().data(7, 1));
    const auto write = [&] {
        EXPECT_FALSE(writeCapture(file, {{"first", record.packets()}}));
        return FileReader(file).packets;
    };
    constexpr int count = 100'000;
    for (int i = 0; i < count; ++i)
        add(record, data, 100s + i * 1us);
    const auto packets = write();
    EXPECT_EQ(packets.back().time, (100s + (count - 1) * 1us) / 1ns);
    EXPECT_LE(std::filesystem::file_size(file), 3 * megabyte + 200);
    EXPECT_GE(std::filesystem::file_size(file), 2 * megabyte);
    EXPECT_EQ(nanoseconds(packets.front().time), record.completeSince() + 1us);

    add(record, data, 130s);
    add(record, data, 165s);
    ASSERT_EQ(write().size(), 2U);
    // A whole frame in a packet: its beginning.
    add(record, script::ipPacket(stream, Bytes(2000, script::AllIn)), 166s);
    EXPECT_EQ(write().back().bytes.size(), 16 + PacketRecord::snapLength);
}

TEST_F(PacketRecords, goOnAfterTheClockWasSetBack) {
    PacketRecord record(0, std::size_t{3} << 20U);
    const Bytes data = script::ipPacket(stream, script::Camera().data(7, 1));
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    for (const auto back : {20s, 120s}) {
        add(record, data, now + back);
        add(record, data, now - back);
        ASSERT_FALSE(writeCapture(file, {{"first", record.packets()}}));
        const auto packets = FileReader(file).packets;
        ASSERT_EQ(packets.size(), 1U) << "without those later than the clock";
        EXPECT_EQ(nanoseconds(packets[0].time), now - back);
        EXPECT_EQ(record.completeSince(), back > PacketRecord::age ? now - back : 0s);
    }
}

TEST_F(PacketRecords, replaceTheFileOnlyWhenAllIsWritten) {
    std::ofstream(file) << "before";
    std::filesystem::create_directory(file.string() + ".part");
    EXPECT_TRUE(writeCapture(file, {}));
    std::filesystem::remove(file.string() + ".part");
    // What another program left there is not followed.
    std::ofstream(folder / "other") << "other";
    std::filesystem::create_symlink(folder / "other", file.string() + ".part");
    EXPECT_EQ(std::filesystem::file_size(file), 6U);
    EXPECT_EQ(writeCapture(folder / "none" / "file", {}), std::errc::no_such_file_or_directory);
    ASSERT_FALSE(writeCapture(file, {{"idle", {}}}));
    EXPECT_TRUE(FileReader(file).isWhole);
    EXPECT_EQ(std::filesystem::file_size(folder / "other"), 5U);
    EXPECT_FALSE(std::filesystem::exists(file.string() + ".part"));
}

} // namespace
