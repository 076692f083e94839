// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/simulated/ScenarioReader.h"

#include "orvcpp/core/ModuleFeatures.h"
#include "orvcpp/simulated/CameraReader.h"
#include "orvcpp/simulated/ScenarioValues.h"

#include <QDir>

#include <algorithm>

namespace orv::simulated {

namespace {

const QLatin1String embeddedFolder(":/orvcpp/scenarios");

/// What a link of a nominal speed really carries: that speed unless the scenario says otherwise.
std::uint64_t readCarried(ObjectReader& reader, std::uint64_t nominal) {
    const std::uint64_t carried =
        readSpeed(reader, "carriesMbps", static_cast<double>(nominal) / 1e6);
    if (carried > nominal)
        reader.fail("carriesMbps", QStringLiteral("at most the link's speed"));
    return carried;
}

AdapterData readAdapter(ObjectReader reader, std::size_t number) {
    AdapterData adapter;
    adapter.name = reader.text("name");
    reader.text("address");
    adapter.address = readAddress(reader, "address", {});
    adapter.mask = readAddress(reader, "mask", "255.255.255.0");
    adapter.mac = readMac(reader, "mac", 0x4C5244000000U + number);
    adapter.mtu = reader.integer("mtu", 576, 65536, 9000);
    adapter.bitsPerSecond = readSpeed(reader, "speedMbps", 1000);
    adapter.carriedBitsPerSecond = readCarried(reader, adapter.bitsPerSecond);
    reader.finish();
    return adapter;
}

HubData readHub(ObjectReader reader, const ControllerData& controller) {
    HubData hub;
    const QStringList known =
        namesOf(controller.hubs, [](const HubData& other) { return other.name; });
    hub.name = reader.text("name");
    if (known.contains(toQString(hub.name)))
        reader.fail("name", QStringLiteral("a name that no other hub of the controller has"));
    if (reader.has("hub"))
        hub.parent = reader.choice("hub", known);
    hub.port = static_cast<std::uint32_t>(reader.integer("port", 1, maximumPort));
    for (const HubData& other : controller.hubs) {
        if (other.parent == hub.parent && other.port == hub.port)
            reader.fail("port", QStringLiteral("a port on which there is no other hub"));
    }
    const std::uint64_t above =
        hub.parent ? controller.hubs[*hub.parent].bitsPerSecond : controller.bitsPerSecond;
    hub.bitsPerSecond = readUsbSpeed(reader, "speedMbps", static_cast<double>(above) / 1e6);
    reader.finish();
    return hub;
}

ControllerData readController(ObjectReader reader) {
    ControllerData controller;
    controller.bus = static_cast<std::uint32_t>(reader.integer("bus", 0, 255, 0));
    controller.device = static_cast<std::uint32_t>(reader.integer("device", 0, 31));
    controller.function = static_cast<std::uint32_t>(reader.integer("function", 0, 7, 0));
    controller.bitsPerSecond = readUsbSpeed(reader, "speedMbps", 5000);
    controller.carriedBitsPerSecond = readCarried(reader, controller.bitsPerSecond);
    for (ObjectReader& hub : reader.objects("hubs"))
        controller.hubs.push_back(readHub(hub, controller));
    reader.finish();
    return controller;
}

TransportLayerData readTransportLayer(ObjectReader reader) {
    // Positions are the numbers of OrvTransportLayerType.
    static const QStringList types{
        QStringLiteral("Unknown"),      QStringLiteral("GigEVision"), QStringLiteral("CameraLink"),
        QStringLiteral("IIDC"),         QStringLiteral("UVC"),        QStringLiteral("CoaXPress"),
        QStringLiteral("CameraLinkHS"), QStringLiteral("USB3Vision"), QStringLiteral("Ethernet"),
        QStringLiteral("PCI"),          QStringLiteral("Custom"),     QStringLiteral("Mixed")};
    TransportLayerData layer;
    layer.id = reader.text("id");
    layer.type = static_cast<OrvTransportLayerType>(reader.choice("type", types));
    if (layer.type == OrvTransportLayerTypeGEV)
        layer.name = reader.text("name", "MRD GigE Vision Transport Layer");
    else if (layer.type == OrvTransportLayerTypeU3V)
        layer.name = reader.text("name", "MRD USB3 Vision Transport Layer");
    else
        layer.name = reader.text("name");
    layer.vendor = reader.text("vendor", vendorName);
    layer.model = reader.text("model", layer.name);
    layer.version = reader.text("version", "1.4.2");
    layer.path = reader.text("path", "/opt/meridane/cti/" + layer.id + ".cti");
    reader.finish();
    return layer;
}

void readInterfaceLink(ObjectReader& reader, const Scenario& scenario, InterfaceData& interface) {
    const OrvTransportLayerType type = scenario.transportLayers[interface.transportLayer].type;
    const bool isUsb = type == OrvTransportLayerTypeU3V;
    if (type == OrvTransportLayerTypeGEV || (!isUsb && reader.has("adapter"))) {
        interface.adapter = reader.choice(
            "adapter", namesOf(scenario.adapters, [](const auto& a) { return a.name; }));
        const AdapterData& adapter = scenario.adapters[*interface.adapter];
        interface.name = reader.text("name", gigeInterfaceName(adapter.name));
        interface.bitsPerSecond = adapter.bitsPerSecond;
        interface.carriedBitsPerSecond = adapter.carriedBitsPerSecond;
    } else if (isUsb || reader.has("usbController")) {
        interface.controller =
            reader.choice("usbController", namesOf(scenario.controllers,
                                                   [](const auto& c) { return c.location(); }));
        const ControllerData& controller = scenario.controllers[*interface.controller];
        interface.name = reader.text("name", usbInterfaceName(controller.location()));
        interface.bitsPerSecond = controller.bitsPerSecond;
        interface.carriedBitsPerSecond = controller.carriedBitsPerSecond;
    } else {
        interface.name = reader.text("name");
        interface.bitsPerSecond = readSpeed(reader, "speedMbps", 1000);
        interface.carriedBitsPerSecond = readCarried(reader, interface.bitsPerSecond);
    }
}

InterfaceData readInterface(ObjectReader reader, const Scenario& scenario) {
    InterfaceData interface;
    interface.id = reader.text("id");
    interface.transportLayer = reader.choice(
        "transportLayer", namesOf(scenario.transportLayers, [](const auto& l) { return l.id; }));
    readInterfaceLink(reader, scenario, interface);
    reader.finish();
    return interface;
}

/// Raises an error when the element that was read last has an ID or name that is taken.
template <typename List, typename Name>
void checkUnique(const ObjectReader& reader, const char* key, const List& list, const Name& name) {
    const auto equals = [&](const auto& other) {
        return name(other) == name(list.back());
    };
    if (std::count_if(list.begin(), list.end(), equals) > 1)
        reader.fail(key, QStringLiteral("a value that no other has (\"%1\" is taken)")
                             .arg(toQString(name(list.back()))));
}

void readHost(ObjectReader reader, Scenario& scenario) {
    for (const ObjectReader& adapter : reader.objects("adapters")) {
        scenario.adapters.push_back(readAdapter(adapter, scenario.adapters.size() + 1));
        checkUnique(adapter, "name", scenario.adapters, [](const auto& a) { return a.name; });
        checkUnique(adapter, "address", scenario.adapters,
                    [](const auto& a) { return std::to_string(a.address); });
    }
    for (const ObjectReader& controller : reader.objects("usbControllers")) {
        scenario.controllers.push_back(readController(controller));
        checkUnique(controller, "device", scenario.controllers,
                    [](const auto& c) { return c.location(); });
    }
    reader.finish();
}

} // namespace

Scenario readScenario(ObjectReader reader) {
    Scenario scenario;
    reader.text("description", {});
    scenario.callDelayMicroseconds = reader.integer("callDelayMicroseconds", 0, 1'000'000, 0);
    const auto seed = static_cast<std::uint32_t>(reader.integer("seed", 0, 1'000'000'000, 1));
    readHost(reader.object("host"), scenario);
    for (const ObjectReader& layer : reader.objects("transportLayers")) {
        scenario.transportLayers.push_back(readTransportLayer(layer));
        checkUnique(layer, "id", scenario.transportLayers, [](const auto& l) { return l.id; });
    }
    for (const ObjectReader& interface : reader.objects("interfaces")) {
        scenario.interfaces.push_back(readInterface(interface, scenario));
        checkUnique(interface, "id", scenario.interfaces, [](const auto& i) { return i.id; });
        checkUnique(interface, "name", scenario.interfaces, [](const auto& i) { return i.name; });
    }
    for (const ObjectReader& camera : reader.objects("cameras"))
        readCamera(camera, scenario, seed);
    reader.finish();
    return scenario;
}

bool isEmbeddedName(const QString& name) {
    return name.startsWith(QLatin1Char(':')) && !name.contains(QLatin1Char('/'));
}

QStringList embeddedNames() {
    QStringList names;
    for (const QFileInfo& file : QDir(embeddedFolder).entryInfoList())
        names.append(QLatin1Char(':') + file.completeBaseName());
    return names;
}

QString scenarioFile(const QString& name, const QString& folder) {
    return isEmbeddedName(name) ? QStringLiteral("%1/%2.json").arg(embeddedFolder, name.mid(1))
                                : QDir(folder).filePath(name);
}

QString defaultScenarioName() {
    return QStringLiteral(":default");
}

} // namespace orv::simulated
