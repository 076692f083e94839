// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/simulated/CameraReader.h"

#include "orvcpp/core/ModuleFeatures.h"
#include "orvcpp/simulated/PixelFormats.h"
#include "orvcpp/simulated/ScenarioValues.h"

#include <QRegularExpression>

#include <algorithm>
#include <utility>

namespace orv::simulated {

namespace {

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
    if (!reader.has("pixelFormats")) {
        camera.pixelFormats = {camera.pixelFormat};
        for (const OrvPixelFormatType format : {OrvPixelFormatMono12p, OrvPixelFormatMono12}) {
            if (format != camera.pixelFormat)
                camera.pixelFormats.push_back(format);
        }
    }
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
    camera.bandwidthIncrement = reader.integer("increment", 1, most, 1);
    const auto onStep = [&](std::int64_t value) {
        return (value - camera.bandwidthMinimum) % camera.bandwidthIncrement == 0;
    };
    const auto readStep = [&](const char* key, std::int64_t maximum, std::int64_t absent) {
        const std::int64_t value = reader.integer(key, camera.bandwidthMinimum, maximum, absent);
        if (!onStep(value))
            reader.fail(key, QStringLiteral("the minimum plus a multiple of the increment"));
        return value;
    };
    const std::int64_t room = std::max(link - camera.bandwidthMinimum, std::int64_t{0});
    const std::int64_t highest = link - room % camera.bandwidthIncrement;
    camera.bandwidthMaximum = readStep("maximum", most, std::max(highest, camera.bandwidthMinimum));
    camera.bandwidth = readStep("value", camera.bandwidthMaximum, camera.bandwidthMaximum);
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
    // Positions are the numbers of the entries.
    static const QStringList sources{QStringLiteral("Freerun"), QStringLiteral("Software"),
                                     QStringLiteral("Line0"), QStringLiteral("Line1")};
    camera.triggerMode =
        reader.choice("mode", {QStringLiteral("Off"), QStringLiteral("On")}, 0) == 1;
    camera.triggerSource =
        static_cast<std::int64_t>(reader.choice("source", sources, TriggerSourceSoftware));
    camera.triggerRate = reader.number("rate", 0, 100000, 0);
    reader.finish();
}

/// The text itself among \p choices, the first of them when absent.
std::string chosenText(ObjectReader& reader, const char* key, const QStringList& choices) {
    return choices[static_cast<int>(reader.choice(key, choices, 0))].toStdString();
}

void readStream(ObjectReader reader, CameraData& camera) {
    camera.streamDriver =
        chosenText(reader, "driver", {QStringLiteral("Filter"), QStringLiteral("Socket")});
    camera.streamProtocol =
        chosenText(reader, "protocol", {QString(), QStringLiteral("UDP"), QStringLiteral("TCP")});
    camera.maximumPacketSize = reader.integer("maximumPacketSize", 576, 65536, 8992);
    camera.packetSize = reader.integer("packetSize", 576, camera.maximumPacketSize,
                                       std::min<std::int64_t>(1500, camera.maximumPacketSize));
    camera.adjustMilliseconds = reader.integer("adjustMilliseconds", 0, 60000, 50);
    reader.finish();
}

FeatureFault readFeatureFault(ObjectReader reader) {
    FeatureFault fault;
    fault.origin = reader.originOf("name");
    fault.module = chosenText(
        reader, "module",
        {QStringLiteral("Camera"), QStringLiteral("Local Device"), QStringLiteral("Stream0")});
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
    if (reader.has("stopAfterFrames"))
        faults.stopAfterFrames = reader.integer("stopAfterFrames", 0, 1'000'000'000);
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
    const auto read = interface.controller ? readUsbSpeed : readSpeed;
    camera.linkBitsPerSecond = read(reader, "linkSpeedMbps", static_cast<double>(link) / 1e6);
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

void checkPort(const ObjectReader& reader, const Scenario& scenario, const CameraData& added) {
    const auto& controller = scenario.interfaces[added.interface].controller;
    if (!controller)
        return;
    if (added.port > maximumPort)
        reader.fail("count",
                    QStringLiteral("as many cameras as there are ports up to %1").arg(maximumPort));
    for (const HubData& hub : scenario.controllers[*controller].hubs) {
        if (hub.parent == added.hub && hub.port == added.port)
            reader.fail("port", QStringLiteral("ports on which there is no hub"));
    }
    for (const CameraData& other : scenario.cameras) {
        if (scenario.interfaces[other.interface].controller == controller &&
            other.hub == added.hub && other.port == added.port)
            reader.fail("port", QStringLiteral("a port that no other camera of the hub is on"));
    }
}

void checkId(const ObjectReader& reader, const Scenario& scenario, const CameraData& added) {
    for (const CameraData& other : scenario.cameras) {
        if (other.id == added.id)
            reader.fail("id", QStringLiteral("an ID that no other camera has (\"%1\" is taken)")
                                  .arg(toQString(added.id)));
    }
}

} // namespace

void readCamera(ObjectReader reader, Scenario& scenario, std::uint32_t seed) {
    CameraData camera;
    camera.id = reader.text("id");
    camera.name = reader.text("name", camera.id);
    camera.vendor = reader.text("vendor", vendorName);
    camera.model = reader.text("model");
    camera.serialNumber = reader.text("serialNumber", std::to_string(scenario.cameras.size() + 1));
    camera.interface = reader.choice(
        "interface", namesOf(scenario.interfaces, [](const auto& i) { return i.id; }));
    readPlace(reader, scenario, camera);
    readSensor(reader.object("sensor"), camera);
    camera.exposureTime = reader.number("exposureTime", 10, 10'000'000, 5000);
    const std::size_t exposureMode =
        reader.choice("exposureMode", {QStringLiteral("Timed"), QStringLiteral("TriggerWidth")}, 0);
    camera.exposureMode = exposureMode == 0 ? ExposureModeTimed : ExposureModeTriggerWidth;
    readBandwidth(reader.object("bandwidth"), camera);
    readFrameRate(reader.object("frameRate"), camera);
    readTrigger(reader.object("trigger"), camera);
    readStream(reader.object("stream"), camera);
    camera.access = static_cast<Access>(reader.choice(
        "access", {QStringLiteral("full"), QStringLiteral("read"), QStringLiteral("none")}, 0));
    camera.otherTraffic = reader.integer(
        "otherTraffic", 0, static_cast<std::int64_t>(camera.linkBitsPerSecond / 8), 0);
    if (camera.otherTraffic > 0 && camera.access == Access::Full)
        reader.fail(
            "otherTraffic",
            QStringLiteral("0 for a camera that no other application uses (access \"full\")"));
    camera.overloadDamage = reader.number("overloadDamage", 0, 1, 0.25);
    camera.extraFeatures = reader.integer("extraFeatures", 0, 20'000, 0);
    readFaults(reader.object("faults"), camera.faults);
    const std::int64_t count = reader.integer("count", 1, 1024, 1);
    reader.finish();
    for (std::int64_t n = 0; n < count; ++n) {
        CameraData added = reader.has("count") ? numbered(camera, n) : camera;
        added.seed = seed + static_cast<std::uint32_t>(scenario.cameras.size());
        checkId(reader, scenario, added);
        checkPort(reader, scenario, added);
        scenario.cameras.push_back(std::move(added));
    }
}

} // namespace orv::simulated
