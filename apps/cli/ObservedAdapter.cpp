// SPDX-License-Identifier: BSD-3-Clause
#include "cli/ObservedAdapter.h"

#include "cli/AdapterLoad.h"
#include "cli/Failure.h"
#include "cli/FrameFigures.h"
#include "cli/LossFindings.h"
#include "cli/StreamRow.h"
#include "gige/DiscoveredCamera.h"
#include "platform/AddressText.h"
#include "platform/HostCommands.h"
#include "platform/NetworkAdapters.h"
#include "platform/NetworkCounters.h"
#include "platform/UdpSocketTable.h"

#include <algorithm>
#include <atomic>
#include <map>
#include <optional>
#include <thread>
#include <tuple>
#include <vector>

namespace cli {

namespace {

using Clock = std::chrono::steady_clock;

/// An adapter without packets wakes its thread so often.
constexpr std::chrono::milliseconds longestWait{500};

/// A stream as it is told apart: camera, host and port.
using StreamKey = std::tuple<std::uint32_t, std::uint32_t, std::uint16_t>;

double secondsBetween(Clock::time_point since, Clock::time_point until) {
    return std::chrono::duration<double>(until - since).count();
}

/// What the sockets of the receiving programs have dropped of each stream.
class ReceiverDrops {
public:
    /// Since the first call for the stream. Nothing where the packets do not come through a UDP
    /// socket: it is not there, or refuses them all, since the program has another way to them.
    std::optional<std::uint64_t> of(const observer::StreamReading& stream,
                                    const std::vector<platform::UdpSocketEntry>& sockets) {
        const auto drops = platform::dropsAt(sockets, stream.host, stream.port);
        if (!drops)
            return std::nullopt;
        const StreamKey key(stream.camera, stream.host, stream.port);
        auto& before = m_before.try_emplace(key, *drops, stream.figures.packets).first->second;
        // The program has opened another socket.
        if (*drops < before.first)
            before = {*drops, stream.figures.packets};
        const std::uint64_t moved = *drops - before.first;
        const std::uint64_t packets = stream.figures.packets - before.second;
        return moved > 0 && moved >= packets - packets / 10 ? std::nullopt : std::optional(moved);
    }

private:
    /// Drops and packets at the first call.
    std::map<StreamKey, std::pair<std::uint64_t, std::uint64_t>> m_before;
};

/// As other commands name the camera; by its address while its MAC address has not passed.
QString idOf(const observer::StreamReading& stream) {
    return QString::fromStdString(stream.name.macAddress != 0
                                      ? gige::cameraId(platform::macText(stream.name.macAddress))
                                      : platform::addressText(stream.camera));
}

/// The part of a camera in all that the adapter has received.
void addAdapterShare(QJsonObject& row, const QJsonObject& load) {
    const QLatin1String rate("bytesPerSecond");
    if (load.value(rate).toDouble() > 0 && row.contains(rate))
        row[QStringLiteral("adapterPercent")] =
            100 * row.value(rate).toDouble() / load.value(rate).toDouble();
}

QJsonObject identityOf(const observer::StreamReading& stream) {
    return {
        {QStringLiteral("id"), idOf(stream)},
        {QStringLiteral("name"),
         QString::fromStdString(stream.name.userName.empty() ? stream.name.model
                                                             : stream.name.userName)},
        {QStringLiteral("model"), QString::fromStdString(stream.name.model)},
        {QStringLiteral("serialNumber"), QString::fromStdString(stream.name.serialNumber)},
        {QStringLiteral("opened"), false},
        {QStringLiteral("measured"), true},
        {QStringLiteral("address"), QString::fromStdString(platform::addressText(stream.camera))},
        {QStringLiteral("receiver"),
         QStringLiteral("%1:%2")
             .arg(QString::fromStdString(platform::addressText(stream.host)))
             .arg(stream.port)}};
}

std::unique_ptr<observer::AdapterObserver>
openObserver(const QString& adapter, std::unique_ptr<observer::PacketRecord> record) {
    const QStringList known = adaptersThatAreUp();
    if (!known.contains(adapter))
        throw Failure(QStringLiteral("There is no network adapter \"%1\" that is up and has an "
                                     "IPv4 address.")
                              .arg(adapter) +
                          thereIs(known),
                      ExitCode::WrongUse);
    if (auto observer = observer::AdapterObserver::open(adapter.toStdString(), std::move(record)))
        return observer;
    if (!platform::mayOpenPacketSockets())
        throw Failure(
            QStringLiteral("Observing needs the capability CAP_NET_RAW, which this program has "
                           "not. Grant it: %1")
                .arg(QString::fromStdString(
                    platform::packetSocketCommand(platform::programFile()))));
    throw Failure(QStringLiteral("The system gives no packet socket on %1; 32 MB of memory are "
                                 "needed for it.")
                      .arg(adapter));
}

/// One adapter, with a thread that takes its packets.
class WatchedAdapter final : public ObservedAdapter {
public:
    WatchedAdapter(const QString& name, std::unique_ptr<observer::PacketRecord> record)
        : m_name(name),
          m_bitsPerSecond(static_cast<double>(platform::linkSpeed(name.toStdString()))),
          m_networkBefore(platform::readNetworkCounters(name.toStdString())),
          m_observer(openObserver(name, std::move(record))), m_thread([this] {
              while (!m_isEnding)
                  m_observer->receive(longestWait);
          }) {}

