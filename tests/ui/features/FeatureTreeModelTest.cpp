// SPDX-License-Identifier: BSD-3-Clause
#include "ui/features/FeatureTreeModel.h"

#include "features/FeatureMetaTypes.h"
#include "logging/QtMessageHandler.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/FakeFeatureController.h"
#include "tests/support/TextTree.h"
#include "tests/ui/features/FeatureTreeWindow.h"
#include "ui/features/FeatureTreeProxyModel.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QtWidgets>

#include <gmock/gmock.h>

namespace {

using namespace testing;

QModelIndex valueOf(const QAbstractItemModel& model, const char* name) {
    return rowIn(model, name).siblingAtColumn(FeatureTreeModel::ValueColumn);
}

TEST(BasicTreeItem, insertsARowBeyondEitherEndAtThatEnd) {
    BasicTreeItem parent;
    for (const auto& [row, number] : {std::pair(99, 2), {-5, 0}, {1, 1}})
        parent.insertChild(row, std::make_unique<BasicTreeItem>(QVector<QVariant>{number}));
    for (int row = 0; row < 3; ++row)
        EXPECT_EQ(parent.child(row)->value(0), row);
}

class FeatureTree : public testing::Test {
protected:
    FeatureTree() {
        m_features->add("Transport Layer", "", "Version", OrvFeatureDataString, std::string("1.2"));
        m_features->add("Camera", "/A/C", "Width", OrvFeatureDataInt, std::int64_t{640});
        m_features->add("Camera", "/A/B", "Rate", OrvFeatureDataFloat, 2.5);
        m_features->add("Camera", "/A/B", "Enable", OrvFeatureDataBool, true);
        m_features->add("Camera", "/A", "Load", OrvFeatureDataCommand).readable = false;
        m_features->add("Stream0", "/X", "Lost", OrvFeatureDataInt, std::int64_t{3});
        m_features->add("Stream0", "/Y", "Width", OrvFeatureDataInt, std::int64_t{7});
        m_features->add("Stream1", "//X", "Kept").displayName.clear();
        m_features->add("Stream1", "/X", "Lost").readable = false;
        m_model.setupModelData();
    }

    /// The rows that a view shows when everything is expanded; \p settings is the filter file.
    std::string filtered(const QByteArray& settings, bool active = true) {
        const QTemporaryDir folder;
        const QString name = folder.filePath(QStringLiteral("filter.json"));
        if (!settings.isNull()) {
            QFile file(name);
            EXPECT_TRUE(file.open(QIODevice::WriteOnly));
            file.write(settings);
        }
        FeatureTreeProxyModel proxy(name);
        const QAbstractItemModelTester tester(&proxy);
        EXPECT_FALSE(proxy.isActive());
        proxy.setActive(active);
        proxy.setRecursiveFilteringEnabled(true);
        proxy.setSourceModel(&m_model);
        return textTree(proxy);
    }

