// SPDX-License-Identifier: BSD-3-Clause
#include "tests/cli/SpanletProcess.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <gmock/gmock.h>

#include <map>
#include <set>

using namespace testing;

namespace {

std::set<std::string> optionsOf(const std::string& help) {
    const Texts options = matches(help.substr(help.find("Options:")), "--[a-z][a-z-]+");
    return {options.begin(), options.end()};
}

/// What the shell that is the parameter offers behind a command line.
class Completion : public TestWithParam<std::string> {
protected:
    void SetUp() override {
        if (QStandardPaths::findExecutable(QString::fromStdString(GetParam())).isEmpty())
            GTEST_SKIP() << GetParam() << " is not installed";
    }

    static Texts offered(const std::string& arguments) {
        static const std::map<std::string, QString> scripts{
            {"bash", QStringLiteral("source " COMPLETION_FOLDER "/spanlet.bash; COMP_LINE=$1;"
                                    "COMP_POINT=${#1}; COMP_WORDBREAKS=': '; _spanlet;"
                                    "printf '%s\\n' \"${COMPREPLY[@]}\"")},
            {"zsh", QStringLiteral("compadd() { shift; set -- ${(M)@:#$PREFIX*}; print -rl -- $@;"
                                   "(( $# )) };"
                                   "compset() { PREFIX=${PREFIX##${~2}} };"
                                   "words=(${(z)1}); [[ $1 != *' ' ]] || words+=('');"
                                   "CURRENT=$#words; PREFIX=$words[-1];"
                                   "source " COMPLETION_FOLDER "/_spanlet")}};
        QProcess shell;
        shell.start(QString::fromStdString(GetParam()),
                    {QStringLiteral("-efc"), scripts.at(GetParam()), QStringLiteral("test"),
                     QStringLiteral(SPANLET_FILE " ") + QString::fromStdString(arguments)});
        EXPECT_TRUE(shell.waitForFinished());
        EXPECT_EQ(shell.readAllStandardError().toStdString(), "") << arguments;
        // bash completes what follows a colon, zsh what follows a comma.
        return matches(shell.readAllStandardOutput().toStdString(),
                       GetParam() == "bash" ? "^(?:.*,)?(.+)$" : "^(?:.*:)?(.+)$");
    }
};

std::string manPageText() {
    QFile file(QStringLiteral(MAN_PAGE_FILE));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll().replace("\\-", "-").toStdString();
}

TEST(Documentation, manPageTellsCommandsAndTheirOptions) {
    const std::string manPage = manPageText();
    const Texts explained = matches(manPage, "--[a-z][a-z-]+");
    const std::string help = textOf("--help");
    EXPECT_EQ(matches(help, "^.{80,}$"), Texts()) << "it fits a terminal";
    const Texts names = matches(help, "^  ([a-z-]+) ");
    EXPECT_EQ(names.size(), 17U);
    EXPECT_EQ(textOf("help"), help);
    for (const std::string& name : names) {
        SCOPED_TRACE(name);
        EXPECT_FALSE(matches(manPage, ("[BIf ]" + name + "\\b").c_str()).empty());
        const std::string its = textOf(name + " --help");
        EXPECT_EQ(textOf("help " + name), its);
        EXPECT_THAT(its, HasSubstr("\nExamples:\n  spanlet " + name));
        EXPECT_GE(optionsOf(its).size(), 6U);
        EXPECT_THAT(explained, IsSupersetOf(optionsOf(its)));
    }
}

TEST(Documentation, examplesRunAsTyped) {
    const std::string manPage = manPageText();
    const Texts first = matches(manPage.substr(manPage.find("\n.SH EXAMPLES")), "^spanlet (.+)$");
    std::set<std::string> examples(first.begin(), first.end());
    for (const std::string& name : matches(textOf("help"), "^  ([a-z-]+) ")) {
        // Their cameras are real; RealCameraCommandsTest.cpp runs their examples.
        if (name == "set-ip" || name == "observe")
            continue;
        const Texts its = matches(textOf("help " + name), "^  spanlet (.+)$");
        examples.insert(its.begin(), its.end());
    }
    EXPECT_GT(examples.size(), 15U);
    const QTemporaryDir folder;
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(folder.path()));
    // The examples of "restore" come before those of "save".
    textOf("save cameras.json GEV-21017 GEV-21018");
    QElapsedTimer timer;
    for (const std::string& example : examples) {
        // The file of other cameras would keep them.
        if (example.rfind("save", 0) == 0)
            QFile::remove(QStringLiteral("cameras.json"));
        timer.start();
        EXPECT_NE(textOf(example), "");
        EXPECT_LT(timer.elapsed(), 10000) << example;
    }
    QDir::setCurrent(before);
}

TEST_P(Completion, offersCommandsAndOptions) {
    const Texts names = matches(textOf("help"), "^  ([a-z-]+) ");
    EXPECT_THAT(offered(""), IsSupersetOf(names));
    for (const std::string& name : names)
        EXPECT_THAT(offered(name + " -"), IsSupersetOf(optionsOf(textOf("help " + name)))) << name;
    EXPECT_THAT(offered("--config list "), Contains("benchmark")) << "list is a value";
}

TEST_P(Completion, offersWhatThereIs) {
    const std::pair<std::string, Texts> cases[] = {
        {"list --cameras ", {"simulated", "genicam"}},
        {"list --cameras=", {"simulated", "genicam"}},
        {"benchmark --interface GEV-", {"GEV-enp3s0", "GEV-enp5s0"}},
        {"benchmark --config :oversubscribed --interface GEV-", {"GEV-enp3s0", "GEV-enp4s0"}},
        {"autoset --lock GEV-21018,GEV-20", {"GEV-20844"}},
        {"plan --lock GEV-21018 --rate GEV-21", {"GEV-21017=", "GEV-21018="}},
        {"get GEV-3", {"GEV-30411", "GEV-30412"}},
        {"get --config=:empty ", offered("get --")},
        {"get --config nowhere GEV-3", {}},
        {"set 21017 Width 640 Stream0:GVSPDr", {"GVSPDriver"}},
        {"run 21017 TriggerS", {"TriggerSoftware"}},
        {"set-ip GEV-3", {"GEV-30411", "GEV-30412"}},
        {"set-ip GEV-30411 a", {"auto"}},
        {"save a.json GEV-3", {"GEV-30411", "GEV-30412"}},
        {"restore a.json GEV-3", {"GEV-30411", "GEV-30412"}},
        {"help wat", {"watch"}}};
    for (const auto& [line, expected] : cases)
        EXPECT_EQ(offered(line), expected) << line;
    Texts scenarios;
    for (const QFileInfo& file :
         QDir(QStringLiteral(SCENARIO_FOLDER)).entryInfoList({QStringLiteral("*.json")}))
        scenarios.push_back(file.baseName().toStdString());
    EXPECT_GE(scenarios.size(), 5U);
    EXPECT_THAT(offered("list --config :"), IsSupersetOf(scenarios));
}

INSTANTIATE_TEST_SUITE_P(Shell, Completion, Values("bash", "zsh"),
                         [](const auto& shell) { return shell.param; });

} // namespace
