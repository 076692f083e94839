// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/OrvSystem.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

// Camera SDK objects that note each call with the values handed in and answer one result code to
// all of them. A text is the name of its operation, a list has two elements.

class Recorder {
public:
    OrvErrorType result = OrvErrorSuccess;
    mutable std::vector<std::string> calls;

protected:
    template <class... Arguments>
    OrvErrorType note(std::string call, const Arguments&... arguments) const {
        ((call += " " + toText(arguments)), ...);
        calls.push_back(call);
        return result;
    }

    OrvErrorType noteText(const std::string& call, char* buffer, std::uint32_t& length) const {
        if (buffer != nullptr)
            std::memcpy(buffer, call.data(), std::min<std::size_t>(length, call.size()));
        length = static_cast<std::uint32_t>(call.size());
        return note(call);
    }

    template <class Element>
    OrvErrorType noteList(const std::string& call, Element*, std::uint32_t& count) const {
        count = 2;
        return note(call);
    }

private:
    static std::string toText(const char* value) { return value; }
    template <class Number> static std::string toText(const Number& value) {
        return std::to_string(value);
    }
};

using Length = std::uint32_t;

/// What every SDK object with features has.
template <class Base> class RecordingContainer : public Base, public Recorder {
public:
    OrvErrorType GetFeatureByName(const char* name,
                                  std::shared_ptr<OrvCPP::Feature>&) const override {
        return note("GetFeatureByName", name);
    }
    OrvErrorType GetFeatures(std::shared_ptr<OrvCPP::Feature>* f, Length& n) const override {
        return noteList("GetFeatures", f, n);
    }
};

class RecordingLocalDevice : public RecordingContainer<OrvCPP::LocalDevice> {};

class RecordingInterface : public RecordingContainer<OrvCPP::Interface> {
public:
    using Layer = std::shared_ptr<OrvCPP::TransportLayer>;
    using Camera = std::shared_ptr<OrvCPP::Camera>;

    OrvErrorType GetID(char* b, Length& n) const override { return noteText("GetID", b, n); }
    OrvErrorType GetType(OrvTransportLayerType&) const override { return note("GetType"); }
    OrvErrorType GetName(char* b, Length& n) const override { return noteText("GetName", b, n); }
    OrvErrorType GetTransportLayer(Layer&) const override { return note("GetTransportLayer"); }
    OrvErrorType GetCameras(Camera* c, Length& n) const override {
        return noteList("GetCameras", c, n);
    }
};

class RecordingLayer : public RecordingContainer<OrvCPP::TransportLayer> {
public:
    using Interface = std::shared_ptr<OrvCPP::Interface>;
    using Camera = std::shared_ptr<OrvCPP::Camera>;

    OrvErrorType GetInterfaces(Interface* i, Length& n) const override {
        return noteList("GetInterfaces", i, n);
    }
    OrvErrorType GetCameras(Camera* c, Length& n) const override {
        return noteList("GetCameras", c, n);
    }
    OrvErrorType GetID(char* b, Length& n) const override { return noteText("GetID", b, n); }
    OrvErrorType GetName(char* b, Length& n) const override { return noteText("GetName", b, n); }
    OrvErrorType GetModelName(char* b, Length& n) const override {
        return noteText("GetModelName", b, n);
    }
    OrvErrorType GetVendor(char* b, Length& n) const override {
        return noteText("GetVendor", b, n);
    }
    OrvErrorType GetVersion(char* b, Length& n) const override {
        return noteText("GetVersion", b, n);
    }
    OrvErrorType GetPath(char* b, Length& n) const override { return noteText("GetPath", b, n); }
    OrvErrorType GetType(OrvTransportLayerType&) const override { return note("GetType"); }
};

class RecordingStream : public RecordingContainer<OrvCPP::Stream> {
public:
    using Frame = std::shared_ptr<OrvCPP::Frame>;

    OrvErrorType Open() override { return note("Open"); }
    OrvErrorType Close() override { return note("Close"); }
    OrvErrorType AnnounceFrame(const Frame&) override { return note("AnnounceFrame"); }
    OrvErrorType RevokeFrame(const Frame&) override { return note("RevokeFrame"); }
    OrvErrorType RevokeAllFrames() override { return note("RevokeAllFrames"); }
    OrvErrorType QueueFrame(const Frame&) override { return note("QueueFrame"); }
    OrvErrorType FlushQueue() override { return note("FlushQueue"); }
    OrvErrorType StartCapture() override { return note("StartCapture"); }
    OrvErrorType EndCapture() override { return note("EndCapture"); }
    OrvErrorType GetStreamBufferAlignment(Length&) const override {
        return note("GetStreamBufferAlignment");
    }
};

