// SPDX-License-Identifier: BSD-3-Clause
// Whether the receiver of GigE streams lasts: what it keeps after many starts, what it loses in
// minutes, and what an adapter that goes away does to it. Run by tools/prove-receiver in the
// networks of tools/congested-network; prints a line of figures for each proof.
#include "tests/orvcpp/aravis/FakeCameraFixture.h"
#include "tests/support/HostStalls.h"
#include "tests/support/NetworkState.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <deque>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <valarray>

#include <unistd.h>

namespace {

using namespace std::chrono_literals;
using namespace cameras;
using namespace fakecamera;
using sdk::eventually;

constexpr const char* byRing = R"({"providers": [{"type": "genicam"}]})";
constexpr const char* byUdp = R"({"providers": [{"type": "genicam", "packetSocket": false}]})";
constexpr long memoryGrowthKb = 2048;
constexpr double idleShare = 0.05;
/// Difference of the shares of incomplete frames with and without images on a congested path, where
/// chance decides which packets are dropped.
constexpr double alike = 0.1;

/// A setting from tools/prove-receiver.
int setting(const char* name, int otherwise) {
    const char* const value = std::getenv(name);
    return value != nullptr ? std::atoi(value) : otherwise;
}

long entries(const char* folder) {
    return std::distance(std::filesystem::directory_iterator(folder), {});
}

struct Resources {
    long memoryKb = 0;
    long descriptors = entries("/proc/self/fd");
    long threads = entries("/proc/self/task");

    Resources() {
        // Pages of the program, and those of them in memory.
        std::ifstream("/proc/self/statm") >> memoryKb >> memoryKb;
        memoryKb *= sysconf(_SC_PAGESIZE) / 1024;
    }
};

/// The least in a second: threads of the search for cameras come and go.
Resources settledResources() {
    Resources least;
    for (const auto end = Clock::now() + 1s; Clock::now() < end;) {
        std::this_thread::sleep_for(10ms);
        const Resources now;
        least.descriptors = std::min(least.descriptors, now.descriptors);
        least.threads = std::min(least.threads, now.threads);
        least.memoryKb = now.memoryKb;
    }
    return least;
}

/// Share of a processor that this process takes during \p time.
double processorShare(Clock::duration time) {
    const std::clock_t before = std::clock();
    const auto begun = Clock::now();
    std::this_thread::sleep_for(time);
    const double used = static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC;
    return used / std::chrono::duration<double>(Clock::now() - begun).count();
}

void command(const std::string& line) {
    EXPECT_EQ(std::system(line.c_str()), 0) << line;
}

/// Frames and packets of one acquisition, or the sums of several.
using Figures = std::valarray<std::int64_t>;
enum Figure {
    Complete,
    Incomplete,
    Lost,
    Underrun,
    Dropped,
    Missed,
    Late,
    Requested,
    Resent,
    Sent,
    FigureCount
};
/// Features of the stream with the figures before Sent.
constexpr const char* figureNames[] = {
    "StreamDeliveredFrameCount", "StreamIncompleteFrameCount",    "StreamLostFrameCount",
    "StreamUnderrunFrameCount",  "GevStreamDroppedPacketCount",   "GevStreamLostPacketCount",
    "GevStreamLatePacketCount",  "GevStreamRequestedPacketCount", "GevStreamResendPacketCount"};

std::int64_t noticed(const Figures& figures) {
    return figures[Complete] + figures[Incomplete] + figures[Lost] + figures[Underrun];
}

double incompleteShare(const Figures& figures) {
    return static_cast<double>(figures[Incomplete]) /
           static_cast<double>(std::max<std::int64_t>(1, noticed(figures)));
}

std::string textOf(const Figures& figures) {
    std::ostringstream text;
    text << figures[Sent] << " frames sent, " << figures[Complete] << " complete, "
         << figures[Incomplete] << " incomplete, " << figures[Lost] << " lost, " << figures[Missed]
         << " packets missing, " << figures[Late] << " late, " << figures[Requested]
         << " requested, " << figures[Resent] << " resent";
    return text.str();
}

/// A stream of an opened camera, from construction to stop().
class Streaming {
public:
    explicit Streaming(std::shared_ptr<Camera> camera)
        : m_camera(std::move(camera)), m_sentBefore(framesSent()),
          m_receiver(sdk::startReceiving(m_camera)) {}

