// SPDX-License-Identifier: BSD-3-Clause
#include "cli/SettingsFile.h"

#include "cli/Failure.h"
#include "cli/platform/Interruption.h"
#include "settings/SettingsDocument.h"

#include <QFile>

#include <chrono>
#include <future>
#include <thread>
#include <utility>

namespace cli {

namespace {

constexpr int standardInput = 0;
constexpr std::chrono::milliseconds betweenLooks{50};

/// \p shown is the name for messages.
QByteArray readAll(const QString& name, const QString& shown) {
    QFile file(name);
    if (!(name == QLatin1String(standardStream) ? file.open(standardInput, QIODevice::ReadOnly)
                                                : file.open(QIODevice::ReadOnly)))
        throw Failure(QStringLiteral("%1 cannot be read: %2.").arg(shown, file.errorString()));
    return file.readAll();
}

/// Reads on a thread, which a silent pipe may block until the program ends.
QByteArray readInterruptibly(const QString& name, const QString& shown,
                             Interruption& interruption) {
    std::packaged_task<QByteArray()> reading([=] { return readAll(name, shown); });
    auto text = reading.get_future();
    std::thread(std::move(reading)).detach();
    while (text.wait_for(betweenLooks) != std::future_status::ready) {
        if (interruption.isRequested())
            throw Failure(QStringLiteral("%1: interrupted before all of it was read.").arg(shown));
    }
    return text.get();
}

} // namespace

settings::SavedSettings readSettingsFile(const QString& name, Interruption& interruption) {
    const QString shown =
        name == QLatin1String(standardStream) ? QStringLiteral("The standard input") : name;
    QString error;
    const auto settings =
        settings::parseSettings(readInterruptibly(name, shown, interruption), error);
    if (!settings)
        throw Failure(QStringLiteral("%1 is no settings file: %2.").arg(shown, error));
    if (settings->cameras.empty())
        throw Failure(QStringLiteral("%1 has no camera.").arg(shown));
    return *settings;
}

} // namespace cli
