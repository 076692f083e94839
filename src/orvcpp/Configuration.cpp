// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/Configuration.h"

#include "orvcpp/ProviderKind.h"
#include "orvcpp/core/ObjectReader.h"
#include "orvcpp/simulated/ScenarioReader.h"
#include "orvcpp/simulated/SimulatedProvider.h"

#include <QFileInfo>

namespace orv {

namespace {

const QLatin1String genicamConfiguration(":genicam");

/// Throws a FormatError when \p name is that of an embedded scenario, and none of \p known.
void requireKnown(const QString& name, const QStringList& known) {
    if (simulated::isEmbeddedName(name) && !known.contains(name))
        throw FormatError(QStringLiteral("There is no scenario \"%1\". There is: %2.")
                              .arg(name, known.join(QStringLiteral(", "))));
}

std::shared_ptr<Provider> makeSimulated(const ObjectReader& scenario,
                                        const ProviderContext& context) {
    return std::make_shared<simulated::SimulatedProvider>(simulated::readScenario(scenario),
                                                          context.host, context.callCounter);
}

std::shared_ptr<Provider> readSimulated(ObjectReader& reader, const ProviderContext& context) {
    const QString name = QString::fromStdString(
        reader.text("scenario", simulated::defaultScenarioName().toStdString()));
    requireKnown(name, simulated::embeddedNames());
    return makeSimulated(readObject(simulated::scenarioFile(name, context.folder)), context);
}

/// Every kind of provider that a configuration may name.
std::vector<ProviderKind> providerKinds() {
    std::vector<ProviderKind> kinds{{"virtual", readSimulated}};
    if (const std::optional<ProviderKind> genicam = genicamKind())
        kinds.push_back(*genicam);
    return kinds;
}

Providers readProviders(ObjectReader& reader, const ProviderContext& context) {
    const std::vector<ProviderKind> kinds = providerKinds();
    QStringList names;
    for (const ProviderKind& kind : kinds)
        names.append(QString::fromLatin1(kind.name));
    Providers providers;
    QStringList seen;
    for (ObjectReader& provider : reader.objects("providers")) {
        const std::size_t kind = provider.choice("type", names);
        const QString name = names[static_cast<int>(kind)];
        if (seen.contains(name))
            provider.fail("type", QStringLiteral("each type of provider at most once"));
        seen.append(name);
        providers.push_back(kinds[kind].read(provider, context));
        provider.finish();
    }
    if (providers.empty())
        reader.fail("providers", QStringLiteral("an array of at least one provider"));
    reader.finish();
    return providers;
}

/// The ":name" of each configuration that needs no file.
QStringList configurationNames() {
    QStringList names = simulated::embeddedNames();
    if (genicamKind())
        names.append(genicamConfiguration);
    return names;
}

} // namespace

Providers makeProviders(const QString& file, ProviderHost& host,
                        const std::shared_ptr<CallCounter>& callCounter) {
    const ProviderContext context{host, callCounter, QFileInfo(file).path()};
    if (file == genicamConfiguration) {
        const std::optional<ProviderKind> genicam = genicamKind();
        if (!genicam)
            throw FormatError(QStringLiteral("This build has no access to real cameras."));
        ObjectReader noSettings({}, file, {});
        return {genicam->read(noSettings, context)};
    }
    const QString name = file.isEmpty() ? simulated::defaultScenarioName() : file;
    requireKnown(name, configurationNames());
    ObjectReader reader = readObject(simulated::scenarioFile(name, QString()));
    if (reader.has("providers"))
        return readProviders(reader, context);
    return {makeSimulated(reader, context)};
}

} // namespace orv
