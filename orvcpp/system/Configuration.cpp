// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/system/Configuration.h"

#include "orvcpp/json/ObjectReader.h"
#include "orvcpp/virtual/ScenarioReader.h"
#include "orvcpp/virtual/VirtualProvider.h"
#ifdef ORVCPP_GENICAM
#include "orvcpp/genicam/GenicamProvider.h"
#endif

#include <QFileInfo>

namespace orv {

namespace {

using Providers = std::vector<std::shared_ptr<Provider>>;

/// What every kind of provider is made from.
struct Surroundings {
    ProviderHost& host;
    const std::shared_ptr<CallGate>& gate;
    /// Folder of the configuration file.
    QString folder;
};

std::shared_ptr<Provider> makeVirtual(const ObjectReader& scenario,
                                      const Surroundings& surroundings) {
    return std::make_shared<sim::VirtualProvider>(sim::readScenario(scenario), surroundings.host,
                                                  surroundings.gate);
}

std::shared_ptr<Provider> readVirtual(ObjectReader& reader, const Surroundings& surroundings) {
    const QString name =
        QString::fromStdString(reader.text("scenario", sim::defaultScenarioName().toStdString()));
    return makeVirtual(readObject(sim::scenarioFile(name, surroundings.folder)), surroundings);
}

#ifdef ORVCPP_GENICAM
/// The cameras that are really there.
const QString& genicamName() {
    static const QString name = QStringLiteral(":genicam");
    return name;
}

std::shared_ptr<Provider> makeGenicam(const genicam::GenicamSettings& settings,
                                      const Surroundings& surroundings) {
    return genicam::makeGenicamProvider(settings, surroundings.host, surroundings.gate);
}

std::shared_ptr<Provider> readGenicam(ObjectReader& reader, const Surroundings& surroundings) {
    genicam::GenicamSettings settings;
    settings.packetSocket = reader.boolean("packetSocket", true) ? genicam::PacketSocket::Automatic
                                                                 : genicam::PacketSocket::Never;
    return makeGenicam(settings, surroundings);
}
#endif

struct ProviderKind {
    const char* name;
    std::shared_ptr<Provider> (*read)(ObjectReader& reader, const Surroundings& surroundings);
};

/// Every kind of provider that a configuration may name.
constexpr ProviderKind providerKinds[] = {{"virtual", readVirtual},
#ifdef ORVCPP_GENICAM
                                          {"genicam", readGenicam}
#endif
};

Providers readProviders(ObjectReader& reader, const Surroundings& surroundings) {
    QStringList names;
    for (const ProviderKind& kind : providerKinds)
        names.append(QString::fromLatin1(kind.name));
    Providers providers;
    QStringList seen;
    for (ObjectReader& provider : reader.objects("providers")) {
        const std::size_t kind = provider.choice("type", names);
        const QString name = names[static_cast<int>(kind)];
        if (seen.contains(name))
            provider.fail("type", QStringLiteral("each type of provider at most once"));
        seen.append(name);
        providers.push_back(providerKinds[kind].read(provider, surroundings));
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
#ifdef ORVCPP_GENICAM
    if (file == genicamName())
        return {makeGenicam({}, surroundings)};
#endif
    const QString name = file.isEmpty() ? sim::defaultScenarioName() : file;
    ObjectReader reader = readObject(sim::scenarioFile(name, QString()));
    if (reader.has("providers"))
        return readProviders(reader, surroundings);
    return {makeVirtual(reader, surroundings)};
}

} // namespace orv
