// SPDX-License-Identifier: BSD-3-Clause
#include "logging/MessageText.h"

#include <QCoreApplication>

#include <utility>

MessageText::MessageText(const char* context, const char* form, std::vector<std::string> values)
    : m_context(context), m_form(form), m_values(std::move(values)) {}

std::string MessageText::english() const {
    return filled(m_form);
}

std::string MessageText::translated() const {
    return filled(QCoreApplication::translate(m_context, m_form).toStdString());
}

/// In one pass: a value may contain a place holder's text.
std::string MessageText::filled(const std::string& form) const {
    std::string text;
    for (std::size_t i = 0; i < form.size(); ++i) {
        const char next = i + 1 < form.size() ? form[i + 1] : '\0';
        const bool isPlace = form[i] == '%' && next >= '1' && next <= '9';
        const std::size_t number = isPlace ? static_cast<std::size_t>(next - '1') : m_values.size();
        if (number < m_values.size()) {
            text += m_values[number];
            ++i;
        } else {
            text += form[i];
        }
    }
    return text;
}
