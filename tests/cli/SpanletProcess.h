// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QElapsedTimer>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QStringList>
#include <QVariant>
#include <gtest/gtest.h>

#include <string>
#include <vector>

/// Arguments separated by blanks.
inline QStringList words(const std::string& line) {
    return QString::fromStdString(line).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

using Texts = std::vector<std::string>;

/// What the pattern's last group captures in \p text, from line to line.
inline Texts matches(const std::string& text, const char* pattern) {
    Texts found;
    const QRegularExpression expression(QLatin1String(pattern),
                                        QRegularExpression::MultilineOption);
    auto next = expression.globalMatch(QString::fromStdString(text));
    while (next.hasNext())
        found.push_back(next.next().capturedTexts().constLast().toStdString());
    return found;
}

/// The program spanlet as a process without a display.
class SpanletProcess {
public:
    /// \p cameras is the value of SPANLET_CAMERAS.
    explicit SpanletProcess(const QString& cameras = {}) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char* display : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
            environment.remove(QLatin1String(display));
        environment.insert(QStringLiteral("SPANLET_CAMERAS"), cameras);
        m_process.setProcessEnvironment(environment);
    }

    /// Lets the program read its configuration in a folder, as the user's own.
    void useConfiguration(const QString& folder) {
        QProcessEnvironment environment = m_process.processEnvironment();
        environment.insert(QStringLiteral("SPANLET_CONFIG_HOME"), folder);
        m_process.setProcessEnvironment(environment);
    }

    void start(const QStringList& arguments) {
        // A path without a drive is looked up on the drive of the current folder.
        static const QString program = QFileInfo(QStringLiteral(SPANLET_FILE)).absoluteFilePath();
        startFile(program, arguments);
    }
    /// Another file of the program.
    void startFile(const QString& file, const QStringList& arguments) {
        m_process.start(file, arguments);
        ASSERT_TRUE(m_process.waitForStarted());
    }

    /// Waits until the program has printed \p text.
    void await(const std::string& text) {
        QElapsedTimer timer;
        timer.start();
        while ((out() + err()).find(text) == std::string::npos) {
            ASSERT_LT(timer.elapsed(), 20000) << "never said \"" << text << "\"";
            m_process.waitForReadyRead(100);
        }
    }

    /// Forgets what the program has printed so far.
    void forget() {
        out();
        err();
        m_out.clear();
        m_err.clear();
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
    int run(const std::string& line) { return run(words(line)); }

    std::string out() {
        // Windows ends lines by "\r\n".
        m_out += m_process.readAllStandardOutput().replace("\r\n", "\n");
        return m_out.toStdString();
    }
    std::string err() {
        m_err += m_process.readAllStandardError().replace("\r\n", "\n");
        return m_err.toStdString();
    }
    /// The output, which must be one JSON document.
    QJsonObject json() {
        QJsonParseError error;
        const std::string text = out();
        const QJsonDocument document = QJsonDocument::fromJson(m_out, &error);
        EXPECT_EQ(error.error, QJsonParseError::NoError) << text;
        return document.object();
    }

    /// The output, each line of which must be a JSON document.
    QJsonArray jsonLines() {
        QJsonArray documents;
        for (const QByteArray& line : QByteArray::fromStdString(out()).trimmed().split('\n')) {
            const QJsonDocument document = QJsonDocument::fromJson(line);
            EXPECT_TRUE(document.isObject()) << line.toStdString();
            documents.append(document.object());
        }
        return documents;
    }

private:
    QProcess m_process;
    QByteArray m_out;
    QByteArray m_err;
};

/// The output of a successful command.
inline std::string textOf(const std::string& line) {
    SpanletProcess spanlet;
    EXPECT_EQ(spanlet.run(line), 0) << line << ": " << spanlet.err();
    return spanlet.out();
}
inline QJsonObject jsonOf(const std::string& line) {
    SpanletProcess spanlet;
    EXPECT_EQ(spanlet.run(line + " --json"), 0) << line << ": " << spanlet.err();
    return spanlet.json();
}

/// The value at a path like "interfaces 2 type".
inline QVariant at(const QJsonObject& document, const std::string& path) {
    QJsonValue value = document;
    for (const QString& key : words(path))
        value = value.isArray() ? value.toArray().at(key.toInt()) : value[key];
    return value.toVariant();
}
inline double number(const QJsonObject& document, const std::string& path) {
    const QVariant found = at(document, path);
    EXPECT_TRUE(found.isValid()) << path;
    return found.toDouble();
}
inline const QJsonArray camerasOf(const QJsonObject& document) {
    return document[QStringLiteral("cameras")].toArray();
}

/// Members of a camera, separated by blanks.
inline std::string camera(const QJsonObject& document, int index, const std::string& members) {
    QStringList values;
    for (const QString& member : words(members))
        values += camerasOf(document).at(index)[member].toVariant().toString();
    return values.join(QLatin1Char(' ')).toStdString();
}

/// Sum of a member of all cameras.
inline double sumOf(const QJsonObject& document, const char* key) {
    double sum = 0;
    for (const QJsonValue& camera : camerasOf(document))
        sum += camera[QLatin1String(key)].toDouble();
    return sum;
}
