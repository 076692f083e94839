// SPDX-License-Identifier: BSD-3-Clause
#include "cli/Commands.h"
#include "cli/NamedCamera.h"
#include "cli/NamedFeature.h"
#include "cli/Table.h"
#include "features/FeatureFilter.h"

#include <QJsonArray>

namespace cli {

namespace {

/// Features of one module that a filter lets pass; all without one.
std::vector<NamedFeature> featuresOf(const Context& context, FeatureController& controller,
                                     const std::string& module, const FeatureFilter* filter) {
    std::vector<NamedFeature> features;
    for (const auto& [category, names] : controller.getFeaturesByCategory(module)) {
        for (const std::string& name : names) {
            context.checkInterruption();
            if (!filter ||
                filter->accepts(QString::fromStdString(module), QString::fromStdString(category),
                                QString::fromStdString(name)))
                features.emplace_back(controller, module, name);
        }
    }
    return features;
}

QString access(const FeatureInfo& info) {
    if (info.dataType == OrvFeatureDataCommand)
        return QStringLiteral("command");
    return (info.readable ? QStringLiteral("r") : QStringLiteral("-")) +
           (info.writable ? QStringLiteral("w") : QStringLiteral("-"));
}

QString moduleText(const std::vector<NamedFeature>& features) {
    QJsonArray rows;
    for (const NamedFeature& feature : features)
        rows.append(QJsonObject{
            {QStringLiteral("name"), feature.name()},
            {QStringLiteral("value"), feature.valueText()},
            {QStringLiteral("unit"), QString::fromStdString(feature.info().unit)},
            {QStringLiteral("access"), access(feature.info())},
            {QStringLiteral("category"), QString::fromStdString(feature.info().category)},
        });
    return features.front().module() + QLatin1Char('\n') +
           joined(tableLines({{QStringLiteral("Feature"), QStringLiteral("name")},
                              {QStringLiteral("Value"), QStringLiteral("value")},
                              {QStringLiteral("Unit"), QStringLiteral("unit")},
                              {QStringLiteral("Access"), QStringLiteral("access")},
                              {QStringLiteral("Category"), QStringLiteral("category")}},
                             rows));
}

Report runFeatures(Context& context) {
    std::optional<FeatureFilter> filter;
    if (context.arguments.has(QStringLiteral("filter")))
        filter.emplace(FeatureFilter::shippedFile());
    const NamedCamera& camera = context.openCamera(context.arguments.operands().constFirst());
    FeatureController& controller = camera.features();
    QJsonArray rows;
    QStringList texts;
    for (const std::string& module : controller.getModuleNames()) {
        const auto features = featuresOf(context, controller, module, filter ? &*filter : nullptr);
        if (features.empty())
            continue;
        texts.append(moduleText(features));
        for (const NamedFeature& feature : features)
            rows.append(feature.describe());
    }
    Report report{texts.join(QLatin1Char('\n')),
                  {{QStringLiteral("camera"), camera.id()}, {QStringLiteral("features"), rows}}};
    report.hasHeadings = true;
    return report;
}

} // namespace

Command featuresCommand() {
    Command command;
    command.name = QStringLiteral("features");
    command.summary = QStringLiteral("Show the features of a camera and of its modules.");
    command.operands = QStringLiteral("CAMERA");
    command.fewestOperands = command.mostOperands = 1;
    command.options = {{QStringLiteral("filter"),
                        QStringLiteral("Only those that matter for bandwidth, as listed in "
                                       "plugins/Spanlet_Settings.json beside the program, or in "
                                       "share/spanlet of an installed one.")}};
    command.examples = QStringList{QStringLiteral("features GEV-21017 --filter"),
                                   QStringLiteral("features GEV-21017 --json")};
    command.run = runFeatures;
    return command;
}

} // namespace cli
