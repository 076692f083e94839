// SPDX-License-Identifier: BSD-3-Clause
#include "tests/cli/SpanletProcess.h"
#include "tests/support/FileTree.h"

#include <QFile>
#include <gmock/gmock.h>

using testing::HasSubstr;
using testing::StartsWith;

namespace {

class SettingsCommands : public testing::Test {
protected:
    std::string path(const char* name) const { return (m_files.root() / name).string(); }
    QByteArray read(const char* name) const {
        return QByteArray::fromStdString(m_files.read(name));
    }
    /// Writes the saved settings of two cameras with one part of the text replaced by another.
    void write(const char* name, const char* from = "", const char* to = "") const {
        const QByteArray saved = QByteArray::fromStdString(textOf("save - GEV-21017 GEV-21018"));
        EXPECT_TRUE(saved.contains(from)) << from;
        m_files.write(name, QByteArray(saved).replace(from, to).toStdString());
    }
    int run(const std::string& line) {
        m_process = std::make_unique<SpanletProcess>();
        return m_process->run(line);
    }
    std::string out() { return m_process->out(); }
    std::string err() { return m_process->err(); }

    const FileTree m_files;
    std::unique_ptr<SpanletProcess> m_process;
};

TEST_F(SettingsCommands, saveWritesAllOfAFileOrLeavesTheFormerOne) {
    ASSERT_EQ(run("save " + path("a.json") + " 21017 21018"), 0) << err();
    EXPECT_EQ(out(), "GEV-21017: 106 settings saved\nGEV-21018: 106 settings saved\n");
    const QJsonObject document = QJsonDocument::fromJson(read("a.json")).object();
    EXPECT_EQ(camera(document, 1, "id model serialNumber"), "GEV-21018 Corvid G-234c 21018");
    EXPECT_EQ(number(document, "divisions 0 bitsPerSecond"), 1e9);
    EXPECT_EQ(number(document, "divisions 0 cameras 1 limitBytesPerSecond"), 40e6);
    const QByteArray former = read("a.json");
    EXPECT_EQ(run("save " + path("a.json") + " 21017 nobody"), 1);
    EXPECT_EQ(read("a.json"), former);
    EXPECT_EQ(run("save " + path("no/a.json") + " 21017"), 1);
    EXPECT_THAT(err(), HasSubstr("no/a.json cannot be written: "));
    EXPECT_EQ(run("save " + path("b.json")), 1) << "another program has one of the cameras";
    EXPECT_THAT(err(), HasSubstr("U3V-40238"));
    EXPECT_EQ(camerasOf(QJsonDocument::fromJson(read("b.json")).object()).size(), 7);
    m_files.write("b.json", read("a.json")
                                .replace("\"21017\"", "\"40238\"")
                                .replace("Corvid G-507m", "Finch U-319m")
                                .toStdString());
    EXPECT_EQ(run("save " + path("b.json")), 1);
    const QJsonObject kept = QJsonDocument::fromJson(read("b.json")).object();
    ASSERT_EQ(camerasOf(kept).size(), 8);
    EXPECT_EQ(camera(kept, 7, "id serialNumber"), "GEV-21017 40238") << "its former settings";
    // The other cameras of a file stay when some are saved.
    EXPECT_EQ(run("save " + path("b.json") + " 21018 GEV-21018"), 0) << err();
    const QJsonObject updated = QJsonDocument::fromJson(read("b.json")).object();
    EXPECT_EQ(camerasOf(updated).size(), 8);
    EXPECT_EQ(camera(updated, 0, "id"), "GEV-21018") << "once, although it was named twice";
    EXPECT_EQ(at(updated, "divisions").toList().size(), at(kept, "divisions").toList().size());
    m_files.write("b.json",
                  read("a.json").replace("21018", "99999").replace("Label", "Gone").toStdString());
    EXPECT_EQ(run("save " + path("b.json")), 1);
    EXPECT_THAT(
        err(),
        HasSubstr("(GEV-99999): Its former settings stay in the file, since it is missing."));
    EXPECT_EQ(camerasOf(QJsonDocument::fromJson(read("b.json")).object()).size(), 8);
    EXPECT_EQ(run("save " + path("a.json") + " 21017 --to-camera="), 2);
    EXPECT_EQ(run("save " + path("a.json") + " 21017 --to-camera Nothing"), 1);
    EXPECT_THAT(err(), HasSubstr("There is: Default, UserSet1, UserSet2"));
}

TEST_F(SettingsCommands, restoreShowsWhatChangesAndWhatCannot) {
    write("a.json", R"("value": 2464)", R"("value": 640)");
    EXPECT_EQ(run("restore " + path("a.json") + " --dry-run"), 1);
    EXPECT_THAT(out(), StartsWith("--- GEV-21017\n+++ saved\n-Width = 2464\n+Width = 640\n"));
    EXPECT_EQ(run("restore " + path("a.json") + " 21017"), 0) << err();
    EXPECT_THAT(out(), StartsWith("GEV-21017: "));
    EXPECT_THAT(out(), HasSubstr("settings restored, all as saved\n"));

    write("b.json", R"("value": 2464)", R"("value": 4000)");
    EXPECT_EQ(run("restore " + path("b.json") + " --json"), 1);
    const QJsonObject report = m_process->json();
    EXPECT_EQ(camera(report, 0, "id foundBy isRestored"), "GEV-21017 serial number false");
    const QJsonObject difference =
        camerasOf(report).at(0)[QStringLiteral("differences")].toArray().at(0).toObject();
    EXPECT_EQ(number(difference, "saved"), 4000);
    EXPECT_EQ(run("restore " + path("b.json") + " --dry-run"), 1);
    EXPECT_THAT(out(), HasSubstr("\n+Width = 4000    (not now: it takes 8 to 2464 now)\n"));
    EXPECT_EQ(number(difference, "present"), 2464);
    EXPECT_EQ(at(difference, "reason").toString(), QStringLiteral("it takes 8 to 2464 now"));
}

TEST_F(SettingsCommands, restoreTellsWhichCameraIsNotThere) {
    write("model.json", "Corvid G-507m", "Corvid G-9");
    EXPECT_EQ(run("restore " + path("model.json")), 1);
    EXPECT_THAT(out(),
                HasSubstr("GEV-21017: the camera of this serial number is a \"Corvid G-507m\""));
    write("replaced.json", "21017", "99999");
    EXPECT_EQ(run("restore " + path("replaced.json")), 0) << "its name is that of the former one";
    EXPECT_THAT(out(), StartsWith("GEV-21017: 0 settings restored"));
    m_files.write("missing.json", read("replaced.json").replace("Feeder", "Gone").toStdString());
    EXPECT_EQ(run("restore " + path("missing.json")), 1);
    EXPECT_THAT(out(), HasSubstr("GEV-99999: it is missing\nGEV-21018: 0 settings restored"));
    EXPECT_EQ(run("restore " + path("missing.json") + " GEV-21017"), 1);
    EXPECT_THAT(err(), HasSubstr("There is no saved camera \"GEV-21017\". There is: GEV-99999"));
    EXPECT_EQ(run("restore " + path("none.json")), 1);
    EXPECT_THAT(err(), HasSubstr("none.json cannot be read: "));
    m_files.write("empty.json", "{}");
    EXPECT_EQ(run("restore " + path("empty.json")), 1);
    EXPECT_THAT(err(), HasSubstr("is no settings file: format: expected a text, it is missing."));
    EXPECT_EQ(run("restore " + path("model.json") + " --watch --dry-run"), 2);
}

} // namespace
