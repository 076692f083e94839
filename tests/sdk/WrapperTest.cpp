// SPDX-License-Identifier: BSD-3-Clause
#include "sdk/OrvCameraWrapper.h"
#include "sdk/OrvFeatureWrapper.h"
#include "sdk/OrvFrameWrapper.h"
#include "sdk/OrvInterfaceWrapper.h"
#include "sdk/OrvLocalDeviceWrapper.h"
#include "sdk/OrvStreamWrapper.h"
#include "sdk/OrvTransportLayerWrapper.h"
#include "tests/sdk/RecordingSdk.h"
#include "tests/sdk/VirtualPosition.h"

#include <QtGlobal>
#include <gmock/gmock.h>

#include <functional>
#include <tuple>

namespace {

using namespace testing;

/// One operation of a wrapper: its declared position and the SDK call that it forwards to. \p call
/// appends all arguments, outputs as they were filled; an empty one is of an operation of which
/// only the position is checked.
template <class Wrapper> struct Operation {
    int declaredAt;
    std::string sdkCall = {};
    std::function<OrvErrorType(Wrapper&, std::ostream&)> call = {};
};

/// The parameters of an operation, to be filled. What only the SDK object fills stays empty.
template <class Class, class... Parameters>
std::tuple<std::decay_t<Parameters>...> parametersOf(OrvErrorType (Class::*)(Parameters...));
template <class Class, class... Parameters>
std::tuple<std::decay_t<Parameters>...> parametersOf(OrvErrorType (Class::*)(Parameters...) const);

template <class W, class Method> Operation<W> makeOperation(const char* sdkCall, Method method) {
    return {virtualPosition(method), sdkCall, [method](W& wrapper, std::ostream& text) {
                decltype(parametersOf(method)) parameters;
                const auto call = [&](auto&... values) {
                    [[maybe_unused]] int last = 3;
                    (fill(values, last), ...);
                    const OrvErrorType error = (wrapper.*method)(values...);
                    (write(text, values), ...);
                    return error;
                };
                return std::apply(call, parameters);
            }};
}

// Operations of the class W: one of its name, one of several of that name, and one of which only
// the position is checked.
#define FORWARDS(Name) makeOperation<W>(#Name, &W::Name)
#define OVERLOAD(Name, ...) makeOperation<W>(#Name, qOverload<__VA_ARGS__>(&W::Name))
#define OTHER(Method)                                                                              \
    Operation<W> {                                                                                 \
        virtualPosition(Method)                                                                    \
    }

/// Checks the operations of a wrapper, in their declared order from position 1: each makes exactly
/// its SDK call with its own arguments and outputs and answers the result unchanged; without an SDK
/// object it answers OrvErrorBadHandle.
template <class W, class SdkObject> void check(std::vector<Operation<W>> operations) {
    if constexpr (std::is_base_of_v<OrvFeatureContainerWrapper, W>)
        operations.insert(operations.begin(),
                          {FORWARDS(GetFeatureByName), FORWARDS(GetFeatures),
                           OTHER(&W::GetFeatureContainer), OTHER(&W::GetHandle)});
    int position = 0;
    for (const auto& operation : operations) {
        SCOPED_TRACE(operation.sdkCall);
        EXPECT_EQ(operation.declaredAt, ++position);
        if (!operation.call)
            continue;
        W empty;
        std::ostringstream unused;
        EXPECT_EQ(operation.call(empty, unused), OrvErrorBadHandle);

        const auto object = std::make_shared<SdkObject>();
        object->result = -23;
        W wrapper(object);
        EXPECT_EQ(operation.call(wrapper, unused), -23);
        EXPECT_THAT(object->calls, ElementsAre(StartsWith(operation.sdkCall)));

        object->result = OrvErrorSuccess;
        object->filled = 10 * position;
        // Twice, since an output of two values may have had the right one before.
        for (const int time : {1, 2}) {
            std::ostringstream text;
            text << operation.sdkCall;
            EXPECT_EQ(operation.call(wrapper, text), OrvErrorSuccess) << time;
            EXPECT_THAT(text.str(), StartsWith(object->calls.back())) << time;
        }
    }
}

template <class W, class SdkObject, class... Operations>
void check(const Operations&... operations) {
    check<W, SdkObject>(std::vector<Operation<W>>{operations...});
}

TEST(Wrapper, forwardsTheOperationsOfALocalDevice) {
    check<OrvLocalDeviceWrapper, RecordingLocalDevice>();
}

TEST(Wrapper, forwardsTheOperationsOfAnInterface) {
    using W = OrvInterfaceWrapper;
    check<W, RecordingInterface>(FORWARDS(GetID), FORWARDS(GetType), FORWARDS(GetName),
                                 FORWARDS(GetTransportLayer), FORWARDS(GetCameras));
}

TEST(Wrapper, forwardsTheOperationsOfATransportLayer) {
    using W = OrvTransportLayerWrapper;
    check<W, RecordingLayer>(FORWARDS(GetInterfaces), FORWARDS(GetCameras), FORWARDS(GetID),
                             FORWARDS(GetName), FORWARDS(GetModelName), FORWARDS(GetVendor),
                             FORWARDS(GetVersion), FORWARDS(GetPath), FORWARDS(GetType));
}

TEST(Wrapper, forwardsTheOperationsOfAStream) {
    using W = OrvStreamWrapper;
    check<W, RecordingStream>(FORWARDS(Open), FORWARDS(Close), FORWARDS(AnnounceFrame),
                              FORWARDS(RevokeFrame), FORWARDS(RevokeAllFrames),
                              FORWARDS(QueueFrame), FORWARDS(FlushQueue), FORWARDS(StartCapture),
                              FORWARDS(EndCapture), FORWARDS(GetStreamBufferAlignment));
}

TEST(Wrapper, forwardsTheOperationsOfAFrame) {
    using W = OrvFrameWrapper;
    check<W, RecordingFrame>(OTHER(&W::GetHandle), FORWARDS(GetBufferSize), FORWARDS(GetFrameID),
                             FORWARDS(GetReceiveStatus), FORWARDS(GetTimestamp));
}

TEST(Wrapper, forwardsTheOperationsOfACamera) {
    using W = OrvCameraWrapper;
    using Bytes = std::vector<std::uint8_t>;
    check<W, RecordingCamera>(
        FORWARDS(Open), FORWARDS(Close), FORWARDS(GetID), FORWARDS(GetExtendedID),
        FORWARDS(GetName), FORWARDS(GetModel), FORWARDS(GetSerialNumber), OTHER(&W::GetInterfaceID),
        FORWARDS(GetInterfaceType), OTHER(qOverload<>(&W::GetInterface)),
        OVERLOAD(GetInterface, std::shared_ptr<OrvInterfaceWrapper>&),
        OTHER(qOverload<>(&W::GetLocalDevice)),
        OVERLOAD(GetLocalDevice, std::shared_ptr<OrvLocalDeviceWrapper>&),
        OTHER(qOverload<>(&W::GetTransportLayer)),
        OVERLOAD(GetTransportLayer, std::shared_ptr<OrvTransportLayerWrapper>&),
        FORWARDS(GetStreams), FORWARDS(GetPermittedAccess),
        OVERLOAD(ReadMemory, std::uint64_t, Bytes&),
        OVERLOAD(ReadMemory, std::uint64_t, Bytes&, std::uint32_t&),
        FORWARDS(StartContinuousImageAcquisition), FORWARDS(StopContinuousImageAcquisition),
        FORWARDS(QueueFrame));
}

TEST(Wrapper, forwardsTheOperationsOfAFeature) {
    using W = OrvFeatureWrapper;
    using Int = std::int64_t;
    using Bytes = std::vector<std::uint8_t>;
    check<W, RecordingFeature>(
        OTHER(&W::GetHandle), OVERLOAD(GetValue, Bytes&),
        OVERLOAD(GetValue, Bytes&, std::uint32_t&), OVERLOAD(GetValue, bool&),
        OVERLOAD(GetValue, std::string&), OVERLOAD(GetValue, double&), OVERLOAD(GetValue, Int&),
        OVERLOAD(GetValues, std::vector<std::string>&), OVERLOAD(GetValues, std::vector<Int>&),
        FORWARDS(GetEntry), FORWARDS(GetEntries), OVERLOAD(GetRange, Int&, Int&),
        OVERLOAD(GetRange, double&, double&),
        OVERLOAD(SetValue, const std::uint8_t*, std::uint32_t), OTHER(&W::Reserved15),
        OVERLOAD(SetValue, const char*), OVERLOAD(SetValue, bool), OVERLOAD(SetValue, double),
        OVERLOAD(SetValue, Int), FORWARDS(HasIncrement), OVERLOAD(GetIncrement, double&),
        OVERLOAD(GetIncrement, Int&), OVERLOAD(IsValueAvailable, Int, bool&), OTHER(&W::Reserved24),
        OVERLOAD(IsValueAvailable, const char*, bool&), FORWARDS(RunCommand),
        FORWARDS(IsCommandDone), FORWARDS(GetName), FORWARDS(GetDisplayName), FORWARDS(GetDataType),
        FORWARDS(GetFlags), FORWARDS(GetCategory), FORWARDS(GetUnit), FORWARDS(GetRepresentation),
        FORWARDS(GetVisibility), FORWARDS(GetToolTip), FORWARDS(GetDescription),
        FORWARDS(GetSelectedFeatures), FORWARDS(GetValidValueSet), FORWARDS(IsReadable),
        FORWARDS(IsWritable), FORWARDS(RegisterObserver), FORWARDS(UnregisterObserver));
}

TEST(FeatureWrapper, trimsARawValueToItsFilledSize) {
    std::vector<std::uint8_t> bytes;
    std::uint32_t size = 0;
    const OrvFeatureWrapper wrapper(std::make_shared<RecordingFeature>());
    EXPECT_EQ(wrapper.GetValue(bytes, size), OrvErrorSuccess);
    EXPECT_EQ(bytes.size(), 3U);
    EXPECT_EQ(size, 3U);
}

TEST(CameraWrapper, makesWrappersThatStayEmptyOnAnError) {
    const auto object = std::make_shared<RecordingCamera>();
    const OrvCameraWrapper wrapper(object);
    std::string id = "old";
    EXPECT_EQ(wrapper.GetInterface().first->GetHandle(), object->interface);
    EXPECT_EQ(wrapper.GetInterfaceID(id), OrvErrorSuccess);
    EXPECT_EQ("GetID " + id, object->interface->calls.back());
    EXPECT_NE(wrapper.GetLocalDevice().first->GetHandle(), nullptr);
    EXPECT_NE(wrapper.GetTransportLayer().first->GetHandle(), nullptr);
    object->interface->result = OrvErrorIO;
    EXPECT_EQ(wrapper.GetInterfaceID(id), OrvErrorIO);

    object->result = OrvErrorDeviceNotOpen;
    EXPECT_EQ(wrapper.GetInterfaceID(id), OrvErrorDeviceNotOpen);
    EXPECT_EQ(wrapper.GetInterface().second, OrvErrorDeviceNotOpen);
    EXPECT_EQ(wrapper.GetInterface().first->GetHandle(), nullptr);
    EXPECT_EQ(wrapper.GetLocalDevice().first->GetHandle(), nullptr);
    EXPECT_EQ(wrapper.GetTransportLayer().first->GetHandle(), nullptr);
    EXPECT_EQ(OrvCameraWrapper().GetInterfaceID(id), OrvErrorBadHandle);
}

TEST(CameraWrapper, asksTheSdkForNothingThatItCannotStore) {
    const auto object = std::make_shared<RecordingCamera>();
    const OrvCameraWrapper wrapper(object);
    EXPECT_EQ(wrapper.GetFeatureContainer(), object);
    std::shared_ptr<OrvInterfaceWrapper> noInterface;
    EXPECT_EQ(wrapper.GetInterface(noInterface), OrvErrorBadParameter);
    std::shared_ptr<OrvFeatureWrapper> noFeature;
    EXPECT_EQ(wrapper.GetFeatureByName("Gain", noFeature), OrvErrorBadParameter);
    std::vector<std::uint8_t> bytes;
    std::uint32_t size = 0;
    EXPECT_EQ(wrapper.ReadMemory(512, bytes), OrvErrorBadParameter);
    EXPECT_EQ(wrapper.ReadMemory(512, bytes, size), OrvErrorBadParameter);
    EXPECT_THAT(object->calls, IsEmpty());
    bytes.resize(4);
    EXPECT_EQ(wrapper.ReadMemory(512, bytes, size), OrvErrorSuccess);
    EXPECT_EQ(size, 4U);
}

} // namespace
