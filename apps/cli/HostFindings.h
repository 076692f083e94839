// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "doctor/Finding.h"
#include "doctor/HostEvidence.h"

#include <QJsonObject>

namespace cli {

class Context;

/// Reads what the checks of this host and its cameras need. Closes real cameras, which send test
/// packets to the program that controls them; of a host with simulated ones, reads the links only.
/// Throws a Failure when the program is to end.
doctor::HostEvidence collectEvidence(Context& context);

/// "severity", "check", "subject", "text", and "evidence" and "cure" where there are any.
QJsonObject describeFinding(const doctor::Finding& finding);

} // namespace cli