    void endCount() override {
        m_countedAtEnd = platform::readAdapterCounters(m_name.toStdString());
        m_observer->endCount();
    }

    std::chrono::milliseconds latency() const override { return m_observer->latency(); }

    ~WatchedAdapter() override {
        m_isEnding = true;
        m_observer->wake();
        m_thread.join();
    }

    QJsonObject interval() override {
        Reading now = read();
        // Packets of a new stream were not seen from its beginning.
        if (!m_observer->counted())
            startCount(now);
        const QJsonObject document = figures(m_last, now, now.timing);
        m_last = std::move(now);
        return document;
    }

    QJsonObject result() override {
        m_last = read();
        const Reading& now = m_last;
        QJsonObject document = figures(m_first, now, m_allTiming);
        document[QStringLiteral("findings")] = lossFindings(evidence(now));
        return document;
    }

    std::uint64_t lostFrames() const override {
        std::uint64_t lost = 0;
        for (const auto& [key, stream] : m_last.streams)
            lost += stream.figures.framesLost + stream.figures.framesIncomplete;
        return lost;
    }

    observer::CapturedAdapter recorded() override {
        return {m_name.toStdString(), m_observer->recorded()};
    }

private:
    using Timings = std::map<StreamKey, observer::FrameTiming>;

    struct Reading {
        Clock::time_point time = Clock::now();
        std::map<StreamKey, observer::StreamReading> streams;
        Timings timing;
        std::uint64_t missed = 0;
        observer::FragmentCounts fragments;
        platform::NetworkCounters counters;
    };

    /// Frames and packets of all streams that were not seen.
    static std::uint64_t lossesOf(const Reading& reading) {
        std::uint64_t losses = 0;
        for (const auto& [key, stream] : reading.streams)
            losses += stream.figures.framesLost + stream.figures.packetsMissing;
        return losses;
    }

    void startCount(const Reading& now) {
        m_countedAtStart = platform::readAdapterCounters(m_name.toStdString());
        m_observer->startCount();
        m_missedAtStart = now.missed;
        m_lossesAtStart = lossesOf(now);
    }

    /// Packets that the adapter has received and no stream contains.
    std::optional<std::int64_t> surplus(const Reading& now) const {
        const auto received = platform::difference(
            m_countedAtStart, m_countedAtEnd)[platform::NetworkCount::AdapterReceived];
        const auto counted = m_observer->counted();
        if (!received || !counted)
            return std::nullopt;
        // What was lost before is not in these counts.
        if (m_lossesAtStart * 10 > lossesOf(now))
            return std::nullopt;
        const std::uint64_t seen = *counted + now.missed - m_missedAtStart;
        return static_cast<std::int64_t>(*received) - static_cast<std::int64_t>(seen);
    }

    Reading read() {
        Reading reading;
        observer::AdapterReading taken = m_observer->read();
        reading.missed = taken.missed.dropped;
        reading.fragments = taken.fragments;
        reading.counters = platform::readAdapterCounters(m_name.toStdString());
        for (observer::StreamReading& stream : taken.streams) {
            const StreamKey key(stream.camera, stream.host, stream.port);
            reading.timing[key] = stream.timing;
            m_allTiming[key].add(stream.timing);
            reading.streams[key] = std::move(stream);
        }
        return reading;
    }