    /// Waits for \p count more.
    void waitForFrames(std::size_t count) const {
        const std::size_t end = m_receiver->count() + count;
        EXPECT_TRUE(eventually([&] { return m_receiver->count() >= end; }));
    }
    /// Stops the camera. On a congested path, calls may need several trials.
    void stopCamera() const {
        const auto command = sdk::feature(*m_camera, "AcquisitionStop");
        EXPECT_TRUE(eventually([&] { return command->RunCommand() == OrvErrorSuccess; }));
    }
    std::string driver() const { return sdk::getText(*sdk::stream(*m_camera), "GVSPDriver"); }
    Figures stop() const {
        EXPECT_EQ(m_camera->StopContinuousImageAcquisition(), OrvErrorSuccess);
        const auto stream = sdk::stream(*m_camera);
        Figures figures(FigureCount);
        for (std::size_t i = 0; i < std::size(figureNames); ++i)
            figures[i] = sdk::get<std::int64_t>(*stream, figureNames[i]);
        figures[Complete] -= figures[Incomplete];
        figures[Sent] = framesSent() - m_sentBefore;
        return figures;
    }
    /// As stop(), of a stream that must have lost nothing, except for the frame that the stop cuts,
    /// and damaged nothing, except during \p stalls.
    Figures stopWithoutLoss(const HostStalls& stalls) const {
        const Figures figures = stop();
        const auto ids = m_receiver->ids();
        EXPECT_EQ(ids, sdk::gapless(1, ids.size()));
        EXPECT_GT(ids.size(), 0U);
        EXPECT_EQ(noticed(figures), static_cast<std::int64_t>(ids.size())) << textOf(figures);
        EXPECT_LE(figures[Sent] - noticed(figures), 1) << textOf(figures);
        EXPECT_EQ(figures[Lost] + figures[Underrun], 0) << textOf(figures);
        EXPECT_LE(static_cast<std::uint64_t>(figures[Incomplete]), stalls.count())
            << textOf(figures);
        EXPECT_EQ(figures[Dropped], 0);
        return figures;
    }

private:
    /// On a congested path, the reading may need several trials.
    std::int64_t framesSent() const {
        const auto feature = sdk::feature(*m_camera, "TestFramesSent");
        std::int64_t frames = 0;
        EXPECT_TRUE(eventually([&] { return feature->GetValue(frames) == OrvErrorSuccess; }));
        return frames;
    }

    const std::shared_ptr<Camera> m_camera;
    const std::int64_t m_sentBefore;
    const std::shared_ptr<sdk::Receiver> m_receiver;
};

class Endurance : public testing::Test {
protected:
    void TearDown() override {
        std::printf("%-6s %s: %s\n", HasFailure() ? "FAILED" : "ok",
                    testing::UnitTest::GetInstance()->current_test_info()->name(),
                    figures.str().c_str());
        std::fflush(stdout);
    }

