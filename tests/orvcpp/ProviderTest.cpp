// SPDX-License-Identifier: BSD-3-Clause
#include "tests/orvcpp/ProviderCase.h"
#include "tests/orvcpp/SdkFixture.h"

#include <future>
#include <map>

/// What every provider of cameras owes its users.
namespace {

using namespace testing;
using namespace sdk;

class ProviderTest : public TestWithParam<ProviderCase> {
protected:
    void SetUp() override {
        ASSERT_EQ(cameras().size(), 1U);
        camera = cameras().front();
    }

    void open() const { ASSERT_EQ(camera->Open(OrvAccessModeFull), OrvErrorSuccess); }
    unsigned permitted() const {
        OrvAccessModeType modes = OrvAccessModeUnknown;
        EXPECT_EQ(camera->GetPermittedAccess(modes), OrvErrorSuccess);
        return modes;
    }
    std::string id(bool extended) const {
        return text([&](char* b, auto& n) { return camera->GetID(b, n, extended); });
    }

    std::unique_ptr<ProvidedCamera> provided = GetParam().start();
    std::shared_ptr<Camera> camera;
};

TEST_P(ProviderTest, findsTheCameraByIdAndListsItOnItsInterfaceAndLayer) {
    const auto lists = [this](const auto& object) {
        return list<Camera>([&](auto a, auto& n) { return object->GetCameras(a, n); }) ==
               std::vector{camera};
    };
    EXPECT_EQ(sdk::camera(id(false)), camera);
    EXPECT_EQ(sdk::camera(id(true)), camera);
    EXPECT_NE(id(true), id(false));
    std::shared_ptr<OrvCPP::Interface> interface;
    ASSERT_EQ(camera->GetInterface(interface), OrvErrorSuccess);
    EXPECT_TRUE(lists(interface));
    std::shared_ptr<OrvCPP::Interface> sameInterface;
    const std::string interfaceId = text(*interface, &OrvCPP::Interface::GetID);
    EXPECT_EQ(system().GetInterfaceByID(interfaceId.c_str(), sameInterface), OrvErrorSuccess);
    EXPECT_EQ(sameInterface, interface);

    std::shared_ptr<OrvCPP::TransportLayer> layer;
    std::shared_ptr<OrvCPP::TransportLayer> interfaceLayer;
    ASSERT_EQ(camera->GetTransportLayer(layer), OrvErrorSuccess);
    EXPECT_EQ(interface->GetTransportLayer(interfaceLayer), OrvErrorSuccess);
    EXPECT_EQ(interfaceLayer, layer);
    EXPECT_TRUE(lists(layer));
    EXPECT_THAT(
        list<OrvCPP::Interface>([&](auto a, auto& n) { return layer->GetInterfaces(a, n); }),
        Contains(interface));
    EXPECT_EQ(text(*layer, &OrvCPP::TransportLayer::GetVendor), "Meridane Technologies");
    EXPECT_THAT(text(*layer, &OrvCPP::TransportLayer::GetName), HasSubstr("MRD"));
    OrvTransportLayerType type = OrvTransportLayerTypeUnknown;
    OrvTransportLayerType expected =
        GetParam().firstFrameId == 1 ? OrvTransportLayerTypeGEV : OrvTransportLayerTypeU3V;
    EXPECT_EQ(layer->GetType(type), OrvErrorSuccess);
    EXPECT_EQ(type, expected);
    EXPECT_EQ(interface->GetType(type), OrvErrorSuccess);
    EXPECT_EQ(type, expected);
    EXPECT_EQ(camera->GetInterfaceType(type), OrvErrorSuccess);
    EXPECT_EQ(type, expected);

    const std::string layerId = text(*layer, &OrvCPP::TransportLayer::GetID);
    EXPECT_EQ(system().GetTransportLayerByID(layerId.c_str(), interfaceLayer), OrvErrorSuccess);
    EXPECT_EQ(system().GetTransportLayerByID("X", layer), OrvErrorNotFound);
    EXPECT_EQ(system().GetCameraByID("X", camera), OrvErrorNotFound);
    std::shared_ptr<Camera> array[1];
    std::uint32_t count = 0;
    EXPECT_EQ(system().GetCameras(array, count), OrvErrorMoreData);
    EXPECT_EQ(count, 1U);
}

TEST_P(ProviderTest, opensTheCameraOnceAtATime) {
    EXPECT_NE(permitted() & OrvAccessModeFull, 0U);
    EXPECT_EQ(camera->Open(OrvAccessModeNone), OrvErrorBadParameter);
    EXPECT_EQ(camera->Close(), OrvErrorDeviceNotOpen);
    open();
    EXPECT_EQ(permitted() & OrvAccessModeFull, 0U);
    EXPECT_EQ(camera->Open(OrvAccessModeFull), OrvErrorInvalidAccess);
    EXPECT_EQ(camera->Open(OrvAccessModeRead), OrvErrorInvalidAccess);
    EXPECT_EQ(camera->Close(), OrvErrorSuccess);
    EXPECT_NE(permitted() & OrvAccessModeFull, 0U);

    ASSERT_EQ(camera->Open(OrvAccessModeRead), OrvErrorSuccess);
    const auto width = feature(*camera, "Width");
    bool writable = true;
    EXPECT_EQ(get<std::int64_t>(*camera, "Width"), 320);
    EXPECT_EQ(width->IsWritable(writable), OrvErrorSuccess);
    EXPECT_FALSE(writable);
    EXPECT_EQ(width->SetValue(std::int64_t{160}), OrvErrorInvalidAccess);
    EXPECT_EQ(start(*camera, std::make_shared<Receiver>(camera)), OrvErrorInvalidAccess);
}

TEST_P(ProviderTest, answersNotOpenForAClosedCamera) {
    std::shared_ptr<Feature> found;
    std::shared_ptr<OrvCPP::LocalDevice> device;
    const auto expectClosed = [&] {
        std::uint32_t count = 7;
        EXPECT_EQ(camera->GetFeatures(nullptr, count), OrvErrorDeviceNotOpen);
        EXPECT_EQ(count, 0U);
        EXPECT_EQ(camera->GetStreams(nullptr, count), OrvErrorDeviceNotOpen);
        EXPECT_EQ(camera->GetLocalDevice(device), OrvErrorDeviceNotOpen);
        EXPECT_EQ(camera->GetFeatureByName("Width", found), OrvErrorDeviceNotOpen);
        EXPECT_EQ(start(*camera, std::make_shared<Receiver>(camera)), OrvErrorDeviceNotOpen);
        EXPECT_EQ(camera->StopContinuousImageAcquisition(), OrvErrorDeviceNotOpen);
    };
    expectClosed();
    open();
    const auto width = feature(*camera, "Width");
    const auto stream = sdk::stream(*camera);
    EXPECT_EQ(stream->Open(), OrvErrorAlreadyDone);
    EXPECT_EQ(stream->StartCapture(), OrvErrorNotSupported);
    std::uint32_t alignment = 0;
    EXPECT_EQ(stream->GetStreamBufferAlignment(alignment), OrvErrorSuccess);
    EXPECT_GT(alignment, 0U);
    EXPECT_EQ(camera->Close(), OrvErrorSuccess);
    expectClosed();
    std::int64_t value = 0;
    EXPECT_EQ(width->GetValue(value), OrvErrorDeviceNotOpen);
    EXPECT_EQ(stream->Open(), OrvErrorDeviceNotOpen);
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
    std::int64_t minimum = 0;
    std::int64_t maximum = 0;
    EXPECT_EQ(width->GetRange(minimum, maximum), OrvErrorSuccess);
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

class FeatureObserver : public OrvCPP::IFeatureObserver {
public:
    void FeatureChanged(const std::shared_ptr<Feature>& feature) override {
        changed.push_back(text(*feature, &Feature::GetName));
    }
    std::vector<std::string> changed;
};

TEST_P(ProviderTest, tellsFeatureObserversUntilTheCameraIsClosed) {
    open();
    const auto observer = std::make_shared<FeatureObserver>();
    const auto payload = feature(*camera, "PayloadSize");
    EXPECT_EQ(payload->RegisterObserver(nullptr), OrvErrorBadParameter);
    EXPECT_EQ(payload->RegisterObserver(observer), OrvErrorSuccess);
    EXPECT_EQ(payload->RegisterObserver(observer), OrvErrorAlreadyDone);
    EXPECT_EQ(set(*camera, "Width", std::int64_t{160}), OrvErrorSuccess);
    EXPECT_THAT(observer->changed, ElementsAre("PayloadSize"));
    EXPECT_EQ(payload->UnregisterObserver(observer), OrvErrorSuccess);
    EXPECT_EQ(payload->UnregisterObserver(observer), OrvErrorNotFound);
    EXPECT_EQ(set(*camera, "Width", std::int64_t{320}), OrvErrorSuccess);
    EXPECT_THAT(observer->changed, SizeIs(1));
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
        EXPECT_TRUE(isGapless(receiver->ids(), GetParam().firstFrameId)) << "round " << round;
        EXPECT_EQ(receiver->incomplete(), 0);
        EXPECT_EQ(get<std::int64_t>(*sdk::stream(*camera), "StatFrameDelivered"),
                  static_cast<std::int64_t>(receiver->count()));
    }
    EXPECT_EQ(set(*camera, "Width", std::int64_t{160}), OrvErrorSuccess);
}

TEST_P(ProviderTest, losesFramesWhileTheReceiverHoldsAllBuffers) {
    open();
    const auto receiver = std::make_shared<Receiver>(camera, true);
    ASSERT_EQ(start(*camera, receiver, 3), OrvErrorSuccess);
    const auto stream = sdk::stream(*camera);
    EXPECT_TRUE(eventually([&] {
        return receiver->count() == 3 &&
               get<std::int64_t>(*stream, "StatFrameUnderrun") >= GetParam().underruns;
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
    const std::uint8_t* image = nullptr;
    EXPECT_EQ(kept[2]->GetImage(image), OrvErrorSuccess);
    EXPECT_EQ(camera->StopContinuousImageAcquisition(), OrvErrorSuccess);
    EXPECT_EQ(camera->QueueFrame(kept[2]), OrvErrorInvalidCall) << "its acquisition has ended";
    EXPECT_EQ(camera->QueueFrame(nullptr), OrvErrorBadParameter);
    std::uint64_t id = 0;
    EXPECT_EQ(kept[2]->GetFrameID(id), OrvErrorSuccess);
    EXPECT_EQ(kept[2]->GetImage(image), OrvErrorSuccess) << "the image outlives the acquisition";
}

/// Records what a frame and the SDK answer inside the callback, which returns when released.
class Inspector : public OrvCPP::IFrameObserver {
public:
    explicit Inspector(std::shared_ptr<Camera> camera) : m_camera(std::move(camera)) {}

    void FrameReceived(const std::shared_ptr<Frame>& frame) override {
        if (std::exchange(m_hasInspected, true))
            return;
        frame->GetReceiveStatus(status);
        frame->GetBufferSize(size);
        frame->GetWidth(width);
        frame->GetHeight(height);
        frame->GetPixelFormat(format);
        refused = {m_camera->StopContinuousImageAcquisition(), m_camera->Close(),
                   m_camera->Open(OrvAccessModeFull), start(*m_camera, nullptr),
                   system().Shutdown()};
        featureWidth = get<std::int64_t>(*m_camera, "Width");
        queued = m_camera->QueueFrame(frame);
        queuedTwice = m_camera->QueueFrame(frame);
        entered.set_value();
        release.get_future().wait();
        left = true;
    }

    OrvFrameStatusType status = OrvFrameStatusInvalid;
    std::uint32_t size = 0;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    OrvPixelFormatType format{};
    std::vector<OrvErrorType> refused;
    std::int64_t featureWidth = 0;
    OrvErrorType queued = OrvErrorUnknown;
    OrvErrorType queuedTwice = OrvErrorUnknown;
    std::promise<void> entered;
    std::promise<void> release;
    std::atomic<bool> left{false};

private:
    const std::shared_ptr<Camera> m_camera;
    bool m_hasInspected = false;
};

TEST_P(ProviderTest, describesFramesAndWaitsForTheCallbackWhenItStops) {
    open();
    const auto inspector = std::make_shared<Inspector>(camera);
    ASSERT_EQ(start(*camera, inspector), OrvErrorSuccess);
    inspector->entered.get_future().wait();
    EXPECT_EQ(inspector->status, OrvFrameStatusComplete);
    EXPECT_EQ(inspector->size, 320U * 200);
    EXPECT_EQ(inspector->width, 320U);
    EXPECT_EQ(inspector->height, 200U);
    EXPECT_EQ(inspector->format, OrvPixelFormatMono8);
    EXPECT_THAT(inspector->refused, Each(OrvErrorInvalidCall));
    EXPECT_EQ(inspector->featureWidth, 320);
    EXPECT_EQ(inspector->queued, OrvErrorSuccess);
    EXPECT_EQ(inspector->queuedTwice, OrvErrorInUse);
    auto stopping = std::async(std::launch::async, [&] {
        const OrvErrorType error = camera->StopContinuousImageAcquisition();
        return std::pair(error, inspector->left.load());
    });
    EXPECT_EQ(stopping.wait_for(std::chrono::milliseconds(30)), std::future_status::timeout);
    inspector->release.set_value();
    EXPECT_EQ(stopping.get(), std::pair(OrvErrorType{OrvErrorSuccess}, true));
}

class ListObserver : public OrvCPP::ICameraListObserver {
public:
    void CameraListChanged(const std::shared_ptr<Camera>& camera,
                           OrvUpdateTriggerType reason) override {
        shutdownAnswer = system().Shutdown();
        const std::lock_guard lock(m_mutex);
        m_cameras[reason].push_back(camera);
    }
    std::vector<std::shared_ptr<Camera>> cameras(OrvUpdateTriggerType reason) {
        const std::lock_guard lock(m_mutex);
        return m_cameras[reason];
    }
    void clear() {
        const std::lock_guard lock(m_mutex);
        m_cameras.clear();
    }
    std::atomic<int> shutdownAnswer{0};

private:
    std::mutex m_mutex;
    std::map<OrvUpdateTriggerType, std::vector<std::shared_ptr<Camera>>> m_cameras;
};

TEST_P(ProviderTest, tellsThatAStreamingCameraGoesAndReopensItWhenItIsBack) {
    const auto observer = std::make_shared<ListObserver>();
    const auto isTold = [&](OrvUpdateTriggerType reason) {
        return eventually([&] { return observer->cameras(reason) == std::vector{camera}; });
    };
    EXPECT_EQ(system().RegisterCameraListObserver(nullptr), OrvErrorBadParameter);
    EXPECT_EQ(system().RegisterCameraListObserver(observer), OrvErrorSuccess);
    EXPECT_EQ(system().RegisterCameraListObserver(observer), OrvErrorAlreadyDone);
    open();
    EXPECT_TRUE(isTold(OrvUpdateTriggerOpenStateChanged));
    // The first search may have told of the camera after the observer was registered.
    observer->clear();
    const auto width = feature(*camera, "Width");
    EXPECT_EQ(set(*camera, "Width", std::int64_t{160}), OrvErrorSuccess);
    const auto receiver = std::make_shared<Receiver>(camera);
    ASSERT_EQ(start(*camera, receiver), OrvErrorSuccess);
    EXPECT_TRUE(eventually([&] { return receiver->count() > 3; }));

    const auto unplugged = std::chrono::steady_clock::now();
    provided->unplug();
    EXPECT_TRUE(isTold(OrvUpdateTriggerPluggedOut));
    EXPECT_LT(std::chrono::steady_clock::now() - unplugged, std::chrono::seconds(3));
    EXPECT_EQ(observer->shutdownAnswer, OrvErrorInvalidCall);
    EXPECT_THAT(cameras(), IsEmpty());
    std::int64_t value = 0;
    EXPECT_EQ(width->GetValue(value), OrvErrorNotFound);

    provided->plug();
    EXPECT_TRUE(isTold(OrvUpdateTriggerPluggedIn));
    EXPECT_THAT(cameras(), ElementsAre(camera));
    EXPECT_EQ(width->GetValue(value), OrvErrorNotFound) << "of the lost connection";
    EXPECT_EQ(camera->StopContinuousImageAcquisition(), OrvErrorSuccess);
    EXPECT_EQ(camera->Close(), OrvErrorSuccess);
    open();
    EXPECT_EQ(get<std::int64_t>(*camera, "Width"), 320) << "the setting of power-up";
    const auto again = std::make_shared<Receiver>(camera);
    ASSERT_EQ(start(*camera, again), OrvErrorSuccess);
    EXPECT_TRUE(eventually([&] { return again->count() > 3; }));
    EXPECT_EQ(system().UnregisterCameraListObserver(observer), OrvErrorSuccess);
    EXPECT_EQ(system().UnregisterCameraListObserver(observer), OrvErrorNotFound);
}

TEST_P(ProviderTest, answersNotStartedAfterTheShutdown) {
    open();
    const auto width = feature(*camera, "Width");
    const auto receiver = std::make_shared<Receiver>(camera, true);
    ASSERT_EQ(start(*camera, receiver), OrvErrorSuccess);
    EXPECT_TRUE(eventually([&] { return receiver->count() > 0; }));
    provided.reset();
    std::int64_t value = 0;
    EXPECT_EQ(width->GetValue(value), OrvErrorApiNotStarted);
    EXPECT_EQ(camera->Close(), OrvErrorApiNotStarted);
    EXPECT_EQ(camera->Open(OrvAccessModeFull), OrvErrorApiNotStarted);
    std::uint64_t id = 0;
    for (const auto& frame : receiver->takeKept())
        EXPECT_EQ(frame->GetFrameID(id), OrvErrorSuccess) << "kept frames can still be read";
}

INSTANTIATE_TEST_SUITE_P(Providers, ProviderTest, ValuesIn(providerCases()),
                         [](const auto& provider) { return provider.param.name; });

} // namespace
