// SPDX-License-Identifier: BSD-3-Clause
#include "plugin/SpanletInterface.h"

#include <vector>

/// Replaces Spanlet in tests of the viewer. Instead of showing a dialog, it tries to open every
/// camera in full access, as Spanlet does, and closes it again.
class FakeSpanletPlugin : public SpanletInterface {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "SpanletInterface")
    Q_INTERFACES(SpanletInterface)

public:
    /// Answers the opposite of the flag when every camera but \c heldElsewhere could be opened, so
    /// that the viewer's check box shows whether both worked; else the flag as it was.
    int runDialog(OrvCPP::OrvSystem& system, bool autoAdjustPacketSize) override {
        std::uint32_t count = 0;
        system.GetCameras(nullptr, count);
        std::vector<std::shared_ptr<OrvCPP::Camera>> cameras(count);
        system.GetCameras(cameras.data(), count);
        std::uint32_t opened = 0;
        for (const auto& camera : cameras) {
            if (camera->Open(OrvAccessModeFull) == OrvErrorSuccess) {
                ++opened;
                camera->Close();
            }
        }
        const bool hasAll = opened + heldElsewhere == count;
        return hasAll != autoAdjustPacketSize ? 1 : 0;
    }

private:
    /// The default scenario has one camera that another application holds.
    static constexpr std::uint32_t heldElsewhere = 1;
};

#include "FakeSpanletPlugin.moc"
