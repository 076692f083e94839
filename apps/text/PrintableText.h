// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QString>

/// \p text with a question mark for each control character and each half of a surrogate pair that
/// stands alone: a camera's texts may contain them, they would move a terminal's cursor, and no XML
/// file may have them. Thread-safe.
QString printableText(QString text);
