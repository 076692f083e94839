// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QString>
#include <QStringList>

class QCommandLineParser;

namespace cli {

/// The range of a numeric option.
struct NumberRange {
    double least;
    double most;
    /// The value when the option is not given.
    double absent;
};

/// The options and operands of a command. Invalid ones throw a Failure.
class Arguments {
public:
    /// \p parser must outlive this object, and have parsed the result of shielded().
    explicit Arguments(const QCommandLineParser& parser) : m_parser(parser) {}

    /// Marks negative numbers in \p arguments, which the parser would take for options.
    static QStringList shielded(QStringList arguments);

    bool has(const QString& option) const;
    QString value(const QString& option) const;
    QStringList values(const QString& option) const;
    /// The option's number, or `range.absent`. Throws a Failure for text and for numbers out of
    /// range.
    double number(const QString& option, const NumberRange& range) const;
    QStringList operands() const;
    const QCommandLineParser& parser() const { return m_parser; }

private:
    const QCommandLineParser& m_parser;
};

} // namespace cli
