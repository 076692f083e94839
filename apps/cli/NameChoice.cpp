// SPDX-License-Identifier: BSD-3-Clause
#include "cli/NameChoice.h"

#include "cli/Failure.h"

namespace cli {

namespace {

QVector<int> named(const QVector<Names>& things, const QString& wanted, Qt::CaseSensitivity cases) {
    QVector<int> found;
    for (int i = 0; i < things.size(); ++i) {
        // The unique name wins over equal names of others.
        if (things[i].constFirst() == wanted)
            return {i};
        if (things[i].contains(wanted, cases))
            found.append(i);
    }
    return found;
}

} // namespace

Names cameraNames(const std::string& id, const std::string& name, const std::string& serialNumber) {
    Names names{QString::fromStdString(id)};
    for (const std::string& other : {name, serialNumber}) {
        if (!other.empty())
            names.append(QString::fromStdString(other));
    }
    return names;
}

bool isCalled(const QVector<Names>& things, const QString& wanted) {
    return !named(things, wanted, Qt::CaseInsensitive).isEmpty();
}

std::size_t chooseByName(const QString& kind, const QVector<Names>& things, const QString& wanted) {
    QVector<int> found = named(things, wanted, Qt::CaseSensitive);
    if (found.isEmpty())
        found = named(things, wanted, Qt::CaseInsensitive);
    if (found.size() == 1)
        return static_cast<std::size_t>(found.constFirst());

    QStringList candidates;
    for (int i = 0; i < things.size(); ++i) {
        if (found.isEmpty() || found.contains(i))
            candidates += things[i].constFirst();
    }
    if (!found.isEmpty())
        throw Failure(QStringLiteral("More than one %1 is called \"%2\": %3.")
                          .arg(kind, wanted, candidates.join(QStringLiteral(", "))));
    throw Failure(QStringLiteral("There is no %1 \"%2\".").arg(kind, wanted) + thereIs(candidates));
}

} // namespace cli
