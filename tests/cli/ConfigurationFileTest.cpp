// SPDX-License-Identifier: BSD-3-Clause
#include "tests/cli/SpanletProcess.h"
#include "tests/support/FileTree.h"

#include <gmock/gmock.h>

using testing::HasSubstr;

namespace {

TEST(ConfigurationFile, countsWhereNeitherOptionNorEnvironmentNamesCameras) {
    const struct {
        const char* content;
        const char* variable;
        const char* options;
        const char* message;
    } cases[] = {
        {"cameras=simulated\n", "", "", ""},
        {"cameras=real\n", "", "",
         R"(spanlet.conf: cameras takes "simulated" or "genicam", not "real".)"},
        {"cameras=real, too\n", "", "", R"(not "real,too".)"},
        {"cameras=real\n", "simulated", "", ""},
        {"cameras=simulated\n", "real", "", "SPANLET_CAMERAS takes"},
        {"cameras=real\n", "real", "--cameras simulated", ""},
        {"cameras=real\n", "", "--config :empty", ""},
        {"camreas=genicam\n", "", "", R"(spanlet.conf: There is no key "camreas".)"},
        {"cameras=simulated\n[more]\nseed=1\n", "", "", R"(There is no key "more/seed".)"},
        {"simulated\n", "", "", "spanlet.conf has a line that is not a setting"},
    };
    for (const auto& [content, variable, options, message] : cases) {
        const FileTree files;
        files.write("spanlet.conf", content);
        SpanletProcess spanlet{QLatin1String(variable)};
        spanlet.useConfiguration(QString::fromStdString(files.root().string()));
        EXPECT_EQ(spanlet.run(std::string("list --names ") + options), *message == '\0' ? 0 : 2)
            << content << spanlet.err();
        EXPECT_THAT(spanlet.err(), HasSubstr(message)) << content;
    }
}

} // namespace