    std::shared_ptr<FakeFeatureController> m_features = std::make_shared<FakeFeatureController>(
        std::vector<std::string>{"Transport Layer", "Interface", "Camera", "Stream0", "Stream1"});
    FeatureTreeModel m_model{m_features};
    QAbstractItemModelTester m_tester{&m_model};
};

TEST_F(FeatureTree, groupsFeaturesByModuleAndCategoryPath) {
    EXPECT_EQ(textTree(m_model), "Transport Layer\n"
                                 "  The Version | 1.2\n"
                                 "Interface\n"
                                 "Camera\n"
                                 "  A\n"
                                 "    The Load | [ COMMAND ]\n"
                                 "    B\n"
                                 "      The Rate | 2.5\n"
                                 "      The Enable | true\n"
                                 "    C\n"
                                 "      The Width | 640\n"
                                 "Stream0\n"
                                 "  X\n"
                                 "    The Lost | 3\n"
                                 "  Y\n"
                                 "    The Width | 7\n"
                                 "Stream1\n"
                                 "  X\n"
                                 "    Kept | 0\n"
                                 "    The Lost\n");
    m_model.setupModelData();
    EXPECT_EQ(m_model.rowCount(), 5);
}

TEST_F(FeatureTree, changesTheTextsOfItsHorizontalHeaderOnly) {
    qRegisterMetaType<Qt::Orientation>();
    const QSignalSpy changed(&m_model, &QAbstractItemModel::headerDataChanged);
    const QVariant text = QStringLiteral("New");
    EXPECT_FALSE(m_model.setHeaderData(0, Qt::Vertical, text, Qt::DisplayRole));
    EXPECT_FALSE(m_model.setHeaderData(0, Qt::Horizontal, text, Qt::EditRole));
    for (const int beyond : {-1, 2})
        EXPECT_FALSE(m_model.setHeaderData(beyond, Qt::Horizontal, text, Qt::DisplayRole));
    EXPECT_TRUE(changed.isEmpty());
    EXPECT_EQ(m_model.headerData(1, Qt::Horizontal), QString());
    EXPECT_TRUE(m_model.setHeaderData(1, Qt::Horizontal, text, Qt::DisplayRole));
    EXPECT_EQ(changed.size(), 1);
    EXPECT_EQ(m_model.headerData(1, Qt::Horizontal), text);
    EXPECT_EQ(m_model.headerData(0, Qt::Horizontal), QStringLiteral("Feature"));
    // Room for two bold lines.
    const QFont font = m_model.headerData(0, Qt::Horizontal, Qt::FontRole).value<QFont>();
    EXPECT_EQ(font.weight(), 75);
    EXPECT_EQ(m_model.headerData(0, Qt::Horizontal, Qt::SizeHintRole).toSize(),
              QSize(100, QFontMetrics(font).height() * 2 + 20));
}

TEST_F(FeatureTree, sortsAllButTheModulesAsTheLocaleDoes) {
    m_features->features[{"Camera", "Enable"}].displayName = "\u00e4 Enable";
    EXPECT_THAT(filtered("{}", false), testing::StartsWith("Transport Layer\n"
                                                           "  The Version | 1.2\n"
                                                           "Interface\n"
                                                           "Camera\n"
                                                           "  A\n"
                                                           "    B\n"
                                                           "      \u00e4 Enable | true\n"
                                                           "      The Rate | 2.5\n"
                                                           "    C\n"
                                                           "      The Width | 640\n"
                                                           "    The Load | [ COMMAND ]\n"
                                                           "Stream0\n"));
}

TEST_F(FeatureTree, isFilteredByNamesAndByCategoriesOfModules) {
    EXPECT_EQ(filtered(R"({"FeaturesFilter": ["Width", "load", 5], "CategoriesFilter":
                           ["Stream:/X", "Camera:/B", "Stream0:/Y"], "Other": 1})"),
              "Transport Layer\nInterface\n"
              "Camera\n"
              "  A\n"
              "    B\n"
              "    C\n"
              "      The Width | 640\n"
              "Stream0\n"
              "  X\n"
              "    The Lost | 3\n"
              "  Y\n"
              "    The Width | 7\n"
              "Stream1\n"
              "  X\n"
              "    The Lost\n");
}

TEST_F(FeatureTree, isFilteredToNothingByAFileThatCannotBeUsed) {
    const CapturedLog log;
    qInstallMessageHandler(qtMessageHandler);
    for (const char* content : {R"({"FeaturesFilter": "Width", "CategoriesFilter": {}})", "[1]"})
        EXPECT_EQ(filtered(content), "") << content;
    EXPECT_EQ(log.text(), "");
    EXPECT_EQ(filtered(R"({"FeaturesFilter": )"), "");
    EXPECT_EQ(filtered({}), "");
    qInstallMessageHandler(nullptr);
    const std::string missing = "Warning:WARN: Couldn't open file with 'Presets'. ";
    ASSERT_THAT(log.lines(),
                ElementsAre(_, StartsWith("Warning:JSON parse error: '%s'"), StartsWith(missing)));
    EXPECT_TRUE(
        QDir::isAbsolutePath(QString::fromStdString(log.lines().back().substr(missing.size()))));
}

