// SPDX-License-Identifier: BSD-3-Clause
#include "tests/engine/GeneratedScenario.h"

#include <QStringList>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

namespace {

qint64 even(double value) {
    return 2 * static_cast<qint64>(value / 2);
}

template <typename... Values> QString filled(QString text, const Values&... values) {
    ((text = text.arg(values)), ...);
    return text;
}

class Generator {
public:
    explicit Generator(std::uint32_t seed) : m_random(seed) {}

    QByteArray run() {
        for (int count = between(1, 2), i = 1; i <= count; ++i)
            addInterface(false, i, oneOf(2) ? 1000 : 2500);
        for (int count = between(1, 2), i = 1; i <= count; ++i)
            addInterface(true, i, oneOf(2) ? 5000 : 10000);
        const QString comma = QStringLiteral(",\n");
        return filled(QStringLiteral(R"({
"host": { "adapters": [%1], "usbControllers": [%2] },
"transportLayers": [{ "id": "GEV", "type": "GigEVision" }, { "id": "U3V", "type": "USB3Vision" }],
"interfaces": [%3], "cameras": [%4] })"),
                      m_adapters.join(comma), m_controllers.join(comma), m_interfaces.join(comma),
                      m_cameras.join(comma))
            .toUtf8();
    }

private:
    /// The distributions of the standard library differ between platforms, its engine does not.
    int between(int low, int high) {
        return low + static_cast<int>(m_random() % static_cast<std::uint32_t>(high - low + 1));
    }
    double times(double value, int lowPercent, int highPercent) {
        return value * between(lowPercent, highPercent) / 100;
    }
    bool oneOf(int cases) { return between(1, cases) == 1; }

    void addInterface(bool isUsb, int number, int megabits) {
        m_isUsb = isUsb;
        m_id = filled(isUsb ? QStringLiteral("usb%1") : QStringLiteral("eth%1"), number);
        m_link = megabits * 125e3;
        (isUsb ? m_controllers : m_adapters) << filled(
            isUsb
                ? QStringLiteral(R"({ "device": %1, "speedMbps": %2 })")
                : QStringLiteral(R"({ "name": "eth%1", "address": "10.0.%1.1", "speedMbps": %2 })"),
            number, megabits);
        m_interfaces << filled(
            isUsb ? QStringLiteral(
                        R"({ "id": "usb%1", "transportLayer": "U3V", "usbController": "0-%1-0" })")
                  : QStringLiteral(
                        R"({ "id": "eth%1", "transportLayer": "GEV", "adapter": "eth%1" })"),
            number);
        addCameras();
    }

    void addCameras() {
        m_port = 0;
        std::vector<int> weights(static_cast<std::size_t>(between(4, 6)));
        int sum = 0;
        for (int& weight : weights)
            sum += weight = between(5, 50);
        const double asked = times(m_link, 135, 190);
        for (const int weight : weights)
            addCamera(QLatin1String(m_port > 0 && oneOf(4) ? "triggered" : "free"),
                      std::min(asked * weight / sum, m_link));
        for (int count = between(0, 2); count > 0; --count)
            addCamera(QLatin1String("locked"), times(m_link, 4, 12));
    }

    void addCamera(QLatin1String kind, double bytesPerSecond) {
        const bool locked = kind == QLatin1String("locked");
        const bool triggered = kind == QLatin1String("triggered");
        const QString name = filled(QStringLiteral("%1 %2 %3"), m_id, kind, ++m_port);
        const int bytes = between(1, 3);
        const int rate = between(80, 160);
        const double pixels = bytesPerSecond / rate / bytes;
        const auto width = 8 * static_cast<qint64>(std::sqrt(times(pixels, 100, 180)) / 8);
        const auto height = even(pixels / static_cast<double>(width));
        const double needed = static_cast<double>(width * height * bytes) * rate;
        const double narrow = oneOf(3) ? times(needed, 90, 160) : m_link;
        const double maximum = locked ? m_link : std::min(narrow, m_link);
        const double value = locked ? times(needed, 60, 100) : maximum;
        const qint64 minimum = even(times(2e6, 50, 125));
        const int increment = between(1, 2);
        const bool usersRate = oneOf(2);
        const int sensorRate = usersRate || triggered ? between(rate, 200) : rate;
        const bool streamFeature = oneOf(2);
        const bool limitFeature = oneOf(2);
        m_cameras << filled(
            QStringLiteral(R"({ "id": "%1", "interface": "%2", "model": "Generated", %3
  "sensor": { "width": %4, "height": %5, "frameRate": %6, "pixelFormat": "%7", "pixelFormats": ["%7"] },
  "bandwidth": { "feature": "%8", "minimum": %9, "maximum": %10, "value": %11, "increment": %12 },
  "frameRate": { "feature": "AcquisitionFrameRate%13", "enabled": %14, "value": %15 },
  "trigger": { "mode": "%16", "source": "Line0", "rate": %15 } })"),
            name, m_id, m_isUsb ? filled(QStringLiteral("\"port\": %1,"), m_port) : QString(),
            width, height, sensorRate,
            QLatin1String(bytes == 1   ? "BayerRG8"
                          : bytes == 2 ? "Mono12"
                                       : "RGB8"),
            QLatin1String(streamFeature ? "StreamBytesPerSecond" : "DeviceLinkThroughputLimit"),
            minimum, even(maximum), even(value), increment,
            QLatin1String(limitFeature ? "Limit" : ""), QLatin1String(usersRate ? "true" : "false"),
            rate, QLatin1String(triggered ? "On" : "Off"));
    }

    std::mt19937 m_random;
    QStringList m_adapters;
    QStringList m_controllers;
    QStringList m_interfaces;
    QStringList m_cameras;
    /// The interface that is being filled, its bytes per second and its cameras so far.
    bool m_isUsb = false;
    QString m_id;
    double m_link = 0;
    int m_port = 0;
};

} // namespace

QByteArray generateScenario(std::uint32_t seed) {
    return Generator(seed).run();
}
