// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>

namespace orv::aravis {

/// Admits one opening of a camera at a time: the library parses the descriptions of all cameras
/// with one parser, which is not thread-safe, and reads them from the camera in the same call.
/// Nobody waits for an opening whose caller has given up. Thread-safe.
class ParserGate {
public:
    /// One opening.
    class Ticket {
    public:
        explicit Ticket(std::string camera) : m_camera(std::move(camera)) {}
        const std::string& camera() const { return m_camera; }

    private:
        friend class ParserGate;
        const std::string m_camera;
        /// Guarded by the gate's mutex.
        bool m_isGivenUp = false;
    };

    /// That of this process. Kept by those who use it, as a stuck opening may outlive main().
    static std::shared_ptr<ParserGate> ofProcess();

    /// Waits for its turn. False when the opening, or the one before it, is given up; \p stuck is
    /// then the latter's camera or empty. Call leave() after true.
    bool enter(const std::shared_ptr<Ticket>& ticket, std::string& stuck);
    void leave();
    /// The caller of this opening does not wait any longer.
    void giveUp(Ticket& ticket);

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    /// The opening inside; null when there is none. Guarded by the mutex.
    std::shared_ptr<Ticket> m_inside;
};

} // namespace orv::aravis
