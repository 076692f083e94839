// SPDX-License-Identifier: BSD-3-Clause
// The command line of fake-camera, by running the program.
#include <gmock/gmock.h>

#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <string>
#include <utility>

#include <sys/wait.h>

namespace {

using namespace testing;

const std::string program = FAKE_CAMERA_PROGRAM;

/// Exit code, output and error output of a shell command.
std::pair<int, std::string> run(const std::string& command) {
    FILE* const pipe = popen(("exec 2>&1; " + command).c_str(), "r");
    std::string output;
    for (int letter = fgetc(pipe); letter != EOF; letter = fgetc(pipe))
        output += static_cast<char>(letter);
    return {WEXITSTATUS(pclose(pipe)), output};
}

std::set<std::string> optionsIn(const std::string& text) {
    const std::regex option("--[a-z][a-z-]+");
    return {std::sregex_token_iterator(text.begin(), text.end(), option), {}};
}

TEST(FakeCameraOptions, areTheSameInHelpAndManPage) {
    const auto [code, help] = run(program + " --help");
    EXPECT_EQ(code, 0);
    std::ifstream file(MAN_PAGE_FILE);
    const std::string page(std::istreambuf_iterator<char>(file), {});
    const auto options = optionsIn(help);
    EXPECT_GE(options.size(), 20U);
    EXPECT_EQ(options, optionsIn(std::regex_replace(page, std::regex(R"(\\-)"), "-")));
    for (const char* fact : {"16 to 2048 pixels; default 1024", "500 to 60000 ms; default 3000"})
        EXPECT_THAT(help, HasSubstr(fact));
    EXPECT_FALSE(std::regex_search(help, std::regex("[^\n]{81}"))) << "fits a terminal";
    EXPECT_THAT(run(program + " --version").second, StartsWith("fake-camera "));
}

TEST(FakeCameraOptions, areCheckedAndNamedInErrors) {
    const struct {
        const char* arguments;
        int exitCode;
        const char* message;
    } cases[] = {
        {"--width=15", 2, "--width: \"15\" is not a whole number from 16 to 2048 pixels\n"},
        {"--height 2049", 2, "--height: \"2049\" is not a whole number from 16 to 2048 pixels\n"},
        {"--mac 4294967296", 2, "--mac: \"4294967296\" is not a whole number from 0 to 4294967295"},
        {"--heartbeat 1e3", 2, "--heartbeat: \"1e3\" is not a whole number from 500 to 60000 ms\n"},
        {"--user-id ABCDEFGHIJKLMNOPQ", 2, "is not a text of at most 16 bytes\n"},
        {"--exposure", 2, "--exposure needs a value: a whole number from 10 to 10000000 us\n"},
        {"--widht 64", 2, "unknown option \"--widht\" (--help lists all)\n"},
        {"64", 2, "unknown option \"64\""},
        {"--limit 999999", 2, "--limit: 999999 is not within --limit-minimum and --limit-maximum"},
        {"--limit=125000001", 2, "1000000 to 125000000 bytes/s\n"},
        {"--first-frame-id 65536", 2, "--first-frame-id: 65536 is above 65535"},
        {"--address localhost", 2, "\"localhost\" is not an IPv4 address like 127.0.0.2\n"},
        {"--address 192.0.2.1", 1, "--address: no network adapter of this computer has 192.0.2.1"},
        {"--adapter nothing", 1, "--adapter: nothing: No such device\n"},
        {"--genicam /nothing", 1, "cannot read \"/nothing\": No such file or directory\n"},
        {"--genicam /dev/null", 1, "cannot read \"/dev/null\": it is empty\n"},
    };
    for (const auto& [arguments, exitCode, message] : cases) {
        EXPECT_THAT(run("timeout 10 " + program + ' ' + arguments),
                    Pair(exitCode, AllOf(StartsWith("fake-camera: "), HasSubstr(message))));
    }
}

TEST(FakeCameraOptions, cameraTellsWhatItIsAndEndsWithASignal) {
    for (const std::string signal : {"INT", "TERM"}) {
        const auto result =
            run("bash -c 'exec 3< <(exec " + program +
                " --address=127.0.0.2 --serial S7); camera=$!; read -ru3 line; echo \"$line\";" +
                program + " --address 127.0.0.2; echo \"second $?\";" + "kill -" + signal +
                " $camera; wait $camera; echo \"first $?\"'");
        EXPECT_EQ(
            result.second,
            R"(ready: GigE Vision camera "Fakeworks Fake GigE", serial number "S7", on 127.0.0.2
fake-camera: --address: port 3956 of 127.0.0.2 is in use, by another fake camera?
second 1
first 0
)") << signal;
    }
}

} // namespace
