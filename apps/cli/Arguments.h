// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QString>
#include <QStringList>

class QCommandLineParser;

namespace cli {

/// A number that an option takes.
struct NumberRange {
    double least;
    double most;
    /// When the option is not given.
    double absent;
};

/// The options and operands of a command. What is wrong with them is thrown as a Failure.
class Arguments {
public:
    /// \p parser must outlive this object, and have parsed what shielded() answered.
    explicit Arguments(const QCommandLineParser& parser) : m_parser(parser) {}

    /// \p arguments so that the parser does not take a negative number for an option.
    static QStringList shielded(QStringList arguments);

    bool has(const QString& option) const;
    QString value(const QString& option) const;
    QStringList values(const QString& option) const;
    /// What the range has as absent when the option is not given.
    double number(const QString& option, const NumberRange& range) const;
    QStringList operands() const;
    const QCommandLineParser& parser() const { return m_parser; }

private:
    const QCommandLineParser& m_parser;
};

} // namespace cli
