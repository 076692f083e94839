// SPDX-License-Identifier: BSD-3-Clause
#include "viewer/SdkSession.h"

#include "OrvCPP/OrvSystem.h"
#include "viewer/Sdk.h"

namespace viewer {

SdkSession::SdkSession(const QString& configuration) {
    auto& system = OrvCPP::OrvSystem::GetInstance();
    const OrvErrorType result = configuration.isEmpty()
                                    ? system.Startup()
                                    : system.Startup(configuration.toStdWString().c_str());
    m_isStarted = result == OrvErrorSuccess;
    if (m_isStarted) {
        return;
    }
    m_error = sdkText([&system](char* buffer, std::uint32_t& length) {
        return system.GetStartupError(buffer, length);
    });
    if (m_error.isEmpty()) {
        m_error = QStringLiteral("The camera SDK answered error %1.").arg(result);
    }
}

SdkSession::~SdkSession() {
    if (m_isStarted) {
        OrvCPP::OrvSystem::GetInstance().Shutdown();
    }
}

bool SdkSession::isStarted() const {
    return m_isStarted;
}

QString SdkSession::error() const {
    return m_error;
}

} // namespace viewer
