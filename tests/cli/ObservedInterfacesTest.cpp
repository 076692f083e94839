// SPDX-License-Identifier: BSD-3-Clause
#include "cli/ObservedInterfaces.h"
#include "cli/LiveFigures.h"
#include "platform/Descriptor.h"
#include "tests/gvsp/StreamScript.h"
#include "tests/support/FileTree.h"

#include <QJsonArray>
#include <gtest/gtest.h>
#include <qtestsupport_core.h>

#include <cerrno>
#include <cstdlib>
#include <memory>
#include <optional>

#include <net/ethernet.h>
#include <net/if.h>
#include <netpacket/packet.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/socket.h>

namespace {

using namespace cli;

/// The adapters in /sys are those of the network namespace that mounted it.
bool showAdaptersOfThisNetwork() {
    return unshare(CLONE_NEWNS) == 0 &&
           mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
           (mount("sysfs", "/sys", "sysfs", 0, nullptr) == 0 || errno == EBUSY); // mounted before
}

/// Both ends of a cable, of which cam0 is observed.
bool plug() {
    return std::system("ip link add cam0 type veth peer name cam1 2>/dev/null && "
                       "ip address add 10.79.0.1/24 dev cam0 && "
                       "ip link set cam0 up && ip link set cam1 up") == 0;
}

class ObservedAdapters : public testing::Test {
protected:
    void SetUp() override {
        if (!m_camera.isOpen() || !showAdaptersOfThisNetwork() || !plug())
            GTEST_SKIP() << "this user may not make adapters";
    }
    ~ObservedAdapters() override {
        m_observed.reset();
        std::system("ip link del cam0 2>/dev/null");
    }

    /// Begins, and sends until the stream is found.
    void observe(const std::optional<QString>& captureFile = std::nullopt) {
        m_observed = std::make_unique<ObservedInterfaces>(QStringList{QStringLiteral("cam0")},
                                                          captureFile, std::size_t{1} << 20U);
        EXPECT_TRUE(awaits([this] {
            sendFrames(1);
            return received() > 0;
        }));
    }
    int received() const { return camera(m_interval)[QStringLiteral("receivedFrames")].toInt(); }
    /// The camera's next frames, or only the first packets of each.
    void sendFrames(int count, std::uint32_t packets = script::trailerNumber + 1) {
        sockaddr_ll to{};
        to.sll_family = AF_PACKET;
        to.sll_protocol = htons(ETH_P_IP);
        to.sll_ifindex = static_cast<int>(if_nametoindex("cam1"));
        for (int i = 0; i < count; ++i, ++m_frame)
            for (std::uint32_t number = 0; number < packets; ++number) {
                const auto packet = script::ipPacket({0x0A4F0002, 0x0A4F0001, 4711, false},
                                                     script::Camera().any(m_frame, number));
                ASSERT_GE(sendto(m_camera.handle(), packet.data(), packet.size(), 0,
                                 reinterpret_cast<const sockaddr*>(&to), sizeof to),
                          0);
            }
    }
    /// Whether an interval fulfils the condition within 20 seconds.
    template <typename Reached> bool awaits(const Reached& isReached) {
        return QTest::qWaitFor(
            [&] {
                m_interval = m_observed->interval();
                m_notices += m_observed->takeNotices().join(QLatin1Char('\n'));
                return isReached();
            },
            20000);
    }
    static QJsonObject camera(const QJsonObject& document) {
        return document[QStringLiteral("cameras")].toArray().at(0).toObject();
    }

    const platform::Descriptor m_camera{socket(AF_PACKET, SOCK_DGRAM | SOCK_CLOEXEC, 0)};
    std::uint64_t m_frame = 1;
    std::unique_ptr<ObservedInterfaces> m_observed;
    QJsonObject m_interval;
    QString m_notices;
};

TEST_F(ObservedAdapters, goOnWhenTheyAreRemovedAndMadeAnew) {
    constexpr int frames = 200;
    observe();
    sendFrames(frames);
    EXPECT_TRUE(awaits([&] { return received() >= frames; }));
    EXPECT_EQ(m_notices, QString());
    sendFrames(1, 3);
    EXPECT_EQ(std::system("ip link del cam0"), 0);
    EXPECT_TRUE(awaits([&] { return m_notices.contains(QStringLiteral("cam0 was removed")); }));
    EXPECT_TRUE(plug());
    EXPECT_TRUE(awaits([&] { return m_notices.contains(QStringLiteral("cam0 is there again")); }));
    const int before = received();
    m_frame += 5;
    sendFrames(10);
    EXPECT_TRUE(awaits([&] { return received() >= before + 9; }));
    const QJsonObject result = m_observed->result(false);
    EXPECT_EQ(camera(result)[QStringLiteral("incompleteFrames")], 1) << "cut by the removal";
    EXPECT_EQ(camera(result)[QStringLiteral("unjudgedFrames")], 5);
    EXPECT_EQ(camera(result)[QStringLiteral("lostFrames")], 0);
    const QJsonObject load = result[QStringLiteral("adapter")].toObject();
    EXPECT_GE(load[QStringLiteral("packetsPerSecond")].toDouble() *
                  result[QStringLiteral("seconds")].toDouble(),
              6 * frames);
    EXPECT_EQ(load[QStringLiteral("missedPackets")], 0);
    EXPECT_GT(camera(result)[QStringLiteral("adapterPercent")].toDouble(), 50);
    EXPECT_EQ(m_notices.count(QStringLiteral("cam0")), 2) << m_notices.toStdString();
}

TEST_F(ObservedAdapters, tellWhenTheirRecordIsTooShortForTheLosses) {
    const FileTree files;
    observe(QString::fromStdString((files.root() / "lost.pcapng").string()));
    sendFrames(5000);
    m_frame += 5;
    sendFrames(2);
    EXPECT_TRUE(awaits([this] { return m_interval.contains(QStringLiteral("capture")); }));
    const QJsonObject capture = m_interval[QStringLiteral("capture")].toObject();
    EXPECT_TRUE(capture.contains(QStringLiteral("writtenAfterSeconds")));
    EXPECT_TRUE(capture[QStringLiteral("partial")].toBool());
    EXPECT_TRUE(captureText(m_interval).contains(QStringLiteral("first losses")));
}

} // namespace
