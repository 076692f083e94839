// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStringList>
#include <gtest/gtest.h>

#include <string>

/// The program spanlet as a process without a display.
class SpanletProcess {
public:
    SpanletProcess() {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char* display : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
            environment.remove(QLatin1String(display));
        m_process.setProcessEnvironment(environment);
    }

    void start(const QStringList& arguments) {
        m_process.start(QStringLiteral(SPANLET_FILE), arguments);
        ASSERT_TRUE(m_process.waitForStarted());
    }

    /// Waits until the program has printed \p text.
    void await(const char* text) {
        QElapsedTimer timer;
        timer.start();
        while (!(out() + err()).contains(text)) {
            ASSERT_LT(timer.elapsed(), 20000) << "never said \"" << text << "\"";
            m_process.waitForReadyRead(100);
        }
    }

    qint64 id() const { return m_process.processId(); }

    /// Waits for the end; the exit code, or -1 after a crash.
    int finish() {
        EXPECT_TRUE(m_process.waitForFinished(60000)) << m_process.errorString().toStdString();
        return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
    }

    int run(const QStringList& arguments) {
        start(arguments);
        return finish();
    }
    /// \p line has arguments separated by blanks.
    int run(const QString& line) { return run(line.split(QLatin1Char(' '), Qt::SkipEmptyParts)); }

    QByteArray out() {
        // Windows ends lines by "\r\n".
        m_out += m_process.readAllStandardOutput().replace("\r\n", "\n");
        return m_out;
    }
    QByteArray err() {
        m_err += m_process.readAllStandardError().replace("\r\n", "\n");
        return m_err;
    }
    /// The output, which must be one JSON document.
    QJsonObject json() {
        QJsonParseError error;
        const QJsonDocument document = QJsonDocument::fromJson(out(), &error);
        EXPECT_EQ(error.error, QJsonParseError::NoError) << out().toStdString();
        return document.object();
    }

private:
    QProcess m_process;
    QByteArray m_out;
    QByteArray m_err;
};

inline const QJsonArray camerasOf(const QJsonObject& document) {
    return document[QStringLiteral("cameras")].toArray();
}

/// Sum of a member of all cameras.
inline double sumOf(const QJsonObject& document, const char* key) {
    double sum = 0;
    for (const QJsonValue& camera : camerasOf(document))
        sum += camera[QLatin1String(key)].toDouble();
    return sum;
}
