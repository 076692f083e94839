// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/core/Configuration.h"

#include "orvcpp/core/ObjectReader.h"
#include "orvcpp/core/ProviderKind.h"
#include "orvcpp/simulated/ScenarioReader.h"
#include "orvcpp/simulated/VirtualProvider.h"

#include <QFileInfo>

namespace orv {

namespace {

using Providers = std::vector<std::shared_ptr<Provider>>;

std::shared_ptr<Provider> makeVirtual(const ObjectReader& scenario,
                                      const Surroundings& surroundings) {
    return std::make_shared<simulated::VirtualProvider>(simulated::readScenario(scenario),
                                                        surroundings.host, surroundings.gate);
}

std::shared_ptr<Provider> readVirtual(ObjectReader& reader, const Surroundings& surroundings) {
    const QString name = QString::fromStdString(
        reader.text("scenario", simulated::defaultScenarioName().toStdString()));
    return makeVirtual(readObject(simulated::scenarioFile(name, surroundings.folder)),
                       surroundings);
}

/// Every kind of provider that a configuration may name.
std::vector<ProviderKind> providerKinds() {
    std::vector<ProviderKind> kinds{{"virtual", readVirtual}};
    if (const std::optional<ProviderKind> genicam = genicamKind())
        kinds.push_back(*genicam);
    return kinds;
}

Providers readProviders(ObjectReader& reader, const Surroundings& surroundings) {
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
        providers.push_back(kinds[kind].read(provider, surroundings));
        provider.finish();
    }
    if (providers.empty())
        reader.fail("providers", QStringLiteral("an array of at least one provider"));
    reader.finish();
    return providers;
}

} // namespace

Providers makeProviders(const QString& file, ProviderHost& host,
                        const std::shared_ptr<CallGate>& gate) {
    const Surroundings surroundings{host, gate, QFileInfo(file).path()};
    if (file == QStringLiteral(":genicam")) {
        const std::optional<ProviderKind> genicam = genicamKind();
        if (!genicam)
            throw FormatError(QStringLiteral("This build has no access to real cameras."));
        ObjectReader noSettings({}, file, {});
        return {genicam->read(noSettings, surroundings)};
    }
    const QString name = file.isEmpty() ? simulated::defaultScenarioName() : file;
    ObjectReader reader = readObject(simulated::scenarioFile(name, QString()));
    if (reader.has("providers"))
        return readProviders(reader, surroundings);
    return {makeVirtual(reader, surroundings)};
}

} // namespace orv
