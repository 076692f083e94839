// SPDX-License-Identifier: BSD-3-Clause
#include "logging/Log.h"
#include "logging/ThreadLogStream.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <iostream>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace {

constexpr int rounds = 100;
constexpr int threadCount = 4;
constexpr int linesPerThread = 100;

std::string lineOf(int thread, int line) {
    return std::to_string(thread) + ' ' + std::to_string(line) + ' ' + std::string(40, 'x');
}

void write(int thread) {
    for (int line = 0; line < linesPerThread; ++line) {
#ifndef __SANITIZE_THREAD__ // for which the stream object itself is a data race
        const std::string foreign = "Info:" + lineOf(thread, line) + '\n';
        if (thread == 0)
            std::cout.write(foreign.data(), static_cast<std::streamsize>(foreign.size()));
        else
#endif
            logInfo(lineOf(thread, line));
    }
}

/// Four threads write to a stream, and to the one before once it has ended while they do.
std::vector<std::string> linesOfOneRound() {
    using Logging::ThreadLogStream;
    std::mutex mutex;
    std::vector<std::string> lines;
    std::atomic<int> count = 0;
    const auto collect = [&](LogMessageType, const QString& line) {
        const std::lock_guard lock(mutex);
        lines.push_back(line.toStdString());
        ++count;
    };
    ThreadLogStream lasting(std::cout, LogMessageType::StdOut);
    QObject::connect(&lasting, &ThreadLogStream::sendLogString, collect);
    auto ending = std::make_unique<ThreadLogStream>(std::cout, LogMessageType::StdOut);
    QObject::connect(ending.get(), &ThreadLogStream::sendLogString, collect);
    std::vector<std::thread> threads;
    for (int thread = 0; thread < threadCount; ++thread)
        threads.emplace_back(write, thread);
    while (count < linesPerThread)
        std::this_thread::yield();
    ending.reset();
    for (std::thread& thread : threads)
        thread.join();
    return lines;
}

TEST(ThreadLogStreamThreads, losesNoLineOfAThreadWhenItEndsAndKeepsThemWholeAndInOrder) {
    for (int round = 0; round < rounds; ++round) {
        const std::vector<std::string> lines = linesOfOneRound();
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
}

} // namespace
