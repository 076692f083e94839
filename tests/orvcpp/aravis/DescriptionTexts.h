// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>
#include <string>
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
    std::vector<std::uint8_t> bytes;
    const auto put = [&bytes](std::uint64_t number, int count) {
        for (; count > 0; --count, number >>= 8U)
            bytes.push_back(static_cast<std::uint8_t>(number));
    };
    const auto putText = [&bytes](const std::string& text) {
        bytes.insert(bytes.end(), text.begin(), text.end());
    };
    const auto putSizes = [&] {
        put(0, 4);
        put(content.size(), 4);
        put(content.size(), 4);
        put(name.size(), 2);
        put(0, 2);
    };
    putText("PK\3\4");
    put(0, 10);
    putSizes();
    putText(name + content);
    const std::size_t directory = bytes.size();
    putText("PK\1\2");
    put(0, 12);
    putSizes();
    put(0, 14);
    putText(name);
    const std::size_t end = bytes.size();
    putText("PK\5\6");
    put(0, 4);
    put(1, 2);
    put(1, 2);
    put(end - directory, 4);
    put(directory, 4);
    put(0, 2);
    return bytes;
}

} // namespace descriptions