class RecordingCamera : public RecordingContainer<OrvCPP::Camera> {
public:
    /// Handed out by GetInterface, on an error, too.
    std::shared_ptr<RecordingInterface> interface = std::make_shared<RecordingInterface>();

    OrvErrorType Open(OrvAccessModeType mode) override { return note("Open", mode); }
    OrvErrorType Close() override { return note("Close"); }
    OrvErrorType GetID(char* b, Length& n, bool extended) const override {
        return noteText(extended ? "GetExtendedID" : "GetID", b, n);
    }
    OrvErrorType GetName(char* b, Length& n) const override { return noteText("GetName", b, n); }
    OrvErrorType GetModel(char* b, Length& n) const override { return noteText("GetModel", b, n); }
    OrvErrorType GetSerialNumber(char* b, Length& n) const override {
        return noteText("GetSerialNumber", b, n);
    }
    OrvErrorType GetInterfaceType(OrvTransportLayerType&) const override {
        return note("GetInterfaceType");
    }
    OrvErrorType GetInterface(std::shared_ptr<OrvCPP::Interface>& found) const override {
        found = interface;
        return note("GetInterface");
    }
    OrvErrorType GetLocalDevice(std::shared_ptr<OrvCPP::LocalDevice>& found) const override {
        found = std::make_shared<RecordingLocalDevice>();
        return note("GetLocalDevice");
    }
    OrvErrorType GetTransportLayer(std::shared_ptr<OrvCPP::TransportLayer>& found) const override {
        found = std::make_shared<RecordingLayer>();
        return note("GetTransportLayer");
    }
    OrvErrorType GetStreams(std::shared_ptr<OrvCPP::Stream>* s, Length& n) const override {
        return noteList("GetStreams", s, n);
    }
    OrvErrorType GetPermittedAccess(OrvAccessModeType&) const override {
        return note("GetPermittedAccess");
    }
    OrvErrorType ReadMemory(std::uint64_t address, std::uint8_t*, Length size,
                            Length& completeReads) const override {
        completeReads = size;
        return note("ReadMemory", address, size);
    }
    OrvErrorType StartContinuousImageAcquisition(int bufferCount,
                                                 const std::shared_ptr<OrvCPP::IFrameObserver>&,
                                                 OrvCPP::FrameAllocationMode mode) override {
        return note("StartContinuousImageAcquisition", bufferCount, static_cast<int>(mode));
    }
    OrvErrorType StopContinuousImageAcquisition() override {
        return note("StopContinuousImageAcquisition");
    }
    OrvErrorType QueueFrame(const std::shared_ptr<OrvCPP::Frame>&) override {
        return note("QueueFrame");
    }
};

class RecordingFrame : public OrvCPP::Frame, public Recorder {
public:
    OrvErrorType GetReceiveStatus(OrvFrameStatusType&) const override {
        return note("GetReceiveStatus");
    }
    OrvErrorType GetBufferSize(std::uint32_t&) const override { return note("GetBufferSize"); }
    OrvErrorType GetFrameID(std::uint64_t&) const override { return note("GetFrameID"); }
    OrvErrorType GetTimestamp(std::uint64_t&) const override { return note("GetTimestamp"); }
    OrvErrorType GetImage(const std::uint8_t*&) const override { return note("GetImage"); }
    OrvErrorType GetPixelFormat(OrvPixelFormatType&) const override {
        return note("GetPixelFormat");
    }
    OrvErrorType GetWidth(std::uint32_t&) const override { return note("GetWidth"); }
    OrvErrorType GetHeight(std::uint32_t&) const override { return note("GetHeight"); }
};

class RecordingFeature : public OrvCPP::Feature, public Recorder {
public:
    using Int = std::int64_t;
    using Observer = std::shared_ptr<OrvCPP::IFeatureObserver>;

