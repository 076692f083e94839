// SPDX-License-Identifier: BSD-3-Clause
#include "observer/CaptureFile.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

#include <unistd.h>

namespace observer {

namespace {

constexpr std::uint32_t sectionType = 0x0A0D0D0A;
constexpr std::uint32_t byteOrderMagic = 0x1A2B3C4D;
constexpr std::uint32_t adapterType = 1;
constexpr std::uint32_t statisticsType = 5;
constexpr std::uint32_t packetType = 6;
constexpr std::uint16_t linuxCooked = 113;
constexpr std::uint16_t nameOption = 2;
constexpr std::uint16_t droppedOption = 5;
constexpr std::uint16_t resolutionOption = 9;
/// Times are in units of 10^-9 s.
constexpr std::uint8_t nanoseconds = 9;
/// Bytes of the longest header of a link.
constexpr std::uint32_t linkHeader = 16;

constexpr std::size_t padded(std::size_t size) {
    return (size + 3) / 4 * 4;
}

/// Bytes in the byte order of this computer, which the file names.
class Bytes {
public:
    template <typename Value> void add(Value value) {
        const auto* const begin = reinterpret_cast<const char*>(&value);
        m_bytes.append(begin, sizeof value);
    }
    void addOption(std::uint16_t code, const std::string& value) {
        add(code);
        add(static_cast<std::uint16_t>(value.size()));
        m_bytes.append(value);
        m_bytes.resize(padded(m_bytes.size()));
    }
    /// A block with these contents.
    void addBlock(std::uint32_t type, const Bytes& contents) {
        const auto length = static_cast<std::uint32_t>(contents.m_bytes.size() + 12);
        add(type);
        add(length);
        m_bytes.append(contents.m_bytes);
        add(length);
    }
    const std::string& all() const { return m_bytes; }

private:
    std::string m_bytes;
};

std::string fileHeader(const std::vector<CapturedAdapter>& adapters) {
    Bytes file;
    Bytes section;
    section.add(byteOrderMagic);
    section.add(std::uint16_t{1});
    section.add(std::uint16_t{0});
    section.add(std::int64_t{-1});
    file.addBlock(sectionType, section);
    for (const CapturedAdapter& adapter : adapters) {
        Bytes description;
        description.add(linuxCooked);
        description.add(std::uint16_t{0});
        description.add(static_cast<std::uint32_t>(PacketRecord::snapLength) + linkHeader);
        description.addOption(nameOption, adapter.name);
        description.addOption(resolutionOption, std::string(1, static_cast<char>(nanoseconds)));
        description.addOption(0, {});
        file.addBlock(adapterType, description);
    }
    return file.all();
}

/// The next packet of an adapter.
class Cursor {
public:
    explicit Cursor(const PacketRecord::Parts& parts) : m_parts(parts) { skipEmptyParts(); }

    bool isAtEnd() const { return m_part == m_parts.size(); }
    const char* data() const {
        return reinterpret_cast<const char*>(m_parts[m_part]->data() + m_at);
    }
    PacketBlock block() const {
        PacketBlock block;
        std::memcpy(&block, data(), sizeof block);
        return block;
    }
    std::uint64_t time() const {
        const PacketBlock now = block();
        return std::uint64_t{now.timeHigh} << 32U | now.timeLow;
    }
    void advance() {
        m_at += block().length;
        skipEmptyParts();
    }

private:
    void skipEmptyParts() {
        for (; !isAtEnd() && m_at == m_parts[m_part]->size(); m_at = 0)
            ++m_part;
    }

