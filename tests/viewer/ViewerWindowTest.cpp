// SPDX-License-Identifier: BSD-3-Clause
#include "viewer/ViewerWindow.h"

#include "OrvCPP/OrvSystem.h"
#include "OrvSimulation/Simulation.h"
#include "sdk/SdkQuery.h"
#include "session/SdkSession.h"
#include "session/StreamingLimits.h"
#include "tests/support/CapturedLog.h"
#include "viewer/CameraModel.h"
#include "viewer/ImageView.h"

#include <QCheckBox>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QListView>
#include <QTemporaryFile>
#include <QTest>
#include <gmock/gmock.h>

#include <utility>
#include <vector>

using viewer::CameraAccess;
using viewer::ViewerWindow;

namespace {

const QString noPlugins = QStringLiteral("/nowhere/plugins");

QString scenario(const char* name) {
    return QStringLiteral(SCENARIO_FOLDER "/") + QString::fromLatin1(name);
}

/// The default scenario with other texts in it.
class ChangedScenario {
public:
    explicit ChangedScenario(const std::vector<std::pair<const char*, const char*>>& changes) {
        QFile original(scenario("default.json"));
        EXPECT_TRUE(original.open(QIODevice::ReadOnly) && m_file.open());
        QByteArray text = original.readAll();
        for (const auto& [before, after] : changes)
            text.replace(before, after);
        m_file.write(text);
        m_file.flush();
    }
    session::CameraSource source() const { return {m_file.fileName()}; }

private:
    QTemporaryFile m_file;
};

/// A window on the simulated cameras of a scenario.
class Viewer {
public:
    explicit Viewer(const session::CameraSource& cameras = {}, const QString& plugins = noPlugins)
        : m_session(cameras), m_window(OrvCPP::OrvSystem::GetInstance(), plugins) {
        EXPECT_TRUE(m_session.isStarted()) << m_session.error().toStdString();
        m_window.show();
    }

    ViewerWindow& window() { return m_window; }
    QListView& list() { return *m_window.findChild<QListView*>(QStringLiteral("listCameras")); }
    viewer::ImageView& view() { return *m_window.findChild<viewer::ImageView*>(); }
    QCheckBox& packetSize() {
        return *m_window.findChild<QCheckBox*>(QStringLiteral("checkAutomaticPacketSize"));
    }
    CameraAccess access(int row) {
        return static_cast<CameraAccess>(
            list().model()->index(row, 0).data(viewer::CameraModel::AccessRole).toInt());
    }
    void select(int row) { list().setCurrentIndex(list().model()->index(row, 0)); }
    /// Row of the first camera in this state, -1 when there is none.
    int rowWith(CameraAccess wanted) {
        for (int row = 0; row < list().model()->rowCount(); ++row) {
            if (access(row) == wanted)
                return row;
        }
        return -1;
    }
    /// ID of the selected camera, as the simulation knows it.
    std::string currentId() {
        const auto& model = *static_cast<viewer::CameraModel*>(list().model());
        const auto row = static_cast<std::size_t>(list().currentIndex().row());
        std::string id;
        SdkQuery::text(model.cameras()[row].camera.get(), id,
                       [](const auto& camera, char* buffer, std::uint32_t& length) {
                           return camera.GetID(buffer, length, false);
                       });
        return id;
    }
    bool waitForImage() {
        return QTest::qWaitFor([this] { return view().hasImage(); }, 10000);
    }

private:
    session::SdkSession m_session;
    ViewerWindow m_window;
};

OrvCPP::ISimulation& simulation() {
    return dynamic_cast<OrvCPP::ISimulation&>(OrvCPP::OrvSystem::GetInstance());
}

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
    const ChangedScenario changed({{"\"Label\"", "\"Feeder\""},
                                   {"\"Surface\"", "\"Overview\""},
                                   {"\"serialNumber\": \"30412\"", "\"serialNumber\": \"30411\""}});
    Viewer viewer(changed.source());
    const auto& model = *viewer.list().model();
    QStringList names;
    for (int row = 0; row < model.rowCount(); ++row)
        names << model.index(row, 0).data().toString();
    EXPECT_TRUE(names.contains(QStringLiteral("Feeder (21017)")));
    EXPECT_TRUE(names.contains(QStringLiteral("Feeder (21018)")));
    EXPECT_TRUE(names.contains(QStringLiteral("Tray")));
    EXPECT_EQ(names.removeDuplicates(), 0) << names.join(QLatin1Char('\n')).toStdString();
}

TEST(ViewerWindow, survivesTheLiveCameraVanishing) {
    Viewer viewer;
    ASSERT_TRUE(viewer.waitForImage());
    const int before = viewer.list().model()->rowCount();
    const std::string id = viewer.currentId();
    ASSERT_TRUE(simulation().SetCameraPlugged(id, false)) << id;
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return viewer.list().model()->rowCount() == before - 1; }, 10000));
    EXPECT_FALSE(viewer.view().hasImage());
    EXPECT_EQ(viewer.rowWith(CameraAccess::Live), -1);

    ASSERT_TRUE(simulation().SetCameraPlugged(id, true));
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return viewer.list().model()->rowCount() == before; }, 10000));
}

TEST(ViewerWindow, warnsOfWhatItsRealCamerasLack) {
    // Simulated cameras that count as real ones by the names of their transport layers.
    const ChangedScenario changed({{"MRD_GEV", "GenICamGEV"}, {"MRD_U3V", "GenICamU3V"}});
    CapturedLog log;
    Viewer viewer(changed.source());
    const auto cameras = realCameras(OrvCPP::OrvSystem::GetInstance());
    EXPECT_GT(cameras.gige, 0U);
    EXPECT_GT(cameras.usb, 0U);
    const auto* shown = viewer.window().findChild<QLabel*>(QStringLiteral("labelStreamingWarning"));
    for (const auto& warning :
         {session::usbMemoryWarning(cameras, session::streamingMemory()),
          session::receiveBufferWarning(cameras, session::streamingMemory())}) {
        EXPECT_EQ(log.count("Warning:" + warning.value_or("")), warning ? 1 : 0);
        EXPECT_THAT(shown->text().toStdString(), testing::HasSubstr(warning.value_or("")));
    }
    EXPECT_EQ(shown->isHidden(), shown->text().isEmpty());
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
