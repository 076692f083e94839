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

#include <gmock/gmock.h>

#include <functional>
#include <tuple>
#include <type_traits>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

/// One operation of a wrapper: where it is declared, how it is called and what it calls. The call
/// appends what its arguments are afterwards, outputs as they were filled.
template <class Wrapper> struct Operation {
    int position;
    int declaredAt;
    std::string sdkCall;
    std::function<OrvErrorType(Wrapper&, std::string&)> call;
};

/// Makes operations of the parameter types \p Parameters, which choose among overloads.
template <class... Parameters> struct With {
    template <class Wrapper, class... Arguments>
    static Operation<Wrapper> op(int position, const char* sdkCall,
                                 OrvErrorType (Wrapper::*method)(Parameters...) const,
                                 Arguments&&... arguments) {
        return make<Wrapper>(position, sdkCall, method, arguments...);
    }
    template <class Wrapper, class... Arguments>
    static Operation<Wrapper> op(int position, const char* sdkCall,
                                 OrvErrorType (Wrapper::*method)(Parameters...),
                                 Arguments&&... arguments) {
        return make<Wrapper>(position, sdkCall, method, arguments...);
    }

private:
    template <class Wrapper, class Method, class... Arguments>
    static Operation<Wrapper> make(int position, const char* sdkCall, Method method,
                                   Arguments&... arguments) {
        return {position, virtualPosition(method), sdkCall,
                [method, values = std::tuple<Parameters...>(arguments...)](Wrapper& wrapper,
                                                                           std::string& text) {
                    return std::apply(
                        [&](auto&... value) {
                            const OrvErrorType error =
                                (wrapper.*method)(static_cast<Parameters>(value)...);
                            ((text += " " + toText(value)), ...);
                            return error;
                        },
                        values);
                }};
    }
};

/// What every wrapper of an SDK object with features begins with.
template <class Wrapper> std::vector<Operation<Wrapper>> containerOperations() {
    EXPECT_EQ(virtualPosition(&Wrapper::GetFeatureContainer), 3);
    EXPECT_EQ(virtualPosition(&Wrapper::GetHandle), 4);
    using Feature = std::shared_ptr<OrvFeatureWrapper>;
    static auto feature = std::make_shared<OrvFeatureWrapper>();
    static std::vector<Feature> features;
    return {With<const char*, Feature&>::template op<Wrapper>(
                1, "GetFeatureByName", &Wrapper::GetFeatureByName, "Gain", feature),
            With<std::vector<Feature>&>::template op<Wrapper>(2, "GetFeatures",
                                                              &Wrapper::GetFeatures, features)};
}

/// Each operation stands where it belongs, makes exactly its SDK call with its own arguments and
/// outputs and hands the result back unchanged; without an SDK object it answers that there is
/// none.
template <class Wrapper, class SdkObject>
void check(std::vector<Operation<Wrapper>> operations = {}) {
    if constexpr (std::is_base_of_v<OrvFeatureContainerWrapper, Wrapper>) {
        for (auto& operation : containerOperations<Wrapper>())
            operations.push_back(std::move(operation));
    }
    for (const auto& operation : operations) {
        SCOPED_TRACE(operation.sdkCall);
        EXPECT_EQ(operation.declaredAt, operation.position);

        Wrapper empty;
        std::string text;
        EXPECT_EQ(operation.call(empty, text), OrvErrorBadHandle);

        const auto object = std::make_shared<SdkObject>();
        object->result = -23;
        Wrapper wrapper(object);
        EXPECT_EQ(operation.call(wrapper, text), -23);
        EXPECT_THAT(object->calls, ElementsAre(StartsWith(operation.sdkCall)));

        object->result = OrvErrorSuccess;
        object->filled = 10 * operation.position;
        // Twice, since an output of two values may have had the right one before.
        for (const int time : {1, 2}) {
            text.clear();
            EXPECT_EQ(operation.call(wrapper, text), OrvErrorSuccess) << time;
            EXPECT_THAT(operation.sdkCall + text, StartsWith(object->calls.back())) << time;
        }
    }
}

