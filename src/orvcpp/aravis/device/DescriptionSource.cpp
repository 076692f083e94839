// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/device/DescriptionSource.h"

#include "gige/BootstrapRegisters.h"
#include "gige/Gvcp.h"
#include "orvcpp/core/DescriptionCheck.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <filesystem>
#include <regex>

namespace orv::aravis {

namespace {

using std::chrono::milliseconds;

/// For one request, with one repetition.
constexpr milliseconds answerWait{400};
constexpr milliseconds pendingWait{800};
constexpr int answerTries = 2;
/// Bytes of one request.
constexpr std::uint16_t blockSize = 512;
/// For a whole archive: a camera that answers each request late is not waited for.
constexpr std::chrono::seconds archiveWait{10};
constexpr std::uint64_t largestArchive = 4 * 1024 * 1024;

/// Parts of a ZIP archive: sizes in bytes, and their first bytes.
constexpr std::size_t endSize = 22;
constexpr std::size_t entrySize = 46;
constexpr std::size_t fileSize = 30;
constexpr std::array<std::uint8_t, 4> endMark{'P', 'K', 5, 6};
constexpr std::array<std::uint8_t, 4> entryMark{'P', 'K', 1, 2};
constexpr std::array<std::uint8_t, 4> fileMark{'P', 'K', 3, 4};

/// A number of 2 or 4 bytes, the lowest first.
std::uint64_t littleEndian(const std::vector<std::uint8_t>& bytes, std::size_t at,
                           std::size_t count) {
    std::uint64_t number = 0;
    for (std::size_t i = count; i > 0; --i)
        number = number << 8U | bytes[at + i - 1];
    return number;
}

bool hasMark(const std::vector<std::uint8_t>& bytes, std::size_t at, std::size_t size,
             const std::array<std::uint8_t, 4>& mark) {
    return bytes.size() >= size && at <= bytes.size() - size &&
           std::equal(mark.begin(), mark.end(), bytes.begin() + static_cast<std::ptrdiff_t>(at));
}

/// Whether the file of an entry of the archive's directory lies in the archive.
bool isFileInside(const std::vector<std::uint8_t>& archive, std::size_t entry) {
    const std::uint64_t packed = littleEndian(archive, entry + 20, 4);
    const std::uint64_t file = littleEndian(archive, entry + 42, 4);
    if (!hasMark(archive, file, fileSize, fileMark))
        return false;
    const std::uint64_t data =
        file + fileSize + littleEndian(archive, file + 26, 2) + littleEndian(archive, file + 28, 2);
    return data <= archive.size() && packed <= archive.size() - data;
}

/// Checks the entries of the directory, which reaches from \p at to \p end.
std::string directoryFault(const std::vector<std::uint8_t>& archive, std::size_t at,
                           std::size_t end, std::uint64_t entries) {
    for (; entries > 0; --entries) {
        if (!hasMark(archive, at, entrySize, entryMark) || at + entrySize > end)
            return "the archive's directory is broken";
        if (!isFileInside(archive, at))
            return "a file is not inside of the archive";
        if (littleEndian(archive, at + 24, 4) > largestDescription)
            return "a file of the archive is too large";
        at += entrySize + littleEndian(archive, at + 28, 2) + littleEndian(archive, at + 30, 2) +
              littleEndian(archive, at + 32, 2);
    }
    return at == end ? std::string() : "the archive's directory is broken";
}

bool isAnswered(const std::optional<gige::Gvcp::Answer>& answer) {
    return answer && !gige::Gvcp::isBusy(*answer);
}

/// All bytes from \p place on; empty when the camera does not answer or refuses one.
std::optional<std::vector<std::uint8_t>> readAll(const gige::Gvcp& camera,
                                                 const DescriptionPlace& place) {
    const auto end = std::chrono::steady_clock::now() + archiveWait;
    std::vector<std::uint8_t> bytes;
    while (bytes.size() < place.size) {
        if (std::chrono::steady_clock::now() > end)
            return std::nullopt;
        const auto offset = static_cast<std::uint32_t>(bytes.size());
        const std::uint64_t left = (place.size - offset + 3) / 4 * 4;
        const auto size = static_cast<std::uint16_t>(std::min<std::uint64_t>(left, blockSize));
        const auto answer = camera.readMemory(place.address + offset, size);
        if (!isAnswered(answer) || answer->status != 0 || answer->data.size() != size)
            return std::nullopt;
        bytes.insert(bytes.end(), answer->data.begin(), answer->data.end());
    }
    bytes.resize(place.size);
    return bytes;
}

SourceCheck refused(const std::string& fault) {
    return {OrvErrorFeaturesUnavailable, fault};
}

/// Asks for the first and the last word, so that a camera which does not answer these is not left
/// to the library, which waits half a minute for each.
SourceCheck checkWords(const gige::Gvcp& camera, const DescriptionPlace& place) {
    for (const std::uint64_t offset : {std::uint64_t{0}, (place.size - 1) / 4 * 4}) {
        const auto address = static_cast<std::uint32_t>((place.address & ~3U) + offset);
        if (!isAnswered(camera.readMemory(address, 4)))
            return {OrvErrorTimeout, {}};
    }
    return {};
}

SourceCheck checkArchive(const gige::Gvcp& camera, const DescriptionPlace& place) {
    if (place.size > largestArchive)
        return refused("its archive has " + std::to_string(place.size) + " bytes");
    const auto archive = readAll(camera, place);
    if (!archive)
        return {OrvErrorTimeout, {}};
    const std::string fault = archiveFault(*archive);
    return fault.empty() ? SourceCheck{} : refused(fault);
}

/// The library follows these two kinds of places only.
bool isFollowed(const std::string& url) {
    static const std::regex kinds("(local|file):[^]*", std::regex::icase);
    return std::regex_match(url, kinds);
}

/// Whether a URL names a file of this host that the library reads in no time: a camera may name
/// its maker's file behind the place of its own description.
bool isPlainFile(const std::string& url) {
    static const std::regex file("file:(?://)?([^]*)", std::regex::icase);
    std::smatch parts;
    if (!std::regex_match(url, parts, file))
        return false;
    std::error_code error;
    const auto status = std::filesystem::status(parts[1].str(), error);
    return !std::filesystem::exists(status) || std::filesystem::is_regular_file(status);
}

SourceCheck checkPlace(const gige::Gvcp& camera, const std::string& url) {
    const auto place = parseDescriptionUrl(url);
    if (!place)
        return refused("its place is \"" + onOneLine(url) + "\", not in the camera");
    if (place->size == 0 || place->size > largestDescription)
        return refused("it has " + std::to_string(place->size) + " bytes");
    const SourceCheck words = checkWords(camera, *place);
    return words.error != OrvErrorSuccess || !place->isArchive ? words
                                                               : checkArchive(camera, *place);
}

} // namespace

std::optional<DescriptionPlace> parseDescriptionUrl(const std::string& url) {
    static const std::regex local(
        "local:(///)?([^;]+);(?:0x)?([0-9a-f]{1,8});(?:0x)?([0-9a-f]{1,8})(\\?.*)?",
        std::regex::icase);
    std::smatch parts;
    if (!std::regex_match(url, parts, local))
        return std::nullopt;
    DescriptionPlace place;
    place.address = static_cast<std::uint32_t>(std::stoul(parts[3], nullptr, 16));
    place.size = std::stoul(parts[4], nullptr, 16);
    static const std::regex archive(".*\\.zip", std::regex::icase);
    place.isArchive = std::regex_match(parts[2].str(), archive);
    return place;
}

std::string archiveFault(const std::vector<std::uint8_t>& archive) {
    const auto end = std::search(archive.begin(), archive.end(), endMark.begin(), endMark.end());
    const auto at = static_cast<std::size_t>(end - archive.begin());
    // A second mark would make it ambiguous.
    if (!hasMark(archive, at, endSize, endMark) ||
        std::search(end + 1, archive.end(), endMark.begin(), endMark.end()) != archive.end())
        return "the archive has no end";
    const std::uint64_t size = littleEndian(archive, at + 12, 4);
    const std::uint64_t start = littleEndian(archive, at + 16, 4);
    const std::uint64_t entries = littleEndian(archive, at + 10, 2);
    if (start + size != at || entries != littleEndian(archive, at + 8, 2))
        return "the archive's directory is broken";
    return directoryFault(archive, start, at, entries);
}

SourceCheck checkDescriptionSource(std::uint32_t address) {
    const gige::Gvcp camera(address, answerWait, answerTries, pendingWait);
    // The second is used when the first fails.
    for (const std::uint32_t urlRegister : gige::descriptionUrlRegisters) {
        const auto answer =
            camera.readMemory(urlRegister, static_cast<std::uint16_t>(gige::descriptionUrlSize));
        if (!isAnswered(answer))
            return {OrvErrorTimeout, {}};
        const std::string url = gige::Gvcp::text(*answer);
        if (!isFollowed(url) ||
            (urlRegister != gige::descriptionUrlRegisters[0] && isPlainFile(url)))
            continue;
        if (const SourceCheck check = checkPlace(camera, url); check.error != OrvErrorSuccess)
            return check;
    }
    return {};
}

} // namespace orv::aravis
