// SPDX-License-Identifier: BSD-3-Clause
#include "tests/cli/SpanletProcess.h"
#include "tests/support/FileTree.h"

#include <gtest/gtest.h>

namespace {

TEST(FeatureFilterFile, isTheOneBesideTheProgramOrThatOfItsInstallation) {
    const FileTree files;
    const auto filtered = [&] {
        SpanletProcess spanlet(QStringLiteral("simulated"));
        spanlet.startFile(QString::fromStdString((files.root() / "bin/spanlet").string()),
                          words("features GEV-21017 --filter"));
        EXPECT_EQ(spanlet.finish(), 0) << spanlet.err();
        return matches(spanlet.out(), "^(\\w+) .* /\\w+$");
    };
    std::filesystem::create_directories(files.root() / "bin");
    std::filesystem::copy_file(SPANLET_FILE, files.root() / "bin/spanlet");
    files.write("share/spanlet/Spanlet_Settings.json", R"({"FeaturesFilter": ["Width"]})");
    EXPECT_EQ(filtered(), Texts{"Width"});
    files.write("bin/plugins/Spanlet_Settings.json", R"({"FeaturesFilter": ["Height"]})");
    EXPECT_EQ(filtered(), Texts{"Height"});
}

} // namespace
