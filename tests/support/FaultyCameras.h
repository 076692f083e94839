// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/OrvSystem.h"
#include "OrvSimulation/Simulation.h"

#include <gtest/gtest.h>

#include <cstdint>

/// Two GigE cameras and a USB camera, simulated. Any call into them can be made to fail.
class FaultyCameras {
public:
    static constexpr int count = 3;
    /// The first calls of an enumeration, which list all cameras. Each later call is about one.
    static constexpr std::uint64_t callsThatList = 2;

    FaultyCameras() { EXPECT_EQ(system.Startup(L"" FAULT_SCENARIO), OrvErrorSuccess); }
    ~FaultyCameras() { system.Shutdown(); }
    FaultyCameras(const FaultyCameras&) = delete;
    FaultyCameras& operator=(const FaultyCameras&) = delete;

    /// Returns the number of calls that \p flow makes. Its call number \p failingCall fails; 0 for
    /// none.
    template <class Flow> std::uint64_t callsOf(Flow flow, std::uint64_t failingCall = 0) {
        simulation.ResetCalls();
        simulation.FailCall(failingCall, OrvErrorInternalFault);
        flow();
        const std::uint64_t calls = simulation.GetCallCount();
        simulation.FailCall(0, OrvErrorSuccess);
        return calls;
    }

    /// Calls \p run with each number of a call to fail, from \p first in steps of \p interval,
    /// until it returns that it made fewer calls or a test fails. Returns the last number.
    template <class Run>
    static std::uint64_t failEachCall(Run run, std::uint64_t first = 1,
                                      std::uint64_t interval = 1) {
        std::uint64_t failingCall = first;
        while (run(failingCall) >= failingCall && !testing::Test::HasFailure())
            failingCall += interval;
        return failingCall;
    }

    OrvCPP::OrvSystem& system = OrvCPP::OrvSystem::GetInstance();
    OrvCPP::ISimulation& simulation = dynamic_cast<OrvCPP::ISimulation&>(system);
};
