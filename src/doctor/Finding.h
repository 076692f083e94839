// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string>
#include <vector>

namespace doctor {

/// The most serious first.
enum class Severity {
    /// Costs frames, or makes a camera unusable.
    Error,
    /// May cost frames.
    Warning,
    /// Could be better.
    Hint,
    /// Could not be checked.
    Unknown,
    /// Checked, and as it should be.
    Ok
};

/// "error", "warning", "hint", "unknown", "ok".
const char* nameOf(Severity severity);

/// The result of one check of one thing.
struct Finding {
    Severity severity = Severity::Ok;
    /// Name of the check, for programs: "mtu".
    std::string check;
    /// What was checked: an adapter, a camera, an interface.
    std::string subject;
    /// What is wrong, and what to do where no command does it. Sentences.
    std::string text;
    /// What was read, and from where.
    std::string evidence;
    /// A command for a shell; empty where none is known.
    std::string cure;
};

using Findings = std::vector<Finding>;

} // namespace doctor
