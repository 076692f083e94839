// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/stream/StreamTransport.h"

#include "platform/UdpSocket.h"

#include <gmock/gmock.h>

namespace orv::aravis {

namespace {

using namespace testing;

TEST(StreamTransport, advisesWhatTheSystemDoesNotPermit) {
    constexpr int whole = platform::streamReceiveBuffer;
    EXPECT_EQ((StreamTransport{true, false, 1}).advice(), "");
    EXPECT_EQ((StreamTransport{false, false, whole}).advice(), "") << "as configured";
    EXPECT_THAT((StreamTransport{false, true, whole}).advice(),
                AllOf(HasSubstr("setcap"), Not(HasSubstr("sysctl"))));
    EXPECT_THAT((StreamTransport{false, false, whole - 1}).advice(),
                AllOf(HasSubstr("sysctl"), Not(HasSubstr("setcap"))));
}

} // namespace

} // namespace orv::aravis
