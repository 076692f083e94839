// SPDX-License-Identifier: BSD-3-Clause
#include "viewer/SpanletLoader.h"

#include <QDir>
#include <QFile>
#include <QLibraryInfo>
#include <QTemporaryDir>
#include <gmock/gmock.h>

using viewer::SpanletLoader;

namespace {

const auto fakeSpanlet = QStringLiteral(FAKE_SPANLET_FILE);
const auto unrelated = QStringLiteral(UNRELATED_PLUGIN_FILE);

class SpanletLoaderTest : public testing::Test {
protected:
    /// Puts a library into the folder and answers the path that it has there.
    QString add(const QString& library, const QString& name) {
        EXPECT_TRUE(QFile::copy(library, m_folder.filePath(name))) << library.toStdString();
        return m_folder.filePath(name);
    }

    QString addText(const QString& name) {
        QFile file(m_folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("not a library\n");
        return file.fileName();
    }

    /// The error of a load that must not succeed.
    QString fault(const QString& folder) {
        SpanletLoader loader(folder);
        EXPECT_EQ(loader.load(), nullptr);
        return loader.error();
    }

    void expectFault(const QString& path, const QString& reason) {
        const QString error = fault(m_folder.path());
        EXPECT_TRUE(error.contains(path + QStringLiteral(": "))) << error.toStdString();
        EXPECT_TRUE(error.contains(reason)) << error.toStdString();
    }

    QTemporaryDir m_folder;
};

TEST_F(SpanletLoaderTest, namesAFolderThatIsMissing) {
    const QString folder = m_folder.filePath(QStringLiteral("plugins"));
    EXPECT_EQ(
        fault(folder),
        QStringLiteral("Spanlet cannot be loaded.\n\n%1: there is no such folder").arg(folder));
}

TEST_F(SpanletLoaderTest, namesAFolderWithoutLibraries) {
    addText(QStringLiteral("readme.txt"));
    expectFault(m_folder.path(), QStringLiteral("there is no library in this folder"));
}

TEST_F(SpanletLoaderTest, namesAFileThatIsNoLibrary) {
    expectFault(addText(QStringLiteral("Spanlet.so")), QStringLiteral("this is no Qt plug-in ("));
}

TEST_F(SpanletLoaderTest, namesAPlugInOfAnotherInterface) {
    const QString platform = QLibraryInfo::location(QLibraryInfo::PluginsPath) +
                             QStringLiteral("/platforms/libqoffscreen.so");
    expectFault(add(platform, QStringLiteral("other.so")),
                QStringLiteral("this plug-in has the interface \""));
}

TEST_F(SpanletLoaderTest, namesAPlugInOfAnotherVersion) {
    expectFault(add(unrelated, QStringLiteral("Spanlet.so")),
                QStringLiteral("another version of the interface \"SpanletInterface\""));
}

TEST_F(SpanletLoaderTest, namesAPlugInThatDoesNotLoad) {
    const QString path = add(fakeSpanlet, QStringLiteral("Spanlet.so"));
    // The metadata stays readable; the dynamic linker finds nothing to load.
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    constexpr qint64 elfMachine = 18;
    file.seek(elfMachine);
    file.write("\xff\xfe", 2);
    file.close();
    const QString error = fault(m_folder.path());
    EXPECT_TRUE(error.contains(path)) << error.toStdString();
}

TEST_F(SpanletLoaderTest, findsSpanletAmongOtherLibraries) {
    addText(QStringLiteral("a.so"));
    add(fakeSpanlet, QStringLiteral("b.so"));
    SpanletLoader loader(m_folder.path());
    SpanletInterface* spanlet = loader.load();
    EXPECT_NE(spanlet, nullptr);
    EXPECT_EQ(loader.error(), QString());
    EXPECT_EQ(loader.load(), spanlet);
}

TEST_F(SpanletLoaderTest, looksAgainAfterAFailure) {
    SpanletLoader loader(m_folder.path());
    EXPECT_EQ(loader.load(), nullptr);
    add(fakeSpanlet, QStringLiteral("Spanlet.so"));
    EXPECT_NE(loader.load(), nullptr);
}

} // namespace