/// Outputs for the operations to fill.
class WrapperTest : public testing::Test {
protected:
    bool flag = false;
    double real = 0;
    double otherReal = 0;
    std::int64_t number = 0;
    std::int64_t otherNumber = 0;
    std::uint32_t size = 0;
    std::uint64_t large = 0;
    std::string text;
    std::vector<std::uint8_t> bytes = std::vector<std::uint8_t>(4);
    std::vector<std::int64_t> numbers;
    std::vector<std::string> texts;
    OrvTransportLayerType layerType = OrvTransportLayerTypeUnknown;
    std::vector<std::shared_ptr<OrvFeatureWrapper>> features;
    std::vector<std::shared_ptr<OrvCameraWrapper>> cameras;
    std::vector<std::shared_ptr<OrvInterfaceWrapper>> interfaces;
    const std::shared_ptr<OrvCPP::Frame> frame = someObject<OrvCPP::Frame>();
};

TEST_F(WrapperTest, LocalDevice) {
    check<OrvLocalDeviceWrapper, RecordingLocalDevice>();
}

TEST_F(WrapperTest, Interface) {
    using W = OrvInterfaceWrapper;
    std::shared_ptr<OrvCPP::TransportLayer> layer;
    check<W, RecordingInterface>({
        With<std::string&>::op(5, "GetID", &W::GetID, text),
        With<OrvTransportLayerType&>::op(6, "GetType", &W::GetType, layerType),
        With<std::string&>::op(7, "GetName", &W::GetName, text),
        With<std::shared_ptr<OrvCPP::TransportLayer>&>::op(8, "GetTransportLayer",
                                                           &W::GetTransportLayer, layer),
        With<decltype(cameras)&>::op(9, "GetCameras", &W::GetCameras, cameras),
    });
}

TEST_F(WrapperTest, TransportLayer) {
    using W = OrvTransportLayerWrapper;
    check<W, RecordingLayer>({
        With<decltype(interfaces)&>::op(5, "GetInterfaces", &W::GetInterfaces, interfaces),
        With<decltype(cameras)&>::op(6, "GetCameras", &W::GetCameras, cameras),
        With<std::string&>::op(7, "GetID", &W::GetID, text),
        With<std::string&>::op(8, "GetName", &W::GetName, text),
        With<std::string&>::op(9, "GetModelName", &W::GetModelName, text),
        With<std::string&>::op(10, "GetVendor", &W::GetVendor, text),
        With<std::string&>::op(11, "GetVersion", &W::GetVersion, text),
        With<std::string&>::op(12, "GetPath", &W::GetPath, text),
        With<OrvTransportLayerType&>::op(13, "GetType", &W::GetType, layerType),
    });
}

TEST_F(WrapperTest, Stream) {
    using W = OrvStreamWrapper;
    using Frame = const std::shared_ptr<OrvCPP::Frame>&;
    check<W, RecordingStream>({
        With<>::op(5, "Open", &W::Open),
        With<>::op(6, "Close", &W::Close),
        With<Frame>::op(7, "AnnounceFrame", &W::AnnounceFrame, frame),
        With<Frame>::op(8, "RevokeFrame", &W::RevokeFrame, frame),
        With<>::op(9, "RevokeAllFrames", &W::RevokeAllFrames),
        With<Frame>::op(10, "QueueFrame", &W::QueueFrame, frame),
        With<>::op(11, "FlushQueue", &W::FlushQueue),
        With<>::op(12, "StartCapture", &W::StartCapture),
        With<>::op(13, "EndCapture", &W::EndCapture),
        With<std::uint32_t&>::op(14, "GetStreamBufferAlignment", &W::GetStreamBufferAlignment,
                                 size),
    });
}

