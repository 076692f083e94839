// SPDX-License-Identifier: BSD-3-Clause
#include "cli/Arguments.h"

#include "cli/Failure.h"

#include <QCommandLineParser>

namespace cli {

namespace {

/// Marks a negative number, so that the parser does not take it for an option.
constexpr QChar shield(0x1f);

bool isNegativeNumber(const QString& text) {
    return text.size() > 1 && text[0] == QLatin1Char('-') &&
           (text[1].isDigit() || text[1] == QLatin1Char('.'));
}

QString unshielded(QString text) {
    return text.startsWith(shield) ? text.mid(1) : text;
}

QStringList unshielded(QStringList texts) {
    for (QString& text : texts)
        text = unshielded(text);
    return texts;
}

} // namespace

QStringList Arguments::shielded(QStringList arguments) {
    for (QString& argument : arguments) {
        if (isNegativeNumber(argument))
            argument.prepend(shield);
    }
    return arguments;
}

bool Arguments::has(const QString& option) const {
    return m_parser.isSet(option);
}

QString Arguments::value(const QString& option) const {
    return unshielded(m_parser.value(option));
}

QStringList Arguments::values(const QString& option) const {
    return unshielded(m_parser.values(option));
}

double Arguments::number(const QString& option, const NumberRange& range) const {
    if (!has(option))
        return range.absent;
    bool isNumber = false;
    const double number = value(option).toDouble(&isNumber);
    if (!isNumber || !(number >= range.least && number <= range.most))
        throw Failure(QStringLiteral("--%1 takes a number from %2 to %3, not \"%4\".")
                          .arg(option)
                          .arg(range.least)
                          .arg(range.most)
                          .arg(value(option)),
                      ExitCode::WrongUse);
    return number;
}

QStringList Arguments::operands() const {
    return unshielded(m_parser.positionalArguments());
}

} // namespace cli
