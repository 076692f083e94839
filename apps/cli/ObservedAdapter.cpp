// SPDX-License-Identifier: BSD-3-Clause
#include "cli/ObservedAdapter.h"

#include "cli/AdapterLoad.h"
#include "cli/Failure.h"
#include "cli/FrameFigures.h"
#include "cli/LossFindings.h"
#include "cli/ReceiverDrops.h"
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
#include <utility>
#include <vector>

namespace cli {

namespace {

using Clock = std::chrono::steady_clock;

/// An adapter without packets wakes its thread so often.
constexpr std::chrono::milliseconds longestWait{500};

double secondsBetween(Clock::time_point since, Clock::time_point until) {
    return std::chrono::duration<double>(until - since).count();
}

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
        : m_name(name), m_networkBefore(platform::readNetworkCounters(name.toStdString())),
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
        const QJsonObject document = figures(now, false);
        m_last = std::move(now);
        return document;
    }

    QJsonObject result() override {
        m_last = read();
        QJsonObject document = figures(m_last, true);
        document[QStringLiteral("findings")] = lossFindings(evidence(m_last));
        return document;
    }

    std::uint64_t lostFrames() const override {
        std::uint64_t lost = 0;
        for (const auto& [key, stream] : m_last.streams)
            lost += stream.figures.framesLost + stream.figures.framesIncomplete;
        return lost;
    }

    observer::CapturedAdapter recorded() override {
        return {m_name.toStdString(), m_observer->recorded(), m_last.missed};
    }

    std::chrono::nanoseconds recordedSince() const override { return m_observer->recordedSince(); }

    QStringList takeNotices() override { return std::exchange(m_notices, {}); }

private:
    struct Reading {
        /// When the counters were read.
        Clock::time_point time = Clock::now();
        /// The streams' packets that arrived after this still wait in the ring.
        Clock::time_point until{};
        StreamReadings streams;
        std::uint64_t missed = 0;
        observer::FragmentCounts fragments;
        platform::NetworkCounters counters;
        /// Since the reading before, and since the start. An adapter that is made anew begins its
        /// counters anew, too: what it received between the readings around this is unknown.
        platform::NetworkCounters moved;
        platform::NetworkCounters allMoved;
        /// 0 where it is unknown. The link may be made anew at another speed.
        double bitsPerSecond = 0;
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
        reading.until = taken.until;
        reading.missed = taken.missed.dropped;
        reading.fragments = taken.fragments;
        reading.counters = platform::readNetworkCounters(m_name.toStdString());
        reading.moved = platform::difference(m_last.counters, reading.counters);
        reading.allMoved = platform::sum(m_last.allMoved, reading.moved);
        reading.bitsPerSecond = static_cast<double>(platform::linkSpeed(m_name.toStdString()));
        for (observer::StreamReading& stream : taken.streams) {
            const StreamKey key(stream.camera, stream.host, stream.port);
            reading.streams[key] = std::move(stream);
        }
        noticeChanges(taken.missed);
        return reading;
    }

    void noticeChanges(const gvsp::SourceCounts& counts) {
        if (std::exchange(m_removals, counts.removals) < counts.removals)
            m_notices.append(QStringLiteral("The adapter %1 was removed. It is observed again when "
                                            "an adapter of this name is there.")
                                 .arg(m_name));
        if (std::exchange(m_returns, counts.returns) < counts.returns)
            m_notices.append(
                QStringLiteral("The adapter %1 is there again, and is observed.").arg(m_name));
    }

    /// Since the reading before, or of the whole time.
    QJsonObject figures(const Reading& now, bool isWhole) {
        const double countersPeriod = secondsBetween(isWhole ? m_start : m_last.time, now.time);
        const double streamsPeriod = secondsBetween(isWhole ? m_start : m_last.until, now.until);
        const auto drops = m_receiverDrops.read(now.streams, platform::readUdpSockets());
        const QJsonObject load =
            adapterLoad(isWhole ? now.allMoved : now.moved, countersPeriod, now.bitsPerSecond);
        QJsonArray rows;
        for (const auto& [key, stream] : now.streams) {
            QJsonObject row = identityOf(stream);
            addFigures(row,
                       {isWhole ? observer::StreamFigures() : stream.known, stream.figures,
                        isWhole ? stream.allTiming : stream.timing, stream.silence},
                       streamsPeriod, now.bitsPerSecond);
            addAdapterShare(row, load);
            if (const auto dropped = drops.find(key); dropped != drops.end())
                row[QStringLiteral("receiverDrops")] = static_cast<qint64>(dropped->second);
            rows.append(row);
        }
        return document(rows, load, now);
    }

    QJsonObject document(const QJsonArray& rows, QJsonObject load, const Reading& now) const {
        addAdapterDrops(load, now.allMoved);
        load[QStringLiteral("fragmentPackets")] = static_cast<qint64>(now.fragments.packets);
        load[QStringLiteral("fragmentBytes")] = static_cast<qint64>(now.fragments.bytes);
        QJsonObject total = totalFigures(rows);
        if (now.bitsPerSecond > 0)
            total[QStringLiteral("bitsPerSecond")] = static_cast<qint64>(now.bitsPerSecond);
        addLinkShare(total, now.bitsPerSecond);
        return {{QStringLiteral("interface"), m_name},
                {QStringLiteral("cameras"), rows},
                {QStringLiteral("adapter"), load},
                {QStringLiteral("total"), total},
                {QStringLiteral("observerMissedPackets"), static_cast<qint64>(now.missed)}};
    }

    InterfaceEvidence evidence(const Reading& now) const {
        InterfaceEvidence evidence;
        evidence.name = m_name.toStdString();
        evidence.network = now.allMoved;
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
    const platform::NetworkCounters m_networkBefore;
    const std::unique_ptr<observer::AdapterObserver> m_observer;
    platform::NetworkCounters m_countedAtStart;
    std::uint64_t m_missedAtStart = 0;
    std::uint64_t m_lossesAtStart = 0;
    platform::NetworkCounters m_countedAtEnd;
    std::atomic<bool> m_isEnding{false};
    const Clock::time_point m_start = Clock::now();
    Reading m_last{m_start, m_start, {}, 0, {}, m_networkBefore, {}, {}, 0};
    std::uint64_t m_removals = 0;
    std::uint64_t m_returns = 0;
    QStringList m_notices;
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
