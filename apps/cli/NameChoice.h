// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

#include <cstddef>
#include <string>

namespace cli {

/// The names of a camera or interface. The first is unique.
using Names = QStringList;

/// The ID of a camera, and its user-defined name and serial number where it has them.
Names cameraNames(const std::string& id, const std::string& name, const std::string& serialNumber);

/// Whether at least one of \p things is called \p wanted, upper and lower case alike.
bool isCalled(const QVector<Names>& things, const QString& wanted);

/// Index of the only one that is called \p wanted: by its unique name, else by any name, else by
/// any name in another case. Throws a Failure when there is none, or more than one. \p kind
/// ("camera") is for messages.
std::size_t chooseByName(const QString& kind, const QVector<Names>& things, const QString& wanted);

} // namespace cli