TEST_F(FeatureTree, filtersWithoutAskingForFeatures) {
    EXPECT_NE(QMetaType::type("FeatureInfo"), int{QMetaType::UnknownType});
    filtered(R"({"FeaturesFilter": ["None"]})");
    EXPECT_THAT(m_features->reads, IsEmpty());
    EXPECT_THAT(m_features->outlines, IsEmpty());
    filtered(R"({"FeaturesFilter": ["Lost"]})");
    EXPECT_THAT(m_features->reads, ElementsAre(Pair("Lost", 2)));
}

TEST_F(FeatureTree, readsADescriptionOnceUntilAWrite) {
    const QModelIndex rate = valueOf(m_model, "The Rate");
    EXPECT_THAT(m_features->reads, IsEmpty());
    EXPECT_EQ(rate.data(FeatureTreeModel::InfoRole).value<FeatureInfo>().category, "/A/B");
    EXPECT_THAT(m_features->reads, IsEmpty());
    // A second reading must not change the category: the filter needs it.
    m_features->features[{"Camera", "Rate"}].category.clear();
    textTree(m_model);
    textTree(m_model);
    EXPECT_EQ(m_features->reads["Rate"], 1);
    EXPECT_EQ(m_features->outlines["Rate"], 1);
    const auto info = rate.data(FeatureTreeModel::InfoRole).value<FeatureInfo>();
    EXPECT_EQ(info.displayName, "The Rate");
    EXPECT_EQ(info.category, "/A/B");

    m_features->onWrite = [this] {
        m_features->features[{"Camera", "Rate"}].value = 9.5;
        m_features->features[{"Camera", "Rate"}].writable = false;
    };
    const QModelIndex width = valueOf(m_model, "The Width");
    const QSignalSpy changes(&m_model, &QAbstractItemModel::dataChanged);
    m_features->reads.clear();
    EXPECT_TRUE(m_model.setData(width, 800));
    EXPECT_THAT(m_features->reads, IsEmpty());
    EXPECT_GT(changes.count(), 0);
    EXPECT_EQ(rate.data(), 9.5);
    EXPECT_FALSE(m_model.flags(rate).testFlag(Qt::ItemIsEditable));
    EXPECT_EQ(width.data(), 800);
    EXPECT_THAT(m_features->reads, ElementsAre(Pair("Rate", 1), Pair("Width", 1)));
}

TEST_F(FeatureTree, tellsFeaturesFromGroups) {
    m_features->features[{"Camera", "Rate"}].writable = false;
    m_features->features[{"Camera", "Rate"}].toolTip = "a < b & c";
    const QModelIndex group = rowIn(m_model, "A");
    const QModelIndex width = rowIn(m_model, "The Width");
    const QModelIndex rate = rowIn(m_model, "The Rate");
    EXPECT_EQ(group.data(Qt::FontRole).value<QFont>().weight(), QFont::Bold);
    EXPECT_FALSE(group.siblingAtColumn(1).data(Qt::FontRole).isValid());
    EXPECT_FALSE(width.data(Qt::FontRole).isValid());
    EXPECT_FALSE(group.data(FeatureTreeModel::InfoRole).isValid());
    EXPECT_FALSE(group.data(Qt::ToolTipRole).isValid());
    EXPECT_EQ(width.data(Qt::ForegroundRole).value<QColor>(), QColor(QStringLiteral("#006400")));
    EXPECT_FALSE(width.siblingAtColumn(1).data(Qt::ForegroundRole).isValid());
    EXPECT_FALSE(rate.data(Qt::ForegroundRole).isValid());
    EXPECT_EQ(rate.data(Qt::ToolTipRole), QStringLiteral("<b>Rate</b><br>a &lt; b &amp; c"));

    const Qt::ItemFlags base = Qt::ItemIsSelectable | Qt::ItemIsEnabled;
    EXPECT_EQ(group.flags(), base);
    EXPECT_EQ(width.flags(), base);
    EXPECT_EQ(width.siblingAtColumn(1).flags(), base | Qt::ItemIsEditable);
    EXPECT_EQ(rate.flags(), Qt::ItemIsSelectable);
    EXPECT_EQ(rate.siblingAtColumn(1).flags(), Qt::ItemIsSelectable);
}