    const PacketRecord::Parts& m_parts;
    std::size_t m_part = 0;
    std::size_t m_at = 0;
};

std::uint64_t nanosecondsOf(std::chrono::nanoseconds time) {
    return static_cast<std::uint64_t>(time.count());
}

/// Time of the newest packet that is not later than \p now.
std::uint64_t newestTime(const std::vector<CapturedAdapter>& adapters, std::uint64_t now) {
    std::uint64_t newest = 0;
    for (const CapturedAdapter& adapter : adapters) {
        for (Cursor cursor(adapter.packets); !cursor.isAtEnd(); cursor.advance())
            if (cursor.time() <= now)
                newest = std::max(newest, cursor.time());
    }
    return newest;
}

/// What this program has missed of each adapter (Interface Statistics Block).
std::string statistics(const std::vector<CapturedAdapter>& adapters, std::uint64_t now) {
    Bytes file;
    std::uint32_t number = 0;
    for (const CapturedAdapter& adapter : adapters) {
        Bytes figures;
        figures.add(number++);
        figures.add(static_cast<std::uint32_t>(now >> 32U));
        figures.add(static_cast<std::uint32_t>(now));
        std::string missed(sizeof adapter.missed, '\0');
        std::memcpy(missed.data(), &adapter.missed, sizeof adapter.missed);
        figures.addOption(droppedOption, missed);
        figures.addOption(0, {});
        file.addBlock(statisticsType, figures);
    }
    return file.all();
}

/// Writes to a file that does not take the place of another one before it is complete.
class UnfinishedFile {
public:
    /// Replaces what a program that was killed has left, and follows no link.
    explicit UnfinishedFile(const std::filesystem::path& path) : m_path(path) {
        ::unlink(path.c_str());
        errno = 0;
        m_file.reset(std::fopen(path.c_str(), "wbxe"));
        noteError(m_file == nullptr);
    }
    void write(const char* data, std::size_t size) {
        if (m_file)
            noteError(std::fwrite(data, 1, size, m_file.get()) != size);
    }
    /// Gives the file its name, or removes it after an error.
    std::error_code finish(const std::filesystem::path& name) {
        if (!m_file)
            return m_error;
        noteError(std::fclose(m_file.release()) != 0);
        if (!m_error)
            std::filesystem::rename(m_path, name, m_error);
        if (m_error)
            ::unlink(m_path.c_str());
        return m_error;
    }

private:
    struct Close {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };

    void noteError(bool hasFailed) {
        if (hasFailed && !m_error)
            m_error.assign(errno != 0 ? errno : EIO, std::generic_category());
    }

    const std::filesystem::path m_path;
    std::unique_ptr<std::FILE, Close> m_file;
    std::error_code m_error;
};

void writePackets(UnfinishedFile& file, const std::vector<CapturedAdapter>& adapters,
                  std::uint64_t now) {
    const std::uint64_t newest = newestTime(adapters, now);
    const std::uint64_t earliest = newest - std::min(newest, nanosecondsOf(PacketRecord::age));
    std::vector<Cursor> cursors;
    for (const CapturedAdapter& adapter : adapters)
        cursors.emplace_back(adapter.packets);
    while (true) {
        Cursor* next = nullptr;
        for (Cursor& each : cursors) {
            if (!each.isAtEnd() && (next == nullptr || each.time() < next->time()))
                next = &each;
        }
        if (next == nullptr)
            return;
        if (next->time() >= earliest && next->time() <= newest)
            file.write(next->data(), next->block().length);
        next->advance();
    }
}

} // namespace

PacketBlock packetBlock(std::uint32_t adapter, std::chrono::nanoseconds arrival,
                        std::size_t captured, std::size_t size) {
    const std::uint64_t time = nanosecondsOf(arrival);
    return {packetType,
            static_cast<std::uint32_t>(sizeof(PacketBlock) + padded(captured) +
                                       sizeof PacketBlock::length),
            adapter,
            static_cast<std::uint32_t>(time >> 32U),
            static_cast<std::uint32_t>(time),
            static_cast<std::uint32_t>(captured),
            static_cast<std::uint32_t>(size)};
}

std::error_code writeCapture(const std::filesystem::path& file,
                             const std::vector<CapturedAdapter>& adapters) {
    std::filesystem::path unfinished = file;
    unfinished += ".part";
    UnfinishedFile written(unfinished);
    const std::uint64_t now = nanosecondsOf(std::chrono::system_clock::now().time_since_epoch());
    const std::string header = fileHeader(adapters);
    written.write(header.data(), header.size());
    writePackets(written, adapters, now);
    const std::string missed = statistics(adapters, now);
    written.write(missed.data(), missed.size());
    return written.finish(file);
}

} // namespace observer
