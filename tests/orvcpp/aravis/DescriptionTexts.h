// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

/// GenICam descriptions for tests.
namespace descriptions {

inline std::string described(const std::string& nodes) {
    return "<?xml version='1.0'?><RegisterDescription ModelName='M' VendorName='V' "
           "StandardNameSpace='None' ProductGuid='1' VersionGuid='2' SchemaMajorVersion='1' "
           "SchemaMinorVersion='1' SchemaSubMinorVersion='0' MajorVersion='1' MinorVersion='0' "
           "SubMinorVersion='0' xmlns='http://www.genicam.org/GenApi/Version_1_1'>" +
           nodes + "</RegisterDescription>";
}

inline std::string repeated(const std::string& text, int times) {
    std::string result;
    for (int i = 0; i < times; ++i)
        result += text;
    return result;
}

/// \p count nodes N0, N1, ... of a form in which % is the node's name and @ that of the next.
inline std::string chain(const std::string& form, int count) {
    std::string result;
    for (int i = 0; i < count; ++i)
        for (const char letter : form) {
            if (letter == '%' || letter == '@')
                result += 'N' + std::to_string(letter == '%' ? i : i + 1);
            else
                result += letter;
        }
    return result;
}

/// A ZIP archive of one file, which is stored.
inline std::vector<std::uint8_t> archive(const std::string& name, const std::string& content) {
    using Fields = std::initializer_list<std::pair<std::uint64_t, int>>;
    std::vector<std::uint8_t> bytes;
    // Numbers with their bytes, the lowest first.
    const auto put = [&bytes](Fields fields) {
        for (auto [number, count] : fields)
            for (; count > 0; --count, number >>= 8U)
                bytes.push_back(static_cast<std::uint8_t>(number));
    };
    const auto putText = [&bytes](const std::string& text) {
        bytes.insert(bytes.end(), text.begin(), text.end());
    };
    const std::uint64_t size = content.size();
    put({{0x04034B50, 4}, {0, 14}, {size, 4}, {size, 4}, {name.size(), 2}, {0, 2}});
    putText(name + content);
    const std::size_t directory = bytes.size();
    put({{0x02014B50, 4}, {0, 16}, {size, 4}, {size, 4}, {name.size(), 2}, {0, 16}});
    putText(name);
    const std::size_t end = bytes.size();
    put({{0x06054B50, 4}, {0, 4}, {1, 2}, {1, 2}, {end - directory, 4}, {directory, 4}, {0, 2}});
    return bytes;
}

} // namespace descriptions
