// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/simulated/CameraFeatures.h"

#include "orvcpp/simulated/PixelFormats.h"

#include <algorithm>
#include <chrono>
#include <set>
#include <string>

namespace orv::simulated {

namespace {

constexpr std::int64_t widthStep = 8;
constexpr std::int64_t heightStep = 2;

std::function<bool()> whenIdle(const CameraSettings& settings) {
    return [&settings] {
        return !settings.isStreaming;
    };
}

void addDeviceInformation(FeatureSet& set, const CameraSettings& settings) {
    const CameraData& data = settings.data();
    set.category("/DeviceControl");
    set.fixedText("DeviceVendorName", data.vendor).about("Name of the camera's maker.");
    set.fixedText("DeviceModelName", data.model).about("Name of the camera's settings.");
    set.fixedText("DeviceFamilyName", data.model.substr(0, data.model.find(' '))).expert();
    set.fixedText("DeviceManufacturerInfo", data.vendor + ", simulated").expert();
    set.fixedText("DeviceVersion", "2.1").about("Version of the camera's hardware.");
    set.fixedText("DeviceFirmwareVersion", "00.04.01.2871").about("Version of the firmware.");
    set.fixedText("DeviceSerialNumber", data.serialNumber).about("Serial number of the camera.");
    set.fixedText("DeviceFirmwareID", data.id + "-fw").expert();
    set.string("DeviceUserID")
        .value(data.name)
        .about("Name that the user gave the camera.")
        .notStreamable();
    set.enumeration("DeviceScanType")
        .entry("Areascan", 0)
        .entry("Linescan", 1, false)
        .readOnly()
        .expert();
    set.fixedNumber("DeviceSFNCVersionMajor", 2).expert();
    set.fixedNumber("DeviceSFNCVersionMinor", 7).expert();
    set.fixedNumber("DeviceSFNCVersionSubMinor", 0).expert();
}

/// The commands around the reading and the writing of all settings.
void addPersistence(FeatureSet& set, CameraSettings& settings) {
    set.category("/DeviceControl");
    const auto add = [&set](const char* name, bool& state, bool value) {
        set.command(name).action([&state, value] { state = value; }).invisible();
    };
    add("DeviceFeaturePersistenceStart", settings.isPersisting, true);
    add("DeviceFeaturePersistenceEnd", settings.isPersisting, false);
    add("DeviceRegistersStreamingStart", settings.isStreamingRegisters, true);
    add("DeviceRegistersStreamingEnd", settings.isStreamingRegisters, false);
    set.boolean("DeviceRegistersValid")
        .about("Whether the settings are consistent. They are not checked while they are saved or "
               "restored.")
        .computed(
            [&settings] { return Value(!settings.isPersisting && !settings.isStreamingRegisters); })
        .invisible();
}

void addClock(FeatureSet& set) {
    set.category("/DeviceControl");
    const auto begin = Clock::now();
    FeatureNode& latched = set.integer("DeviceTimestampLatchValue")
                               .unit("ns")
                               .limits(0, std::numeric_limits<std::int64_t>::max())
                               .readOnly()
                               .expert();
    set.command("DeviceTimestampLatch")
        .about("Stores the camera's time in DeviceTimestampLatchValue.")
        .action([begin, &latched] {
            latched.value(std::int64_t{
                std::chrono::duration_cast<std::chrono::nanoseconds>(Clock::now() - begin)
                    .count()});
        })
        .expert();
}

void addDeviceState(FeatureSet& set, CameraSettings& settings) {
    set.category("/DeviceControl");
    set.command("DeviceReset")
        .about("Restores the image, acquisition and bandwidth settings of power-up.")
        .writableIf(whenIdle(settings))
        .action(
            [&settings] {
                // An acquisition that began meanwhile keeps the size of its frames.
                if (!settings.isStreaming)
                    settings.reset();
            },
            std::chrono::milliseconds(100));
    FeatureNode& temperatures = set.enumeration("DeviceTemperatureSelector")
                                    .entry("Mainboard", 0)
                                    .entry("Sensor", 1)
                                    .selects({"DeviceTemperature"})
                                    .expert();
    const auto begin = Clock::now();
    set.floating("DeviceTemperature")
        .unit("°C")
        .about("Temperature inside the camera.")
        .perEntryOf(temperatures)
        .computed([begin, &settings] {
            const double minutes = std::chrono::duration<double>(Clock::now() - begin).count() / 60;
            const double warmth = settings.isStreaming ? 14.0 : 8.0;
            return Value(34.0 + warmth * minutes / (minutes + 5));
        })
        .floatLimits(-20, 120)
        .expert();
    set.enumeration("DeviceIndicatorMode")
        .entry("Inactive", 0)
        .entry("Active", 1)
        .entry("ErrorStatus", 2)
        .current("Active")
        .expert();
    set.string("DeviceUnlockCode").writeOnly().guru().about("Opens the service features.");
}

void addPixelFormat(FeatureSet& set, CameraSettings& settings) {
    FeatureNode& format = set.enumeration("PixelFormat")
                              .about("Format of the pixels in the image.")
                              .bind(settings.pixelFormat)
                              .writableIf(whenIdle(settings));
    std::set<std::int64_t> sizes;
    for (const PixelFormatName& known : pixelFormatNames) {
        const auto& offered = settings.data().pixelFormats;
        const bool available =
            std::find(offered.begin(), offered.end(), known.format) != offered.end();
        format.entry(known.name, known.format, available);
        sizes.insert(bitsPerPixel(known.format));
    }
    FeatureNode& size =
        set.enumeration("PixelSize")
            .about("Bits that a pixel takes in the image.")
            .expert()
            .computed([&settings] { return Value(bitsPerPixel(settings.format())); });
    for (const std::int64_t bits : sizes)
        size.entry("Bpp" + std::to_string(bits), bits);
}

void addRegion(FeatureSet& set, CameraSettings& settings) {
    set.integer("Width")
        .unit("px")
        .about("Width of the image.")
        .bind(settings.width)
        .limits([&settings] {
            return IntegerLimits{
                widthStep, (settings.maximumWidth() - settings.offsetX) / widthStep * widthStep,
                widthStep};
        })
        .writableIf(whenIdle(settings));
    set.integer("Height")
        .unit("px")
        .about("Height of the image.")
        .bind(settings.height)
        .limits([&settings] {
            return IntegerLimits{
                heightStep, (settings.maximumHeight() - settings.offsetY) / heightStep * heightStep,
                heightStep};
        })
        .writableIf(whenIdle(settings));
    set.integer("OffsetX")
        .unit("px")
        .about("First column of the image on the sensor.")
        .bind(settings.offsetX)
        .limits([&settings] {
            return IntegerLimits{
                0, (settings.maximumWidth() - settings.width) / widthStep * widthStep, widthStep};
        });
    set.integer("OffsetY")
        .unit("px")
        .about("First row of the image on the sensor.")
        .bind(settings.offsetY)
        .limits([&settings] {
            return IntegerLimits{
                0, (settings.maximumHeight() - settings.height) / heightStep * heightStep,
                heightStep};
        });
}

void addBinning(FeatureSet& set, CameraSettings& settings) {
    const auto fit = [&settings] {
        settings.fitRegion();
    };
    set.integer("BinningHorizontal")
        .validValues({1, 2, 4})
        .about("Columns that are read out as one.")
        .bind(settings.binningHorizontal)
        .writableIf(whenIdle(settings))
        .onWrite(fit)
        .expert();
    set.integer("BinningVertical")
        .validValues({1, 2, 4})
        .about("Rows that are read out as one.")
        .bind(settings.binningVertical)
        .writableIf(whenIdle(settings))
        .onWrite(fit)
        .expert();
    set.enumeration("BinningHorizontalMode").entry("Sum", 0).entry("Average", 1).expert();
    set.enumeration("BinningVerticalMode").entry("Sum", 0).entry("Average", 1).expert();
}

void addExposure(FeatureSet& set, CameraSettings& settings) {
    set.category("/AcquisitionControl/Exposure");
    set.enumeration("ExposureMode")
        .entry("Off", 0, false)
        .entry("Timed", ExposureModeTimed)
        .entry("TriggerWidth", ExposureModeTriggerWidth)
        .about("What decides how long an exposure lasts.")
        .bind(settings.exposureMode);
    set.floating("ExposureTime")
        .unit("us")
        .shownAs("Logarithmic")
        .about("Duration of an exposure.")
        .bind(settings.exposureTime)
        .floatLimits(10, 10'000'000)
        .writableIf([&settings] {
            return settings.exposureMode == ExposureModeTimed && settings.exposureAuto == AutoOff;
        });
    set.enumeration("ExposureAuto")
        .entry("Off", AutoOff)
        .entry("Once", AutoOnce)
        .entry("Continuous", AutoContinuous)
        .about("Lets the camera choose the exposure time.")
        .bind(settings.exposureAuto)
        .onWrite([&settings] {
            if (settings.exposureAuto != AutoOff)
                settings.exposureTime = settings.data().exposureTime;
            if (settings.exposureAuto == AutoOnce)
                settings.exposureAuto = AutoOff;
        });
    set.floating("ExposureAutoMin").unit("us").floatLimits(10, 10'000'000).value(100.0).expert();
    set.floating("ExposureAutoMax")
        .unit("us")
        .floatLimits(10, 10'000'000)
        .value(500'000.0)
        .expert();
}

void addTrigger(FeatureSet& set, CameraSettings& settings) {
    set.category("/AcquisitionControl/Trigger");
    FeatureNode& selector = set.enumeration("TriggerSelector")
                                .entry("FrameStart", 0)
                                .entry("AcquisitionStart", 1, false)
                                .entry("ExposureActive", 2, false)
                                .selects({"TriggerMode", "TriggerSource", "TriggerActivation",
                                          "TriggerDelay", "TriggerSoftware"})
                                .expert();
    set.enumeration("TriggerMode")
        .entry("Off", 0)
        .entry("On", 1)
        .about("Whether frames wait for a trigger.")
        .bind(settings.triggerMode);
    set.enumeration("TriggerSource")
        .entry("Freerun", TriggerSourceFreerun)
        .entry("Software", TriggerSourceSoftware)
        .entry("Line0", TriggerSourceLine0)
        .entry("Line1", TriggerSourceLine1)
        .entry("Action0", 4, false)
        .about("Where triggers come from.")
        .bind(settings.triggerSource);
    set.enumeration("TriggerActivation")
        .entry("RisingEdge", 0)
        .entry("FallingEdge", 1)
        .entry("AnyEdge", 2)
        .entry("LevelHigh", 3)
        .entry("LevelLow", 4)
        .perEntryOf(selector)
        .expert();
    set.floating("TriggerDelay")
        .unit("us")
        .floatLimits(0, 1'000'000, 1)
        .perEntryOf(selector)
        .expert();
    set.command("TriggerSoftware").about("Triggers one frame.").action([&settings] {
        settings.softwareTrigger =
            settings.isTriggered() && settings.triggerSource == TriggerSourceSoftware;
    });
}

void addFrameRate(FeatureSet& set, CameraSettings& settings) {
    const FrameRateFeature kind = settings.data().frameRateFeature;
    if (kind == FrameRateFeature::None)
        return;
    set.category("/AcquisitionControl");
    if (kind == FrameRateFeature::AcquisitionFrameRateLimit)
        set.floating("AcquisitionFrameRateLimit")
            .unit("Hz")
            .about("Frame rate that the current settings allow.")
            .computed([&settings] { return Value(settings.frameRate()); })
            .floatLimits(0.01, settings.data().sensorFrameRate);
    set.floating("AcquisitionFrameRate")
        .unit("Hz")
        .about("Frames per second. Written, it takes effect while AcquisitionFrameRateEnable is "
               "on; read, it is the rate that results.")
        .bind(settings.userFrameRate)
        .readAs([&settings] { return Value(settings.frameRate()); })
        .floatLimits([&settings] {
            return FloatLimits{std::min(0.01, settings.possibleFrameRate()),
                               settings.possibleFrameRate()};
        })
        .writableIf([&settings] { return settings.frameRateEnabled; });
    set.boolean("AcquisitionFrameRateEnable")
        .about("Whether the frame rate is what AcquisitionFrameRate says.")
        .bind(settings.frameRateEnabled);
}

void addBandwidthLimit(FeatureSet& set, CameraSettings& settings, bool isUsb) {
    const CameraData& data = settings.data();
    const IntegerLimits limits{data.bandwidthMinimum, data.bandwidthMaximum,
                               data.bandwidthIncrement};
    if (data.bandwidthFeature == BandwidthFeature::DeviceLinkThroughputLimit) {
        set.enumeration("DeviceLinkThroughputLimitMode")
            .entry("Off", 0)
            .entry("On", 1)
            .about("Whether the throughput limit is kept.")
            .bind(settings.bandwidthLimited);
        set.integer("DeviceLinkThroughputLimit")
            .unit("Bps")
            .about("Most bytes per second that the camera sends.")
            .bind(settings.bandwidth)
            .limits([limits] { return limits; })
            .writableIf([&settings] { return settings.bandwidthLimited == 1; });
    }
    set.category(isUsb ? "/TransportLayerControl/USB" : "/TransportLayerControl/GigEVision");
    if (data.bandwidthFeature == BandwidthFeature::StreamBytesPerSecond) {
        set.integer("StreamBytesPerSecond")
            .unit("Bps")
            .about("Bytes per second that the camera's stream may take.")
            .bind(settings.bandwidth)
            .limits([limits] { return limits; });
        set.boolean("StreamFrameRateConstrain")
            .about("Keeps the frame rate below what the stream may take.")
            .bind(settings.frameRateConstrained)
            .expert();
    }
}

} // namespace

void addImageFormatFeatures(FeatureSet& set, CameraSettings& settings) {
    set.category("/ImageFormatControl");
    set.fixedNumber("SensorWidth", settings.data().sensorWidth).unit("px").expert();
    set.fixedNumber("SensorHeight", settings.data().sensorHeight).unit("px").expert();
    set.integer("WidthMax").unit("px").expert().computed([&settings] {
        return Value(settings.maximumWidth());
    });
    set.integer("HeightMax").unit("px").expert().computed([&settings] {
        return Value(settings.maximumHeight());
    });
    addRegion(set, settings);
    addPixelFormat(set, settings);
    addBinning(set, settings);
    set.boolean("ReverseX").about("Mirrors the image left to right.");
    set.boolean("ReverseY").about("Mirrors the image top to bottom.");
    set.enumeration("SensorShutterMode")
        .entry("GlobalShutter", 0)
        .entry("RollingShutter", 1, false)
        .readOnly()
        .guru();
    set.category("/ImageFormatControl/TestPattern");
    FeatureNode& generator = set.enumeration("TestPatternGeneratorSelector")
                                 .entry("Sensor", 0)
                                 .entry("ImageProcessor", 1)
                                 .selects({"TestPattern"})
                                 .guru();
    set.enumeration("TestPattern")
        .entry("Off", 0)
        .entry("GreyHorizontalRamp", 1)
        .entry("GreyVerticalRamp", 2)
        .entry("ColorBar", 3, false)
        .perEntryOf(generator)
        .guru();
}

void addAcquisitionFeatures(FeatureSet& set, CameraSettings& settings,
                            const StreamStatistics& statistics) {
    set.category("/AcquisitionControl");
    set.enumeration("AcquisitionMode")
        .entry("SingleFrame", 0)
        .entry("MultiFrame", 1)
        .entry("Continuous", 2)
        .current("Continuous")
        .writableIf(whenIdle(settings));
    set.integer("AcquisitionFrameCount").limits(1, 65535).value(std::int64_t{1}).expert();
    set.command("AcquisitionStart").about("Begins the acquisition.");
    set.command("AcquisitionStop").about("Ends the acquisition.");
    set.command("AcquisitionAbort").about("Ends the acquisition at once.").expert();
    FeatureNode& state = set.enumeration("AcquisitionStatusSelector")
                             .entry("AcquisitionActive", 0)
                             .entry("AcquisitionTransfer", 1)
                             .selects({"AcquisitionStatus"})
                             .expert();
    set.boolean("AcquisitionStatus")
        .perEntryOf(state)
        .computed([&settings] { return Value(settings.isStreaming); })
        .expert();
    set.integer("AcquisitionFrameCounter")
        .about("Frames that the camera has sent since the acquisition began.")
        .computed([&statistics] { return Value(statistics.sent.load()); })
        .guru();
    addFrameRate(set, settings);
    addExposure(set, settings);
    addTrigger(set, settings);
}

void addBandwidthFeatures(FeatureSet& set, CameraSettings& settings, bool isUsb) {
    set.category("/DeviceControl/Link");
    set.integer("DeviceLinkSpeed")
        .unit("Bps")
        .about("Speed of the camera's link.")
        .computed([&settings] { return Value(settings.linkSpeed()); })
        .limits(0, std::numeric_limits<std::int64_t>::max())
        .expert();
    set.boolean("DeviceLinkHeartbeatEnable").value(true).guru();
    set.floating("DeviceLinkCommandTimeout")
        .unit("us")
        .floatLimits(1000, 10'000'000)
        .value(200'000.0)
        .guru();
    addBandwidthLimit(set, settings, isUsb);
    set.category("/TransportLayerControl");
    set.integer("PayloadSize")
        .unit("B")
        .about("Bytes of an image.")
        .computed([&settings] { return Value(settings.payloadSize()); })
        .limits(0, std::numeric_limits<std::int64_t>::max())
        .expert();
}

FeatureSet makeCameraFeatures(CameraSettings& settings, const StreamStatistics& statistics,
                              bool isUsb) {
    FeatureSet set;
    addDeviceInformation(set, settings);
    addPersistence(set, settings);
    addDeviceState(set, settings);
    addClock(set);
    addImageFormatFeatures(set, settings);
    addAcquisitionFeatures(set, settings, statistics);
    addBandwidthFeatures(set, settings, isUsb);
    addSettingFeatures(set, settings);
    addExtraFeatures(set, settings.data().extraFeatures);
    return set;
}

} // namespace orv::simulated
