// SPDX-License-Identifier: BSD-3-Clause
#include "features/ui/FeatureTreeProxyModel.h"

#include "features/FeatureMetaTypes.h"
#include "features/ui/FeatureTreeModel.h"

#include <QCoreApplication>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

/// Empty for anything but an array; an element that is not a text is an empty one.
QStringList texts(const QJsonValue& value) {
    QStringList result;
    for (const QJsonValue& element : value.toArray())
        result.append(element.toString());
    return result;
}

} // namespace

FeatureTreeProxyModel::FeatureTreeProxyModel(QObject* parent)
    : FeatureTreeProxyModel(QCoreApplication::applicationDirPath() +
                                QStringLiteral("/plugins/Spanlet_Settings.json"),
                            parent) {}

FeatureTreeProxyModel::FeatureTreeProxyModel(const QString& settingsFile, QObject* parent)
    : QSortFilterProxyModel(parent) {
    readSettings(settingsFile);
    sort(FeatureTreeModel::NameColumn);
}

FeatureTreeProxyModel::~FeatureTreeProxyModel() = default;

void FeatureTreeProxyModel::readSettings(const QString& fileName) {
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        qWarning("WARN: Couldn't open file with 'Presets'. %s", qUtf8Printable(fileName));
        return;
    }
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    if (error.error != QJsonParseError::NoError) {
        // The pattern has no place for the description, which Qt then reports by itself.
        qWarning("%s",
                 qUtf8Printable(QStringLiteral("JSON parse error: '%s'").arg(error.errorString())));
        return;
    }
    const QJsonObject settings = document.object();
    m_featuresFilter = texts(settings[QStringLiteral("FeaturesFilter")]);
    m_categoriesFilter = texts(settings[QStringLiteral("CategoriesFilter")]);
}

void FeatureTreeProxyModel::setActive(bool active) {
    m_active = active;
    invalidate();
}

/// The base class would filter and sort the children of every row on view, and sorting reads their
/// descriptions. While every row is accepted, the tree itself knows.
bool FeatureTreeProxyModel::hasChildren(const QModelIndex& parent) const {
    return m_active || sourceModel() == nullptr ? QSortFilterProxyModel::hasChildren(parent)
                                                : sourceModel()->hasChildren(mapToSource(parent));
}

bool FeatureTreeProxyModel::filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const {
    if (!m_active)
        return true;
    const QModelIndex index = sourceModel()->index(sourceRow, filterKeyColumn(), sourceParent);
    if (!index.isValid())
        return QSortFilterProxyModel::filterAcceptsRow(sourceRow, sourceParent);
    const auto info = index.data(FeatureTreeModel::InfoRole).value<FeatureInfo>();
    if (m_featuresFilter.contains(QString::fromStdString(info.name)))
        return true;
    const QString category = QString::fromStdString(info.category);
    return m_categoriesFilter.contains(QStringLiteral("%1:%2").arg(moduleOf(index), category));
}

/// One name for all streams.
QString FeatureTreeProxyModel::moduleOf(QModelIndex index) const {
    while (index.parent().isValid())
        index = index.parent();
    const QString module =
        index.siblingAtColumn(FeatureTreeModel::NameColumn).data(filterRole()).toString();
    const QString stream = QStringLiteral("Stream");
    return module.startsWith(stream) ? stream : module;
}

bool FeatureTreeProxyModel::lessThan(const QModelIndex& left, const QModelIndex& right) const {
    // Modules keep the order from the host to the stream.
    if (!left.parent().isValid())
        return false;
    const auto name = [](const QModelIndex& index) {
        return index.siblingAtColumn(FeatureTreeModel::NameColumn).data().toString();
    };
    return QString::localeAwareCompare(name(left), name(right)) < 0;
}
