// SPDX-License-Identifier: BSD-3-Clause
#include "session/CameraSource.h"

#include "session/CameraPreference.h"

#include <QCommandLineParser>

namespace session {

namespace {

const QLatin1String configOption("config");
const QLatin1String camerasOption("cameras");
constexpr const char* camerasVariable = "SPANLET_CAMERAS";

/// \p origin is where \p kind stands, for the error.
CameraSource sourceOf(const QString& kind, const QString& origin, QString& error) {
    if (kind == QLatin1String("genicam"))
        return {QStringLiteral(":genicam")};
    if (kind != QLatin1String("simulated"))
        error =
            QStringLiteral("%1 takes \"simulated\" or \"genicam\", not \"%2\".").arg(origin, kind);
    return {};
}

} // namespace

QList<QCommandLineOption> cameraOptions() {
    return {
        {configOption,
         QStringLiteral("Start the camera SDK with this configuration or scenario, a file or the "
                        ":name of an embedded one."),
         QStringLiteral("file")},
        {camerasOption,
         QStringLiteral("\"simulated\" cameras, or \"genicam\": real GigE Vision and USB3 Vision "
                        "cameras. Without it and --config, the environment variable "
                        "SPANLET_CAMERAS says which, else \"cameras=\" in spanlet/spanlet.conf "
                        "in the folder of configurations; else they are real in an installed "
                        "program that has access to them, and simulated otherwise."),
         QStringLiteral("kind")},
    };
}

CameraSource cameraSource(const QCommandLineParser& parser, QString& error) {
    const QString kind = parser.value(camerasOption);
    if (parser.isSet(configOption)) {
        if (parser.isSet(camerasOption))
            error = QStringLiteral("--cameras %1 does not go with --config.").arg(kind);
        // Catches a script whose variable is empty.
        else if (parser.value(configOption).isEmpty())
            error = QStringLiteral("--config takes a file or the :name of a scenario, not \"\".");
        return {parser.value(configOption)};
    }
    if (parser.isSet(camerasOption))
        return sourceOf(kind, QStringLiteral("--cameras"), error);
    if (!qEnvironmentVariableIsEmpty(camerasVariable))
        return sourceOf(qEnvironmentVariable(camerasVariable), QString::fromLatin1(camerasVariable),
                        error);
    const CameraPreference preference = cameraPreference(preferenceFiles());
    error = preference.error;
    return preference.origin.isEmpty() ? CameraSource{}
                                       : sourceOf(preference.kind, preference.origin, error);
}

} // namespace session
