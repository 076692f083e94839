// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/OrvTypes.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

/// Result of a wrapper without an SDK object.
inline constexpr OrvErrorType noObject = OrvErrorBadHandle;

/// Reads texts and lists of the camera SDK, which take two calls: the first, without a buffer,
/// returns the size, the second fills a buffer. These helpers make both calls to an operation of
/// \p object, a member pointer or a callable of the same arguments. They return OrvErrorBadHandle
/// for a null object and OrvErrorResources when memory is short. Nothing throws. Reentrant.
namespace SdkQuery {

/// The result of \p call; OrvErrorResources when it throws.
template <class Call> OrvErrorType guarded(const Call& call) {
    try {
        return call();
    } catch (...) {
        return OrvErrorResources;
    }
}

/// Fills \p result, a list or a text, by \p ask(Element* elements, std::uint32_t& count). It stays
/// unchanged after an error and when the count is zero. The second call's count is its new size.
template <class Object, class Container, class Ask>
OrvErrorType fill(Object* object, Container& result, const Ask& ask) {
    using Element = typename Container::value_type;
    if (object == nullptr)
        return noObject;
    return guarded([&] {
        std::uint32_t count = 0;
        OrvErrorType error = std::invoke(ask, *object, static_cast<Element*>(nullptr), count);
        if (error != OrvErrorSuccess || count == 0)
            return error;
        Container found(count, Element());
        error = std::invoke(ask, *object, found.data(), count);
        if (error != OrvErrorSuccess)
            return error;
        found.resize(std::min<std::size_t>(count, found.size()));
        result = std::move(found);
        return error;
    });
}

/// Like fill, but the list is empty after an error and when the count is zero.
template <class Object, class Element, class Ask>
OrvErrorType elements(Object* object, std::vector<Element>& result, const Ask& ask) {
    result.clear();
    return fill(object, result, ask);
}

/// Fills a text by \p ask(char* buffer, std::uint32_t& length).
template <class Object, class Ask>
OrvErrorType text(Object* object, std::string& result, const Ask& ask) {
    return fill(object, result, ask);
}

/// Like elements, but makes a new wrapper around each SDK object, in the SDK's order.
template <class SdkObject, class Object, class Wrapper, class Ask>
OrvErrorType wrappers(Object* object, std::vector<std::shared_ptr<Wrapper>>& result,
                      const Ask& ask) {
    result.clear();
    std::vector<std::shared_ptr<SdkObject>> found;
    if (const OrvErrorType error = elements(object, found, ask); error != OrvErrorSuccess)
        return error;
    return guarded([&] {
        std::vector<std::shared_ptr<Wrapper>> made;
        made.reserve(found.size());
        for (auto& sdkObject : found)
            made.push_back(std::make_shared<Wrapper>(std::move(sdkObject)));
        result = std::move(made);
        return OrvErrorType{OrvErrorSuccess};
    });
}

} // namespace SdkQuery
