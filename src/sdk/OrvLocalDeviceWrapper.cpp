// SPDX-License-Identifier: BSD-3-Clause
#include "sdk/OrvLocalDeviceWrapper.h"

#include <utility>

OrvLocalDeviceWrapper::OrvLocalDeviceWrapper(std::shared_ptr<OrvCPP::LocalDevice> handle)
    : m_localDevice(std::move(handle)) {}

OrvLocalDeviceWrapper::~OrvLocalDeviceWrapper() = default;

std::shared_ptr<OrvCPP::FeatureContainer> OrvLocalDeviceWrapper::GetFeatureContainer() const {
    return m_localDevice;
}

std::shared_ptr<OrvCPP::LocalDevice>& OrvLocalDeviceWrapper::GetHandle() {
    return m_localDevice;
}
