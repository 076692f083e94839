// SPDX-License-Identifier: BSD-3-Clause
#include "sdk/ErrorText.h"

#include <array>

namespace {

constexpr OrvErrorType firstCode = -40;
constexpr OrvErrorType lastCode = 1;
constexpr OrvErrorType viewerTimeout = 7000;

/// Texts of the codes from firstCode to lastCode.
constexpr std::array<const char*, lastCode - firstCode + 1> errorTexts = {
    "(The operation requires more buffers)",
    "(Something could not be accomplished with a given number of retries)",
    "(An entity cannot be uniquely identified based on the information provided)",
    "(A required transport layer could not be found or loaded)",
    "(The XML for the module is currently not loaded; the module could be in the wrong state or "
    "the XML could not be retrieved or could not be parsed properly)",
    "(A callback provided by the user threw an exception)",
    "(A frame expected to contain chunk data does not contain chunk data)",
    "(Something has already been done)",
    "(The given address is out of range or invalid for internal reasons)",
    "(Something is not initialized)",
    "(Something is not available)",
    "(Error parsing XML)",
    "(Error condition unknown)",
    "(Something is already in use)",
    "(An error occurred parsing a buffer containing chunk data)",
    "(The function has no data to work on)",
    "(The responsible module/entity is busy executing actions)",
    "(Unspecified runtime error)",
    "(Unspecified GenTL runtime error)",
    "(The valid value set could not be retrieved, since the feature does not provide this "
    "property)",
    "(Low level IO error in transport layer)",
    "(A multiple register read or write was partially completed)",
    "(API feature is not supported)",
    "(API feature is not implemented)",
    "(No transport layers were found)",
    "(Call is invalid in the current context (e.g callback))",
    "(Resources not available (e.g memory))",
    "(Other error)",
    "(Timeout during wait)",
    "(The value was not valid; either out of bounds or not an increment of the minimum)",
    "(The feature type for this access function was wrong)",
    "(More data was returned in a string/list than space was provided)",
    "(The given struct size is not valid for this version of the API)",
    "(One of the parameters was invalid (usually an illegal pointer))",
    "(Operation is invalid with the current access mode)",
    "(Device was not opened for usage)",
    "(The given handle is not valid)",
    "(The designated instance (camera, feature etc.) cannot be found)",
    "(OrvStartup() was not called before the current command)",
    "(Unexpected fault in Orv API or driver)",
    "(No error)",
    "(The minimum error code to use for user defined error codes to avoid conflict with existing "
    "error codes)",
};

} // namespace

std::string errorText(OrvErrorType code) {
    if (code == viewerTimeout)
        return "<Viewer Timeout>";
    if (code < firstCode || code > lastCode)
        return "(Return code undefined)";
    return errorTexts[static_cast<std::size_t>(code - firstCode)];
}
