// SPDX-License-Identifier: BSD-3-Clause
#include "cli/Table.h"

#include <QJsonObject>
#include <gmock/gmock.h>

namespace {

TEST(Table, alignsNumbersKeepsTextsFromMovingTheCursorAndTellsUnknownSpeeds) {
    const QString text = QStringLiteral("text");
    const QString number = QStringLiteral("number");
    const QJsonArray rows{
        QJsonObject{{text, QStringLiteral("A\x1b[2J\nB")}, {number, 2'000'000}},
        QJsonObject{{text, QString(QChar(0x00fc))}, {number, 12'340'000}},
        QJsonObject{{text, true}},
    };
    EXPECT_EQ(cli::joined(cli::tableLines(
                  {{QStringLiteral("Text"), text}, {QStringLiteral("MB"), number, 1e6, 1}}, rows)),
              QStringLiteral("Text       MB\n"
                             "-------  ----\n"
                             "A?[2J?B   2.0\n"
                             "\u00fc        12.3\n"
                             "yes\n"));
    EXPECT_EQ(cli::usageText(110e6, 0), QStringLiteral("110.0 of unknown MB/s"));
}

} // namespace
