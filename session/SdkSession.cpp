// SPDX-License-Identifier: BSD-3-Clause
#include "session/SdkSession.h"

#include "OrvCPP/OrvSystem.h"
#include "sdk/TwiceAsked.h"

#include <QDir>
#include <QTemporaryFile>

#include <string>

namespace session {

SdkSession::SdkSession(const CameraSource& cameras) {
    start(cameras);
}

SdkSession::~SdkSession() {
    if (m_isStarted)
        system().Shutdown();
}

OrvCPP::OrvSystem& SdkSession::system() const {
    return OrvCPP::OrvSystem::GetInstance();
}

void SdkSession::start(const CameraSource& cameras) {
    if (cameras.kind == CameraSource::Kind::GenICam)
        startGenICam();
    else
        startWith(cameras.configuration);
}

/// The SDK takes a configuration as a file only; this one is gone as soon as it has been read.
void SdkSession::startGenICam() {
    QTemporaryFile file(QDir::tempPath() + QStringLiteral("/spanlet-XXXXXX.json"));
    const bool isWritten =
        file.open() && file.write(R"({"providers": [{"type": "genicam"}]})") > 0 && file.flush();
    if (!isWritten) {
        m_error = QStringLiteral("%1: %2").arg(file.fileTemplate(), file.errorString());
        return;
    }
    startWith(file.fileName());
    m_error.replace(file.fileName(), QStringLiteral("--cameras genicam"));
}

void SdkSession::startWith(const QString& configuration) {
    OrvCPP::OrvSystem& sdk = system();
    const OrvErrorType result =
        configuration.isEmpty() ? sdk.Startup() : sdk.Startup(configuration.toStdWString().c_str());
    m_isStarted = result == OrvErrorSuccess;
    if (m_isStarted)
        return;
    std::string error;
    TwiceAsked::text(&sdk, error, &OrvCPP::OrvSystem::GetStartupError);
    m_error = error.empty() ? QStringLiteral("The camera SDK answered error %1.").arg(result)
                            : QString::fromStdString(error);
}

} // namespace session
