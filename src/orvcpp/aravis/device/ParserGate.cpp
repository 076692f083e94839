// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/device/ParserGate.h"

namespace orv::aravis {

std::shared_ptr<ParserGate> ParserGate::ofProcess() {
    static const auto gate = std::make_shared<ParserGate>();
    return gate;
}

bool ParserGate::enter(const std::shared_ptr<Ticket>& ticket, std::string& stuck) {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [&] { return !m_inside || m_inside->m_isGivenUp || ticket->m_isGivenUp; });
    if (ticket->m_isGivenUp)
        return false;
    if (m_inside) {
        stuck = m_inside->camera();
        return false;
    }
    m_inside = ticket;
    return true;
}

void ParserGate::leave() {
    {
        const std::lock_guard lock(m_mutex);
        m_inside.reset();
    }
    m_changed.notify_all();
}

void ParserGate::giveUp(Ticket& ticket) {
    {
        const std::lock_guard lock(m_mutex);
        ticket.m_isGivenUp = true;
    }
    m_changed.notify_all();
}

} // namespace orv::aravis
