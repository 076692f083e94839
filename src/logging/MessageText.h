// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string>
#include <vector>

/// \p form with \p values in place of "%1", "%2" and so on, up to "%9". Reentrant.
std::string filledForm(const std::string& form, const std::vector<std::string>& values);

/// A message with values, which the log has in English and a window in the user's language.
/// Reentrant.
class MessageText {
public:
    /// \p form has "%1", "%2" and so on, up to "%9", where \p values stand; it is marked for
    /// translation in \p context by QT_TRANSLATE_NOOP. Both texts outlive the object.
    MessageText(const char* context, const char* form, std::vector<std::string> values = {});

    std::string english() const;
    /// In the language of the application's translators; English without one.
    std::string translated() const;

private:
    const char* m_context;
    const char* m_form;
    std::vector<std::string> m_values;
};