    OrvErrorType GetValue(std::uint8_t* b, Length& n, Length& filled) const override {
        n = 4;
        if (b != nullptr)
            std::memcpy(b, "raw", filled = 3);
        return note("GetValue raw");
    }
    OrvErrorType GetValue(bool&) const override { return note("GetValue bool"); }
    OrvErrorType GetValue(char* b, Length& n) const override {
        return noteText("GetValue text", b, n);
    }
    OrvErrorType GetValue(double&) const override { return note("GetValue double"); }
    OrvErrorType GetValue(Int&) const override { return note("GetValue int"); }
    OrvErrorType GetValues(const char** values, Length& n) const override {
        if (values != nullptr) {
            values[0] = "On";
            values[1] = nullptr;
        }
        return noteList("GetValues text", values, n);
    }
    OrvErrorType GetValues(Int* values, Length& n) const override {
        return noteList("GetValues int", values, n);
    }
    OrvErrorType GetEntry(OrvCPP::EnumEntry&, const char* name) const override {
        return note("GetEntry", name);
    }
    OrvErrorType GetEntries(OrvCPP::EnumEntry* entries, Length& n) const override {
        return noteList("GetEntries", entries, n);
    }
    OrvErrorType GetRange(Int&, Int&) const override { return note("GetRange int"); }
    OrvErrorType GetRange(double&, double&) const override { return note("GetRange double"); }
    OrvErrorType SetValue(const std::uint8_t* data, Length size) override {
        return note("SetValue raw", *data, size);
    }
    OrvErrorType SetValue(const char* value) override { return note("SetValue text", value); }
    OrvErrorType SetValue(bool value) override { return note("SetValue bool", value); }
    OrvErrorType SetValue(double value) override { return note("SetValue double", value); }
    OrvErrorType SetValue(Int value) override { return note("SetValue int", value); }
    OrvErrorType HasIncrement(bool&) const override { return note("HasIncrement"); }
    OrvErrorType GetIncrement(double&) const override { return note("GetIncrement double"); }
    OrvErrorType GetIncrement(Int&) const override { return note("GetIncrement int"); }
    OrvErrorType IsValueAvailable(Int value, bool&) const override {
        return note("IsValueAvailable int", value);
    }
    OrvErrorType IsValueAvailable(const char* value, bool&) const override {
        return note("IsValueAvailable text", value);
    }
    OrvErrorType RunCommand() override { return note("RunCommand"); }
    OrvErrorType IsCommandDone(bool&) const override { return note("IsCommandDone"); }
    OrvErrorType GetName(char* b, Length& n) const override { return noteText("GetName", b, n); }
    OrvErrorType GetDisplayName(char* b, Length& n) const override {
        return noteText("GetDisplayName", b, n);
    }
    OrvErrorType GetDataType(OrvFeatureDataType&) const override { return note("GetDataType"); }
    OrvErrorType GetFlags(OrvFeatureFlagsType&) const override { return note("GetFlags"); }
    OrvErrorType GetCategory(char* b, Length& n) const override {
        return noteText("GetCategory", b, n);
    }
    OrvErrorType GetUnit(char* b, Length& n) const override { return noteText("GetUnit", b, n); }
    OrvErrorType GetRepresentation(char* b, Length& n) const override {
        return noteText("GetRepresentation", b, n);
    }
    OrvErrorType GetVisibility(OrvFeatureVisibilityType&) const override {
        return note("GetVisibility");
    }
    OrvErrorType GetToolTip(char* b, Length& n) const override {
        return noteText("GetToolTip", b, n);
    }
    OrvErrorType GetDescription(char* b, Length& n) const override {
        return noteText("GetDescription", b, n);
    }
    OrvErrorType GetSelectedFeatures(std::shared_ptr<Feature>* f, Length& n) const override {
        return noteList("GetSelectedFeatures", f, n);
    }
    OrvErrorType GetValidValueSet(Int* values, Length& n) const override {
        return noteList("GetValidValueSet", values, n);
    }
    OrvErrorType IsReadable(bool&) const override { return note("IsReadable"); }
    OrvErrorType IsWritable(bool&) const override { return note("IsWritable"); }
    OrvErrorType RegisterObserver(const Observer&) override { return note("RegisterObserver"); }
    OrvErrorType UnregisterObserver(const Observer&) override { return note("UnregisterObserver"); }
};
