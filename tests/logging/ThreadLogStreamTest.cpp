// SPDX-License-Identifier: BSD-3-Clause
#include "logging/ThreadLogStream.h"

#include <gmock/gmock.h>

#include <memory>
#include <sstream>
#include <vector>

namespace {

using Logging::ThreadLogStream;
using testing::ElementsAre;

class ThreadLogStreamTest : public testing::Test {
protected:
    ThreadLogStreamTest() {
        QObject::connect(m_logStream.get(), &ThreadLogStream::sendLogString,
                         [this](LogMessageType type, const QString& line) {
                             EXPECT_EQ(type, LogMessageType::StdErr);
                             m_lines.push_back(line.toStdString());
                         });
    }

    std::vector<std::string> m_lines;
    std::ostringstream m_stream;
    std::streambuf* m_previous = m_stream.rdbuf();
    std::unique_ptr<ThreadLogStream> m_logStream =
        std::make_unique<ThreadLogStream>(m_stream, LogMessageType::StdErr);
};

TEST_F(ThreadLogStreamTest, emitsWhatIsCompleteAndKeepsTheRest) {
    m_stream << "A\nB";
    EXPECT_THAT(m_lines, ElementsAre("A"));
    m_stream << "b" << std::endl;
    EXPECT_THAT(m_lines, ElementsAre("A", "Bb"));
    m_stream << "\n\nC\n" << std::flush;
    m_stream.put('x').put('\xE2').put('\x82').put('\xAC').put('\n').put('y');
    EXPECT_THAT(m_lines, ElementsAre("A", "Bb", "", "", "C", "x\xE2\x82\xAC"));
    m_stream.put('\n');
    EXPECT_TRUE(m_stream.good());
    m_logStream.reset();
    EXPECT_EQ(m_lines.size(), 7U) << "nothing more at the end";
    EXPECT_EQ(m_stream.str(), "");
}

TEST_F(ThreadLogStreamTest, letsASlotWriteLinesAndThrowAndGivesTheStreamBackWhenItEnds) {
    QObject::connect(m_logStream.get(), &ThreadLogStream::sendLogString,
                     [this](LogMessageType, const QString& line) {
                         if (line == QLatin1String("first") || line == QLatin1String("end"))
                             m_stream << "from the slot\nre";
                         if (line == QLatin1String("second"))
                             throw 0;
                     });
    m_stream << "first\nsecond\n"
             << "st\nend";
    m_logStream.reset();
    EXPECT_THAT(m_lines, ElementsAre("first", "from the slot", "second", "rest", "end",
                                     "from the slot", "re"));
    EXPECT_EQ(m_stream.rdbuf(), m_previous);
    m_stream << "after\n";
    EXPECT_EQ(m_stream.str(), "after\n");
}

} // namespace
