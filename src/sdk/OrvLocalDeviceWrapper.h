// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/LocalDevice.h"
#include "sdk/OrvFeatureContainerWrapper.h"

/// The host's view of an opened camera.
class OrvLocalDeviceWrapper : public OrvFeatureContainerWrapper {
public:
    explicit OrvLocalDeviceWrapper(std::shared_ptr<OrvCPP::LocalDevice> handle = {});
    ~OrvLocalDeviceWrapper() override;

    std::shared_ptr<OrvCPP::FeatureContainer> GetFeatureContainer() const override;
    virtual std::shared_ptr<OrvCPP::LocalDevice>& GetHandle();

private:
    std::shared_ptr<OrvCPP::LocalDevice> m_localDevice;
};
