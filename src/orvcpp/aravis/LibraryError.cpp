// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/LibraryError.h"

#include <algorithm>
#include <iterator>

namespace orv::aravis {

namespace {

struct Translation {
    int error;
    OrvErrorType code;
};

constexpr Translation deviceErrors[] = {
    {ARV_DEVICE_ERROR_WRONG_FEATURE, OrvErrorWrongType},
    {ARV_DEVICE_ERROR_FEATURE_NOT_FOUND, OrvErrorNotFound},
    {ARV_DEVICE_ERROR_NOT_CONNECTED, OrvErrorNotFound},
    {ARV_DEVICE_ERROR_PROTOCOL_ERROR, OrvErrorIO},
    {ARV_DEVICE_ERROR_TRANSFER_ERROR, OrvErrorIO},
    {ARV_DEVICE_ERROR_TIMEOUT, OrvErrorTimeout},
    {ARV_DEVICE_ERROR_NOT_FOUND, OrvErrorNotFound},
    {ARV_DEVICE_ERROR_INVALID_PARAMETER, OrvErrorBadParameter},
    {ARV_DEVICE_ERROR_GENICAM_NOT_FOUND, OrvErrorFeaturesUnavailable},
    {ARV_DEVICE_ERROR_NO_STREAM_CHANNEL, OrvErrorNotSupported},
    {ARV_DEVICE_ERROR_NOT_CONTROLLER, OrvErrorInvalidAccess},
    {ARV_DEVICE_ERROR_UNKNOWN, OrvErrorUnknown},
    {ARV_DEVICE_ERROR_PROTOCOL_ERROR_NOT_IMPLEMENTED, OrvErrorNotImplemented},
    {ARV_DEVICE_ERROR_PROTOCOL_ERROR_INVALID_PARAMETER, OrvErrorInvalidValue},
    {ARV_DEVICE_ERROR_PROTOCOL_ERROR_INVALID_ADDRESS, OrvErrorInvalidAddress},
    {ARV_DEVICE_ERROR_PROTOCOL_ERROR_WRITE_PROTECT, OrvErrorInvalidAccess},
    {ARV_DEVICE_ERROR_PROTOCOL_ERROR_BAD_ALIGNMENT, OrvErrorInvalidAddress},
    {ARV_DEVICE_ERROR_PROTOCOL_ERROR_ACCESS_DENIED, OrvErrorInvalidAccess},
    {ARV_DEVICE_ERROR_PROTOCOL_ERROR_BUSY, OrvErrorBusy}};

constexpr Translation nodeErrors[] = {
    {ARV_GC_ERROR_PROPERTY_NOT_DEFINED, OrvErrorNotAvailable},
    {ARV_GC_ERROR_PVALUE_NOT_DEFINED, OrvErrorXml},
    {ARV_GC_ERROR_INVALID_PVALUE, OrvErrorXml},
    {ARV_GC_ERROR_EMPTY_ENUMERATION, OrvErrorNotAvailable},
    {ARV_GC_ERROR_OUT_OF_RANGE, OrvErrorInvalidValue},
    {ARV_GC_ERROR_NO_DEVICE_SET, OrvErrorDeviceNotOpen},
    {ARV_GC_ERROR_NO_EVENT_IMPLEMENTATION, OrvErrorNotImplemented},
    {ARV_GC_ERROR_NODE_NOT_FOUND, OrvErrorXml},
    {ARV_GC_ERROR_ENUM_ENTRY_NOT_FOUND, OrvErrorInvalidValue},
    {ARV_GC_ERROR_INVALID_LENGTH, OrvErrorInvalidValue},
    {ARV_GC_ERROR_READ_ONLY, OrvErrorInvalidAccess},
    {ARV_GC_ERROR_SET_FROM_STRING_UNDEFINED, OrvErrorWrongType},
    {ARV_GC_ERROR_GET_AS_STRING_UNDEFINED, OrvErrorWrongType},
    {ARV_GC_ERROR_INVALID_BIT_RANGE, OrvErrorXml},
    {ARV_GC_ERROR_INVALID_SYNTAX, OrvErrorXml}};

constexpr Translation systemErrors[] = {{G_IO_ERROR_TIMED_OUT, OrvErrorTimeout},
                                        {G_IO_ERROR_BUSY, OrvErrorBusy},
                                        {G_IO_ERROR_ADDRESS_IN_USE, OrvErrorInUse},
                                        {G_IO_ERROR_PERMISSION_DENIED, OrvErrorInvalidAccess},
                                        {G_IO_ERROR_NOT_FOUND, OrvErrorNotFound}};

template <std::size_t size>
OrvErrorType lookUp(const Translation (&table)[size], int error, OrvErrorType otherwise) {
    const auto found =
        std::find_if(std::begin(table), std::end(table),
                     [error](const Translation& entry) { return entry.error == error; });
    return found == std::end(table) ? otherwise : found->code;
}

} // namespace

OrvErrorType LibraryError::code() const {
    if (!m_error)
        return OrvErrorSuccess;
    if (m_error->domain == arv_device_error_quark())
        return lookUp(deviceErrors, m_error->code, OrvErrorUnspecified);
    if (m_error->domain == arv_gc_error_quark())
        return lookUp(nodeErrors, m_error->code, OrvErrorUnspecified);
    if (m_error->domain == g_io_error_quark())
        return lookUp(systemErrors, m_error->code, OrvErrorIO);
    return OrvErrorUnspecified;
}

} // namespace orv::aravis
