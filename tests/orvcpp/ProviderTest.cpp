// SPDX-License-Identifier: BSD-3-Clause
#include "tests/orvcpp/ProviderCase.h"
#include "tests/support/SdkFixture.h"

#include <future>
#include <set>

/// What every provider of cameras owes its users.
namespace {

using namespace testing;
using namespace sdk;

class ProviderTest : public TestWithParam<ProviderCase> {
protected:
    void SetUp() override {
        ASSERT_EQ(sdk::cameras().size(), 1U);
        camera = sdk::cameras().front();
    }

    void open() const { ASSERT_EQ(camera->Open(OrvAccessModeFull), OrvErrorSuccess); }
    bool isFree() const {
        return (ask(*camera, &Camera::GetPermittedAccess) & OrvAccessModeFull) != 0;
    }

    ProvidedCamera provided = GetParam().start();
    std::shared_ptr<Camera> camera;
};

TEST_P(ProviderTest, findsTheCameraByIdAndListsItOnItsInterfaceAndLayer) {
    using OrvCPP::Interface;
    using OrvCPP::TransportLayer;
    EXPECT_EQ(sdk::camera(id(*camera)), camera);
    EXPECT_EQ(sdk::camera(id(*camera, true)), camera);
    EXPECT_NE(id(*camera, true), id(*camera));
    const auto interface = ask(*camera, &Camera::GetInterface);
    const auto layer = ask(*camera, &Camera::GetTransportLayer);
    EXPECT_EQ(ask(*interface, &Interface::GetTransportLayer), layer);
    EXPECT_THAT(list<Camera>(*interface, &Interface::GetCameras), ElementsAre(camera));
    EXPECT_THAT(list<Camera>(*layer, &TransportLayer::GetCameras), ElementsAre(camera));
    EXPECT_THAT(list<Interface>(*layer, &TransportLayer::GetInterfaces), Contains(interface));
    EXPECT_EQ(text(*layer, &TransportLayer::GetVendor), "Meridane Technologies");
    EXPECT_THAT(text(*layer, &TransportLayer::GetName), HasSubstr("MRD"));
    const auto type =
        GetParam().firstFrameId == 1 ? OrvTransportLayerTypeGEV : OrvTransportLayerTypeU3V;
    EXPECT_EQ(ask(*layer, &TransportLayer::GetType), type);
    EXPECT_EQ(ask(*interface, &Interface::GetType), type);
    EXPECT_EQ(ask(*camera, &Camera::GetInterfaceType), type);

    std::shared_ptr<Interface> sameInterface;
    const std::string interfaceId = text(*interface, &Interface::GetID);
    EXPECT_EQ(system().GetInterfaceByID(interfaceId.c_str(), sameInterface), OrvErrorSuccess);
    EXPECT_EQ(sameInterface, interface);
    std::shared_ptr<TransportLayer> sameLayer;
    const std::string layerId = text(*layer, &TransportLayer::GetID);
    EXPECT_EQ(system().GetTransportLayerByID(layerId.c_str(), sameLayer), OrvErrorSuccess);
    EXPECT_EQ(sameLayer, layer);
    EXPECT_EQ(system().GetTransportLayerByID("X", sameLayer), OrvErrorNotFound);
    EXPECT_EQ(system().GetCameraByID("X", camera), OrvErrorNotFound);
    std::shared_ptr<Camera> array[1];
    std::uint32_t count = 0;
    EXPECT_EQ(system().GetCameras(array, count), OrvErrorMoreData);
    EXPECT_EQ(count, 1U);
}

TEST_P(ProviderTest, opensTheCameraOnceAtATime) {
    const auto expectClosed = [&] {
        std::shared_ptr<Feature> found;
        std::shared_ptr<OrvCPP::LocalDevice> device;
        std::uint32_t count = 7;
        EXPECT_TRUE(isFree());
        EXPECT_EQ(camera->Close(), OrvErrorDeviceNotOpen);
        EXPECT_EQ(camera->GetFeatures(nullptr, count), OrvErrorDeviceNotOpen);
        EXPECT_EQ(count, 0U);
        EXPECT_EQ(camera->GetStreams(nullptr, count), OrvErrorDeviceNotOpen);
        EXPECT_EQ(camera->GetLocalDevice(device), OrvErrorDeviceNotOpen);
        EXPECT_EQ(camera->GetFeatureByName("Width", found), OrvErrorDeviceNotOpen);
        EXPECT_EQ(start(*camera, std::make_shared<Receiver>(camera)), OrvErrorDeviceNotOpen);
        EXPECT_EQ(camera->StopContinuousImageAcquisition(), OrvErrorDeviceNotOpen);
    };
    expectClosed();
    EXPECT_EQ(camera->Open(OrvAccessModeNone), OrvErrorBadParameter);
    open();
    EXPECT_FALSE(isFree());
    EXPECT_EQ(camera->Open(OrvAccessModeFull), OrvErrorInvalidAccess);
    EXPECT_EQ(camera->Open(OrvAccessModeRead), OrvErrorInvalidAccess);
    auto width = feature(*camera, "Width");
    const auto stream = sdk::stream(*camera);
    EXPECT_EQ(stream->Open(), OrvErrorAlreadyDone);
    EXPECT_EQ(stream->StartCapture(), OrvErrorNotSupported);
    EXPECT_GT(ask(*stream, &OrvCPP::Stream::GetStreamBufferAlignment), 0U);
    EXPECT_EQ(camera->Close(), OrvErrorSuccess);
    expectClosed();
    EXPECT_EQ(readInteger(*width), OrvErrorDeviceNotOpen);
    EXPECT_EQ(stream->Open(), OrvErrorDeviceNotOpen);

    ASSERT_EQ(camera->Open(OrvAccessModeRead), OrvErrorSuccess);
    EXPECT_EQ(get<std::int64_t>(*camera, "Width"), 320);
    width = feature(*camera, "Width");
    EXPECT_FALSE(ask(*width, &Feature::IsWritable));
    EXPECT_EQ(width->SetValue(std::int64_t{160}), OrvErrorInvalidAccess);
    EXPECT_EQ(start(*camera, std::make_shared<Receiver>(camera)), OrvErrorInvalidAccess);
}

TEST_P(ProviderTest, refusesWrongFeatureAccessWithTheRightCode) {
    open();
    const auto width = feature(*camera, "Width");
    std::shared_ptr<Feature> none;
    EXPECT_EQ(camera->GetFeatureByName("Widht", none), OrvErrorNotFound);
    EXPECT_EQ(set(*camera, "Width", 3.0), OrvErrorWrongType);
    EXPECT_EQ(set(*camera, "Width", std::int64_t{161}), OrvErrorInvalidValue) << "increment";
    EXPECT_EQ(set(*camera, "SensorWidth", std::int64_t{320}), OrvErrorInvalidAccess);
    EXPECT_EQ(set(*camera, "PixelFormat", "Mono7"), OrvErrorInvalidValue);
    EXPECT_EQ(set(*camera, "Width", std::int64_t{160}), OrvErrorSuccess);
    EXPECT_EQ(get<std::int64_t>(*camera, "Width"), 160);
    EXPECT_EQ(get<std::int64_t>(*camera, "PayloadSize"), 160 * 200);
    const auto [minimum, maximum] = range<std::int64_t>(*width);
    EXPECT_EQ(maximum, get<std::int64_t>(*camera, "SensorWidth"));
    EXPECT_EQ(width->SetValue(maximum + 16), OrvErrorInvalidValue);
    EXPECT_EQ(width->SetValue(minimum - 16), OrvErrorInvalidValue);
    EXPECT_EQ(width->RunCommand(), OrvErrorWrongType);
    double number = 0;
    EXPECT_EQ(width->GetValue(number), OrvErrorWrongType);
    std::uint32_t count = 0;
    EXPECT_EQ(width->GetValidValueSet(nullptr, count), OrvErrorValidValueSetNotPresent);
    char buffer[2];
    count = 2;
    EXPECT_EQ(feature(*camera, "PixelFormat")->GetValue(buffer, count), OrvErrorMoreData);
    EXPECT_EQ(count, 5U) << "Mono8";
}

TEST_P(ProviderTest, tellsFeatureObserversUntilTheCameraIsClosed) {
    open();
    const auto payload = feature(*camera, "PayloadSize");
    const auto observer = std::make_shared<MockFeatureObserver>();
    const auto name = [](const auto& changed) {
        return text(*changed, &Feature::GetName);
    };
    EXPECT_CALL(*observer, FeatureChanged(ResultOf(name, "PayloadSize"))).Times(1);
    EXPECT_EQ(payload->RegisterObserver(nullptr), OrvErrorBadParameter);
    EXPECT_EQ(payload->RegisterObserver(observer), OrvErrorSuccess);
    EXPECT_EQ(payload->RegisterObserver(observer), OrvErrorAlreadyDone);
    EXPECT_EQ(set(*camera, "Width", std::int64_t{160}), OrvErrorSuccess);
    EXPECT_EQ(payload->UnregisterObserver(observer), OrvErrorSuccess);
    EXPECT_EQ(payload->UnregisterObserver(observer), OrvErrorNotFound);
    EXPECT_EQ(set(*camera, "Width", std::int64_t{320}), OrvErrorSuccess);
    const auto grabbing = feature(*sdk::stream(*camera), "StreamIsGrabbing");
    EXPECT_EQ(grabbing->RegisterObserver(observer), OrvErrorSuccess);
    EXPECT_EQ(payload->RegisterObserver(observer), OrvErrorSuccess);
    EXPECT_EQ(camera->Close(), OrvErrorSuccess);
    EXPECT_EQ(observer.use_count(), 1) << "a closed camera drops its observers";
}

TEST_P(ProviderTest, numbersFramesWithoutAGapFromTheFirstIdInEveryAcquisition) {
    open();
    for (int round = 0; round < 2; ++round) {
        const auto receiver = std::make_shared<Receiver>(camera);
        EXPECT_EQ(camera->StopContinuousImageAcquisition(), OrvErrorAlreadyDone);
        EXPECT_EQ(start(*camera, nullptr), OrvErrorBadParameter);
        EXPECT_EQ(start(*camera, receiver, 0), OrvErrorBadParameter);
        ASSERT_EQ(start(*camera, receiver), OrvErrorSuccess);
        EXPECT_EQ(start(*camera, receiver), OrvErrorAlreadyDone);
        EXPECT_EQ(set(*camera, "Width", std::int64_t{160}), OrvErrorInvalidAccess);
        EXPECT_TRUE(eventually([&] { return receiver->count() >= 15; }));
        ASSERT_EQ(camera->StopContinuousImageAcquisition(), OrvErrorSuccess);
        EXPECT_EQ(receiver->ids(), gapless(GetParam().firstFrameId, receiver->count()));
        EXPECT_EQ(receiver->incomplete, 0);
        EXPECT_EQ(get<std::int64_t>(*sdk::stream(*camera), "StreamDeliveredFrameCount"),
                  static_cast<std::int64_t>(receiver->count()));
    }
    EXPECT_EQ(set(*camera, "Width", std::int64_t{160}), OrvErrorSuccess);
}

TEST_P(ProviderTest, losesFramesWhileTheReceiverHoldsAllBuffers) {
    open();
    const auto receiver = startReceiving(camera, 3, true);
    const auto stream = sdk::stream(*camera);
    EXPECT_TRUE(eventually([&] {
        return receiver->count() == 3 &&
               get<std::int64_t>(*stream, "StreamUnderrunFrameCount") >= GetParam().underruns;
    }));
    EXPECT_EQ(receiver->count(), 3U);
    const auto kept = receiver->takeKept();
    for (std::size_t i = 0; i < 2; ++i)
        EXPECT_EQ(camera->QueueFrame(kept.at(i)), OrvErrorSuccess);
    EXPECT_TRUE(eventually([&] { return receiver->count() > 5; }));
    // A real camera's incomplete frame may have no number.
    const auto ids = receiver->ids();
    const auto next = std::find_if(ids.begin() + 3, ids.end(), [](auto id) { return id != 0; });
    ASSERT_NE(next, ids.end());
    EXPECT_GT(*next, GetParam().firstFrameId + static_cast<std::uint64_t>(next - ids.begin()))
        << "the gap shows the loss";
    EXPECT_TRUE(ask(*kept[2], &Frame::GetImage));
    EXPECT_EQ(camera->StopContinuousImageAcquisition(), OrvErrorSuccess);
    EXPECT_EQ(camera->QueueFrame(kept[2]), OrvErrorInvalidCall) << "its acquisition has ended";
    EXPECT_EQ(camera->QueueFrame(nullptr), OrvErrorBadParameter);
    EXPECT_EQ(ask(*kept[2], &Frame::GetFrameID), ids[2]);
    EXPECT_TRUE(ask(*kept[2], &Frame::GetImage)) << "the image outlives the acquisition";
}

TEST_P(ProviderTest, describesFramesAndWaitsForTheCallbackWhenItStops) {
    open();
    std::promise<void> entered;
    std::promise<void> release;
    std::atomic<bool> left{false};
    const auto observer = std::make_shared<NiceMock<MockFrameObserver>>();
    EXPECT_CALL(*observer, FrameReceived)
        .WillOnce([&](const auto& frame) {
            EXPECT_EQ(ask(*frame, &Frame::GetReceiveStatus), OrvFrameStatusComplete);
            EXPECT_EQ(ask(*frame, &Frame::GetBufferSize), 320U * 200);
            EXPECT_EQ(ask(*frame, &Frame::GetWidth), 320U);
            EXPECT_EQ(ask(*frame, &Frame::GetHeight), 200U);
            EXPECT_EQ(ask(*frame, &Frame::GetPixelFormat), OrvPixelFormatMono8);
            EXPECT_EQ(camera->StopContinuousImageAcquisition(), OrvErrorInvalidCall);
            EXPECT_EQ(camera->Close(), OrvErrorInvalidCall);
            EXPECT_EQ(camera->Open(OrvAccessModeFull), OrvErrorInvalidCall);
            EXPECT_EQ(start(*camera, nullptr), OrvErrorInvalidCall);
            EXPECT_EQ(system().Shutdown(), OrvErrorInvalidCall);
            EXPECT_EQ(get<std::int64_t>(*camera, "Width"), 320);
            EXPECT_EQ(camera->QueueFrame(frame), OrvErrorSuccess);
            EXPECT_EQ(camera->QueueFrame(frame), OrvErrorInUse);
            entered.set_value();
            release.get_future().wait();
            left = true;
        })
        .WillRepeatedly(Return());
    ASSERT_EQ(start(*camera, observer), OrvErrorSuccess);
    entered.get_future().wait();
    auto stopping = std::async(std::launch::async, [&] {
        const OrvErrorType error = camera->StopContinuousImageAcquisition();
        return std::pair(error, left.load());
    });
    EXPECT_EQ(stopping.wait_for(std::chrono::milliseconds(30)), std::future_status::timeout);
    release.set_value();
    EXPECT_EQ(stopping.get(), std::pair(OrvErrorType{OrvErrorSuccess}, true));
}

/// Counts what it is told of a camera.
class ListObserver : public OrvCPP::ICameraListObserver {
public:
    void CameraListChanged(const std::shared_ptr<Camera>& camera,
                           OrvUpdateTriggerType reason) override {
        EXPECT_EQ(system().Shutdown(), OrvErrorInvalidCall);
        const std::lock_guard lock(m_mutex);
        m_told.emplace(camera, reason);
    }
    std::size_t count(const std::shared_ptr<Camera>& camera, OrvUpdateTriggerType reason) {
        const std::lock_guard lock(m_mutex);
        return m_told.count({camera, reason});
    }

private:
    std::mutex m_mutex;
    std::multiset<std::pair<std::shared_ptr<Camera>, OrvUpdateTriggerType>> m_told;
};

TEST_P(ProviderTest, tellsThatAStreamingCameraGoesAndReopensItWhenItIsBack) {
    const auto observer = std::make_shared<ListObserver>();
    const auto isTold = [&](OrvUpdateTriggerType reason, std::size_t times = 1) {
        return eventually([&] { return observer->count(camera, reason) == times; });
    };
    EXPECT_EQ(system().RegisterCameraListObserver(nullptr), OrvErrorBadParameter);
    EXPECT_EQ(system().RegisterCameraListObserver(observer), OrvErrorSuccess);
    EXPECT_EQ(system().RegisterCameraListObserver(observer), OrvErrorAlreadyDone);
    open();
    EXPECT_TRUE(isTold(OrvUpdateTriggerOpenStateChanged));
    // The first search may have told of the camera after the observer was registered.
    const std::size_t before = observer->count(camera, OrvUpdateTriggerPluggedIn);
    const auto width = feature(*camera, "Width");
    EXPECT_EQ(set(*camera, "Width", std::int64_t{160}), OrvErrorSuccess);
    const auto receiver = startReceiving(camera);
    EXPECT_TRUE(eventually([&] { return receiver->count() > 3; }));

    const auto unplugged = std::chrono::steady_clock::now();
    provided.plug(false);
    EXPECT_TRUE(isTold(OrvUpdateTriggerPluggedOut));
    EXPECT_LT(std::chrono::steady_clock::now() - unplugged, std::chrono::seconds(3));
    EXPECT_THAT(sdk::cameras(), IsEmpty());
    EXPECT_EQ(readInteger(*width), OrvErrorNotFound);

    provided.plug(true);
    EXPECT_TRUE(isTold(OrvUpdateTriggerPluggedIn, before + 1));
    EXPECT_THAT(sdk::cameras(), ElementsAre(camera));
    EXPECT_EQ(readInteger(*width), OrvErrorNotFound) << "of the lost connection";
    EXPECT_EQ(camera->StopContinuousImageAcquisition(), OrvErrorSuccess);
    EXPECT_EQ(camera->Close(), OrvErrorSuccess);
    open();
    EXPECT_EQ(get<std::int64_t>(*camera, "Width"), 320) << "the setting of power-up";
    const auto again = startReceiving(camera);
    EXPECT_TRUE(eventually([&] { return again->count() > 3; }));
    EXPECT_EQ(system().UnregisterCameraListObserver(observer), OrvErrorSuccess);
    EXPECT_EQ(system().UnregisterCameraListObserver(observer), OrvErrorNotFound);
}

TEST_P(ProviderTest, answersNotStartedAfterTheShutdown) {
    open();
    const auto width = feature(*camera, "Width");
    const auto receiver = startReceiving(camera, 5, true);
    EXPECT_TRUE(eventually([&] { return receiver->count() > 0; }));
    provided.running.reset();
    EXPECT_EQ(readInteger(*width), OrvErrorApiNotStarted);
    EXPECT_EQ(camera->Close(), OrvErrorApiNotStarted);
    EXPECT_EQ(camera->Open(OrvAccessModeFull), OrvErrorApiNotStarted);
    std::uint64_t id = 0;
    for (const auto& frame : receiver->takeKept())
        EXPECT_EQ(frame->GetFrameID(id), OrvErrorSuccess) << "kept frames can still be read";
}

INSTANTIATE_TEST_SUITE_P(Providers, ProviderTest, ValuesIn(providerCases()),
                         [](const auto& provider) { return provider.param.name; });

} // namespace
