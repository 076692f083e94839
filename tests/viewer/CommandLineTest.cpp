// SPDX-License-Identifier: BSD-3-Clause
#include "viewer/CommandLine.h"

#include <gmock/gmock.h>

using viewer::CommandLine;
using viewer::parseCommandLine;

namespace {

CommandLine parse(const QString& arguments) {
    return parseCommandLine((QStringLiteral("spanlet-viewer ") + arguments)
                                .split(QLatin1Char(' '), Qt::SkipEmptyParts));
}

TEST(CommandLine, takesEveryOption) {
    const CommandLine line = parse(
        QStringLiteral("--config a.json --open-spanlet --dark --benchmark 12 --picture out.png"));
    EXPECT_EQ(line.cameras.configuration, QStringLiteral("a.json"));
    EXPECT_EQ(line.pictureFile, QStringLiteral("out.png"));
    EXPECT_EQ(line.benchmarkSeconds, 12);
    EXPECT_TRUE(line.opensSpanlet && line.isDark && line.isAutomated());
    EXPECT_TRUE(line.error.isEmpty());
}

TEST(CommandLine, namesWrongArguments) {
    for (const char* const arguments :
         {"--benchmark 0", "--benchmark 100000", "--benchmark soon", "--unknown", "stray",
          "--config", "--cameras", "--cameras real", "--config a.json --cameras genicam"}) {
        const CommandLine line = parse(QLatin1String(arguments));
        const QString wrong = QString::fromLatin1(arguments).section(QLatin1Char(' '), -1);
        EXPECT_TRUE(line.error.contains(QString(wrong).remove(QLatin1Char('-'))))
            << line.error.toStdString();
    }
}

} // namespace
