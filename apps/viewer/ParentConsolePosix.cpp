// SPDX-License-Identifier: BSD-3-Clause
#include "viewer/ParentConsole.h"

namespace viewer {

void attachParentConsole() {}

void writeText(std::FILE* stream, const QString& text) {
    std::fputs(text.toUtf8().constData(), stream);
    std::fflush(stream);
}

} // namespace viewer
