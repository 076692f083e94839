// SPDX-License-Identifier: BSD-3-Clause
#include "logging/Log.h"
#include "logging/ThreadLogStream.h"

#include <gtest/gtest.h>

#include <array>
#include <iostream>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr int threadCount = 4;
constexpr int linesPerThread = 2000;

std::string lineOf(int thread, int line) {
    return std::to_string(thread) + ' ' + std::to_string(line) + ' ' + std::string(40, 'x');
}

TEST(ThreadLogStreamThreads, KeepsTheLinesOfEachThreadWholeAndInOrder) {
    std::mutex mutex;
    std::vector<std::string> lines;
    {
        Logging::ThreadLogStream logStream(std::cout, LogMessageType::StdOut);
        QObject::connect(&logStream, &Logging::ThreadLogStream::sendLogString,
                         [&](LogMessageType, const QString& line) {
                             const std::string text = line.toUtf8().toStdString();
                             const std::lock_guard lock(mutex);
                             lines.push_back(text);
                         });
        std::vector<std::thread> threads;
        for (int thread = 0; thread < threadCount; ++thread) {
            threads.emplace_back([thread] {
                for (int line = 0; line < linesPerThread; ++line)
                    logInfo(lineOf(thread, line));
            });
        }
        for (std::thread& thread : threads)
            thread.join();
    }

    ASSERT_EQ(lines.size(), static_cast<std::size_t>(threadCount * linesPerThread));
    std::array<int, threadCount> next = {};
    for (const std::string& line : lines) {
        const int thread = line.size() > 5 ? line[5] - '0' : -1;
        ASSERT_TRUE(thread >= 0 && thread < threadCount) << line;
        int& expected = next.at(static_cast<std::size_t>(thread));
        ASSERT_EQ(line, "Info:" + lineOf(thread, expected));
        ++expected;
    }
}

} // namespace
