// SPDX-License-Identifier: BSD-3-Clause
#include "viewer/ViewerWindow.h"

#include "OrvCPP/Feature.h"
#include "OrvCPP/OrvSystem.h"
#include "OrvSimulation/Simulation.h"
#include "session/SdkSession.h"
#include "session/StreamingLimits.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/FileTree.h"
#include "tests/support/TextTree.h"
#include "tests/support/WidgetParts.h"
#include "viewer/CameraModel.h"
#include "viewer/ImageView.h"
#include "viewer/ProgramResources.h"

#include <QSignalSpy>
#include <QTest>
#include <QtWidgets>
#include <gmock/gmock.h>

#include <vector>

using viewer::CameraAccess;
using viewer::ViewerWindow;

namespace {

const QString noPlugins = QStringLiteral("/nowhere/plugins");

/// Puts the default scenario with other texts into \p file.
session::CameraSource
changedScenario(QTemporaryFile& file,
                const std::vector<std::pair<const char*, const char*>>& changes) {
    QFile original(QStringLiteral(SCENARIO_FOLDER "/default.json"));
    EXPECT_TRUE(original.open(QIODevice::ReadOnly) && file.open());
    QByteArray text = original.readAll();
    for (const auto& [before, after] : changes)
        text.replace(before, after);
    file.write(text);
    file.flush();
    return {file.fileName()};
}

/// A window on the simulated cameras of a scenario.
class Viewer {
public:
    explicit Viewer(const session::CameraSource& cameras = {}, const QString& plugins = noPlugins,
                    const std::filesystem::path& host = "/", QSettings* settings = nullptr)
        : m_session(cameras), m_window(OrvCPP::OrvSystem::GetInstance(), plugins,
                                       session::StreamingLimits(host), settings) {
        EXPECT_TRUE(m_session.isStarted()) << m_session.error().toStdString();
        m_window.show();
    }

