// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/OrvSystem.h"

#include <cstddef>
#include <cstring>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

// Camera SDK objects that record each call with its inputs and outputs, and answer one result code.
// A text output is the name of its operation, a list has two elements, every other output has a
// different value.

template <class T, class = void> constexpr bool isWrapper = false;
template <class T>
constexpr bool isWrapper<T, std::void_t<decltype(std::declval<T&>().GetHandle())>> = true;

inline std::string toText(const std::string& value) {
    return value;
}
inline std::string toText(const OrvCPP::EnumEntry& entry) {
    return std::to_string(entry.value);
}
inline std::string toText(const char* value) {
    return value;
}
inline std::string toText(const void* object) {
    return std::to_string(reinterpret_cast<std::uintptr_t>(object));
}
template <class T> std::string toText(const std::shared_ptr<T>& object) {
    if constexpr (isWrapper<T>)
        return toText(object->GetHandle());
    else
        return toText(static_cast<const void*>(object.get()));
}
template <class T>
std::enable_if_t<std::is_arithmetic_v<T> || std::is_enum_v<T>, std::string> toText(T value) {
    return std::to_string(static_cast<double>(value));
}
template <class T> std::string toText(const std::vector<T>& values) {
    std::string text;
    for (const T& value : values)
        text += (&value == values.data() ? "" : " ") + toText(value);
    return text;
}

/// A pointer to compare, not to use.
template <class T> std::shared_ptr<T> someObject() {
    const auto owner = std::make_shared<std::max_align_t>();
    return {owner, reinterpret_cast<T*>(owner.get())};
}

class Recorder {
public:
    OrvErrorType result = OrvErrorSuccess;
    mutable std::vector<std::string> calls;
    /// Value of the last output.
    mutable int filled = 0;

protected:
    template <class... Arguments>
    OrvErrorType note(std::string call, const Arguments&... arguments) const {
        ((call += " " + toText(arguments)), ...);
        calls.push_back(call);
        return result;
    }

    template <class Output> const Output& fill(Output& output) const {
        if constexpr (std::is_same_v<Output, bool>)
            output = ++filled % 2 != 0;
        else
            output = static_cast<Output>(++filled);
        return output;
    }
    const OrvCPP::EnumEntry& fill(OrvCPP::EnumEntry& output) const {
        fill(output.value);
        return output;
    }
    template <class T> const std::shared_ptr<T>& fill(std::shared_ptr<T>& output) const {
        return output = someObject<T>();
    }

    OrvErrorType noteText(const std::string& call, char* buffer, std::uint32_t& length) const {
        length = static_cast<std::uint32_t>(call.size());
        if (buffer == nullptr)
            return note(call);
        std::memcpy(buffer, call.data(), call.size());
        return note(call, call);
    }

    template <class Element>
    OrvErrorType noteList(const std::string& call, Element* elements, std::uint32_t& count) const {
        count = 2;
        return elements == nullptr ? note(call) : note(call, fill(elements[0]), fill(elements[1]));
    }
};

using Length = std::uint32_t;

