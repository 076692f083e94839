// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "page/Page.h"

#include <QByteArray>

namespace page {

/// The page as Markdown in UTF-8: CommonMark with the tables of GitHub Flavored Markdown. A chart
/// becomes a table of at most 25 rows, each with the means of the times around it. Reentrant.
QByteArray toMarkdown(const Page& page);

} // namespace page