    ViewerWindow& window() { return m_window; }
    QListView& list() { return partOf<QListView>(m_window, "listCameras"); }
    viewer::ImageView& view() { return *m_window.findChild<viewer::ImageView*>(); }
    QLabel& losses() { return partOf<QLabel>(m_window, "labelLostFrames"); }
    QCheckBox& packetSize() { return partOf<QCheckBox>(m_window, "checkAutomaticPacketSize"); }
    CameraAccess access(int row) {
        return static_cast<CameraAccess>(
            list().model()->index(row, 0).data(viewer::CameraModel::AccessRole).toInt());
    }
    void select(int row) { list().setCurrentIndex(list().model()->index(row, 0)); }
    /// Row of the first camera in this state, -1 when there is none.
    int rowWith(CameraAccess wanted) {
        const auto& model = *list().model();
        const auto found = model.match(model.index(0, 0), viewer::CameraModel::AccessRole,
                                       static_cast<int>(wanted));
        return found.isEmpty() ? -1 : found.first().row();
    }
    bool waitForImage() {
        return QTest::qWaitFor([this] { return view().hasImage(); }, 10000);
    }

private:
    session::SdkSession m_session;
    ViewerWindow m_window;
};

TEST(ViewerWindow, showsTheFirstFreeCameraAndFollowsTheSelection) {
    Viewer viewer;
    ASSERT_TRUE(viewer.waitForImage());
    const int first = viewer.list().currentIndex().row();
    EXPECT_EQ(viewer.access(first), CameraAccess::Live);
    EXPECT_TRUE(viewer.window().openSpanlet().contains(QDir::toNativeSeparators(noPlugins)));
    EXPECT_EQ(viewer.access(first), CameraAccess::Live) << "without Spanlet nothing changes";

    const int other = viewer.rowWith(CameraAccess::Available);
    ASSERT_GE(other, 0);
    viewer.select(other);
    EXPECT_EQ(viewer.access(first), CameraAccess::Available);
    EXPECT_EQ(viewer.access(other), CameraAccess::Live);
    EXPECT_TRUE(viewer.waitForImage());

    const int held = viewer.rowWith(CameraAccess::InUse);
    ASSERT_GE(held, 0);
    viewer.select(held);
    EXPECT_FALSE(viewer.view().hasImage());
    EXPECT_EQ(viewer.view().accessibleDescription(),
              QStringLiteral("In use by another application"));
    EXPECT_EQ(viewer.access(held), CameraAccess::InUse);
}

TEST(ViewerWindow, tellsCamerasOfOneNameApart) {
    QTemporaryFile file;
    Viewer viewer(changedScenario(file, {{"\"Label\"", "\"Feeder\""},
                                         {"\"Surface\"", "\"Overview\""},
                                         {"\"30412\"", "\"30411\""}}));
    const std::string names = textTree(*viewer.list().model());
    EXPECT_THAT(names, testing::HasSubstr("Feeder (21017)\nFeeder (21018)\n"));
    EXPECT_THAT(names, testing::HasSubstr("\nTray\n"));
    EXPECT_EQ(QString::fromStdString(names).split(QLatin1Char('\n')).removeDuplicates(), 0)
        << names;
}

TEST(ViewerWindow, survivesTheLiveCameraVanishing) {
    Viewer viewer;
    ASSERT_TRUE(viewer.waitForImage());
    const int before = viewer.list().model()->rowCount();
    for (const bool isPlugged : {false, true}) {
        ASSERT_TRUE(dynamic_cast<OrvCPP::ISimulation&>(OrvCPP::OrvSystem::GetInstance())
                        .SetCameraPlugged("GEV-21017", isPlugged));
        const int expected = isPlugged ? before : before - 1;
        EXPECT_TRUE(
            QTest::qWaitFor([&] { return viewer.list().model()->rowCount() == expected; }, 10000));
        EXPECT_FALSE(viewer.view().hasImage());
        EXPECT_EQ(viewer.rowWith(CameraAccess::Live), -1);
        EXPECT_EQ(viewer.view().accessibleDescription(), isPlugged
                                                             ? QStringLiteral("No camera selected")
                                                             : QStringLiteral("Disconnected"));
    }
}

TEST(ViewerWindow, warnsOfWhatItsRealCamerasLack) {
    // Simulated cameras that count as real ones by the names of their transport layers.
    QTemporaryFile file;
    const auto cameras =
        changedScenario(file, {{"MRD_GEV", "GenICamGEV"}, {"MRD_U3V", "GenICamU3V"}});
    const CapturedLog log;
    const FileTree host;
    host.write("sys/module/usbcore/parameters/usbfs_memory_mb", "16\n");
    host.write("proc/sys/net/core/rmem_max", "212992\n");
    {
        QTranslator german;
        EXPECT_TRUE(viewer::loadTexts(german, QLocale(QStringLiteral("de_AT"))));
        QCoreApplication::installTranslator(&german);
        Viewer viewer(cameras, noPlugins, host.root());
        EXPECT_THAT(partOf<QLabel>(viewer.window(), "labelStreamingWarning").text().toStdString(),
                    testing::HasSubstr("48 MB USB-Speicher (je 16 MB), das System erlaubt 16 MB"));
        EXPECT_THAT(log.text(), testing::HasSubstr("they need 48 MB of USB memory (16 MB each), "
                                                   "and the system allows 16 MB."));
    }
    for (const bool isWarned : {true, false}) {
        Viewer viewer(cameras, noPlugins, host.root());
        const auto& shown = partOf<QLabel>(viewer.window(), "labelStreamingWarning");
        EXPECT_EQ(shown.isHidden(), !isWarned);
        EXPECT_EQ(shown.text().contains(QStringLiteral("usbfs_memory_mb")), isWarned);
        EXPECT_EQ(shown.text().contains(QStringLiteral("net.core.rmem_max")), isWarned);
        host.write("sys/module/usbcore/parameters/usbfs_memory_mb", "0\n");
        host.write("proc/sys/net/core/rmem_max", "268435456\n");
    }
}

TEST(ViewerTexts, areOfTheLanguageOfTheDialog) {
    const QByteArray languages = qgetenv("LANGUAGE");
    qputenv("LANGUAGE", "en_US:de");
    QTranslator texts;
    EXPECT_EQ(viewer::loadTexts(texts, QLocale::system()),
              QLocale::system().name().startsWith(QStringLiteral("de")));
    qputenv("LANGUAGE", languages);
}

TEST(ViewerWindow, returnsToItsPlaceOnAScreenThatExists) {
    const QTemporaryDir folder;
    QSettings settings(folder.filePath(QStringLiteral("viewer.ini")), QSettings::IniFormat);
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    for (const QRect& place : {QRect(50, 30, 640, 530), QRect(5000, 4000, 640, 530)}) {
        {
            Viewer viewer({}, noPlugins, "/", &settings);
            viewer.window().setGeometry(place);
            partOf<QDockWidget>(viewer.window(), "dockThroughput").close();
            viewer.window().close();
        }
        Viewer viewer({}, noPlugins, "/", &settings);
        EXPECT_EQ(viewer.window().size(), place.size());
        EXPECT_TRUE(screen.contains(viewer.window().geometry()));
        EXPECT_EQ(viewer.window().geometry() == place, screen.contains(place));
        EXPECT_TRUE(partOf<QDockWidget>(viewer.window(), "dockThroughput").isHidden());
        settings.remove(QStringLiteral("window/state"));
    }
    settings.setValue(QStringLiteral("window/geometry"), QByteArray("nonsense"));
    const QSize usual = Viewer().window().size();
    Viewer viewer({}, noPlugins, "/", &settings);
    EXPECT_EQ(viewer.window().size(), usual);
    EXPECT_FALSE(partOf<QDockWidget>(viewer.window(), "dockThroughput").isHidden());
}

TEST(ViewerWindow, showsTheThroughputOfItsCameraAndKeepsThatOfTheOneBefore) {
    Viewer viewer({QStringLiteral(":oversubscribed")});
    partOf<QTimer>(viewer.window(), "timerThroughput").setInterval(50);
    const auto& legend = partOf<QLabel>(viewer.window(), "labelThroughput");
    const auto awaitRow = [&legend](const char* row) {
        const QRegularExpression expected(QString::fromLatin1(row));
        return QTest::qWaitFor([&] { return expected.match(legend.text()).hasMatch(); }, 10000);
    };
    EXPECT_TRUE(awaitRow("Link</td>.*125\\.0 MB/s.*Lane 1</td>[^%]*[1-9][0-9]*\\.[0-9] MB/s"));
    viewer.select(4);
    EXPECT_TRUE(awaitRow("Link</td>.*625\\.0 MB/s.*Stereo 1</td>[^%]*[1-9][0-9]*\\.[0-9] MB/s"));
    EXPECT_TRUE(awaitRow("Lane 1</td>.*&nbsp;0\\.0 MB/s"));
}

/// Limits the bandwidth of an open camera, in bytes per second.
void setLimit(const std::string& id, std::int64_t limit) {
    std::shared_ptr<OrvCPP::Camera> camera;
    auto& system = OrvCPP::OrvSystem::GetInstance();
    ASSERT_EQ(system.GetCameraByID(id.c_str(), camera), OrvErrorSuccess);
    std::shared_ptr<OrvCPP::Feature> feature;
    ASSERT_EQ(camera->GetFeatureByName("DeviceLinkThroughputLimit", feature), OrvErrorSuccess);
    ASSERT_EQ(feature->SetValue(limit), OrvErrorSuccess);
}

TEST(ViewerWindow, saysWhereFramesAreLostWhileTheyAre) {
    Viewer viewer({QStringLiteral(":oversubscribed")});
    QLabel& losses = viewer.losses();
    const auto awaitText = [&losses](bool isThere) {
        return QTest::qWaitFor([&] { return losses.isVisible() == isThere; }, 20000);
    };
    // Ten times as fast as in use.
    auto& timer = partOf<QTimer>(viewer.window(), "timerFigures");
    timer.setInterval(100);
    const auto& model = *viewer.list().model();
    const auto found =
        model.match(model.index(0, 0), Qt::DisplayRole, QStringLiteral("Old switch"));
    ASSERT_EQ(found.size(), 1);
    // Simulated cameras leave out frames on a computer that stands still.
    bool isQuiet = false;
    for (int row = 0; row < 3 && !isQuiet; ++row) {
        viewer.select(row);
        ASSERT_TRUE(viewer.waitForImage());
        QSignalSpy figures(&timer, &QTimer::timeout);
        ASSERT_TRUE(QTest::qWaitFor([&] { return figures.count() >= 6; }, 20000));
        isQuiet = !losses.isVisible();
    }
    EXPECT_TRUE(isQuiet);

    viewer.list().setCurrentIndex(found.first());
    ASSERT_TRUE(awaitText(true)) << "its link is too slow";
    const QString text = losses.text();
    // The expressions of GoogleTest have no sets of characters on Windows.
    const QRegularExpression expected(QStringLiteral(
        "^Where frames were lost: unknown\\. Of \\d+ frames, \\d+ were lost and \\d+ came "
        "incomplete; simulated cameras have no counters of a network\\.$"));
    EXPECT_TRUE(expected.match(text).hasMatch()) << text.toStdString();
    losses.setSelection(0, 5);
    EXPECT_TRUE(QTest::qWaitFor([&] { return losses.accessibleDescription() != text; }, 20000));
    EXPECT_EQ(losses.text(), text) << "a selected text stays";

    setLimit("GEV-22001", 10'000'000);
    EXPECT_TRUE(awaitText(false));
    setLimit("GEV-22001", 125'000'000);
    EXPECT_TRUE(awaitText(true));
    viewer.select(0);
    EXPECT_FALSE(losses.isVisible()) << "was of another camera";
    EXPECT_EQ(losses.text(), QString());
}

TEST(ViewerWindow, handsItsCameraOverAndTakesTheFlagBack) {
    // The fake in place of Spanlet inverts the flag when it could open every camera.
    Viewer viewer({}, QFileInfo(QStringLiteral(FAKE_SPANLET_FILE)).path());
    ASSERT_TRUE(viewer.waitForImage());
    EXPECT_EQ(viewer.window().openSpanlet(), QString());
    EXPECT_TRUE(viewer.packetSize().isChecked());
    EXPECT_EQ(viewer.window().openSpanlet(), QString());
    EXPECT_FALSE(viewer.packetSize().isChecked());
    EXPECT_TRUE(viewer.waitForImage());
    EXPECT_EQ(viewer.access(viewer.list().currentIndex().row()), CameraAccess::Live);
}

} // namespace
