// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/OrvTypes.h"

#include <algorithm>
#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

/// What a wrapper answers that holds no SDK object.
inline constexpr OrvErrorType noObject = OrvErrorBadHandle;

/// The camera SDK hands out texts and lists in two calls: without a buffer it tells the size, with
/// a buffer it fills it. These helpers make both calls to an operation of \p object, given as a
/// member pointer or as a callable of the same arguments. An empty object is OrvErrorBadHandle;
/// what cannot be allocated is OrvErrorResources.
namespace TwiceAsked {

/// Fills a list by \p ask(Element* elements, std::uint32_t& count). It is empty after an error,
/// and shorter than told first when it shrank between the calls.
template <class Object, class Element, class Ask>
OrvErrorType elements(Object* object, std::vector<Element>& result, const Ask& ask) {
    result.clear();
    if (object == nullptr)
        return noObject;
    std::uint32_t count = 0;
    if (const OrvErrorType error = std::invoke(ask, *object, static_cast<Element*>(nullptr), count);
        error != OrvErrorSuccess || count == 0)
        return error;
    try {
        std::vector<Element> found(count);
        const OrvErrorType error = std::invoke(ask, *object, found.data(), count);
        if (error != OrvErrorSuccess)
            return error;
        found.resize(std::min<std::size_t>(count, found.size()));
        result = std::move(found);
        return error;
    } catch (const std::exception&) {
        return OrvErrorResources;
    }
}

/// Fills a text by \p ask(char* buffer, std::uint32_t& length). It is left as it was after an
/// error and when the length is zero.
template <class Object, class Ask>
OrvErrorType text(Object* object, std::string& result, const Ask& ask) {
    if (object == nullptr)
        return noObject;
    std::uint32_t length = 0;
    if (const OrvErrorType error = std::invoke(ask, *object, static_cast<char*>(nullptr), length);
        error != OrvErrorSuccess || length == 0)
        return error;
    try {
        std::string buffer(length, '\0');
        const OrvErrorType error = std::invoke(ask, *object, buffer.data(), length);
        if (error != OrvErrorSuccess)
            return error;
        buffer.resize(std::min<std::size_t>(length, buffer.size()));
        result = std::move(buffer);
        return error;
    } catch (const std::exception&) {
        return OrvErrorResources;
    }
}

/// Like elements, but makes a new wrapper around each SDK object, in the SDK's order.
template <class SdkObject, class Object, class Wrapper, class Ask>
OrvErrorType wrappers(Object* object, std::vector<std::shared_ptr<Wrapper>>& result,
                      const Ask& ask) {
    result.clear();
    std::vector<std::shared_ptr<SdkObject>> found;
    if (const OrvErrorType error = elements(object, found, ask); error != OrvErrorSuccess)
        return error;
    try {
        result.reserve(found.size());
        for (auto& sdkObject : found)
            result.push_back(std::make_shared<Wrapper>(std::move(sdkObject)));
        return OrvErrorSuccess;
    } catch (const std::exception&) {
        result.clear();
        return OrvErrorResources;
    }
}

} // namespace TwiceAsked
