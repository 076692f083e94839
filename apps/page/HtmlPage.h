// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "page/Page.h"

#include <QByteArray>

namespace page {

/// The page as one HTML file in UTF-8 that is well-formed XML, too. Its style and its charts are in
/// it; it has no script and refers to nothing outside. It follows the reader's choice of a light or
/// dark screen, and prints on A4. Reentrant.
QByteArray toHtml(const Page& page);

} // namespace page