    /// Starts fake cameras C1, C2, ... of frames of 1 MiB, and the SDK.
    void begin(int count, std::vector<std::string> options, const char* configuration = byRing) {
        figures.precision(3);
        const bool hasTwoAdapters = setting("ADAPTERS", 1) == 2;
        for (int i = 1; i <= count; ++i) {
            const std::string number = std::to_string(i);
            std::vector<std::string> all{"--serial", "C" + number};
            all.insert(all.end(), options.begin(), options.end());
            fakes.emplace_back((hasTwoAdapters && i > 2 ? "10.78.0.1" : "10.77.0.1") + number, all,
                               "camera" + number);
        }
        running.emplace(std::string(configuration));
        for (int i = 1; i <= count; ++i)
            cameras.push_back(open(i));
    }
    /// Opens the camera once it is found.
    static std::shared_ptr<Camera> open(int number) {
        std::shared_ptr<Camera> camera;
        EXPECT_TRUE(eventually([&] {
            camera = cameras::find("C" + std::to_string(number));
            return camera && camera->Open(OrvAccessModeFull) == OrvErrorSuccess;
        }));
        return camera;
    }
    /// Repeats \p cycle after some cycles of warm-up; the process must keep nothing of them.
    template <typename Cycle> void repeat(int count, int warmUp, const Cycle& cycle) {
        for (int i = 0; i < warmUp && !HasFailure(); ++i)
            cycle();
        const Resources before = settledResources();
        for (int i = 1; i <= count && !HasFailure(); ++i) {
            cycle();
            if (i % 10 == 0)
                std::fprintf(stderr, "cycle %d of %d\n", i, count);
        }
        Resources after;
        EXPECT_TRUE(eventually([&] {
            after = settledResources();
            return after.descriptors <= before.descriptors && after.threads <= before.threads;
        }));
        EXPECT_LE(after.memoryKb, before.memoryKb + memoryGrowthKb);
        figures << count << " cycles after " << warmUp << "; memory " << before.memoryKb << " -> "
                << after.memoryKb << " KB, descriptors " << before.descriptors << " -> "
                << after.descriptors << ", threads " << before.threads << " -> " << after.threads;
    }
    void startAndStop(const char* configuration, const std::string& driver) {
        begin(1, {"--frame-rate", "100"}, configuration);
        repeat(setting("PROOF_CYCLES", 5), setting("PROOF_WARM_UP", 3), [&] {
            const Streaming stream(cameras.front());
            stream.waitForFrames(2);
            EXPECT_EQ(stream.driver(), driver);
            stream.stop();
        });
    }
    /// Streams from all cameras for a time.
    Figures stream(bool headersOnly, bool isCongested, Clock::duration time) {
        std::vector<Streaming> streams;
        for (const auto& camera : cameras) {
            EXPECT_EQ(sdk::set(*sdk::stream(*camera), "GVSPHeadersOnly", headersOnly),
                      OrvErrorSuccess);
            streams.emplace_back(camera);
        }
        std::this_thread::sleep_for(time);
        if (isCongested) {
            for (const Streaming& each : streams)
                each.stopCamera();
            // Receives what is on its way.
            std::this_thread::sleep_for(300ms);
        }
        Figures sum(FigureCount);
        for (const Streaming& each : streams) {
            const Figures one = each.stop();
            EXPECT_LE(std::abs(noticed(one) - one[Sent]), 1) << textOf(one);
            EXPECT_EQ(one[Underrun], 0);
            EXPECT_GT(one[Sent], 0);
            sum += one;
        }
        return sum;
    }
    /// Streams with images and without, on a path that loses packets or not.
    void compareModes(bool isCongested, const std::vector<std::string>& options) {
        begin(4, options);
        const auto time = std::chrono::seconds(setting("PROOF_SECONDS", 2));
        Figures whole(FigureCount);
        Figures headers(FigureCount);
        // By turns, since the share depends on how the frames of the cameras meet.
        const int rounds = isCongested ? 2 : 1;
        for (int i = 0; i < rounds; ++i) {
            whole += stream(false, isCongested, time / rounds);
            headers += stream(true, isCongested, time / rounds);
        }
        const double wholeShare = incompleteShare(whole);
        const double headersShare = incompleteShare(headers);
        figures << "whole: " << textOf(whole) << " (" << 100 * wholeShare
                << " % incomplete); headers only: " << textOf(headers) << " (" << 100 * headersShare
                << " %)";
        if (isCongested) {
            EXPECT_GT(switchDrops(), 0);
            EXPECT_NEAR(wholeShare, headersShare, alike);
        } else {
            EXPECT_EQ(whole[Lost] + headers[Lost], 0);
            EXPECT_LE(whole[Incomplete] + headers[Incomplete], damageByStalls());
        }
    }

    /// Most frames that the stalls of this computer may have damaged, of all cameras.
    std::int64_t damageByStalls() const {
        return static_cast<std::int64_t>(stalls.count() * cameras.size());
    }

