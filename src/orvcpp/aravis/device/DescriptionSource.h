// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/OrvTypes.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orv::aravis {

/// Memory of a camera that holds its description.
struct DescriptionPlace {
    std::uint32_t address = 0;
    std::uint64_t size = 0;
    /// The description is packed in a ZIP archive.
    bool isArchive = false;
};

/// Reads "Local:name.xml;address;size" with hexadecimal numbers, upper or lower case, optionally
/// with "///" before the name and a query behind the size. Empty for any other text and for an
/// address or a size of more than 32 bits.
std::optional<DescriptionPlace> parseDescriptionUrl(const std::string& url);

/// Why the library must not unpack an archive: parts beyond its end, or a content larger than any
/// description. Empty when it may.
std::string archiveFault(const std::vector<std::uint8_t>& archive);

/// Result of a check before the library opens a camera. `fault` is empty unless the camera is
/// refused for what it answers; it is for the log.
struct SourceCheck {
    OrvErrorType error = OrvErrorSuccess;
    std::string fault;
};

/// Asks the GigE Vision camera at \p address (host byte order) for the places of its description,
/// for the first and the last bytes there, and for an archive as a whole: six requests, and one per
/// 512 bytes of an archive. OrvErrorTimeout when the camera does not answer a request within 1.5 s.
/// OrvErrorFeaturesUnavailable with a fault for a place that the library must not follow: a file of
/// this computer, an absurd size, a broken archive. Reentrant.
SourceCheck checkDescriptionSource(std::uint32_t address);

} // namespace orv::aravis
