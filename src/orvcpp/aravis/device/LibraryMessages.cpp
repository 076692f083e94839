// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/device/LibraryMessages.h"

#include "orvcpp/core/DescriptionCheck.h"
#include "orvcpp/core/SdkLog.h"

#include <glib.h>

#include <utility>

namespace orv::aravis {

namespace {

constexpr std::size_t mostTexts = 16;
constexpr const char* otherTexts = "other messages";

std::shared_ptr<CameraMessages>& messagesOfThread() {
    thread_local std::shared_ptr<CameraMessages> current;
    return current;
}

/// GLib's default handler before ours, and how many objects want ours.
struct Handlers {
    std::mutex mutex;
    /// All below guarded by the mutex.
    int users = 0;
    GLogFunc former = g_log_default_handler;
};

Handlers& handlers() {
    // Never destroyed: threads that are stuck in the library may outlive main().
    static auto* const made = new Handlers;
    return *made;
}

void handle(const gchar* domain, GLogLevelFlags level, const gchar* message, gpointer data) {
    const auto& camera = messagesOfThread();
    // GLib ends the process after a fatal message, so the text must not be lost.
    if (camera && message && (level & (G_LOG_FLAG_FATAL | G_LOG_LEVEL_ERROR)) == 0) {
        camera->add(message);
        return;
    }
    GLogFunc former = nullptr;
    {
        const std::lock_guard lock(handlers().mutex);
        former = handlers().former;
    }
    former(domain, level, message, data);
}

} // namespace

CameraMessages::~CameraMessages() {
    for (const auto& [text, times] : m_counts) {
        if (times > 1)
            logWarning(m_id + ": The camera library repeated " + std::to_string(times - 1) +
                       " times: " + text);
    }
}

void CameraMessages::add(const std::string& text) {
    const std::size_t begin = text.find_first_not_of(" \n");
    const std::size_t end = text.find_last_not_of(" \n");
    if (begin == std::string::npos)
        return;
    std::string line = onOneLine(text.substr(begin, end - begin + 1));
    {
        const std::lock_guard lock(m_mutex);
        if (m_counts.size() >= mostTexts && m_counts.count(line) == 0)
            line = otherTexts;
        if (++m_counts[line] > 1)
            return;
    }
    logWarning(m_id + ": The camera library reports: " + line);
}

void setMessagesOfThread(std::shared_ptr<CameraMessages> camera) {
    messagesOfThread() = std::move(camera);
}

LibraryMessages::LibraryMessages() {
    const std::lock_guard lock(handlers().mutex);
    if (handlers().users++ == 0)
        handlers().former = g_log_set_default_handler(&handle, nullptr);
}

LibraryMessages::~LibraryMessages() {
    const std::lock_guard lock(handlers().mutex);
    if (--handlers().users > 0)
        return;
    // Another part of the program may have set a handler after ours: it stays.
    const GLogFunc current = g_log_set_default_handler(handlers().former, nullptr);
    if (current != &handle)
        g_log_set_default_handler(current, nullptr);
}

} // namespace orv::aravis