    std::deque<fakecamera::FakeCameraProcess> fakes;
    std::optional<sdk::Running> running;
    std::vector<std::shared_ptr<Camera>> cameras;
    std::ostringstream figures;
    const fakecamera::HostStalls stalls;
};

TEST_F(Endurance, startAndStopByRing) {
    startAndStop(byRing, "Filter");
}

TEST_F(Endurance, startAndStopByUdp) {
    startAndStop(byUdp, "Socket");
}

TEST_F(Endurance, killAndReturn) {
    begin(1, {"--frame-rate", "100"});
    repeat(setting("PROOF_KILLS", 2), setting("PROOF_KILLS_WARM_UP", 0), [&] {
        const Streaming stream(cameras.front());
        stream.waitForFrames(2);
        const auto width = sdk::feature(*cameras.front(), "Width");
        fakes.front().kill();
        EXPECT_LT(callAbsent(*cameras.front(), *width), cameras::patience);
        fakes.front().restart();
        cameras.front() = open(1);
    });
}

TEST_F(Endurance, fourCameras) {
    begin(4, {"--frame-rate", "8"});
    std::vector<Streaming> streams(cameras.begin(), cameras.end());
    const int seconds = setting("PROOF_STEADY_SECONDS", 3);
    std::this_thread::sleep_for(std::chrono::seconds(seconds));
    Figures sum(FigureCount);
    for (const Streaming& stream : streams) {
        const Figures each = stream.stop();
        EXPECT_EQ(each[Lost] + each[Underrun], 0) << textOf(each);
        EXPECT_LE(each[Sent] - noticed(each), 1) << textOf(each);
        sum += each;
    }
    EXPECT_EQ(sum[Dropped], 0);
    // Other work on this computer delays the switch, which drops packets, and the cameras: packets
    // that come after a silence of 200 ms are too late for their frame.
    EXPECT_LE(sum[Missed], switchDrops() + sum[Late]);
    EXPECT_LE(sum[Incomplete], sum[Sent] / 1000 + damageByStalls());
    figures << seconds << " s; " << textOf(sum) << "; switch dropped " << switchDrops()
            << " packets, host " << sum[Dropped] << "; " << stalls.count()
            << " stalls of this computer";
}

TEST_F(Endurance, fifthCamera) {
    begin(5, {"--frame-rate", "8"});
    const std::vector<Streaming> four(cameras.begin(), cameras.begin() + 4);
    const int starts = setting("PROOF_STARTS", 3);
    for (int i = 0; i < starts; ++i) {
        const Streaming fifth(cameras[4]);
        fifth.waitForFrames(2);
        EXPECT_EQ(fifth.driver(), "Filter");
        EXPECT_EQ(packetSockets(), 1);
        fifth.stopWithoutLoss(stalls);
    }
    Figures sum(FigureCount);
    for (const Streaming& stream : four)
        sum += stream.stopWithoutLoss(stalls);
    figures << starts << " starts and stops; the four meanwhile " << textOf(sum);
}

TEST_F(Endurance, modesOnCleanPath) {
    compareModes(false, {"--frame-rate", "15"});
}

TEST_F(Endurance, modesOnLossyPath) {
    compareModes(false, {"--frame-rate", "15", "--loss", "10"});
}

TEST_F(Endurance, modesOnCongestedPath) {
    // 16 MB/s; the link carries 12.5.
    compareModes(true,
                 {"--width", "256", "--height", "256", "--frame-rate", "60", "--limit", "4000000"});
}

TEST_F(Endurance, twoAdapters) {
    begin(4, {"--frame-rate", "5"});
    const std::vector<Streaming> kept{Streaming(cameras[0]), Streaming(cameras[1])};
    {
        const std::vector<Streaming> others{Streaming(cameras[2]), Streaming(cameras[3])};
        std::this_thread::sleep_for(std::chrono::seconds(setting("PROOF_SECONDS", 2)));
        EXPECT_EQ(packetSockets(), 2);
        Figures sum(FigureCount);
        for (const Streaming& stream : others)
            sum += stream.stopWithoutLoss(stalls);
        figures << "over host1 " << textOf(sum) << "; ";
    }
    const Streaming asked(cameras[2]);
    const Streaming left(cameras[3]);
    asked.waitForFrames(2);
    left.waitForFrames(2);
    const auto widthOfAsked = sdk::feature(*cameras[2], "Width");
    const auto widthOfLeft = sdk::feature(*cameras[3], "Width");
    command("ip link set host1 down && sleep 0.1 && ip link set host1 up");
    asked.waitForFrames(2);
    left.waitForFrames(2);
    const double before = processorShare(1s);
    command("ip link set host1 down");
    const auto calls = callAbsent(*cameras[2], *widthOfAsked, testing::Ne(OrvErrorSuccess));
    const double down = processorShare(2s);
    command("ip link del host1");
    const double away = processorShare(2s);
    EXPECT_LT(std::max(down, away), idleShare);
    const auto later = callAbsent(*cameras[3], *widthOfLeft, testing::Ne(OrvErrorSuccess));
    EXPECT_LT(std::max(calls, later), cameras::patience);
    figures << "processor " << 100 * before << " %, while down " << 100 * down << " %"
            << ", while removed " << 100 * away << " %; calls " << calls / 1ms << " and "
            << later / 1ms << " ms; ";

    command("\"$CONGESTED_NETWORK\" --connect 1");
    const auto back = Clock::now();
    for (int i = 3; i <= 4; ++i) {
        const Streaming stream(open(i));
        stream.waitForFrames(5);
        EXPECT_EQ(stream.driver(), "Filter");
        EXPECT_EQ(packetSockets(), 2);
        stream.stopWithoutLoss(stalls);
    }
    const std::chrono::duration<double> returned = Clock::now() - back;
    Figures sum(FigureCount);
    for (const Streaming& stream : kept)
        sum += stream.stopWithoutLoss(stalls);
    if (stalls.count() == 0) {
        EXPECT_EQ(switchDrops(), 0);
    }
    figures << "back after " << returned.count() << " s; over host0 meanwhile " << textOf(sum);
}

} // namespace
