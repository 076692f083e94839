// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace fakecamera {

/// A wrong command line; what() names the option and the allowed values.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The options of the program with their values, checked, or their defaults.
class Options {
public:
    /// \p arguments are those behind the program's name, "--name value" or "--name=value". Throws
    /// UsageError.
    explicit Options(const std::vector<std::string>& arguments);

    /// Value of an option such as "--serial". Throws std::out_of_range for an unknown name.
    const std::string& text(const std::string& name) const { return m_values.at(name); }
    /// Value of a number option, within the option's range.
    std::uint64_t number(const std::string& name) const;
    /// Value of a number option whose range ends below 2^32.
    std::uint32_t number32(const std::string& name) const;
    bool isOn(const std::string& name) const { return number(name) != 0; }
    /// Value of --address, in host byte order.
    std::uint32_t address() const;

    /// The text of --help.
    static std::string help();

private:
    std::map<std::string, std::string> m_values;
};

} // namespace fakecamera
