// SPDX-License-Identifier: BSD-3-Clause
// Checks of what a camera says of itself, before the library reads it.
#include "orvcpp/aravis/device/DescriptionSource.h"
#include "orvcpp/aravis/device/ParserGate.h"
#include "orvcpp/core/DescriptionCheck.h"
#include "tests/orvcpp/aravis/DescriptionTexts.h"

#include <gmock/gmock.h>

#include <chrono>
#include <fstream>
#include <future>
#include <iterator>

namespace {

using namespace orv;
using namespace orv::aravis;
using namespace testing;
using descriptions::chain;
using descriptions::described;

std::string faultOf(const std::string& description) {
    return descriptionFault(description.data(), description.size());
}

std::string builtIn() {
    std::ifstream file(FAKE_CAMERA_DESCRIPTION);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST(Description, isRefusedWhereItWouldEndOrStallTheLibrary) {
    const std::string itself = R"(the value of node "A" depends on itself)";
    const std::string reg = "<Address>0</Address><pPort>P</pPort>";
    const std::pair<std::string, std::string> cases[] = {
        {"<Integer Name='A'><pValue> A </pValue></Integer>", itself},
        {"<Integer Name='A'><pValue>B</pValue></Integer><Float Name='B'><pValue>A</pValue></Float>",
         itself},
        {"<IntReg Name='A'><pIndex pOffset='A'>B</pIndex></IntReg>", itself},
        {"<IntReg Name='A'><IntSwissKnife Name='B'><pVariable Name='X'>A</pVariable>"
         "</IntSwissKnife></IntReg>",
         itself},
        {"<StructReg Name='R'><pAddress>A</pAddress><StructEntry Name='A'/></StructReg>",
         R"(the value of node "R" depends on itself)"},
        {"<x:Integer Name='A'><pValue>A</pValue></x:Integer>", itself},
        {"<Integer Name='A&#10;Info:'><pValue>A&#10;Info:</pValue></Integer>",
         R"(the value of node "A Info:" depends on itself)"},
        {chain("<Integer Name='%'><pValue>@</pValue></Integer>", 250), "a chain of more than 200"},
        {chain("<SwissKnife Name='%'><pVariable Name='X'>@</pVariable><pVariable Name='Y'>@"
               "</pVariable></SwissKnife>",
               30),
         "takes more than a million evaluations"},
        {chain("<IntConverter Name='%'><pValue>@</pValue></IntConverter>", 30),
         "takes more than a million evaluations"},
        {"<IntReg Name='A'>" + reg + "<Length>-1</Length></IntReg>", R"("A" has -1 bytes)"},
        {"<FloatReg Name='A'>" + reg + "<Length>0x100000000</Length></FloatReg>", "bytes"},
        {"<IntReg Name='A'>" + reg + "<pLength>L</pLength></IntReg><IntReg Name='L'/>",
         R"(the length of the register "A" is not limited)"},
        {"<Integer Name='L'><Value>-1</Value></Integer><IntReg "
         "Name='A'><pLength>L</pLength></IntReg>",
         "not limited"},
        {"<Integer Name='A'><pValue>A<![CDATA[B]]></pValue></Integer>", "CDATA"},
        {"<Integer Name='A'><pValue>A<b/>B</pValue></Integer>", "has elements"},
        {"<Integer Name='A'>", "line 1: "},
        {std::string(200'000, '<'), "line 1: "},
        {descriptions::repeated("<a>", 100'000), "more than 64 elements are nested"},
    };
    for (const auto& [nodes, fault] : cases)
        EXPECT_THAT(faultOf(described(nodes)), HasSubstr(fault)) << nodes.substr(0, 200);
    for (const std::string kind :
         {"pAddress", "pIndex", "pLength", "pVariable", "pValueIndexed", "pValueDefault"})
        EXPECT_EQ(faultOf(described("<Float Name='A'><" + kind + ">A</" + kind + "></Float>")),
                  itself);
    EXPECT_THAT(faultOf("<!DOCTYPE x [<!ENTITY a 'aaaaaaaa'>]>" + described("&a;")),
                HasSubstr("declares entities"));
    EXPECT_EQ(faultOf(""), "it is empty");
    EXPECT_EQ(faultOf(std::string(largestDescription + 1, ' ')), "it has 16777217 bytes");
}

TEST(Description, isAcceptedWithReferencesThatEnd) {
    EXPECT_EQ(faultOf(builtIn()), "");
    EXPECT_EQ(faultOf(builtIn() + std::string(3, '\0')), "") << "padded to words";
    // Bounds and availability of two features depend on the value of the other.
    EXPECT_EQ(faultOf(described(
                  "<Integer Name='Width'><pValue>W</pValue><pMax>WidthMax</pMax>"
                  "<pIsAvailable>Width</pIsAvailable><pSelected>Width</pSelected></Integer>"
                  "<Integer Name='OffsetX'><pValue>O</pValue><pMax>OffsetMax</pMax></Integer>"
                  "<IntSwissKnife Name='WidthMax'><pVariable Name='X'>OffsetX</pVariable>"
                  "</IntSwissKnife><IntSwissKnife Name='OffsetMax'><pVariable Name='X'>Width"
                  "</pVariable></IntSwissKnife><Category Name='Root'><pFeature>Root</pFeature>"
                  "</Category><IntReg Name='W'><pLength>L</pLength></IntReg>"
                  "<Integer Name='L'><Value>4</Value></Integer>")),
              "");
    EXPECT_EQ(faultOf(described(chain("<Integer Name='%'><pValue>@</pValue></Integer>", 150))), "");
}

TEST(Description, ofAHundredThousandNodesIsCheckedInASecond) {
    const std::string nodes = chain(
        "<Integer Name='%'/><IntReg Name='R%'><pIndex>%</pIndex><pMax>@</pMax></IntReg>", 50'000);
    const auto begun = std::chrono::steady_clock::now();
    EXPECT_EQ(faultOf(described(nodes)), "");
    EXPECT_LT(std::chrono::steady_clock::now() - begun, std::chrono::seconds(5))
        << "sanitizers too";
}

TEST(DescriptionPlace, isReadFromAnAddressAndASizeOnly) {
    const auto place = parseDescriptionUrl("LOCAL:///Cam;1.ZIP;0x10000;1A2b?SchemaVersion=1.1.0");
    EXPECT_FALSE(place) << "a name has no semicolon";
    const auto archive = parseDescriptionUrl("LOCAL:///Cam.ZIP;0x10000;1A2b?SchemaVersion=1.1.0");
    ASSERT_TRUE(archive);
    EXPECT_EQ(archive->address, 0x10000U);
    EXPECT_EQ(archive->size, 0x1A2BU);
    EXPECT_TRUE(archive->isArchive);
    EXPECT_FALSE(parseDescriptionUrl("local:zip.xml;0;1").value().isArchive);
    for (const char* url : {"", "x", "File:/dev/zero", "Local:", "Local:a;g;h", "Local:a;1",
                            "Local:a;1;-1", "Local:a;1;100000000", "Local:a;1; 1", "Local:a;1;1;1"})
        EXPECT_FALSE(parseDescriptionUrl(url)) << url;
}

TEST(DescriptionArchive, isRefusedWithPartsOutside) {
    const std::vector<std::uint8_t> good = descriptions::archive("F.xml", "<x/>");
    EXPECT_EQ(archiveFault(good), "");
    EXPECT_NE(archiveFault({'P', 'K', 5, 6}), "");
    // Every number of the archive's directory that is wrong by much.
    const std::size_t entry = 30 + 5 + 4;
    const std::size_t end = entry + 46 + 5;
    for (const std::size_t highByte :
         {std::size_t{27}, entry + 23, entry + 27, entry + 29, entry + 31, entry + 45, end + 9,
          end + 11, end + 15, end + 19})
        for (const std::uint8_t value : std::vector<std::uint8_t>{0x01, 0x80, 0xFF}) {
            auto broken = good;
            broken[highByte] = value;
            EXPECT_NE(archiveFault(broken), "") << highByte;
        }
    for (auto cut = good; !cut.empty();) {
        cut.pop_back();
        EXPECT_NE(archiveFault(cut), "") << cut.size();
    }
    auto twoEnds = good;
    twoEnds.insert(twoEnds.end(), good.end() - 22, good.end());
    EXPECT_NE(archiveFault(twoEnds), "");
}

TEST(ParserGate, admitsOneAfterAnotherAndNobodyWaitsForAStuckOne) {
    using namespace std::chrono_literals;
    ParserGate gate;
    const auto first = std::make_shared<ParserGate::Ticket>("first");
    const auto enter = [&gate](const std::shared_ptr<ParserGate::Ticket>& ticket) {
        return std::async(std::launch::async, [&gate, ticket] {
            std::string stuck;
            return gate.enter(ticket, stuck) ? "inside" : "behind " + stuck;
        });
    };
    const auto newTicket = [] {
        return std::make_shared<ParserGate::Ticket>("other");
    };
    ASSERT_EQ(enter(first).get(), "inside");
    const auto impatient = newTicket();
    auto second = enter(newTicket());
    auto third = enter(impatient);
    EXPECT_EQ(second.wait_for(50ms), std::future_status::timeout);
    gate.giveUp(*impatient);
    EXPECT_EQ(third.get(), "behind ");
    gate.leave();
    EXPECT_EQ(second.get(), "inside");
    gate.leave();

    ASSERT_EQ(enter(first).get(), "inside");
    second = enter(newTicket());
    gate.giveUp(*first);
    if (second.wait_for(10s) != std::future_status::ready) {
        gate.leave();
        FAIL() << "it waits";
    }
    EXPECT_EQ(second.get(), "behind first");
    EXPECT_EQ(enter(newTicket()).get(), "behind first");
    gate.leave();
    EXPECT_EQ(enter(newTicket()).get(), "inside");
}

} // namespace
