// SPDX-License-Identifier: BSD-3-Clause
#include "session/SdkSession.h"

#include "OrvCPP/OrvSystem.h"
#include "sdk/RealCameras.h"
#include "sdk/SdkQuery.h"

#include <string>

namespace session {

SdkSession::SdkSession(const CameraSource& cameras) {
    OrvCPP::OrvSystem& sdk = system();
    const OrvErrorType result = cameras.configuration.isEmpty()
                                    ? sdk.Startup()
                                    : sdk.Startup(cameras.configuration.toStdWString().c_str());
    m_isStarted = result == OrvErrorSuccess;
    if (m_isStarted)
        return;
    std::string error;
    SdkQuery::text(&sdk, error, &OrvCPP::OrvSystem::GetStartupError);
    m_error = error.empty() ? QStringLiteral("The camera SDK answered error %1.").arg(result)
                            : QString::fromStdString(error);
}

SdkSession::~SdkSession() {
    if (m_isStarted)
        system().Shutdown();
}

OrvCPP::OrvSystem& SdkSession::system() const {
    return OrvCPP::OrvSystem::GetInstance();
}

bool SdkSession::isSimulated() const {
    return simulatesAll(system());
}

} // namespace session
