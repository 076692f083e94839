// SPDX-License-Identifier: BSD-3-Clause
#include "cli/StreamMetrics.h"

#include "tests/support/FileTree.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <gtest/gtest.h>

#include <optional>

using namespace std::chrono_literals;

namespace cli {

namespace {

using Clock = StreamMetrics::Clock;

/// An interval of the adapter eth7 with rows of cameras in JSON.
QJsonObject interval(const std::string& rows, const std::string& more = "{}") {
    QJsonObject document = QJsonDocument::fromJson(QByteArray::fromStdString(more)).object();
    document[QStringLiteral("interface")] = QStringLiteral("eth7");
    document[QStringLiteral("cameras")] =
        QJsonDocument::fromJson(QByteArray::fromStdString("[" + rows + "]")).array();
    return document;
}

std::string row(const std::string& id, int bytes, int lost = 0, const std::string& more = "") {
    return R"({"id": ")" + id + R"(", "payloadBytes": )" + std::to_string(bytes) +
           R"(, "lostFrames": )" + std::to_string(lost) + more + "}";
}

class Metrics : public testing::Test {
protected:
    void read(const QJsonObject& document, Clock::duration later = 1s) {
        m_now += later;
        m_families = m_metrics.after(document, m_now);
    }

    /// Of the series that has \p label as the value of a label; nothing where there is none.
    std::optional<double> value(const std::string& name, const std::string& label) const {
        std::optional<double> found;
        for (const prometheus::MetricFamily& family : m_families)
            for (const prometheus::ClientMetric& metric : family.metric)
                for (const auto& its : metric.label)
                    if (family.name == "spanlet_" + name && its.value == label) {
                        EXPECT_FALSE(found) << "two series of " << label;
                        found = family.type == prometheus::MetricType::Counter
                                    ? metric.counter.value
                                    : metric.gauge.value;
                    }
        return found;
    }

    const FileTree m_files;

private:
    StreamMetrics m_metrics{[](const QString& interface) { return interface.toStdString(); },
                            m_files.root()};
    Clock::time_point m_now = Clock::now();
    std::vector<prometheus::MetricFamily> m_families;
};

TEST_F(Metrics, countersNeverFall) {
    read(interval(row("A", 100, 5)));
    EXPECT_EQ(value("payload_bytes_total", "A"), 100);
    read(interval(row("A", 150, 4)));
    EXPECT_EQ(value("payload_bytes_total", "A"), 150);
    EXPECT_EQ(value("frames_lost_total", "A"), 5) << "a lost frame has come late";
    read(interval(row("A", 200, 6)));
    EXPECT_EQ(value("frames_lost_total", "A"), 6);
    read(interval(row("A", 10)));
    EXPECT_EQ(value("payload_bytes_total", "A"), 200) << "counts began anew";
    read(interval(row("A", 30, 2)));
    EXPECT_EQ(value("payload_bytes_total", "A"), 220);
    EXPECT_EQ(value("frames_lost_total", "A"), 8);
    EXPECT_EQ(value("packets_resent_total", "A"), std::nullopt) << "not counted";
    for (const auto& [drops, exported] : {std::pair(5, 5), {0, 5}, {3, 8}}) {
        read(interval(row("A", 30, 2, R"(, "receiverDrops": )" + std::to_string(drops))));
        EXPECT_EQ(value("receiver_dropped_packets_total", "A"), exported) << "another receiver";
    }
}

TEST_F(Metrics, camerasComeAndGo) {
    read(interval(row("A", 100)));
    read(interval(row("A", 100) + "," + row("B", 7)));
    EXPECT_EQ(value("payload_bytes_total", "B"), 7);
    read(interval(row("B", 9) + "," + row("B", 20)));
    EXPECT_EQ(value("stream_up", "A"), std::nullopt);
    EXPECT_EQ(value("payload_bytes_total", "B"), 29) << "two streams of one camera";
    read(interval(row("A", 1)));
    EXPECT_EQ(value("payload_bytes_total", "A"), 1) << "a new series";
}

TEST_F(Metrics, aSilentStreamKeepsItsCounts) {
    read(interval(row("A", 100) + "," + R"({"id": "B"})"));
    EXPECT_EQ(value("stream_up", "A"), 1);
    EXPECT_EQ(value("stream_up", "B"), 0) << "has not begun";
    EXPECT_EQ(value("stream_last_data_timestamp_seconds", "B"), std::nullopt);
    const double began = *value("stream_last_data_timestamp_seconds", "A");
    read(interval(row("A", 100)), 4s);
    EXPECT_EQ(value("stream_up", "A"), 1) << "a pause";
    read(interval(row("A", 100)), 4s);
    EXPECT_EQ(value("stream_up", "A"), 0);
    EXPECT_EQ(value("payload_bytes_total", "A"), 100);
    EXPECT_NEAR(*value("stream_last_data_timestamp_seconds", "A"), began - 8, 1);
    read(interval(row("A", 101)), 100s);
    EXPECT_EQ(value("stream_up", "A"), 1);

    const std::string first = row("A", 120, 0, R"(, "silentSeconds": 50)");
    read(interval(first + "," + row("A", 20, 0, R"(, "silentSeconds": 9)")));
    EXPECT_EQ(value("stream_up", "A"), 0) << "the observer knows better";
    EXPECT_NEAR(*value("stream_last_data_timestamp_seconds", "A"), began - 9, 1);
    read(interval(first + "," + row("A", 20)));
    EXPECT_EQ(value("stream_up", "A"), 0) << "nothing has come";
    read(interval(row("A", 140, 0, R"(, "silentSeconds": 86300)")));
    EXPECT_EQ(value("payload_bytes_total", "A"), 140);
    read(interval(row("A", 140, 0, R"(, "silentSeconds": 86500)")));
    EXPECT_EQ(value("payload_bytes_total", "A"), std::nullopt);
}

TEST_F(Metrics, anInterfaceHasTheCountsOfItsAdapter) {
    const std::string folder = "sys/class/net/eth7/";
    m_files.write(folder + "statistics/rx_bytes", "9000000000\n");
    m_files.write(folder + "statistics/rx_packets", "70\n");
    m_files.write(folder + "statistics/rx_missed_errors", "3\n");
    m_files.write(folder + "statistics/rx_crc_errors", "4\n");
    m_files.write(folder + "carrier_changes", "2\n");
    read(interval("", R"({"total": {"bitsPerSecond": 1e9}, "observerMissedPackets": 6})"));
    EXPECT_EQ(value("interface_speed_bytes", "eth7"), 125e6);
    EXPECT_EQ(value("interface_received_bytes_total", "eth7"), 9e9);
    EXPECT_EQ(value("interface_received_packets_total", "eth7"), 70);
    EXPECT_EQ(value("interface_carrier_changes_total", "eth7"), 2);
    EXPECT_EQ(value("interface_receive_errors_total", "rx_missed_errors"), 3);
    EXPECT_EQ(value("interface_receive_errors_total", "rx_crc_errors"), 4);
    EXPECT_EQ(value("interface_receive_errors_total", "rx_dropped"), std::nullopt) << "no file";
    EXPECT_EQ(value("observer_missed_packets_total", "eth7"), 6);
}

} // namespace

} // namespace cli