// Operations with: no argument, an output, a text, a list, an input.
// clang-format off
#define DOES(Operation)                                                                            \
    OrvErrorType Operation() override { return note(#Operation); }
#define GIVES(Operation, Type)                                                                     \
    OrvErrorType Operation(Type& out) const override { return note(#Operation, fill(out)); }
#define TELLS(Operation)                                                                           \
    OrvErrorType Operation(char* b, Length& n) const override { return noteText(#Operation, b, n); }
#define LISTS(Operation, Type)                                                                     \
    OrvErrorType Operation(Type* e, Length& n) const override { return noteList(#Operation, e, n); }
#define TAKES(Operation, Type)                                                                     \
    OrvErrorType Operation(Type given) override { return note(#Operation, given); }
// clang-format on

/// Operations of all SDK objects with features.
template <class Base> class RecordingContainer : public Base, public Recorder {
public:
    OrvErrorType GetFeatureByName(const char* name,
                                  std::shared_ptr<OrvCPP::Feature>& out) const override {
        return note("GetFeatureByName", name, fill(out));
    }
    LISTS(GetFeatures, std::shared_ptr<OrvCPP::Feature>)
};

class RecordingLocalDevice : public RecordingContainer<OrvCPP::LocalDevice> {};

class RecordingInterface : public RecordingContainer<OrvCPP::Interface> {
public:
    TELLS(GetID)
    GIVES(GetType, OrvTransportLayerType)
    TELLS(GetName)
    GIVES(GetTransportLayer, std::shared_ptr<OrvCPP::TransportLayer>)
    LISTS(GetCameras, std::shared_ptr<OrvCPP::Camera>)
};

class RecordingLayer : public RecordingContainer<OrvCPP::TransportLayer> {
public:
    LISTS(GetInterfaces, std::shared_ptr<OrvCPP::Interface>)
    LISTS(GetCameras, std::shared_ptr<OrvCPP::Camera>)
    TELLS(GetID)
    TELLS(GetName)
    TELLS(GetModelName)
    TELLS(GetVendor)
    TELLS(GetVersion)
    TELLS(GetPath)
    GIVES(GetType, OrvTransportLayerType)
};

class RecordingStream : public RecordingContainer<OrvCPP::Stream> {
public:
    DOES(Open)
    DOES(Close)
    TAKES(AnnounceFrame, const std::shared_ptr<OrvCPP::Frame>&)
    TAKES(RevokeFrame, const std::shared_ptr<OrvCPP::Frame>&)
    DOES(RevokeAllFrames)
    TAKES(QueueFrame, const std::shared_ptr<OrvCPP::Frame>&)
    DOES(FlushQueue)
    DOES(StartCapture)
    DOES(EndCapture)
    GIVES(GetStreamBufferAlignment, Length)
};

class RecordingCamera : public RecordingContainer<OrvCPP::Camera> {
public:
    /// Answer of GetInterface, also on an error.
    std::shared_ptr<RecordingInterface> interface = std::make_shared<RecordingInterface>();

    TAKES(Open, OrvAccessModeType)
    DOES(Close)
    OrvErrorType GetID(char* b, Length& n, bool extended) const override {
        return noteText(extended ? "GetExtendedID" : "GetID", b, n);
    }
    TELLS(GetName)
    TELLS(GetModel)
    TELLS(GetSerialNumber)
    GIVES(GetInterfaceType, OrvTransportLayerType)
    OrvErrorType GetInterface(std::shared_ptr<OrvCPP::Interface>& found) const override {
        found = interface;
        return note("GetInterface", found);
    }
    GIVES(GetLocalDevice, std::shared_ptr<OrvCPP::LocalDevice>)
    GIVES(GetTransportLayer, std::shared_ptr<OrvCPP::TransportLayer>)
    LISTS(GetStreams, std::shared_ptr<OrvCPP::Stream>)
    GIVES(GetPermittedAccess, OrvAccessModeType)
    OrvErrorType ReadMemory(std::uint64_t address, std::uint8_t* bytes, Length size,
                            Length& completeReads) const override {
        completeReads = size;
        for (Length i = 0; i < size; ++i)
            fill(bytes[i]);
        return note("ReadMemory", address, std::vector<std::uint8_t>(bytes, bytes + size));
    }
    OrvErrorType
    StartContinuousImageAcquisition(int bufferCount,
                                    const std::shared_ptr<OrvCPP::IFrameObserver>& observer,
                                    OrvCPP::FrameAllocationMode mode) override {
        return note("StartContinuousImageAcquisition", bufferCount, observer, mode);
    }
    DOES(StopContinuousImageAcquisition)
    TAKES(QueueFrame, const std::shared_ptr<OrvCPP::Frame>&)
};

class RecordingFrame : public OrvCPP::Frame, public Recorder {
public:
    GIVES(GetReceiveStatus, OrvFrameStatusType)
    GIVES(GetBufferSize, std::uint32_t)
    GIVES(GetFrameID, std::uint64_t)
    GIVES(GetTimestamp, std::uint64_t)
    OrvErrorType GetImage(const std::uint8_t*&) const override { return note("GetImage"); }
    GIVES(GetPixelFormat, OrvPixelFormatType)
    GIVES(GetWidth, std::uint32_t)
    GIVES(GetHeight, std::uint32_t)
};

class RecordingFeature : public OrvCPP::Feature, public Recorder {
public:
    using Int = std::int64_t;

    OrvErrorType GetValue(std::uint8_t* b, Length& n, Length& sizeFilled) const override {
        n = 4;
        if (b == nullptr)
            return note("GetValue");
        sizeFilled = 3;
        return note("GetValue", fill(b[0]), fill(b[1]), fill(b[2]));
    }
    GIVES(GetValue, bool)
    TELLS(GetValue)
    GIVES(GetValue, double)
    GIVES(GetValue, Int)
    OrvErrorType GetValues(const char** values, Length& n) const override {
        n = 2;
        if (values == nullptr)
            return note("GetValues");
        values[0] = "On";
        values[1] = nullptr;
        return note("GetValues", "On", "");
    }
    LISTS(GetValues, Int)
    OrvErrorType GetEntry(OrvCPP::EnumEntry& out, const char* name) const override {
        return note("GetEntry", fill(out), name);
    }
    LISTS(GetEntries, OrvCPP::EnumEntry)
    OrvErrorType GetRange(Int& low, Int& high) const override {
        return note("GetRange", fill(low), fill(high));
    }
    OrvErrorType GetRange(double& low, double& high) const override {
        return note("GetRange", fill(low), fill(high));
    }
    OrvErrorType SetValue(const std::uint8_t* data, Length size) override {
        return note("SetValue raw", data, size);
    }
    OrvErrorType SetValue(const char* value) override { return note("SetValue text", value); }
    OrvErrorType SetValue(bool value) override { return note("SetValue bool", value); }
    OrvErrorType SetValue(double value) override { return note("SetValue double", value); }
    OrvErrorType SetValue(Int value) override { return note("SetValue int", value); }
    GIVES(HasIncrement, bool)
    GIVES(GetIncrement, double)
    GIVES(GetIncrement, Int)
    OrvErrorType IsValueAvailable(Int value, bool& out) const override {
        return note("IsValueAvailable", value, fill(out));
    }
    OrvErrorType IsValueAvailable(const char* value, bool& out) const override {
        return note("IsValueAvailable", value, fill(out));
    }
    DOES(RunCommand)
    GIVES(IsCommandDone, bool)
    TELLS(GetName)
    TELLS(GetDisplayName)
    GIVES(GetDataType, OrvFeatureDataType)
    GIVES(GetFlags, OrvFeatureFlagsType)
    TELLS(GetCategory)
    TELLS(GetUnit)
    TELLS(GetRepresentation)
    GIVES(GetVisibility, OrvFeatureVisibilityType)
    TELLS(GetToolTip)
    TELLS(GetDescription)
    LISTS(GetSelectedFeatures, std::shared_ptr<Feature>)
    LISTS(GetValidValueSet, Int)
    GIVES(IsReadable, bool)
    GIVES(IsWritable, bool)
    TAKES(RegisterObserver, const std::shared_ptr<OrvCPP::IFeatureObserver>&)
    TAKES(UnregisterObserver, const std::shared_ptr<OrvCPP::IFeatureObserver>&)
};

#undef DOES
#undef GIVES
#undef TELLS
#undef LISTS
#undef TAKES
