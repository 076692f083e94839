// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QString>

#include <cstdio>

namespace viewer {

/// Connects the standard output and error streams to the console of the program that started this
/// one. Windows gives a program with windows none of them. A stream that was redirected to a file,
/// a pipe or the null device stays there. No effect on other systems and without such a console.
/// Call it before anything is written.
void attachParentConsole();

/// Writes \p text: to a Windows console as it is, whatever its code page, and else in UTF-8.
void writeText(std::FILE* stream, const QString& text);

} // namespace viewer
