// SPDX-License-Identifier: BSD-3-Clause
// Findings of USB cameras appear, and disappear after their cures: the program sees the devices
// that a test adds below /sys and /dev.
#include "tests/doctor/DoctorRun.h"
#include "tests/support/EmulatedUsb.h"
#include "tests/support/OwnNetwork.h"

#include <fstream>

namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

/// Two cameras, each at a controller of its own, where all is as it should be.
class DoctorUsb : public EmulatedUsb {
protected:
    static void SetUpTestSuite() {
        if (!fakecamera::enterOwnNetwork())
            fakecamera::waitForHostNetwork();
    }

    void SetUp() override {
        EmulatedUsb::SetUp();
        if (IsSkipped())
            return;
        writeFile("sys/module/usbcore/parameters/usbfs_memory_mb", "32\n");
        m_root = addHub(addPci("0000:00:14.0"), "usb2", "10000");
        m_camera = addNamed(m_root, "2-1", "7");
        addNamed(addHub(addPci("0000:00:15.0"), "usb4", "10000"), "4-1", "8");
        ASSERT_THAT(cameraTitles(), IsEmpty());
    }

    void writeFile(const fs::path& file, const char* text) const {
        fs::create_directories((root() / file).parent_path());
        std::ofstream(root() / file) << text;
    }

    /// A camera of this device number, with its file.
    std::string addNamed(const std::string& hub, const std::string& name, const char* number) {
        const std::string camera = addCamera(hub, name, "5000");
        set(camera, "devnum", number);
        set(camera, "product", number);
        writeFile(fileOf(number), "");
        return camera;
    }

    static fs::path fileOf(const std::string& number) { return "dev/bus/usb/002/00" + number; }

    /// Findings beside those of this computer's processors.
    static std::vector<std::string> cameraTitles() {
        Cures cures = examine();
        cures.erase("hint governor this host");
        return titlesOf(cures);
    }

    std::string m_root;
    std::string m_camera;
};

TEST_F(DoctorUsb, hasACameraOnASlowPort) {
    set(m_camera, "speed", "480");
    EXPECT_THAT(cameraTitles(), ElementsAre("warning usb-speed 7 a1"));
    set(m_camera, "speed", "5000");
    EXPECT_THAT(cameraTitles(), IsEmpty());
}

TEST_F(DoctorUsb, hasCamerasThatShareAControllerAndTooLittleMemory) {
    const std::string hub = addHub(m_root, "2-2", "5000");
    const std::string third = addNamed(hub, "2-2.1", "9");
    const Cures cures = examine();
    EXPECT_THAT(titlesOf(cures), Contains("hint usb-controller USB controller 0-20-0"));
    apply(cures.at("warning usb-memory this host"));
    EXPECT_THAT(cameraTitles(), ElementsAre("hint usb-controller USB controller 0-20-0"));
    remove(third);
    EXPECT_THAT(cameraTitles(), IsEmpty());
}

TEST_F(DoctorUsb, hasACameraWithoutPermission) {
    fs::permissions(root() / fileOf("7"), fs::perms::owner_read);
    EXPECT_THAT(cameraTitles(), ElementsAre("error usb-permission 7 a1"));
    fs::permissions(root() / fileOf("7"), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_THAT(cameraTitles(), IsEmpty());
}

} // namespace
