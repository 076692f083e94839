// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/OrvSystem.h"

#include <cstddef>
#include <memory>
#include <sstream>
#include <string>
#include <type_traits>
#include <vector>

// Camera SDK objects that record each call with its inputs and outputs, and answer one result code.
// A text or a list has two elements; every output has a different value.

template <class T, class = void> constexpr bool isWrapper = false;
template <class T>
constexpr bool isWrapper<T, std::void_t<decltype(std::declval<T&>().GetHandle())>> = true;

/// Appends an argument of a call; a wrapper as its SDK object.
template <class T> void write(std::ostream& text, const T& value) {
    if constexpr (std::is_enum_v<T>)
        text << ' ' << static_cast<std::int64_t>(value);
    else
        text << ' ' << value;
}
/// A list of the SDK can contain null texts.
inline void write(std::ostream& text, const char* value) {
    write(text, std::string(value == nullptr ? "" : value));
}
inline void write(std::ostream& text, const OrvCPP::EnumEntry& entry) {
    write(text, entry.value);
}
template <class T> void write(std::ostream& text, const std::shared_ptr<T>& object) {
    if constexpr (isWrapper<T>)
        write(text, object->GetHandle());
    else
        text << ' ' << object.get();
}
template <class T> void write(std::ostream& text, const std::vector<T>& values) {
    for (const T& value : values)
        write(text, value);
}

/// Gives an argument a value; a number is the next one after \p last. Leaves a text
/// empty and gives a list four elements: the operation fills both.
template <class T> void fill(T& value, int& last) {
    if constexpr (std::is_same_v<T, bool>)
        value = ++last % 2 != 0;
    else if constexpr (std::is_same_v<T, const char*>)
        value = ++last % 4 != 3 ? "On" : nullptr;
    else if constexpr (std::is_same_v<T, const std::uint8_t*>)
        value = reinterpret_cast<T>("raw");
    else if constexpr (std::is_same_v<T, double>)
        value = ++last + 0.5;
    else
        value = static_cast<T>(++last);
}
inline void fill(OrvCPP::EnumEntry& entry, int& last) {
    fill(entry.value, last);
}
/// An SDK object is a pointer to compare, not to use.
template <class T> void fill(std::shared_ptr<T>& object, int&) {
    const auto owner = std::make_shared<std::max_align_t>();
    if constexpr (isWrapper<T>)
        object = std::make_shared<T>();
    else
        object = {owner, reinterpret_cast<T*>(owner.get())};
}

inline void fill(std::string&, int&) {}
template <class T> void fill(std::vector<T>& values, int&) {
    values.resize(4);
}

class Recorder {
public:
    OrvErrorType result = OrvErrorSuccess;
    mutable std::vector<std::string> calls;
    /// Value of the last output.
    mutable int filled = 0;

protected:
    template <class... Arguments>
    OrvErrorType note(const char* call, const Arguments&... arguments) const {
        std::ostringstream text;
        text << call;
        (write(text, arguments), ...);
        calls.push_back(text.str());
        return result;
    }

    template <class Output> const Output& give(Output& output) const {
        fill(output, filled);
        return output;
    }

    template <class Element>
    OrvErrorType noteList(const char* call, Element* elements, std::uint32_t& count) const {
        using List =
            std::conditional_t<std::is_same_v<Element, char>, std::string, std::vector<Element>>;
        count = 2;
        return elements == nullptr ? note(call)
                                   : note(call, List{give(elements[0]), give(elements[1])});
    }
};

using Length = std::uint32_t;

// Operations with: no argument, an output, a text, a list, an input.
// clang-format off
#define DOES(Operation)                                                                            \
    OrvErrorType Operation() override { return note(#Operation); }
#define GIVES(Operation, Type)                                                                     \
    OrvErrorType Operation(Type& out) const override { return note(#Operation, give(out)); }
#define TELLS(Operation) LISTS(Operation, char)
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
        return note("GetFeatureByName", name, give(out));
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
        return noteList(extended ? "GetExtendedID" : "GetID", b, n);
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
            give(bytes[i]);
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
        return note("GetValue", give(b[0]), give(b[1]), give(b[2]));
    }
    GIVES(GetValue, bool)
    TELLS(GetValue)
    GIVES(GetValue, double)
    GIVES(GetValue, Int)
    LISTS(GetValues, const char*)
    LISTS(GetValues, Int)
    OrvErrorType GetEntry(OrvCPP::EnumEntry& out, const char* name) const override {
        return note("GetEntry", give(out), name);
    }
    LISTS(GetEntries, OrvCPP::EnumEntry)
    OrvErrorType GetRange(Int& low, Int& high) const override {
        return note("GetRange", give(low), give(high));
    }
    OrvErrorType GetRange(double& low, double& high) const override {
        return note("GetRange", give(low), give(high));
    }
    OrvErrorType SetValue(const std::uint8_t* data, Length size) override {
        return note("SetValue", data, size);
    }
    TAKES(SetValue, const char*)
    TAKES(SetValue, bool)
    TAKES(SetValue, double)
    TAKES(SetValue, Int)
    GIVES(HasIncrement, bool)
    GIVES(GetIncrement, double)
    GIVES(GetIncrement, Int)
    OrvErrorType IsValueAvailable(Int value, bool& out) const override {
        return note("IsValueAvailable", value, give(out));
    }
    OrvErrorType IsValueAvailable(const char* value, bool& out) const override {
        return note("IsValueAvailable", value, give(out));
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
