// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "features/FeatureController.h"

#include <QJsonObject>
#include <QString>

#include <optional>

namespace cli {

/// A feature of an open camera by its name on the command line: NAME in the module "Camera", or
/// MODULE:NAME, with blanks and case of the module ignored ("localdevice:DeviceLocation").
/// Throws a Failure for what does not exist or is not possible. Bound to one thread.
class NamedFeature {
public:
    /// Finds the feature; throws a Failure when there is none.
    NamedFeature(FeatureController& controller, const QString& text);
    /// Requires that the feature exists.
    NamedFeature(FeatureController& controller, std::string module, std::string name);

    const FeatureInfo& info() const { return m_info; }
    QString name() const { return QString::fromStdString(m_name); }
    QString module() const { return QString::fromStdString(m_module); }

    /// Its description, range and entries, and its value where it can be read.
    QJsonObject describe() const;
    /// The value as text: addresses dotted, hexadecimal numbers with 0x. Empty where it cannot be
    /// read.
    QString valueText() const;

    /// Throws a Failure unless the value was read.
    void requireValue() const;
    /// Throws a Failure unless \p text is a value of the feature's type, as valueText() writes it.
    void requireNotation(const QString& text) const;
    /// Writes the value that \p text states and reads it back.
    void write(const QString& text);
    /// Executes the command. False when it was not done within the time.
    bool run(double timeoutMilliseconds);

private:
    void read();
    FeatureValue parse(const QString& text) const;
    QString limits() const;

    FeatureController& m_controller;
    std::string m_module;
    std::string m_name;
    FeatureInfo m_info;
    std::optional<FeatureValue> m_value;
};

} // namespace cli
