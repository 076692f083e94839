// SPDX-License-Identifier: BSD-3-Clause
#include "cli/BenchmarkTable.h"

#include "cli/FrameFigures.h"
#include "cli/LossFindings.h"
#include "cli/ShareBars.h"

#include <gmock/gmock.h>

namespace {

QJsonObject cameraRow(const char* id, const QJsonObject& figures) {
    QJsonObject row = figures;
    row[QStringLiteral("id")] = QLatin1String(id);
    row[QStringLiteral("name")] = QStringLiteral("Feeder");
    return row;
}

/// Two cameras on a link of 100 MB/s; one was disconnected and has statistics of packets.
QJsonObject interfaceObject() {
    cli::CameraCounts since;
    since.frames.receivedFrames = 10;
    cli::CameraCounts until;
    until.frames.receivedFrames = 90;
    until.frames.lostFrames = 10;
    until.frames.incompleteFrames = 2;
    until.frames.payloadBytes = 80'000'000;
    QJsonObject first = cameraRow("CAM-1", cli::cameraFigures(since, until, 4));
    until.packetsResent = 7;
    QJsonObject second = cameraRow("CAM-2", cli::cameraFigures(until, until, 4));
    second[QStringLiteral("disconnectedAfterSeconds")] = 13.6;
    for (QJsonObject* camera : {&first, &second})
        cli::addLinkShare(*camera, 800e6);
    QJsonArray cameras{first, second};
    QJsonObject total = cli::totalFigures(cameras);
    cli::addLinkShare(total, 800e6);
    return {{QStringLiteral("cameras"), cameras}, {QStringLiteral("total"), total}};
}

TEST(BenchmarkTable, showsFiguresAndTheirTotal) {
    EXPECT_EQ('\n' + cli::benchmarkLines(interfaceObject()).join(QLatin1Char('\n')).toStdString(),
              R"(
Camera  Name    Frames/s   MB/s  Link %  Received  Lost  Incomplete  Loss %  Resent  Status
------  ------  --------  -----  ------  --------  ----  ----------  ------  ------  -----------------------
CAM-1   Feeder     20.00  20.00    20.0        90    10           2   12.00
CAM-2   Feeder      0.00   0.00     0.0        90    10           2   12.00       7  disconnected after 14 s
Total              20.00  20.00    20.0       180    20           4   12.00       7)");
}

TEST(BenchmarkTable, namesPlacesOfLossAndKeepsRepairedOnesForThoseWhoAsk) {
    const QJsonObject shared{{QStringLiteral("place"), QStringLiteral("kernel")},
                             {QStringLiteral("repaired"), false},
                             {QStringLiteral("evidence"), QStringLiteral("The ring was full.")},
                             {QStringLiteral("cure"), QStringLiteral("End other programs.")}};
    const QJsonObject repaired{{QStringLiteral("place"), QStringLiteral("wire")},
                               {QStringLiteral("camera"), QStringLiteral("CAM-1")},
                               {QStringLiteral("repaired"), true},
                               {QStringLiteral("evidence"), QStringLiteral("7 packets.")}};
    const auto text = [](const QJsonArray& findings, bool explainsAll, int width) {
        return cli::lossLines(findings, explainsAll, width).join(QLatin1Char('\n')).toStdString();
    };
    EXPECT_EQ('\n' + text({shared, repaired}, true, 24), R"(
Where frames were lost:
  All cameras: kernel.
  The ring was full.
    -> End other
       programs.
  CAM-1: wire, no frame
  lost. 7 packets.)");
    EXPECT_EQ(text({repaired}, false, 80), "");
    EXPECT_EQ(text({}, true, 80), "No frame was lost, and no packet had to be sent again.");
}

TEST(BenchmarkTable, dropsTheLessImportantColumnsAndNeverHalfOfOne) {
    const std::pair<int, const char*> cases[] = {
        {108, "Camera  Name    Frames/s   MB/s  Link %  Received  Lost  Incomplete  Loss %  Resent "
              " Status"},
        {107,
         "Camera  Frames/s   MB/s  Link %  Received  Lost  Incomplete  Loss %  Resent  Status"},
        {80, "Camera  Frames/s   MB/s  Lost  Incomplete  Loss %  Status"},
        {49, "Camera  Frames/s  Loss %  Status"},
        {24, "Camera  Frames/s  Loss %"},
        {23, "Camera  Name    Frames/s   MB/s  Link %  Received  Lost  Incomplete  Loss %  Resent  "
             "Status"}};
    for (const auto& [width, headings] : cases)
        EXPECT_EQ(cli::benchmarkLines(interfaceObject(), width)[0].toStdString(), headings)
            << width;
}

TEST(BenchmarkTable, hasBarsWhereThereIsRoom) {
    QJsonObject interface = interfaceObject();
    const auto bars = [&](int room, bool hasBlocks) {
        const QStringList table = cli::benchmarkLines(interface);
        const int width = table[1].size() + 2 + room;
        QStringList found;
        for (const QString& line : cli::withShareBars(table, interface, width, hasBlocks)) {
            EXPECT_LE(line.size(), width);
            found += line.mid(table[1].size() + 2);
        }
        return found.join(QLatin1Char('\n')).toStdString();
    };
    EXPECT_EQ(bars(20, false), "Share of link\n--------------------\n####................\n"
                               "....................\n####................");
    EXPECT_EQ(bars(15, true), "Share of link\n---------------\n███░░░░░░░░░░░░\n"
                              "░░░░░░░░░░░░░░░\n███░░░░░░░░░░░░");
    EXPECT_EQ(bars(12, true), "\n\n\n\n");
    interface = QJsonObject{{QStringLiteral("cameras"), QJsonArray{}},
                            {QStringLiteral("total"), QJsonObject{}}};
    EXPECT_EQ(bars(13, false), "Share of sum\n-------------\n.............");
}

} // namespace
