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

/// The program, run without a display.
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

    /// Waits until the program has said this.
    void await(const char* text) {
        QElapsedTimer timer;
        timer.start();
        while (!(out() + err()).contains(text)) {
            ASSERT_LT(timer.elapsed(), 20000) << "never said \"" << text << "\"";
            m_process.waitForReadyRead(100);
        }
    }

    qint64 id() const { return m_process.processId(); }

    /// Its exit code; -1 when it ended in another way.
    int finish() {
        EXPECT_TRUE(m_process.waitForFinished(60000)) << m_process.errorString().toStdString();
        return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
    }

    int run(const QStringList& arguments) {
        start(arguments);
        return finish();
    }
    /// Arguments with blanks between them.
    int run(const QString& line) { return run(line.split(QLatin1Char(' '), Qt::SkipEmptyParts)); }

    QByteArray out() {
        // Windows ends a line with two characters.
        m_out += m_process.readAllStandardOutput().replace("\r\n", "\n");
        return m_out;
    }
    QByteArray err() {
        m_err += m_process.readAllStandardError().replace("\r\n", "\n");
        return m_err;
    }
    /// What was printed, which is to be one document and nothing else.
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

/// Sum of one number of each camera.
inline double sumOf(const QJsonObject& document, const char* key) {
    double sum = 0;
    for (const QJsonValue& camera : camerasOf(document))
        sum += camera[QLatin1String(key)].toDouble();
    return sum;
}
