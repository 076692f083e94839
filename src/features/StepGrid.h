// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>

/// The values that an integer feature takes, minimum + n * increment up to the maximum, and where
/// they are on a slider, which has 32 bits only. Reentrant.
class StepGrid {
public:
    /// An increment below 1 counts as 1. If the range was not read (all three are 0) or is empty,
    /// the grid covers all of 64 bits and is not known: the camera decides what it accepts.
    StepGrid(std::int64_t minimum, std::int64_t maximum, std::int64_t increment);

    /// False where the camera decides: no slider, only typing and stepping.
    bool isKnown() const { return m_known; }
    std::int64_t minimum() const { return m_minimum; }
    std::int64_t maximum() const { return m_maximum; }
    /// At least 1.
    std::int64_t increment() const { return static_cast<std::int64_t>(m_increment); }
    /// The highest value on the grid, at or below the maximum.
    std::int64_t last() const { return at(m_lastOffset); }

    /// The nearest value on the grid; of two equally near ones the higher.
    std::int64_t nearest(std::int64_t value) const;
    /// The highest value on the grid that is not above \p value; the minimum where there is none.
    std::int64_t atOrBelow(std::int64_t value) const;
    /// The lowest value on the grid that is not below \p value; the last where there is none.
    std::int64_t atOrAbove(std::int64_t value) const;
    /// \p steps further on the grid, limited to its ends.
    std::int64_t stepped(std::int64_t value, int steps) const;

    /// The slider's positions are the values themselves where they fit, else shares of the range.
    int sliderMinimum() const;
    int sliderMaximum() const;
    int sliderStep() const;
    int sliderPage() const;
    int positionOf(std::int64_t value) const;
    std::int64_t valueAt(int position) const;

private:
    bool fitsSlider() const;
    std::uint64_t offsetOf(std::int64_t value) const;
    std::int64_t at(std::uint64_t offset) const;

    bool m_known;
    std::int64_t m_minimum;
    std::int64_t m_maximum;
    // Distances from the minimum: those of a 64-bit range need all 64 bits.
    std::uint64_t m_increment;
    std::uint64_t m_lastOffset = 0;
};
