// SPDX-License-Identifier: BSD-3-Clause
#include "viewer/SpanletLoader.h"

#include "plugin/SpanletInterface.h"

#include <QDir>
#include <QJsonObject>
#include <QLibrary>
#include <QPluginLoader>

#include <utility>

namespace viewer {

namespace {

const auto interfaceName = QStringLiteral("SpanletInterface");

QString withReason(const QString& path, const QString& reason) {
    return QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(path), reason);
}

} // namespace

SpanletLoader::SpanletLoader(QString folder) : m_folder(std::move(folder)) {}

SpanletLoader::~SpanletLoader() = default;

SpanletInterface* SpanletLoader::load() {
    if (m_plugin)
        return qobject_cast<SpanletInterface*>(m_plugin->instance());
    m_faults.clear();
    const QDir folder(m_folder);
    if (!folder.exists()) {
        m_faults << withReason(m_folder, tr("there is no such folder"));
        return nullptr;
    }
    for (const QFileInfo& file : folder.entryInfoList(QDir::Files, QDir::Name)) {
        if (!QLibrary::isLibrary(file.fileName()))
            continue;
        if (SpanletInterface* spanlet = tryFile(file.absoluteFilePath())) {
            m_faults.clear();
            return spanlet;
        }
    }
    if (m_faults.isEmpty())
        m_faults << withReason(m_folder, tr("there is no library in this folder"));
    return nullptr;
}

QString SpanletLoader::error() const {
    return m_faults.isEmpty() ? QString()
                              : tr("Spanlet cannot be loaded.") + QStringLiteral("\n\n") +
                                    m_faults.join(QChar(u'\n'));
}

SpanletInterface* SpanletLoader::tryFile(const QString& path) {
    auto plugin = std::make_unique<QPluginLoader>(path);
    const QJsonObject metaData = plugin->metaData();
    if (metaData.isEmpty()) {
        m_faults << withReason(path, tr("this is no Qt plug-in (%1)").arg(plugin->errorString()));
        return nullptr;
    }
    const QString offered = metaData.value(QStringLiteral("IID")).toString();
    if (offered != interfaceName) {
        m_faults << withReason(
            path,
            tr("this plug-in has the interface \"%1\", not \"%2\"").arg(offered, interfaceName));
        return nullptr;
    }
    QObject* instance = plugin->instance();
    if (instance == nullptr) {
        m_faults << withReason(path, plugin->errorString());
        return nullptr;
    }
    auto* spanlet = qobject_cast<SpanletInterface*>(instance);
    if (spanlet == nullptr) {
        m_faults << withReason(
            path,
            tr("this plug-in has another version of the interface \"%1\"").arg(interfaceName));
        plugin->unload();
        return nullptr;
    }
    m_plugin = std::move(plugin);
    return spanlet;
}

} // namespace viewer
