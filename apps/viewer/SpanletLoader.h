// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QCoreApplication>
#include <QString>
#include <QStringList>

#include <memory>

class QPluginLoader;
class SpanletInterface;

namespace viewer {

/// Finds Spanlet among the libraries of a folder and loads it. Bound to the GUI thread.
class SpanletLoader {
    Q_DECLARE_TR_FUNCTIONS(viewer::SpanletLoader)

public:
    explicit SpanletLoader(QString folder);
    ~SpanletLoader();

    SpanletLoader(const SpanletLoader&) = delete;
    SpanletLoader& operator=(const SpanletLoader&) = delete;

    /// The plug-in's instance, loaded at the first call and kept loaded. Null when there is no
    /// usable one; the next call then looks again.
    SpanletInterface* load();
    /// Why the last load() returned null, for the user: the folder, or each file with its fault.
    QString error() const;

private:
    SpanletInterface* tryFile(const QString& path);

    const QString m_folder;
    std::unique_ptr<QPluginLoader> m_plugin;
    QStringList m_faults;
};

} // namespace viewer
