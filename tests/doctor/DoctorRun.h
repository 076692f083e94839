// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "tests/cli/SpanletProcess.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

/// What the program finds: "severity check subject" to the cure.
using Cures = std::map<std::string, std::string>;

/// Runs the program for real cameras. The exit code must tell whether there is an error.
inline Cures examine() {
    SpanletProcess spanlet;
    const int code = spanlet.run("doctor --json --cameras genicam");
    EXPECT_EQ(spanlet.err(), "");
    Cures cures;
    bool hasError = false;
    for (const QJsonValue& finding : spanlet.json()[QStringLiteral("findings")].toArray()) {
        const auto text = [&](const char* key) {
            return finding[QLatin1String(key)].toString().toStdString();
        };
        hasError = hasError || text("severity") == "error";
        cures[text("severity") + ' ' + text("check") + ' ' + text("subject")] = text("cure");
    }
    EXPECT_EQ(code, hasError ? 1 : 0);
    return cures;
}

inline std::vector<std::string> titlesOf(const Cures& cures) {
    std::vector<std::string> titles;
    for (const auto& [title, cure] : cures)
        titles.push_back(title);
    return titles;
}

/// Runs a cure as it is typed; this user is root.
inline void apply(std::string cure) {
    ASSERT_NE(cure, "");
    for (std::size_t at = 0; (at = cure.find("sudo ", at)) != std::string::npos;)
        cure.erase(at, 5);
    const std::string folder = std::filesystem::path(SPANLET_FILE).parent_path().string();
    cure = "PATH=" + folder + ":$PATH SPANLET_CAMERAS=genicam; export PATH SPANLET_CAMERAS; " +
           cure + " > /dev/null";
    EXPECT_EQ(std::system(cure.c_str()), 0) << cure;
}
