// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QProcess>
#include <gtest/gtest.h>

#include <string>

/// Whether each line is a document as docs/schemas/benchmark.json has it; not checked where
/// python3-jsonschema is missing.
inline void expectValidFigures(const std::string& documents) {
    QProcess validation;
    validation.start(QStringLiteral(VALIDATE_FILE), {QStringLiteral(SCHEMA_FILE)});
    validation.write(QByteArray::fromStdString(documents));
    validation.closeWriteChannel();
    ASSERT_TRUE(validation.waitForFinished());
    EXPECT_TRUE(validation.exitCode() == 0 || validation.exitCode() == 77)
        << validation.readAllStandardError().toStdString();
}
