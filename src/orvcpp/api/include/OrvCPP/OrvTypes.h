// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>

/// Result of every SDK operation: 0 is success, negative codes are the SDK's own errors,
/// positive codes are free for users of the SDK.
using OrvErrorType = std::int32_t;

/// The SDK's result codes by name.
enum : OrvErrorType {
    OrvErrorSuccess = 0,
    OrvErrorInternalFault = -1,
    OrvErrorApiNotStarted = -2,
    OrvErrorNotFound = -3,
    OrvErrorBadHandle = -4,
    OrvErrorDeviceNotOpen = -5,
    OrvErrorInvalidAccess = -6,
    OrvErrorBadParameter = -7,
    OrvErrorStructSize = -8,
    OrvErrorMoreData = -9,
    OrvErrorWrongType = -10,
    OrvErrorInvalidValue = -11,
    OrvErrorTimeout = -12,
    OrvErrorOther = -13,
    OrvErrorResources = -14,
    OrvErrorInvalidCall = -15,
    OrvErrorNoTransportLayer = -16,
    OrvErrorNotImplemented = -17,
    OrvErrorNotSupported = -18,
    OrvErrorIncomplete = -19,
    OrvErrorIO = -20,
    OrvErrorValidValueSetNotPresent = -21,
    OrvErrorGenTLUnspecified = -22,
    OrvErrorUnspecified = -23,
    OrvErrorBusy = -24,
    OrvErrorNoData = -25,
    OrvErrorParsingChunkData = -26,
    OrvErrorInUse = -27,
    OrvErrorUnknown = -28,
    OrvErrorXml = -29,
    OrvErrorNotAvailable = -30,
    OrvErrorNotInitialized = -31,
    OrvErrorInvalidAddress = -32,
    OrvErrorAlreadyDone = -33,
    OrvErrorNoChunkData = -34,
    OrvErrorUserCallbackException = -35,
    OrvErrorFeaturesUnavailable = -36,
    OrvErrorTransportLayerNotFound = -37,
    OrvErrorAmbiguous = -38,
    OrvErrorRetriesExceeded = -39,
    OrvErrorInsufficientBufferCount = -40,
    OrvErrorFirstUserDefined = 1
};

/// Technology of a transport layer or of an interface.
enum OrvTransportLayerType : std::int32_t {
    OrvTransportLayerTypeUnknown = 0,
    OrvTransportLayerTypeGEV = 1,
    OrvTransportLayerTypeCameraLink = 2,
    OrvTransportLayerTypeIIDC = 3,
    OrvTransportLayerTypeUVC = 4,
    OrvTransportLayerTypeCoaXPress = 5,
    OrvTransportLayerTypeCameraLinkHS = 6,
    OrvTransportLayerTypeU3V = 7,
    OrvTransportLayerTypeEthernet = 8,
    OrvTransportLayerTypePCI = 9,
    OrvTransportLayerTypeCustom = 10,
    OrvTransportLayerTypeMixed = 11
};

/// How a camera is, or may be, opened. Permitted access is a combination of these bits.
enum OrvAccessModeType : std::uint32_t {
    OrvAccessModeNone = 0,
    OrvAccessModeFull = 1,
    OrvAccessModeRead = 2,
    OrvAccessModeUnknown = 4,
    OrvAccessModeExclusive = 8
};

/// Data type of a feature.
enum OrvFeatureDataType : std::uint32_t {
    OrvFeatureDataUnknown = 0,
    OrvFeatureDataInt = 1,
    OrvFeatureDataFloat = 2,
    OrvFeatureDataEnum = 3,
    OrvFeatureDataString = 4,
    OrvFeatureDataBool = 5,
    OrvFeatureDataCommand = 6,
    OrvFeatureDataRaw = 7,
    OrvFeatureDataNone = 8
};

/// Properties of a feature, a combination of bits.
enum OrvFeatureFlagsType : std::uint32_t {
    OrvFeatureFlagsNone = 0,
    OrvFeatureFlagsRead = 1,
    OrvFeatureFlagsWrite = 2,
    /// The value can change without having been written.
    OrvFeatureFlagsVolatile = 8,
    /// The value can change because another feature was written.
    OrvFeatureFlagsModifyWrite = 16,
    /// The value belongs to the settings that are saved and restored (GenICam's "Streamable").
    OrvFeatureFlagsStreamable = 32
};

/// Visibility of a feature as GenICam SFNC recommends it for its audience.
enum OrvFeatureVisibilityType : std::uint32_t {
    OrvFeatureVisibilityUnknown = 0,
    OrvFeatureVisibilityBeginner = 1,
    OrvFeatureVisibilityExpert = 2,
    OrvFeatureVisibilityGuru = 3,
    OrvFeatureVisibilityInvisible = 4
};

/// How a delivered frame was received.
enum OrvFrameStatusType : std::int32_t {
    OrvFrameStatusComplete = 0,
    OrvFrameStatusIncomplete = -1,
    OrvFrameStatusTooSmall = -2,
    OrvFrameStatusInvalid = -3
};

/// Pixel formats by their GenICam PFNC 32-bit codes.
enum OrvPixelFormatType : std::uint32_t {
    OrvPixelFormatMono8 = 0x01080001,
    OrvPixelFormatMono10 = 0x01100003,
    OrvPixelFormatMono12 = 0x01100005,
    OrvPixelFormatMono12p = 0x010C0047,
    OrvPixelFormatMono16 = 0x01100007,
    OrvPixelFormatBayerRG8 = 0x01080009,
    OrvPixelFormatRGB8 = 0x02180014
};

/// Why a list observer is called.
enum OrvUpdateTriggerType : std::int32_t {
    OrvUpdateTriggerPluggedIn = 0,
    OrvUpdateTriggerPluggedOut = 1,
    OrvUpdateTriggerOpenStateChanged = 3
};

/// Version of the SDK.
struct OrvVersionInfo {
    std::uint32_t major = 0;
    std::uint32_t minor = 0;
    std::uint32_t patch = 0;
};
