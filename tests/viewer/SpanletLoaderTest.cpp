// SPDX-License-Identifier: BSD-3-Clause
#include "viewer/SpanletLoader.h"

#include <QtCore>
#include <gmock/gmock.h>

using viewer::SpanletLoader;

namespace {

/// File name of a library on this system.
QString library(const char* name) {
    return QLatin1String(name) + QStringLiteral(LIBRARY_SUFFIX);
}

/// Qt's plug-in for programs without a display.
QString offscreenPlugin() {
    const QDir folder(QLibraryInfo::location(QLibraryInfo::PluginsPath) +
                      QStringLiteral("/platforms"));
    return folder.filePath(folder.entryList({QStringLiteral("*qoffscreen.*")}).value(0));
}

class SpanletLoaderTest : public testing::Test {
protected:
    /// Puts a library into the folder and answers the path that it has there.
    QString add(const QString& original, const QString& name) {
        EXPECT_TRUE(QFile::copy(original, m_folder.filePath(name))) << original.toStdString();
        return m_folder.filePath(name);
    }

    QString addText(const QString& name) {
        QFile file(m_folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("not a library\n");
        return file.fileName();
    }
    /// A load must fail, and name the library with the reason.
    void expectFault(const QString& path, const char* reason) {
        SpanletLoader loader(m_folder.path());
        EXPECT_EQ(loader.load(), nullptr);
        EXPECT_THAT(
            loader.error().toStdString(),
            testing::HasSubstr(QDir::toNativeSeparators(path).toStdString() + ": " + reason));
    }

    QTemporaryDir m_folder;
};

TEST_F(SpanletLoaderTest, saysWhatIsWrongWithALibrary) {
    expectFault(addText(library("a")), "this is no Qt plug-in (");
    expectFault(add(offscreenPlugin(), library("b")), "this plug-in has the interface \"");
    expectFault(add(QStringLiteral(UNRELATED_PLUGIN_FILE), library("c")),
                "this plug-in has another version of the interface \"SpanletInterface\"");
}

TEST_F(SpanletLoaderTest, findsSpanletAmongOtherLibrariesAfterAFailure) {
    addText(library("a"));
    SpanletLoader loader(m_folder.path());
    EXPECT_EQ(loader.load(), nullptr);
    add(QStringLiteral(FAKE_SPANLET_FILE), library("b"));
    SpanletInterface* spanlet = loader.load();
    EXPECT_NE(spanlet, nullptr);
    EXPECT_EQ(loader.error(), QString());
    EXPECT_EQ(loader.load(), spanlet);
}

} // namespace