TEST_F(FeatureTree, writesTheRepresentationsOfIntegers) {
    const std::vector<std::tuple<const char*, FeatureValue, QVariant>> cases{
        {"HexNumber", std::int64_t{0xAB01}, QStringLiteral("ab01")},
        {"HexNumber", std::int64_t{-1}, QStringLiteral("ffffffffffffffff")},
        {"IPV4Address", std::int64_t{0x1C0A80A01}, QStringLiteral("192.168.10.1")},
        {"MACAddress", std::int64_t{0x00FF02000A0B0C0D}, QStringLiteral("02:00:0a:0b:0c:0d")},
        {"_HexNumber_", std::int64_t{16}, QStringLiteral("10")},
        {"MACAddress", std::string("no integer"), QVariant()},
        {"HexNumber", 2.5, QVariant()},
        {"Linear", std::int64_t{16}, 16},
    };
    for (std::size_t i = 0; i < cases.size(); ++i) {
        const auto& [representation, value, text] = cases[i];
        const std::string name = "F" + std::to_string(i);
        m_features->add("Camera", "", name, OrvFeatureDataInt, value).representation =
            representation;
        m_model.setupModelData();
        EXPECT_EQ(valueOf(m_model, ("The " + name).c_str()).data(), text) << representation;
    }
}

TEST_F(FeatureTree, writesValuesInTheTypeThatTheFeatureHas) {
    const std::vector<std::tuple<const char*, QVariant, FeatureValue>> cases{
        {"Width", QStringLiteral("800"), std::int64_t{800}},
        {"Rate", 3, 3.0},
        {"Enable", false, false},
        {"Version", 2, std::string("2")},
    };
    for (const auto& [name, value, written] : cases) {
        const QModelIndex index = valueOf(m_model, (std::string("The ") + name).c_str());
        EXPECT_FALSE(m_model.setData(index, index.data())) << name;
        EXPECT_THAT(m_features->written, IsEmpty());
        EXPECT_TRUE(m_model.setData(index, value)) << name;
        EXPECT_THAT(m_features->written, ElementsAre(Pair(name, written)));
        EXPECT_EQ(index.data(FeatureTreeModel::InfoRole).value<FeatureInfo>().value, written);
        EXPECT_EQ(index.data(), value);
        m_features->written.clear();
    }
    m_features->refuses = true;
    const QModelIndex width = valueOf(m_model, "The Width");
    EXPECT_FALSE(m_model.setData(width, 5));
    EXPECT_EQ(width.data(), 800);
    m_features->refuses = false;
    EXPECT_FALSE(m_model.setData(width.siblingAtColumn(0), 5));
    EXPECT_FALSE(m_model.setData(valueOf(m_model, "A"), 5));
    EXPECT_FALSE(m_model.setData(width, 5, Qt::DisplayRole));
    EXPECT_THAT(m_features->written, IsEmpty());
}

TEST_F(FeatureTree, runsACommandForAnythingButFalse) {
    const QModelIndex command = valueOf(m_model, "The Load");
    EXPECT_FALSE(m_model.setData(command, false));
    EXPECT_THAT(m_features->commands, IsEmpty());
    EXPECT_TRUE(m_model.setData(command, true));
    m_features->refuses = true;
    textTree(m_model);
    m_features->reads.clear();
    EXPECT_FALSE(m_model.setData(command, 0));
    // A command that timed out may have had its effect, too.
    textTree(m_model);
    EXPECT_EQ(m_features->reads["Rate"], 1);
    EXPECT_THAT(m_features->commands, ElementsAre(Pair("Load", 1000.0), Pair("Load", 1000.0)));
}

} // namespace
