// SPDX-License-Identifier: BSD-3-Clause
#include "cli/Verdict.h"

#include "cli/Benchmark.h"

#include <QStringList>

namespace cli {

namespace {

QString secondsText(double seconds) {
    return QStringLiteral("%1 s").arg(seconds, 0, 'f', 1);
}

/// Sums of all interfaces.
struct Totals {
    int cameras = 0;
    double sentFrames = 0;
    /// Of the cameras that lost frames.
    double losersFrames = 0;
    double badFrames = 0;
    double bytesPerSecond = 0;
    /// IDs of the cameras that lost frames.
    QStringList losers;
};

double badFramesOf(const QJsonValue& figures) {
    return figures[QStringLiteral("lostFrames")].toDouble() +
           figures[QStringLiteral("incompleteFrames")].toDouble();
}

Totals totalsOf(const QJsonObject& benchmark) {
    Totals totals;
    for (const QJsonValue& interface : interfacesOf(benchmark)) {
        const QJsonValue total = interface[QStringLiteral("total")];
        totals.sentFrames += total[QStringLiteral("sentFrames")].toDouble();
        totals.badFrames += badFramesOf(total);
        totals.bytesPerSecond += total[QStringLiteral("bytesPerSecond")].toDouble();
        for (const QJsonValue& camera : interface[QStringLiteral("cameras")].toArray()) {
            ++totals.cameras;
            if (badFramesOf(camera) <= 0)
                continue;
            totals.losers += camera[QStringLiteral("id")].toString();
            totals.losersFrames += camera[QStringLiteral("sentFrames")].toDouble();
        }
    }
    return totals;
}

/// Why a camera alone is a reason to refuse; empty when it is none.
QString faultOf(const QJsonValue& camera) {
    const QString id = camera[QStringLiteral("id")].toString();
    if (!camera[QStringLiteral("opened")].toBool())
        return QStringLiteral("%1 cannot be opened").arg(id);
    const QJsonValue gone = camera[QStringLiteral("disconnectedAfterSeconds")];
    if (gone.isDouble())
        return QStringLiteral("%1 was disconnected after %2").arg(id, secondsText(gone.toDouble()));
    if (!camera[QStringLiteral("measured")].toBool())
        return QStringLiteral("%1 does not stream").arg(id);
    if (camera[QStringLiteral("receivedFrames")].toDouble() == 0)
        return QStringLiteral("no frame of %1 arrived").arg(id);
    const QJsonValue silent = camera[QStringLiteral("silentSeconds")];
    if (silent.isDouble())
        return QStringLiteral("%1 sent nothing in the last %2")
            .arg(id, secondsText(silent.toDouble()));
    return {};
}

/// "wire (all cameras), kernel (GEV-21018)"; empty where no place is known.
QString placesOf(const QJsonObject& benchmark) {
    QStringList places;
    for (const QJsonValue& interface : interfacesOf(benchmark)) {
        for (const QJsonValue& finding : interface[QStringLiteral("findings")].toArray()) {
            const QString name = finding[QStringLiteral("place")].toString();
            if (finding[QStringLiteral("repaired")].toBool() || name == QLatin1String("unknown"))
                continue;
            const QString camera =
                finding[QStringLiteral("camera")].toString(QStringLiteral("all cameras"));
            const QString place = QStringLiteral("%1 (%2)").arg(name, camera);
            if (!places.contains(place))
                places += place;
        }
    }
    return places.join(QStringLiteral(", "));
}

QStringList reasonsAgainst(const QJsonObject& benchmark, const Totals& totals) {
    const QString time = secondsText(benchmark[QStringLiteral("seconds")].toDouble());
    QStringList reasons;
    if (benchmark[QStringLiteral("interrupted")].toBool())
        reasons += QStringLiteral("the measurement was interrupted after %1").arg(time);
    for (const QJsonValue& interface : interfacesOf(benchmark)) {
        for (const QJsonValue& camera : interface[QStringLiteral("cameras")].toArray()) {
            const QString fault = faultOf(camera);
            if (!fault.isEmpty())
                reasons += fault;
        }
    }
    if (totals.badFrames > 0) {
        const QString places = placesOf(benchmark);
        reasons += QStringLiteral("%1 of %2 frames (%3 %) of %4 were lost or incomplete in %5%6")
                       .arg(totals.badFrames, 0, 'f', 0)
                       .arg(totals.losersFrames, 0, 'f', 0)
                       .arg(100 * totals.badFrames / totals.losersFrames, 0, 'f', 2)
                       .arg(totals.losers.join(QStringLiteral(", ")), time,
                            places.isEmpty() ? QString() : QStringLiteral(", at: ") + places);
    }
    return reasons;
}

} // namespace

Verdict judge(const QJsonObject& benchmark) {
    const Totals totals = totalsOf(benchmark);
    const QStringList reasons = reasonsAgainst(benchmark, totals);
    if (!reasons.isEmpty())
        return {false, QStringLiteral("Not accepted: %1.").arg(reasons.join(QStringLiteral("; ")))};
    return {true, QStringLiteral("Accepted: none of %1 frames of %2 was lost in %3, at %4 MB/s.")
                      .arg(totals.sentFrames, 0, 'f', 0)
                      .arg(totals.cameras == 1 ? QStringLiteral("1 camera")
                                               : QStringLiteral("%1 cameras").arg(totals.cameras))
                      .arg(secondsText(benchmark[QStringLiteral("seconds")].toDouble()))
                      .arg(totals.bytesPerSecond / 1e6, 0, 'f', 1)};
}

} // namespace cli