    QJsonObject figures(const Reading& since, const Reading& until, const Timings& timings) {
        const double period = secondsBetween(since.time, until.time);
        const auto sockets = platform::readUdpSockets();
        const QJsonObject load = adapterLoad(platform::difference(since.counters, until.counters),
                                             period, m_bitsPerSecond);
        QJsonArray rows;
        for (const auto& [key, stream] : until.streams) {
            const auto before = since.streams.find(key);
            QJsonObject row = identityOf(stream);
            addFigures(row,
                       {before == since.streams.end() ? stream.before : before->second.figures,
                        stream.figures, timings.at(key), stream.silence},
                       period, m_bitsPerSecond);
            addAdapterShare(row, load);
            if (const auto drops = m_receiverDrops.of(stream, sockets))
                row[QStringLiteral("receiverDrops")] = static_cast<qint64>(*drops);
            rows.append(row);
        }
        return document(rows, load, until);
    }

    QJsonObject document(const QJsonArray& rows, QJsonObject load, const Reading& now) const {
        addAdapterDrops(load, platform::difference(m_networkBefore, now.counters));
        load[QStringLiteral("fragmentPackets")] = static_cast<qint64>(now.fragments.packets);
        load[QStringLiteral("fragmentBytes")] = static_cast<qint64>(now.fragments.bytes);
        QJsonObject total = totalFigures(rows);
        if (m_bitsPerSecond > 0)
            total[QStringLiteral("bitsPerSecond")] = static_cast<qint64>(m_bitsPerSecond);
        addLinkShare(total, m_bitsPerSecond);
        return {{QStringLiteral("interface"), m_name},
                {QStringLiteral("cameras"), rows},
                {QStringLiteral("adapter"), load},
                {QStringLiteral("total"), total},
                {QStringLiteral("observerMissedPackets"), static_cast<qint64>(now.missed)}};
    }

    InterfaceEvidence evidence(const Reading& now) const {
        InterfaceEvidence evidence;
        evidence.name = m_name.toStdString();
        evidence.network = platform::difference(
            m_networkBefore, platform::readNetworkCounters(m_name.toStdString()));
        evidence.surplus = surplus(now);
        evidence.mtu = static_cast<std::uint64_t>(
            std::max<std::int64_t>(platform::mtu(m_name.toStdString()), 0));
        evidence.program = platform::programFile();
        for (const auto& [key, stream] : now.streams) {
            const observer::StreamFigures& figures = stream.figures;
            CameraEvidence camera = frameEvidence(idOf(stream).toStdString(), figures);
            camera.streamFramesLost = figures.framesLost;
            camera.framesHollow = figures.framesHollow;
            camera.gaps = figures.gaps;
            camera.packetsReceived = figures.packets;
            camera.packetsMissing = figures.packetsMissing;
            camera.packetsResent = figures.packetsResent;
            camera.packetsDuplicate = figures.packetsDuplicate;
            camera.usesRing = true;
            evidence.cameras.push_back(std::move(camera));
        }
        return evidence;
    }

    const QString m_name;
    const double m_bitsPerSecond;
    const platform::NetworkCounters m_networkBefore;
    const std::unique_ptr<observer::AdapterObserver> m_observer;
    platform::NetworkCounters m_countedAtStart;
    std::uint64_t m_missedAtStart = 0;
    std::uint64_t m_lossesAtStart = 0;
    platform::NetworkCounters m_countedAtEnd;
    std::atomic<bool> m_isEnding{false};
    const Reading m_first{Clock::now(), {}, {}, 0, {}, m_networkBefore};
    Reading m_last = m_first;
    Timings m_allTiming;
    ReceiverDrops m_receiverDrops;
    std::thread m_thread;
};

} // namespace

QStringList adaptersThatAreUp() {
    QStringList names;
    for (const platform::NetworkAdapter& adapter :
         platform::networkAdapters().value_or(std::vector<platform::NetworkAdapter>())) {
        const QString name = QString::fromStdString(adapter.name);
        if (adapter.isUp && !names.contains(name))
            names.append(name);
    }
    return names;
}

std::unique_ptr<ObservedAdapter>
ObservedAdapter::open(const QString& name, std::unique_ptr<observer::PacketRecord> record) {
    return std::make_unique<WatchedAdapter>(name, std::move(record));
}

} // namespace cli
