// SPDX-License-Identifier: BSD-3-Clause
#include "cli/ObservedInterfaces.h"

#include "cli/Failure.h"
#include "cli/LossCapture.h"
#include "cli/ObservedAdapter.h"
#include "cli/ObservedUsbBus.h"
#include "cli/UsbBuses.h"

#include <QJsonArray>

#include <algorithm>
#include <chrono>
#include <thread>
#include <utility>
#include <vector>

namespace cli {

namespace {

using Clock = std::chrono::steady_clock;

/// Of a thread that has to share its processor.
constexpr std::chrono::milliseconds longestDelay{60};

const QLatin1String resultType("result");

} // namespace

struct ObservedInterfaces::State {
    bool isList = true;
    Clock::time_point start = Clock::now();
    std::vector<std::unique_ptr<ObservedInterface>> interfaces;
    /// Those of them that are network adapters.
    std::vector<ObservedAdapter*> adapters;
    QStringList notices;
    std::optional<LossCapture> capture;

    void addAdapter(const QString& name, std::unique_ptr<observer::PacketRecord> record) {
        auto adapter = ObservedAdapter::open(name, std::move(record));
        adapters.push_back(adapter.get());
        interfaces.push_back(std::move(adapter));
    }

    void addUsbBus(const QString& name) {
        interfaces.push_back(std::make_unique<ObservedUsbBus>(name, openUsbBus(name)));
    }

    /// Those that may be observed; the notices tell of cameras on the others.
    void addUsbBuses() {
        QStringList observed;
        for (const QString& name : usbBuses()) {
            std::error_code error;
            auto monitor = observer::UsbMonitor::open(usbBusFile(name), error);
            if (!monitor)
                continue;
            interfaces.push_back(std::make_unique<ObservedUsbBus>(name, std::move(monitor)));
            observed.append(name);
        }
        notices = unobservedUsbCameras(observed);
    }

    std::vector<observer::CapturedAdapter> recorded() const {
        std::vector<observer::CapturedAdapter> all;
        for (ObservedAdapter* adapter : adapters)
            all.push_back(adapter->recorded());
        return all;
    }

    void noteLosses() {
        std::uint64_t lost = 0;
        std::chrono::nanoseconds recordedSince{0};
        for (const ObservedAdapter* adapter : adapters) {
            lost += adapter->lostFrames();
            recordedSince = std::max(recordedSince, adapter->recordedSince());
        }
        capture->note(lost, recordedSince);
    }

    QJsonObject document(const QString& type, QJsonObject (ObservedInterface::*figures)()) {
        QJsonArray list;
        for (const auto& interface : interfaces)
            list.append(((*interface).*figures)());
        QJsonObject document =
            isList ? QJsonObject{{QStringLiteral("interfaces"), list}} : list.first().toObject();
        document[QStringLiteral("type")] = type;
        document[QStringLiteral("simulated")] = false;
        document[QStringLiteral("seconds")] =
            std::chrono::duration<double>(Clock::now() - start).count();
        if (capture) {
            noteLosses();
            if (type == resultType)
                capture->finish();
            if (!capture->document().isEmpty())
                document[QStringLiteral("capture")] = capture->document();
        }
        return document;
    }
};

ObservedInterfaces::ObservedInterfaces(const QStringList& names,
                                       const std::optional<QString>& captureFile,
                                       std::size_t mostRecorded)
    : m_state(std::make_unique<State>()) {
    QStringList adapters = names.isEmpty() ? adaptersThatAreUp() : names;
    adapters.removeDuplicates();
    const auto firstBus = std::stable_partition(adapters.begin(), adapters.end(),
                                                [](auto& name) { return !isUsbBusName(name); });
    const QStringList buses(firstBus, adapters.end());
    adapters.erase(firstBus, adapters.end());
    if (captureFile && adapters.isEmpty())
        throw Failure(QStringLiteral("--pcap takes packets of network adapters; none is observed."),
                      ExitCode::WrongUse);
    m_state->isList = names.size() != 1;
    if (captureFile)
        m_state->capture.emplace(*captureFile,
                                 [state = m_state.get()] { return state->recorded(); });
    for (const QString& name : std::as_const(adapters)) {
        auto record = captureFile ? std::make_unique<observer::PacketRecord>(
                                        static_cast<std::uint32_t>(m_state->adapters.size()),
                                        mostRecorded / static_cast<std::size_t>(adapters.size()))
                                  : nullptr;
        m_state->addAdapter(name, std::move(record));
    }
    for (const QString& name : buses)
        m_state->addUsbBus(name);
    if (names.isEmpty())
        m_state->addUsbBuses();
    if (m_state->interfaces.empty())
        throw Failure(QStringLiteral("No network adapter is up, and no USB bus can be observed."));
}

ObservedInterfaces::~ObservedInterfaces() = default;

QStringList ObservedInterfaces::takeNotices() {
    QStringList notices = std::exchange(m_state->notices, {});
    for (const auto& interface : m_state->interfaces)
        notices += interface->takeNotices();
    return notices;
}

QJsonObject ObservedInterfaces::interval() {
    return m_state->document(QStringLiteral("interval"), &ObservedInterface::interval);
}

QJsonObject ObservedInterfaces::result(bool isInterrupted) {
    std::chrono::milliseconds latency{0};
    for (const auto& interface : m_state->interfaces) {
        interface->endCount();
        latency = std::max(latency, interface->latency());
    }
    // Until the packets that were counted have been taken.
    std::this_thread::sleep_for(latency + longestDelay);
    QJsonObject document = m_state->document(resultType, &ObservedInterface::result);
    document[QStringLiteral("interrupted")] = isInterrupted;
    return document;
}

} // namespace cli
