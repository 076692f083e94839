// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "page/Page.h"

#include <QJsonObject>

namespace cli {

/// The document of the command "report" as a page: what was tested, before and after figures, where
/// frames were lost, and advice. \p explainsAll: also places where packets were lost that came
/// again.
page::Page reportPage(const QJsonObject& report, bool explainsAll);

} // namespace cli
