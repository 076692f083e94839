// SPDX-License-Identifier: BSD-3-Clause
#include "tests/cli/SpanletProcess.h"
#include "tests/support/FileTree.h"

#include <gmock/gmock.h>

using namespace testing;

namespace {

/// A run of "list" with a configuration file of this content.
struct ConfiguredRun {
    ConfiguredRun(const std::string& content, const char* variable, const std::string& options)
        : spanlet(QLatin1String(variable)) {
        files.write("spanlet/spanlet.conf", content);
        spanlet.useConfiguration(QString::fromStdString(files.root().string()));
        code = spanlet.run("list --names " + options);
    }

    FileTree files;
    SpanletProcess spanlet;
    int code = -1;
};

TEST(ConfigurationFile, countsWhereNeitherOptionNorEnvironmentNamesCameras) {
    const struct {
        const char* content;
        const char* variable;
        const char* options;
        const char* message;
    } cases[] = {
        {"cameras=simulated\n", "", "", ""},
        {"; none\n", "", "", ""},
        {"cameras=real\n", "", "",
         R"(spanlet.conf: cameras takes "simulated" or "genicam", not "real".)"},
        {"cameras=real, too\n", "", "", R"(not "real,too".)"},
        {"cameras=\n", "", "", R"(not "".)"},
        {"cameras=real\n", "simulated", "", ""},
        {"cameras=simulated\n", "real", "", "SPANLET_CAMERAS takes"},
        {"cameras=real\n", "real", "--cameras simulated", ""},
        {"cameras=real\n", "", "--config :empty", ""},
        {"camreas=genicam\n", "", "", R"(spanlet.conf: There is no key "camreas".)"},
        {"cameras=simulated\n[more]\nseed=1\n", "", "", R"(There is no key "more/seed".)"},
        {"simulated\n", "", "", "spanlet.conf has a line that is not a setting"},
    };
    for (const auto& [content, variable, options, message] : cases) {
        ConfiguredRun run(content, variable, options);
        EXPECT_EQ(run.code, *message == '\0' ? 0 : 2) << content << run.spanlet.err();
        EXPECT_THAT(run.spanlet.err(), HasSubstr(message)) << content;
    }
}

} // namespace
