// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/virtual/ScenarioReader.h"

#include "orvcpp/virtual/PixelFormats.h"

#include <QDir>
#include <QRegularExpression>

#include <algorithm>
#include <cmath>
#include <utility>

namespace orv::sim {

namespace {

constexpr std::int64_t maximumPort = 31;
constexpr double maximumMbps = 1e6;

QString toQString(const std::string& text) {
    return QString::fromStdString(text);
}

/// Texts that a list of elements goes by, for references and messages.
template <typename List, typename Name> QStringList namesOf(const List& list, const Name& name) {
    QStringList names;
    for (const auto& element : list)
        names.append(toQString(name(element)));
    return names;
}

std::uint64_t readSpeed(ObjectReader& reader, const char* key, double absentMbps) {
    return static_cast<std::uint64_t>(
        std::llround(reader.number(key, 0.001, maximumMbps, absentMbps) * 1e6));
}

std::uint32_t readAddress(ObjectReader& reader, const char* key, const std::string& absent) {
    const QStringList parts = toQString(reader.text(key, absent)).split(QLatin1Char('.'));
    std::uint32_t address = 0;
    bool valid = parts.size() == 4;
    for (const QString& part : parts) {
        bool isNumber = false;
        const uint number = part.toUInt(&isNumber);
        valid = valid && isNumber && number < 256;
        address = (address << 8U) | (number & 0xFFU);
    }
    if (!valid)
        reader.fail(key, QStringLiteral("an IPv4 address such as \"192.168.10.1\""));
    return address;
}

std::uint64_t readMac(ObjectReader& reader, const char* key, std::uint64_t absent) {
    QString text = toQString(reader.text(key, {}));
    if (!reader.has(key))
        return absent;
    static const QRegularExpression form(QStringLiteral("^([0-9A-Fa-f]{2}:){5}[0-9A-Fa-f]{2}$"));
    if (!form.match(text).hasMatch())
        reader.fail(key, QStringLiteral("a MAC address such as \"4c:52:44:00:00:01\""));
    return text.remove(QLatin1Char(':')).toULongLong(nullptr, 16);
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
    hub.bitsPerSecond =
        readSpeed(reader, "speedMbps", static_cast<double>(controller.bitsPerSecond) / 1e6);
    reader.finish();
    return hub;
}

ControllerData readController(ObjectReader reader) {
    ControllerData controller;
    controller.bus = static_cast<std::uint32_t>(reader.integer("bus", 0, 255, 0));
    controller.device = static_cast<std::uint32_t>(reader.integer("device", 0, 31));
    controller.function = static_cast<std::uint32_t>(reader.integer("function", 0, 7, 0));
    controller.bitsPerSecond = readSpeed(reader, "speedMbps", 5000);
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
    const std::string name = layer.type == OrvTransportLayerTypeU3V
                                 ? "MRD USB3 Vision Transport Layer"
                                 : "MRD GigE Vision Transport Layer";
    layer.name = reader.text("name", name);
    layer.vendor = reader.text("vendor", "Meridane Technologies");
    layer.model = reader.text("model", layer.name);
    layer.version = reader.text("version", "1.4.2");
    layer.path = reader.text("path", "/opt/meridane/cti/" + layer.id + ".cti");
    reader.finish();
    return layer;
}

void readInterfaceLink(ObjectReader& reader, const Scenario& scenario, InterfaceData& interface) {
    const OrvTransportLayerType type = scenario.transportLayers[interface.transportLayer].type;
    if (type == OrvTransportLayerTypeGEV || reader.has("adapter")) {
        interface.adapter = reader.choice(
            "adapter", namesOf(scenario.adapters, [](const auto& a) { return a.name; }));
        const AdapterData& adapter = scenario.adapters[*interface.adapter];
        interface.name = reader.text("name", "MRD GigE Interface " + adapter.name);
        interface.bitsPerSecond = adapter.bitsPerSecond;
    } else if (type == OrvTransportLayerTypeU3V || reader.has("usbController")) {
        interface.controller =
            reader.choice("usbController", namesOf(scenario.controllers,
                                                   [](const auto& c) { return c.location(); }));
        const ControllerData& controller = scenario.controllers[*interface.controller];
        interface.name = reader.text("name", "MRD USB Interface " + controller.location());
        interface.bitsPerSecond = controller.bitsPerSecond;
    } else {
        interface.name = reader.text("name");
        interface.bitsPerSecond = readSpeed(reader, "speedMbps", 1000);
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

QStringList pixelFormatTexts() {
    return namesOf(pixelFormatNames, [](const auto& format) { return std::string(format.name); });
}

void readSensor(ObjectReader reader, CameraData& camera) {
    const auto multipleOf = [&reader](const char* key, std::int64_t absent, std::int64_t step) {
        const std::int64_t size = reader.integer(key, 64, 16384, absent);
        if (size % step != 0)
            reader.fail(key, QStringLiteral("a multiple of %1").arg(step));
        return size;
    };
    camera.sensorWidth = multipleOf("width", 1920, 8);
    camera.sensorHeight = multipleOf("height", 1200, 2);
    camera.sensorFrameRate = reader.number("frameRate", 0.01, 100000, 30);
    camera.pixelFormat =
        pixelFormatNames[reader.choice("pixelFormat", pixelFormatTexts(), 0)].format;
    for (const std::string& name : reader.texts("pixelFormats")) {
        const int index = pixelFormatTexts().indexOf(toQString(name));
        if (index < 0)
            reader.fail("pixelFormats",
                        QStringLiteral("an array of names among \"%1\"")
                            .arg(pixelFormatTexts().join(QStringLiteral("\", \""))));
        camera.pixelFormats.push_back(pixelFormatNames[static_cast<std::size_t>(index)].format);
    }
    if (!reader.has("pixelFormats"))
        camera.pixelFormats = {camera.pixelFormat, OrvPixelFormatMono12p, OrvPixelFormatMono12};
    if (std::count(camera.pixelFormats.begin(), camera.pixelFormats.end(), camera.pixelFormat) != 1)
        reader.fail("pixelFormats", QStringLiteral("the pixelFormat to be among them, once"));
    reader.finish();
}

void readBandwidth(ObjectReader reader, CameraData& camera) {
    const auto link = static_cast<std::int64_t>(camera.linkBitsPerSecond / 8);
    camera.bandwidthFeature = static_cast<BandwidthFeature>(
        reader.choice("feature",
                      {QStringLiteral("DeviceLinkThroughputLimit"),
                       QStringLiteral("StreamBytesPerSecond"), QStringLiteral("none")},
                      0));
    constexpr std::int64_t most = 1'000'000'000'000;
    camera.bandwidthMinimum =
        reader.integer("minimum", 1, most, std::min<std::int64_t>(1'000'000, link));
    camera.bandwidthMaximum = reader.integer("maximum", camera.bandwidthMinimum, most,
                                             std::max(link, camera.bandwidthMinimum));
    camera.bandwidthIncrement = reader.integer("increment", 1, most, 1);
    camera.bandwidth = reader.integer("value", camera.bandwidthMinimum, camera.bandwidthMaximum,
                                      camera.bandwidthMaximum);
    if (reader.has("value") &&
        (camera.bandwidth - camera.bandwidthMinimum) % camera.bandwidthIncrement != 0)
        reader.fail("value", QStringLiteral("the minimum plus a multiple of the increment"));
    reader.finish();
}

void readFrameRate(ObjectReader reader, CameraData& camera) {
    camera.frameRateFeature = static_cast<FrameRateFeature>(
        reader.choice("feature",
                      {QStringLiteral("AcquisitionFrameRateLimit"),
                       QStringLiteral("AcquisitionFrameRate"), QStringLiteral("none")},
                      1));
    camera.frameRateEnabled = reader.boolean("enabled", false);
    camera.frameRate = reader.number("value", 0.1, 100000, camera.sensorFrameRate);
    reader.finish();
}

void readTrigger(ObjectReader reader, CameraData& camera) {
    static const QStringList sources{QStringLiteral("Freerun"), QStringLiteral("Software"),
                                     QStringLiteral("Line0"), QStringLiteral("Line1")};
    camera.triggerMode =
        reader.choice("mode", {QStringLiteral("Off"), QStringLiteral("On")}, 0) == 1;
    camera.triggerSource =
        sources[static_cast<int>(reader.choice("source", sources, 1))].toStdString();
    camera.triggerRate = reader.number("rate", 0, 100000, 0);
    reader.finish();
}

void readStream(ObjectReader reader, CameraData& camera) {
    static const QStringList drivers{QStringLiteral("Filter"), QStringLiteral("Socket")};
    camera.streamDriver =
        drivers[static_cast<int>(reader.choice("driver", drivers, 0))].toStdString();
    static const QStringList protocols{QString(), QStringLiteral("UDP"), QStringLiteral("TCP")};
    camera.streamProtocol =
        protocols[static_cast<int>(reader.choice("protocol", protocols, 0))].toStdString();
    camera.maximumPacketSize = reader.integer("maximumPacketSize", 576, 65536, 8992);
    camera.packetSize = reader.integer("packetSize", 576, camera.maximumPacketSize,
                                       std::min<std::int64_t>(1500, camera.maximumPacketSize));
    camera.adjustMilliseconds = reader.integer("adjustMilliseconds", 0, 60000, 50);
    reader.finish();
}

FeatureFault readFeatureFault(ObjectReader reader) {
    static const QStringList modules{QStringLiteral("Camera"), QStringLiteral("Local Device"),
                                     QStringLiteral("Stream0")};
    FeatureFault fault;
    fault.origin = reader.originOf("name");
    fault.module = modules[static_cast<int>(reader.choice("module", modules, 0))].toStdString();
    fault.name = reader.text("name");
    fault.code = static_cast<OrvErrorType>(reader.integer("code", -40, -1, OrvErrorIO));
    const std::size_t on = reader.choice(
        "on", {QStringLiteral("both"), QStringLiteral("get"), QStringLiteral("set")}, 0);
    fault.onGet = on != 2;
    fault.onSet = on != 1;
    reader.finish();
    return fault;
}

void readFaults(ObjectReader reader, FaultData& faults) {
    faults.lossRate = reader.number("lossRate", 0, 1, 0);
    faults.incompleteRate = reader.number("incompleteRate", 0, 1, 0);
    for (const ObjectReader& feature : reader.objects("features"))
        faults.features.push_back(readFeatureFault(feature));
    for (const std::string& command : reader.texts("stuckCommands"))
        faults.stuckCommands.push_back({command, reader.originOf("stuckCommands")});
    if (reader.has("vanishAfterSeconds"))
        faults.vanishAfterSeconds = reader.number("vanishAfterSeconds", 0, 1e6);
    faults.openError = static_cast<OrvErrorType>(reader.integer("openError", -40, 0, 0));
    reader.finish();
}

void readUsbPlace(ObjectReader& reader, const ControllerData& controller, CameraData& camera) {
    if (reader.has("hub"))
        camera.hub = reader.choice(
            "hub", namesOf(controller.hubs, [](const HubData& hub) { return hub.name; }));
    camera.port = static_cast<std::uint32_t>(reader.integer("port", 1, maximumPort));
    static const QRegularExpression form(QStringLiteral("^[0-9A-Z]+$"));
    if (!form.match(toQString(camera.serialNumber)).hasMatch())
        reader.fail("serialNumber", QStringLiteral("digits and upper-case letters (USB)"));
}

void readPlace(ObjectReader& reader, const Scenario& scenario, CameraData& camera) {
    const InterfaceData& interface = scenario.interfaces[camera.interface];
    std::uint64_t link = interface.bitsPerSecond;
    if (interface.controller) {
        const ControllerData& controller = scenario.controllers[*interface.controller];
        readUsbPlace(reader, controller, camera);
        if (camera.hub)
            link = std::min(link, controller.hubs[*camera.hub].bitsPerSecond);
    } else if (interface.adapter) {
        const AdapterData& adapter = scenario.adapters[*interface.adapter];
        const auto number = static_cast<std::uint32_t>(scenario.cameras.size());
        const std::uint32_t address =
            (adapter.address & adapter.mask) | (~adapter.mask & (100 + number));
        camera.address = reader.has("address") ? readAddress(reader, "address", {}) : address;
        camera.mac = readMac(reader, "mac", 0x4C5244100000U + number);
    }
    camera.linkBitsPerSecond = readSpeed(reader, "linkSpeedMbps", static_cast<double>(link) / 1e6);
}

/// The n-th (from 0) of several equal cameras.
CameraData numbered(CameraData camera, std::int64_t n) {
    const std::string number =
        QStringLiteral("%1").arg(n + 1, 3, 10, QLatin1Char('0')).toStdString();
    camera.id += number;
    camera.serialNumber += number;
    if (!camera.name.empty())
        camera.name += ' ' + std::to_string(n + 1);
    camera.port += static_cast<std::uint32_t>(n);
    camera.address += static_cast<std::uint32_t>(n);
    camera.mac += static_cast<std::uint64_t>(n);
    return camera;
}

void checkFree(const ObjectReader& reader, const std::vector<CameraData>& cameras,
               const CameraData& added) {
    for (const CameraData& other : cameras) {
        if (other.id == added.id)
            reader.fail("id", QStringLiteral("an ID that no other camera has (\"%1\" is taken)")
                                  .arg(toQString(added.id)));
        if (added.port != 0 && other.interface == added.interface && other.hub == added.hub &&
            other.port == added.port)
            reader.fail("port", QStringLiteral("a port that no other camera of the hub is on"));
    }
}

void readCamera(ObjectReader reader, Scenario& scenario, std::uint32_t seed) {
    CameraData camera;
    camera.id = reader.text("id");
    camera.name = reader.text("name", camera.id);
    camera.vendor = reader.text("vendor", "Meridane Technologies");
    camera.model = reader.text("model");
    camera.serialNumber = reader.text("serialNumber", "1");
    camera.interface = reader.choice(
        "interface", namesOf(scenario.interfaces, [](const auto& i) { return i.id; }));
    readPlace(reader, scenario, camera);
    readSensor(reader.object("sensor"), camera);
    camera.exposureTime = reader.number("exposureTime", 10, 10'000'000, 5000);
    static const QStringList exposureModes{QStringLiteral("Timed"), QStringLiteral("TriggerWidth")};
    camera.exposureMode =
        exposureModes[static_cast<int>(reader.choice("exposureMode", exposureModes, 0))]
            .toStdString();
    readBandwidth(reader.object("bandwidth"), camera);
    readFrameRate(reader.object("frameRate"), camera);
    readTrigger(reader.object("trigger"), camera);
    readStream(reader.object("stream"), camera);
    camera.access = static_cast<Access>(reader.choice(
        "access", {QStringLiteral("full"), QStringLiteral("read"), QStringLiteral("none")}, 0));
    camera.overloadDamage = reader.number("overloadDamage", 0, 1, 0.25);
    readFaults(reader.object("faults"), camera.faults);
    const std::int64_t count = reader.integer("count", 1, 1024, 1);
    reader.finish();
    for (std::int64_t n = 0; n < count; ++n) {
        CameraData added = reader.has("count") ? numbered(camera, n) : camera;
        added.seed = seed + static_cast<std::uint32_t>(scenario.cameras.size());
        checkFree(reader, scenario.cameras, added);
        scenario.cameras.push_back(std::move(added));
    }
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

QString scenarioFile(const QString& name, const QString& folder) {
    if (name.startsWith(QLatin1Char(':')) && !name.contains(QLatin1Char('/')))
        return QStringLiteral(":/orvcpp/scenarios/%1.json").arg(name.mid(1));
    return QDir(folder).filePath(name);
}

QString defaultScenarioName() {
    return QStringLiteral(":default");
}

} // namespace orv::sim