TEST_F(WrapperTest, Frame) {
    using W = OrvFrameWrapper;
    OrvFrameStatusType status{};
    check<W, RecordingFrame>({
        With<std::uint32_t&>::op(2, "GetBufferSize", &W::GetBufferSize, size),
        With<std::uint64_t&>::op(3, "GetFrameID", &W::GetFrameID, large),
        With<OrvFrameStatusType&>::op(4, "GetReceiveStatus", &W::GetReceiveStatus, status),
        With<std::uint64_t&>::op(5, "GetTimestamp", &W::GetTimestamp, large),
    });
    EXPECT_EQ(virtualPosition(&W::GetHandle), 1);
}

TEST_F(WrapperTest, Camera) {
    using W = OrvCameraWrapper;
    auto interface = std::make_shared<OrvInterfaceWrapper>();
    auto localDevice = std::make_shared<OrvLocalDeviceWrapper>();
    auto layer = std::make_shared<OrvTransportLayerWrapper>();
    std::vector<std::shared_ptr<OrvStreamWrapper>> streams;
    OrvAccessModeType access{};
    const auto observer = someObject<OrvCPP::IFrameObserver>();
    check<W, RecordingCamera>({
        With<OrvAccessModeType>::op(5, "Open", &W::Open, OrvAccessModeFull),
        With<>::op(6, "Close", &W::Close),
        With<std::string&>::op(7, "GetID", &W::GetID, text),
        With<std::string&>::op(8, "GetExtendedID", &W::GetExtendedID, text),
        With<std::string&>::op(9, "GetName", &W::GetName, text),
        With<std::string&>::op(10, "GetModel", &W::GetModel, text),
        With<std::string&>::op(11, "GetSerialNumber", &W::GetSerialNumber, text),
        With<OrvTransportLayerType&>::op(13, "GetInterfaceType", &W::GetInterfaceType, layerType),
        With<decltype(interface)&>::op(15, "GetInterface", &W::GetInterface, interface),
        With<decltype(localDevice)&>::op(17, "GetLocalDevice", &W::GetLocalDevice, localDevice),
        With<decltype(layer)&>::op(19, "GetTransportLayer", &W::GetTransportLayer, layer),
        With<decltype(streams)&>::op(20, "GetStreams", &W::GetStreams, streams),
        With<OrvAccessModeType&>::op(21, "GetPermittedAccess", &W::GetPermittedAccess, access),
        With<std::uint64_t, decltype(bytes)&>::op(22, "ReadMemory", &W::ReadMemory, 512, bytes),
        With<std::uint64_t, decltype(bytes)&, std::uint32_t&>::op(23, "ReadMemory", &W::ReadMemory,
                                                                  512, bytes, size),
        With<int, decltype(observer)&, OrvCPP::FrameAllocationMode>::op(
            24, "StartContinuousImageAcquisition", &W::StartContinuousImageAcquisition, 7, observer,
            OrvCPP::FrameAllocationMode::AllocAndAnnounceFrame),
        With<>::op(25, "StopContinuousImageAcquisition", &W::StopContinuousImageAcquisition),
        With<decltype(frame)&>::op(26, "QueueFrame", &W::QueueFrame, frame),
    });
    using Interface = std::pair<std::shared_ptr<OrvInterfaceWrapper>, OrvErrorType>;
    using LocalDevice = std::pair<std::shared_ptr<OrvLocalDeviceWrapper>, OrvErrorType>;
    using Layer = std::pair<std::shared_ptr<OrvTransportLayerWrapper>, OrvErrorType>;
    EXPECT_EQ(virtualPosition(&W::GetInterfaceID), 12);
    EXPECT_EQ(virtualPosition<Interface (W::*)() const>(&W::GetInterface), 14);
    EXPECT_EQ(virtualPosition<LocalDevice (W::*)() const>(&W::GetLocalDevice), 16);
    EXPECT_EQ(virtualPosition<Layer (W::*)() const>(&W::GetTransportLayer), 18);
}

