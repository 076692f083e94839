// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "features/FeatureController.h"

#include <QJsonObject>
#include <QString>

#include <optional>

namespace cli {

/// One feature of an open camera, as a command line names it: NAME of the module "Camera", or
/// MODULE:NAME, where blanks and case of the module do not matter ("localdevice:DeviceLocation").
/// What is not there or not possible is thrown as a Failure. Bound to one thread.
class Feature {
public:
    /// Finds it.
    Feature(FeatureController& controller, const QString& text);
    /// One that is known to exist.
    Feature(FeatureController& controller, std::string module, std::string name);

    const FeatureInfo& info() const { return m_info; }
    QString name() const { return QString::fromStdString(m_name); }
    QString module() const { return QString::fromStdString(m_module); }

    /// What it is and what it may take, with its value where that can be read.
    QJsonObject describe() const;
    /// As a person reads it: addresses dotted, hexadecimal numbers with their prefix. Empty where
    /// the value cannot be read.
    QString valueText() const;

    /// Fails unless there is a value.
    void requireValue() const;
    /// Fails unless \p text is a value of the feature's type, in the notations of valueText.
    void requireNotation(const QString& text) const;
    /// Writes what such a text says, and reads it back.
    void write(const QString& text);
    /// False when the command was not done in time.
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
