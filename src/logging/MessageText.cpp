// SPDX-License-Identifier: BSD-3-Clause
#include "logging/MessageText.h"

#include <QCoreApplication>

#include <utility>

/// In one pass: a value may contain a place holder's text.
std::string filledForm(const std::string& form, const std::vector<std::string>& values) {
    std::string text;
    for (std::size_t i = 0; i < form.size(); ++i) {
        const char next = i + 1 < form.size() ? form[i + 1] : '\0';
        const bool isPlace = form[i] == '%' && next >= '1' && next <= '9';
        const std::size_t number = isPlace ? static_cast<std::size_t>(next - '1') : values.size();
        if (number < values.size()) {
            text += values[number];
            ++i;
        } else {
            text += form[i];
        }
    }
    return text;
}

MessageText::MessageText(const char* context, const char* form, std::vector<std::string> values)
    : m_context(context), m_form(form), m_values(std::move(values)) {}

std::string MessageText::english() const {
    return filledForm(m_form, m_values);
}

std::string MessageText::translated() const {
    return filledForm(QCoreApplication::translate(m_context, m_form).toStdString(), m_values);
}
