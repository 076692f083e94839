// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/device/NodeAccess.h"

#include "orvcpp/aravis/LibraryError.h"
#include "orvcpp/core/DescriptionCheck.h"
#include "orvcpp/core/FloatStep.h"

#include <algorithm>
#include <limits>

namespace orv::aravis::node {

namespace {

OrvErrorType ofType(const FeatureDescription& feature, OrvFeatureDataType type) {
    return feature.type == type ? OrvErrorSuccess : OrvErrorWrongType;
}

/// Asks every node from the feature's to the one that holds its value. Success when \p ask returns
/// \p wanted for all of them, else \p otherwise or the library's error.
OrvErrorType everyNode(const FeatureDescription& feature,
                       gboolean (*ask)(ArvGcFeatureNode*, GError**), bool wanted,
                       OrvErrorType otherwise) {
    for (ArvGcFeatureNode* const node : feature.wayToValue) {
        LibraryError failure;
        const bool is = ask(node, failure.out()) != FALSE;
        if (const OrvErrorType error = failure.code(); error != OrvErrorSuccess)
            return error;
        if (is != wanted)
            return otherwise;
    }
    return OrvErrorSuccess;
}

OrvErrorType available(const FeatureDescription& feature) {
    return everyNode(feature, &arv_gc_feature_node_is_available, true, OrvErrorNotAvailable);
}

/// Success when a feature is of the type and can be read now.
OrvErrorType mayGet(const FeatureDescription& feature, OrvFeatureDataType type) {
    const OrvErrorType error = ofType(feature, type);
    return error != OrvErrorSuccess ? error : admitsReading(feature);
}

OrvErrorType maySet(const FeatureDescription& feature, OrvFeatureDataType type) {
    const OrvErrorType error = ofType(feature, type);
    return error != OrvErrorSuccess ? error : admitsWriting(feature);
}

/// Reads a bound of a number; leaves \p bound as it is when the camera has none.
template <typename T, typename Node>
OrvErrorType readBound(T& bound, T (*read)(Node*, GError**), Node* of) {
    LibraryError failure;
    const T found = read(of, failure.out());
    const OrvErrorType error = failure.code();
    if (error == OrvErrorSuccess)
        bound = found;
    return error == OrvErrorNotAvailable ? OrvErrorSuccess : error;
}

template <typename T, typename Node>
OrvErrorType readLimits(Limits<T>& limits, Node* of, T (*minimum)(Node*, GError**),
                        T (*maximum)(Node*, GError**), T (*increment)(Node*, GError**)) {
    limits = {std::numeric_limits<T>::lowest(), std::numeric_limits<T>::max(), T{}};
    if (const OrvErrorType error = readBound(limits.minimum, minimum, of); error != OrvErrorSuccess)
        return error;
    if (const OrvErrorType error = readBound(limits.maximum, maximum, of); error != OrvErrorSuccess)
        return error;
    return readBound(limits.increment, increment, of);
}

bool fits(std::int64_t value, const Limits<std::int64_t>& limits) {
    if (value < limits.minimum || value > limits.maximum)
        return false;
    // Unsigned, since the distance may exceed what the signed type holds.
    const auto distance =
        static_cast<std::uint64_t>(value) - static_cast<std::uint64_t>(limits.minimum);
    return limits.increment <= 1 || distance % static_cast<std::uint64_t>(limits.increment) == 0;
}

bool fits(double value, const Limits<double>& limits) {
    return value >= limits.minimum && value <= limits.maximum &&
           isOnStep(value, limits.minimum, limits.increment);
}

/// Success when \p entry exists and can be chosen now.
OrvErrorType mayChoose(const FeatureDescription& feature, const OrvCPP::EnumEntry* entry) {
    if (const OrvErrorType error = admitsWriting(feature); error != OrvErrorSuccess)
        return error;
    bool can = false;
    const OrvErrorType error =
        entry ? isAvailable(feature, entry->name, can) : OrvErrorInvalidValue;
    if (error != OrvErrorSuccess)
        return error;
    return can ? OrvErrorSuccess : OrvErrorInvalidValue;
}

template <typename Node, typename T>
OrvErrorType setNumber(const FeatureDescription& feature, OrvFeatureDataType type, Node* of,
                       T value, void (*write)(Node*, T, GError**)) {
    if (const OrvErrorType error = maySet(feature, type); error != OrvErrorSuccess)
        return error;
    Limits<T> allowed;
    if (const OrvErrorType error = limits(feature, allowed); error != OrvErrorSuccess)
        return error;
    if (!fits(value, allowed))
        return OrvErrorInvalidValue;
    LibraryError failure;
    write(of, value, failure.out());
    return failure.code();
}

/// The bytes of a register; OrvErrorResources for more than any camera has, which a register that
/// holds the length may claim.
OrvErrorType readLength(ArvGcFeatureNode* node, guint64& length) {
    LibraryError failure;
    length = arv_gc_register_get_length(ARV_GC_REGISTER(node), failure.out());
    if (const OrvErrorType error = failure.code(); error != OrvErrorSuccess)
        return error;
    return length > static_cast<guint64>(largestRegister) ? OrvErrorResources : OrvErrorSuccess;
}

/// The library ends the process when it has no memory for a text.
OrvErrorType admitsTextLength(const FeatureDescription& feature) {
    guint64 length = 0;
    ArvGcFeatureNode* const last = feature.wayToValue.back();
    return ARV_IS_GC_REGISTER(last) ? readLength(last, length) : OrvErrorSuccess;
}

} // namespace

OrvErrorType admitsReading(const FeatureDescription& feature) {
    return feature.isReadable ? available(feature) : OrvErrorInvalidAccess;
}

OrvErrorType admitsWriting(const FeatureDescription& feature) {
    if (!feature.isWritable)
        return OrvErrorInvalidAccess;
    if (const OrvErrorType error = available(feature); error != OrvErrorSuccess)
        return error;
    return everyNode(feature, &arv_gc_feature_node_is_locked, false, OrvErrorInvalidAccess);
}

OrvErrorType get(const FeatureDescription& feature, std::int64_t& value) {
    const bool isEnum = feature.type == OrvFeatureDataEnum;
    if (const OrvErrorType error = mayGet(feature, isEnum ? OrvFeatureDataEnum : OrvFeatureDataInt);
        error != OrvErrorSuccess)
        return error;
    LibraryError failure;
    value = isEnum
                ? arv_gc_enumeration_get_int_value(ARV_GC_ENUMERATION(feature.node), failure.out())
                : arv_gc_integer_get_value(ARV_GC_INTEGER(feature.node), failure.out());
    return failure.code();
}

OrvErrorType get(const FeatureDescription& feature, double& value) {
    if (const OrvErrorType error = mayGet(feature, OrvFeatureDataFloat); error != OrvErrorSuccess)
        return error;
    LibraryError failure;
    value = arv_gc_float_get_value(ARV_GC_FLOAT(feature.node), failure.out());
    return failure.code();
}

OrvErrorType get(const FeatureDescription& feature, bool& value) {
    if (const OrvErrorType error = mayGet(feature, OrvFeatureDataBool); error != OrvErrorSuccess)
        return error;
    LibraryError failure;
    value = arv_gc_boolean_get_value(ARV_GC_BOOLEAN(feature.node), failure.out());
    return failure.code();
}

OrvErrorType get(const FeatureDescription& feature, std::string& value) {
    const bool isEnum = feature.type == OrvFeatureDataEnum;
    if (const OrvErrorType error =
            mayGet(feature, isEnum ? OrvFeatureDataEnum : OrvFeatureDataString))
        return error;
    if (const OrvErrorType error = isEnum ? OrvErrorSuccess : admitsTextLength(feature);
        error != OrvErrorSuccess)
        return error;
    LibraryError failure;
    const char* const text =
        isEnum
            ? arv_gc_enumeration_get_string_value(ARV_GC_ENUMERATION(feature.node), failure.out())
            : arv_gc_string_get_value(ARV_GC_STRING(feature.node), failure.out());
    // After a failure the text is not terminated.
    if (const OrvErrorType error = failure.code(); error != OrvErrorSuccess)
        return error;
    value = text ? text : "";
    return OrvErrorSuccess;
}

OrvErrorType get(const FeatureDescription& feature, Bytes& value) {
    if (const OrvErrorType error = mayGet(feature, OrvFeatureDataRaw); error != OrvErrorSuccess)
        return error;
    guint64 length = 0;
    if (const OrvErrorType error = readLength(feature.node, length); error != OrvErrorSuccess)
        return error;
    LibraryError failure;
    value.resize(length);
    arv_gc_register_get(ARV_GC_REGISTER(feature.node), value.data(), length, failure.out());
    return failure.code();
}

OrvErrorType set(const FeatureDescription& feature, std::int64_t value) {
    if (feature.type != OrvFeatureDataEnum)
        return setNumber<ArvGcInteger, gint64>(
            feature, OrvFeatureDataInt,
            feature.type == OrvFeatureDataInt ? ARV_GC_INTEGER(feature.node) : nullptr, value,
            &arv_gc_integer_set_value);
    if (const OrvErrorType error = mayChoose(feature, feature.findEntry(value));
        error != OrvErrorSuccess)
        return error;
    LibraryError failure;
    arv_gc_enumeration_set_int_value(ARV_GC_ENUMERATION(feature.node), value, failure.out());
    return failure.code();
}

OrvErrorType set(const FeatureDescription& feature, double value) {
    return setNumber<ArvGcFloat, double>(
        feature, OrvFeatureDataFloat,
        feature.type == OrvFeatureDataFloat ? ARV_GC_FLOAT(feature.node) : nullptr, value,
        &arv_gc_float_set_value);
}

OrvErrorType set(const FeatureDescription& feature, bool value) {
    if (const OrvErrorType error = maySet(feature, OrvFeatureDataBool); error != OrvErrorSuccess)
        return error;
    LibraryError failure;
    arv_gc_boolean_set_value(ARV_GC_BOOLEAN(feature.node), value ? TRUE : FALSE, failure.out());
    return failure.code();
}

OrvErrorType set(const FeatureDescription& feature, const std::string& value) {
    LibraryError failure;
    if (feature.type == OrvFeatureDataEnum) {
        if (const OrvErrorType error = mayChoose(feature, feature.findEntry(value));
            error != OrvErrorSuccess)
            return error;
        arv_gc_enumeration_set_string_value(ARV_GC_ENUMERATION(feature.node), value.c_str(),
                                            failure.out());
        return failure.code();
    }
    if (const OrvErrorType error = maySet(feature, OrvFeatureDataString); error != OrvErrorSuccess)
        return error;
    if (const OrvErrorType error = admitsTextLength(feature); error != OrvErrorSuccess)
        return error;
    auto* const of = ARV_GC_STRING(feature.node);
    const gint64 longest = arv_gc_string_get_max_length(of, failure.out());
    if (failure.code() == OrvErrorSuccess && longest > 0 &&
        value.size() > static_cast<std::size_t>(longest))
        return OrvErrorInvalidValue;
    arv_gc_string_set_value(of, value.c_str(), failure.out());
    return failure.code();
}

OrvErrorType set(const FeatureDescription& feature, const Bytes& value) {
    if (const OrvErrorType error = maySet(feature, OrvFeatureDataRaw); error != OrvErrorSuccess)
        return error;
    auto* const of = ARV_GC_REGISTER(feature.node);
    guint64 length = 0;
    if (const OrvErrorType error = readLength(feature.node, length); error != OrvErrorSuccess)
        return error;
    LibraryError failure;
    if (value.size() != length)
        return OrvErrorInvalidValue;
    arv_gc_register_set(of, value.data(), length, failure.out());
    return failure.code();
}

OrvErrorType limits(const FeatureDescription& feature, Limits<std::int64_t>& limits) {
    if (const OrvErrorType error = ofType(feature, OrvFeatureDataInt); error != OrvErrorSuccess)
        return error;
    Limits<gint64> found;
    const OrvErrorType error =
        readLimits<gint64>(found, ARV_GC_INTEGER(feature.node), &arv_gc_integer_get_min,
                           &arv_gc_integer_get_max, &arv_gc_integer_get_inc);
    limits = {found.minimum, found.maximum, std::max<gint64>(found.increment, 1)};
    return error;
}

OrvErrorType limits(const FeatureDescription& feature, Limits<double>& limits) {
    if (const OrvErrorType error = ofType(feature, OrvFeatureDataFloat); error != OrvErrorSuccess)
        return error;
    const OrvErrorType error =
        readLimits<double>(limits, ARV_GC_FLOAT(feature.node), &arv_gc_float_get_min,
                           &arv_gc_float_get_max, &arv_gc_float_get_inc);
    // The library answers the smallest positive number for no increment.
    if (!(limits.increment > std::numeric_limits<double>::min()))
        limits.increment = 0;
    return error;
}

OrvErrorType isAvailable(const FeatureDescription& feature, const std::string& entry,
                         bool& available) {
    if (const OrvErrorType error = ofType(feature, OrvFeatureDataEnum); error != OrvErrorSuccess)
        return error;
    const auto found = feature.entryNodes.find(entry);
    if (found == feature.entryNodes.end())
        return OrvErrorInvalidValue;
    LibraryError failure;
    available = arv_gc_feature_node_is_available(found->second, failure.out());
    if (const OrvErrorType error = failure.code(); error != OrvErrorSuccess)
        return error;
    available = available && arv_gc_feature_node_is_implemented(found->second, failure.out());
    return failure.code();
}

OrvErrorType run(const FeatureDescription& command) {
    if (const OrvErrorType error = maySet(command, OrvFeatureDataCommand); error != OrvErrorSuccess)
        return error;
    LibraryError failure;
    arv_gc_command_execute(ARV_GC_COMMAND(command.node), failure.out());
    return failure.code();
}

OrvErrorType isDone(const FeatureDescription& command, bool& done) {
    if (const OrvErrorType error = ofType(command, OrvFeatureDataCommand); error != OrvErrorSuccess)
        return error;
    done = true;
    if (!command.polled || !command.commandValue)
        return OrvErrorSuccess;
    LibraryError failure;
    const gint64 running = arv_gc_property_node_get_int64(command.commandValue, failure.out());
    if (const OrvErrorType error = failure.code(); error != OrvErrorSuccess)
        return error;
    done = arv_gc_integer_get_value(command.polled, failure.out()) != running;
    return failure.code();
}

} // namespace orv::aravis::node
