// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QJsonObject>
#include <QString>

namespace cli {

/// Whether a benchmark is good enough to accept the cameras, and why.
struct Verdict {
    bool isAccepted = false;
    /// One sentence.
    QString text;
};

/// Accepts a result of runBenchmark() that was not interrupted, in which every camera was opened
/// and has sent to the end, and no frame was lost or incomplete. Otherwise tells all the reasons,
/// and where frames were lost.
Verdict judge(const QJsonObject& benchmark);

} // namespace cli
