// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/simulated/CameraFeatures.h"

#include <cmath>
#include <numeric>
#include <string>

namespace orv::simulated {

namespace {

void addAnalog(FeatureSet& set) {
    set.category("/AnalogControl");
    FeatureNode& gain = set.enumeration("GainSelector")
                            .entry("All", 0)
                            .entry("AnalogAll", 1)
                            .entry("DigitalAll", 2, false)
                            .selects({"Gain"});
    set.floating("Gain")
        .unit("dB")
        .about("Gain of the image.")
        .floatLimits(0, 24, 0.1)
        .perEntryOf(gain);
    set.enumeration("GainAuto").entry("Off", 0).entry("Once", 1).entry("Continuous", 2);
    set.floating("GainAutoMin").unit("dB").floatLimits(0, 24, 0.1).expert();
    set.floating("GainAutoMax").unit("dB").floatLimits(0, 24, 0.1).value(24.0).expert();
    FeatureNode& black = set.enumeration("BlackLevelSelector")
                             .entry("All", 0)
                             .entry("Red", 1, false)
                             .entry("Blue", 2, false)
                             .selects({"BlackLevel"})
                             .expert();
    set.floating("BlackLevel").floatLimits(0, 255.75, 0.25).perEntryOf(black).expert();
    set.floating("Gamma").floatLimits(0.4, 2.4).value(1.0).about("Exponent of the gamma curve.");
    set.boolean("ContrastEnable").expert();
    set.integer("ContrastBrightLimit").limits(1, 4095).value(std::int64_t{4095}).expert();
    set.integer("ContrastDarkLimit").limits(0, 4094).expert();
    set.category("/AnalogControl/WhiteBalance");
    FeatureNode& ratio = set.enumeration("BalanceRatioSelector")
                             .entry("Red", 0)
                             .entry("Blue", 1)
                             .selects({"BalanceRatio"});
    set.floating("BalanceRatio").floatLimits(0.125, 8).value(1.5).perEntryOf(ratio);
    set.enumeration("BalanceWhiteAuto").entry("Off", 0).entry("Once", 1).entry("Continuous", 2);
    set.floating("BalanceWhiteAutoRate").unit("%").floatLimits(1, 100).value(100.0).expert();
}

void addAutoRegion(FeatureSet& set, const CameraSettings& settings) {
    const CameraData& data = settings.data();
    set.category("/ImageProcessing/AutoMode");
    FeatureNode& selector = set.enumeration("AutoModeRegionSelector")
                                .entry("AutoModeRegion1", 0)
                                .selects({"AutoModeRegionWidth", "AutoModeRegionHeight"})
                                .expert();
    set.integer("AutoModeRegionWidth")
        .unit("px")
        .limits(8, data.sensorWidth, 8)
        .value(data.sensorWidth)
        .perEntryOf(selector)
        .expert();
    set.integer("AutoModeRegionHeight")
        .unit("px")
        .limits(2, data.sensorHeight, 2)
        .value(data.sensorHeight)
        .perEntryOf(selector)
        .expert();
    set.floating("IntensityControllerTarget").unit("%").floatLimits(10, 90).value(50.0);
    set.integer("IntensityControllerTolerance").unit("%").limits(1, 50).value(std::int64_t{5});
    set.integer("IntensityControllerOutliersBright").unit("%").limits(0, 10).guru();
    set.integer("IntensityControllerOutliersDark").unit("%").limits(0, 10).guru();
}

void addCorrections(FeatureSet& set) {
    set.category("/ImageProcessing/Correction");
    FeatureNode& correction = set.enumeration("CorrectionSelector")
                                  .entry("DefectPixelCorrection", 0)
                                  .entry("FixedPatternNoiseCorrection", 1)
                                  .selects({"CorrectionMode", "CorrectionSet"})
                                  .expert();
    set.enumeration("CorrectionMode")
        .entry("Off", 0)
        .entry("On", 1)
        .perEntryOf(correction)
        .expert();
    set.enumeration("CorrectionSet")
        .entry("Preset", 0)
        .entry("User", 1, false)
        .perEntryOf(correction)
        .expert();
    set.integer("CorrectionDataSize")
        .unit("B")
        .limits(0, 65536)
        .value(std::int64_t{4096})
        .readOnly()
        .guru();
    set.integer("Sharpness").limits(-12, 12).expert();
    set.floating("Saturation").floatLimits(0, 2).value(1.0).expert();
    set.floating("Hue").unit("°").floatLimits(-40, 40).expert();
}

void addLookUpTable(FeatureSet& set) {
    set.category("/LUTControl");
    FeatureNode& table = set.enumeration("LUTSelector")
                             .entry("Luminance", 0)
                             .entry("Red", 1, false)
                             .selects({"LUTEnable", "LUTIndex", "LUTValue"})
                             .expert();
    set.boolean("LUTEnable").perEntryOf(table).expert();
    set.integer("LUTIndex").limits(0, 4095).expert();
    set.integer("LUTValue").limits(0, 4095).guru();
    Bytes ramp(256);
    std::iota(ramp.begin(), ramp.end(), std::uint8_t{0});
    set.raw("LUTValueAll").value(ramp).about("All values of the table at once.").guru();
}

void addLines(FeatureSet& set) {
    set.category("/DigitalIOControl");
    FeatureNode& line = set.enumeration("LineSelector")
                            .entry("Line0", 0)
                            .entry("Line1", 1)
                            .entry("Line2", 2)
                            .entry("Line3", 3, false)
                            .selects({"LineMode", "LineInverter", "LineSource", "LineStatus",
                                      "LineDebounceDuration"});
    set.enumeration("LineMode").entry("Input", 0).entry("Output", 1).perEntryOf(line);
    set.boolean("LineInverter").perEntryOf(line);
    set.enumeration("LineSource")
        .entry("Off", 0)
        .entry("ExposureActive", 1)
        .entry("FrameTriggerWait", 2)
        .entry("Counter0Active", 3)
        .perEntryOf(line)
        .expert();
    set.boolean("LineStatus").perEntryOf(line).readOnly();
    set.integer("LineStatusAll").shownAs("HexNumber").value(std::int64_t{5}).readOnly().expert();
    set.floating("LineDebounceDuration").unit("us").floatLimits(0, 1000, 1).perEntryOf(line).guru();
    FeatureNode& output = set.enumeration("UserOutputSelector")
                              .entry("UserOutput0", 0)
                              .entry("UserOutput1", 1)
                              .selects({"UserOutputValue"})
                              .expert();
    set.boolean("UserOutputValue").perEntryOf(output).expert();
    set.integer("UserOutputValueAll").shownAs("HexNumber").limits(0, 0xFF).expert();
}

void addCountersAndTimers(FeatureSet& set) {
    set.category("/CounterAndTimerControl");
    FeatureNode& counter = set.enumeration("CounterSelector")
                               .entry("Counter0", 0)
                               .entry("Counter1", 1)
                               .selects({"CounterValue", "CounterEventSource", "CounterDuration"})
                               .expert();
    set.integer("CounterValue").perEntryOf(counter).readOnly().expert();
    set.integer("CounterDuration").perEntryOf(counter).value(std::int64_t{1}).expert();
    set.enumeration("CounterEventSource")
        .entry("Off", 0)
        .entry("FrameTrigger", 1)
        .entry("Line0", 2)
        .perEntryOf(counter)
        .expert();
    set.command("CounterReset").expert();
    FeatureNode& timer = set.enumeration("TimerSelector")
                             .entry("Timer0", 0)
                             .selects({"TimerDuration", "TimerDelay"})
                             .guru();
    set.floating("TimerDuration").unit("us").floatLimits(0, 1e7).perEntryOf(timer).guru();
    set.floating("TimerDelay").unit("us").floatLimits(0, 1e7).perEntryOf(timer).guru();
    set.command("TimerReset").guru();
}

void addChunks(FeatureSet& set) {
    set.category("/ChunkDataControl");
    set.boolean("ChunkModeActive").about("Appends data to every image.").expert();
    FeatureNode& chunk = set.enumeration("ChunkSelector")
                             .entry("FrameID", 0)
                             .entry("Timestamp", 1)
                             .entry("ExposureTime", 2)
                             .selects({"ChunkEnable"})
                             .expert();
    set.boolean("ChunkEnable").perEntryOf(chunk).expert();
}

void addEvents(FeatureSet& set) {
    set.category("/EventControl");
    FeatureNode& event = set.enumeration("EventSelector")
                             .entry("AcquisitionStart", 0)
                             .entry("FrameTrigger", 1)
                             .entry("ExposureEnd", 2)
                             .selects({"EventNotification"})
                             .expert();
    set.enumeration("EventNotification").entry("Off", 0).entry("On", 1).perEntryOf(event).expert();
    set.category("/EventControl/EventExposureEndData");
    set.fixedNumber("EventExposureEnd", 40001).shownAs("HexNumber").expert();
    set.fixedNumber("EventExposureEndTimestamp", 0).expert();
    set.fixedNumber("EventExposureEndFrameID", 0).expert();
}

void addUserSets(FeatureSet& set, CameraSettings& settings) {
    set.category("/UserSetControl");
    set.enumeration("UserSetSelector")
        .entry("Default", 0)
        .entry("UserSet1", 1)
        .entry("UserSet2", 2)
        .bind(settings.selectedUserSet)
        .selects({"UserSetLoad", "UserSetSave"})
        .notStreamable();
    set.command("UserSetLoad")
        .about("Loads the image, acquisition and bandwidth settings of the selected set.")
        .writableIf([&settings] { return !settings.isStreaming; })
        .action([&settings] { settings.loadUserSet(settings.selectedUserSet); });
    set.command("UserSetSave")
        .about("Stores the image, acquisition and bandwidth settings in the selected set.")
        .writableIf([&settings] { return settings.selectedUserSet != 0; })
        .action([&settings] { settings.storeUserSet(settings.selectedUserSet); });
    set.enumeration("UserSetDefault")
        .about("Set with which the camera starts.")
        .entry("Default", 0)
        .entry("UserSet1", 1)
        .entry("UserSet2", 2)
        .bind(settings.startingUserSet)
        .notStreamable()
        .expert();
}

void addTransport(FeatureSet& set) {
    set.category("/TransportLayerControl");
    set.integer("StreamHoldCapacity").limits(1, 64).value(std::int64_t{16}).readOnly().expert();
    set.boolean("StreamHoldEnable").expert();
    set.category("/TestControl");
    set.integer("TestPendingAck").unit("ms").limits(0, 10000).notStreamable().guru();
    set.integer("TestPatternOnError").shownAs("Boolean").limits(0, 1).notStreamable().guru();
    set.integer("TestRegister")
        .shownAs("HexNumber")
        .limits(0, 0xFFFFFFFF)
        .notStreamable()
        .invisible();
    set.category("/FileAccessControl");
    FeatureNode& file = set.enumeration("FileSelector")
                            .entry("UserData", 0)
                            .entry("Firmware", 1, false)
                            .selects({"FileSize", "FileOpenMode", "FileAccessBuffer"})
                            .notStreamable()
                            .guru();
    set.enumeration("FileOpenMode").entry("Read", 0).entry("Write", 1).notStreamable().guru();
    set.integer("FileSize").unit("B").value(std::int64_t{65536}).perEntryOf(file).readOnly().guru();
    set.raw("FileAccessBuffer").value(Bytes(64)).notStreamable().guru();
    set.command("FileOperationExecute").guru();
}

} // namespace

void addSettingFeatures(FeatureSet& set, CameraSettings& settings) {
    addAnalog(set);
    addAutoRegion(set, settings);
    addCorrections(set);
    addLookUpTable(set);
    addLines(set);
    addCountersAndTimers(set);
    addChunks(set);
    addEvents(set);
    addUserSets(set, settings);
    addTransport(set);
}

} // namespace orv::simulated
