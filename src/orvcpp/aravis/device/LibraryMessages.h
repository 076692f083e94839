// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>

namespace orv::aravis {

/// What the library says about one camera: each text is logged once, with the camera's ID, and
/// counted afterwards. Keeps 16 texts; the others count together. Thread-safe.
class CameraMessages {
public:
    explicit CameraMessages(std::string id) : m_id(std::move(id)) {}
    /// Logs how often texts were repeated.
    ~CameraMessages();
    CameraMessages(const CameraMessages&) = delete;
    CameraMessages& operator=(const CameraMessages&) = delete;

    void add(const std::string& text);

private:
    const std::string m_id;
    std::mutex m_mutex;
    /// Times that a text came. Guarded by the mutex.
    std::map<std::string, std::uint64_t> m_counts;
};

/// From now on, messages of the library on this thread are about this camera.
void setMessagesOfThread(std::shared_ptr<CameraMessages> camera);

/// While one of these exists, messages that the library writes about a camera go to our log, not to
/// the standard error. Others go to the handler that was there before. Thread-safe.
class LibraryMessages {
public:
    LibraryMessages();
    ~LibraryMessages();
    LibraryMessages(const LibraryMessages&) = delete;
    LibraryMessages& operator=(const LibraryMessages&) = delete;
};

} // namespace orv::aravis