TEST_F(WrapperTest, Feature) {
    using W = OrvFeatureWrapper;
    using Int = std::int64_t;
    std::vector<OrvCPP::EnumEntry> entries;
    OrvCPP::EnumEntry entry;
    OrvFeatureDataType dataType{};
    OrvFeatureFlagsType flags{};
    OrvFeatureVisibilityType visibility{};
    const auto observer = someObject<OrvCPP::IFeatureObserver>();
    const std::uint8_t data[] = {9, 8};
    check<W, RecordingFeature>({
        With<decltype(bytes)&>::op(2, "GetValue", &W::GetValue, bytes),
        With<decltype(bytes)&, std::uint32_t&>::op(3, "GetValue", &W::GetValue, bytes, size),
        With<bool&>::op(4, "GetValue", &W::GetValue, flag),
        With<std::string&>::op(5, "GetValue", &W::GetValue, text),
        With<double&>::op(6, "GetValue", &W::GetValue, real),
        With<Int&>::op(7, "GetValue", &W::GetValue, number),
        With<decltype(texts)&>::op(8, "GetValues", &W::GetValues, texts),
        With<decltype(numbers)&>::op(9, "GetValues", &W::GetValues, numbers),
        With<OrvCPP::EnumEntry&, const char*>::op(10, "GetEntry", &W::GetEntry, entry, "On"),
        With<decltype(entries)&>::op(11, "GetEntries", &W::GetEntries, entries),
        With<Int&, Int&>::op(12, "GetRange", &W::GetRange, number, otherNumber),
        With<double&, double&>::op(13, "GetRange", &W::GetRange, real, otherReal),
        With<const std::uint8_t*, std::uint32_t>::op(14, "SetValue raw", &W::SetValue, data, 2U),
        With<const char*>::op(16, "SetValue text", &W::SetValue, "On"),
        With<bool>::op(17, "SetValue bool", &W::SetValue, true),
        With<double>::op(18, "SetValue double", &W::SetValue, 1.5),
        With<Int>::op(19, "SetValue int", &W::SetValue, -3),
        With<bool&>::op(20, "HasIncrement", &W::HasIncrement, flag),
        With<double&>::op(21, "GetIncrement", &W::GetIncrement, real),
        With<Int&>::op(22, "GetIncrement", &W::GetIncrement, number),
        With<Int, bool&>::op(23, "IsValueAvailable", &W::IsValueAvailable, 6, flag),
        With<const char*, bool&>::op(25, "IsValueAvailable", &W::IsValueAvailable, "On", flag),
        With<>::op(26, "RunCommand", &W::RunCommand),
        With<bool&>::op(27, "IsCommandDone", &W::IsCommandDone, flag),
        With<std::string&>::op(28, "GetName", &W::GetName, text),
        With<std::string&>::op(29, "GetDisplayName", &W::GetDisplayName, text),
        With<OrvFeatureDataType&>::op(30, "GetDataType", &W::GetDataType, dataType),
        With<OrvFeatureFlagsType&>::op(31, "GetFlags", &W::GetFlags, flags),
        With<std::string&>::op(32, "GetCategory", &W::GetCategory, text),
        With<std::string&>::op(33, "GetUnit", &W::GetUnit, text),
        With<std::string&>::op(34, "GetRepresentation", &W::GetRepresentation, text),
        With<OrvFeatureVisibilityType&>::op(35, "GetVisibility", &W::GetVisibility, visibility),
        With<std::string&>::op(36, "GetToolTip", &W::GetToolTip, text),
        With<std::string&>::op(37, "GetDescription", &W::GetDescription, text),
        With<decltype(features)&>::op(38, "GetSelectedFeatures", &W::GetSelectedFeatures, features),
        With<decltype(numbers)&>::op(39, "GetValidValueSet", &W::GetValidValueSet, numbers),
        With<bool&>::op(40, "IsReadable", &W::IsReadable, flag),
        With<bool&>::op(41, "IsWritable", &W::IsWritable, flag),
        With<decltype(observer)&>::op(42, "RegisterObserver", &W::RegisterObserver, observer),
        With<decltype(observer)&>::op(43, "UnregisterObserver", &W::UnregisterObserver, observer),
    });
    EXPECT_EQ(virtualPosition(&W::GetHandle), 1);
    EXPECT_EQ(virtualPosition(&W::Reserved15), 15);
    EXPECT_EQ(virtualPosition(&W::Reserved24), 24);
}

