// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/OrvTypes.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orv::aravis {

/// Memory of a camera that holds its description (GigE Vision 2.2, 9.3.1: "Local:").
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

/// What in an archive would end its reader: parts beyond its end, a content larger than any
/// description. Empty when there is nothing.
std::string archiveFault(const std::vector<std::uint8_t>& archive);

/// Result of a check before the library opens a camera, and what to say of a camera that is
/// refused for what it says.
struct SourceCheck {
    OrvErrorType error = OrvErrorSuccess;
    std::string fault;
};

/// Asks the GigE Vision camera at \p address (host byte order) for the place of its description,
/// for the first and the last bytes there, and for an archive as a whole. OrvErrorTimeout when the
/// camera does not answer or only asks for more time, after 1.5 s at most.
/// OrvErrorFeaturesUnavailable with a fault for a place that the library must not follow: a file of
/// this computer, an absurd size, a broken archive. Takes six requests. Reentrant.
SourceCheck checkDescriptionSource(std::uint32_t address);

} // namespace orv::aravis
