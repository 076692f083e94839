// SPDX-License-Identifier: BSD-3-Clause
#include "benchmarks/support/SimulatedCameras.h"

#include "OrvCPP/OrvSystem.h"
#include "OrvSimulation/Simulation.h"

#include <QTemporaryFile>

#include <stdexcept>

namespace {

QByteArray scenarioOf(int count, int callDelayMicroseconds, int extraFeatures) {
    return QStringLiteral(R"({
  "callDelayMicroseconds": %2,
  "host": {
    "adapters": [{ "name": "eth0", "address": "10.0.0.1", "mask": "255.255.0.0", "speedMbps": 10000 }]
  },
  "transportLayers": [{ "id": "GigE", "type": "GigEVision" }],
  "interfaces": [{ "id": "eth0", "transportLayer": "GigE", "adapter": "eth0" }],
  "cameras": [
    {
      "id": "CAM_",
      "model": "Bench 1",
      "interface": "eth0",
      "linkSpeedMbps": 1000,
      "sensor": { "width": 640, "height": 480, "frameRate": 30 },
      "extraFeatures": %3,
      "count": %1
    }
  ]
}
)")
        .arg(count)
        .arg(callDelayMicroseconds)
        .arg(extraFeatures)
        .toUtf8();
}

void start(const QString& scenario) {
    if (OrvCPP::OrvSystem::GetInstance().Startup(scenario.toStdWString().c_str()) !=
        OrvErrorSuccess)
        throw std::runtime_error("cannot start the simulated cameras");
}

} // namespace

SimulatedCameras::SimulatedCameras(int count, int callDelayMicroseconds, int extraFeatures) {
    QTemporaryFile file;
    const QByteArray scenario = scenarioOf(count, callDelayMicroseconds, extraFeatures);
    if (!file.open() || file.write(scenario) < 0 || !file.flush())
        throw std::runtime_error("cannot write a scenario file");
    start(file.fileName());
}

SimulatedCameras::SimulatedCameras(const QString& scenario) {
    start(scenario);
}

SimulatedCameras::~SimulatedCameras() {
    system().Shutdown();
}

OrvCPP::OrvSystem& SimulatedCameras::system() const {
    return OrvCPP::OrvSystem::GetInstance();
}

OrvCPP::ISimulation& SimulatedCameras::simulation() const {
    return dynamic_cast<OrvCPP::ISimulation&>(system());
}