TEST_F(WrapperTest, TrimsARawValueToWhatWasFilled) {
    const OrvFeatureWrapper wrapper(std::make_shared<RecordingFeature>());
    EXPECT_EQ(wrapper.GetValue(bytes, size), OrvErrorSuccess);
    EXPECT_EQ(bytes.size(), 3U);
    EXPECT_EQ(size, 3U);
}

TEST_F(WrapperTest, GetFeatureByNameWantsAWrapperToFill) {
    const auto object = std::make_shared<RecordingLocalDevice>();
    const OrvLocalDeviceWrapper wrapper(object);
    std::shared_ptr<OrvFeatureWrapper> none;
    EXPECT_EQ(wrapper.GetFeatureByName("Gain", none), OrvErrorBadParameter);
    EXPECT_THAT(object->calls, IsEmpty());
    EXPECT_EQ(wrapper.GetFeatureContainer(), object);
}

TEST_F(WrapperTest, CameraMakesWrappersThatStayEmptyOnAnError) {
    const auto object = std::make_shared<RecordingCamera>();
    const OrvCameraWrapper wrapper(object);
    EXPECT_EQ(wrapper.GetInterface().second, OrvErrorSuccess);
    EXPECT_EQ(wrapper.GetInterface().first->GetHandle(), object->interface);
    EXPECT_NE(wrapper.GetLocalDevice().first->GetHandle(), nullptr);
    EXPECT_NE(wrapper.GetTransportLayer().first->GetHandle(), nullptr);

    object->result = OrvErrorDeviceNotOpen;
    EXPECT_EQ(wrapper.GetInterface().second, OrvErrorDeviceNotOpen);
    EXPECT_EQ(wrapper.GetInterface().first->GetHandle(), nullptr);
    EXPECT_EQ(wrapper.GetLocalDevice().first->GetHandle(), nullptr);
    EXPECT_EQ(wrapper.GetTransportLayer().first->GetHandle(), nullptr);
    EXPECT_EQ(OrvCameraWrapper().GetInterface().second, OrvErrorBadHandle);
    std::shared_ptr<OrvInterfaceWrapper> none;
    EXPECT_EQ(wrapper.GetInterface(none), OrvErrorBadParameter) << "there is none to fill";
}

TEST_F(WrapperTest, InterfaceIdIsTheInterfacesOwn) {
    const auto object = std::make_shared<RecordingCamera>();
    const OrvCameraWrapper wrapper(object);
    text = "old";
    object->interface->result = OrvErrorIO;
    EXPECT_EQ(wrapper.GetInterfaceID(text), OrvErrorIO);
    EXPECT_EQ(text, "old");
    object->interface->result = OrvErrorSuccess;
    EXPECT_EQ(wrapper.GetInterfaceID(text), OrvErrorSuccess);
    EXPECT_EQ(text, "GetID");
    object->interface = nullptr;
    EXPECT_EQ(wrapper.GetInterfaceID(text), OrvErrorBadHandle);
    EXPECT_EQ(OrvCameraWrapper().GetInterfaceID(text), OrvErrorBadHandle);
    object->result = OrvErrorDeviceNotOpen;
    EXPECT_EQ(wrapper.GetInterfaceID(text), OrvErrorDeviceNotOpen);
}

TEST_F(WrapperTest, CameraReadsNoMemoryIntoAnEmptyBuffer) {
    const auto object = std::make_shared<RecordingCamera>();
    const OrvCameraWrapper wrapper(object);
    std::vector<std::uint8_t> empty;
    EXPECT_EQ(wrapper.ReadMemory(512, empty), OrvErrorBadParameter);
    EXPECT_EQ(wrapper.ReadMemory(512, empty, size), OrvErrorBadParameter);
    EXPECT_THAT(object->calls, IsEmpty());
    EXPECT_EQ(wrapper.ReadMemory(512, bytes, size), OrvErrorSuccess);
    EXPECT_EQ(size, 4U);
}

} // namespace
