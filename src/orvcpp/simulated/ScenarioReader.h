// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/core/ObjectReader.h"
#include "orvcpp/simulated/Scenario.h"

#include <QString>
#include <QStringList>

namespace orv::simulated {

/// Reads a scenario from the top level of a scenario file. Throws a FormatError.
Scenario readScenario(ObjectReader reader);

/// File of a scenario as a configuration names it: ":name" is an embedded one, everything else a
/// path, relative to \p folder.
QString scenarioFile(const QString& name, const QString& folder);

/// Whether a configuration names an embedded scenario like this, if there is one.
bool isEmbeddedName(const QString& name);

/// The ":name" of each embedded scenario.
QStringList embeddedNames();

/// Name of the scenario without a configuration.
QString defaultScenarioName();

} // namespace orv::simulated
