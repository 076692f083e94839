// SPDX-License-Identifier: BSD-3-Clause
#include "engine/CameraHandler.h"
#include "engine/NeedSearch.h"
#include "engine/Truncation.h"
#include "features/BandwidthLimit.h"
#include "features/FeatureController.h"
#include "logging/Log.h"

#include <algorithm>

CameraNeed CameraHandler::readNeed() const {
    CameraNeed need;
    need.payloadBytes = getPayloadSize();
    if (const auto frameRate = frameRateFeature())
        need.framesPerSecond = std::max(numberOf(featureValue(*frameRate)).value_or(0.0), 0.0);
    need.bytesPerSecond = truncated(static_cast<double>(need.payloadBytes) * need.framesPerSecond);
    return need;
}

CameraNeed CameraHandler::findNeed(double cameraSafetyMargin) {
    if (!m_bandwidthLimit->find())
        return readNeed();
    const FeatureInfo info = m_bandwidthLimit->read();
    const StepGrid range = m_bandwidthLimit->steps();
    const bool isWritable = info.writable && range.isKnown() && range.last() > 0 &&
                            m_bandwidthLimit->write(range.last()).has_value();
    CameraNeed need = readNeed();
    if (!isWritable)
        return need;
    need.range = range;
    const std::int64_t calculated = need.bytesPerSecond;
    const auto frameRate = frameRateFeature();
    if (calculated <= 0 || !frameRate)
        return need;
    if (static_cast<double>(calculated) * (1 + cameraSafetyMargin) >=
        static_cast<double>(range.last())) {
        need.bytesPerSecond = std::clamp(calculated, range.minimum(), range.last());
        return need;
    }
    const auto tryOut = [&](std::int64_t limit) {
        const bool isSet = m_bandwidthLimit->write(limit).has_value();
        return isSet ? numberOf(featureValue(*frameRate)).value_or(0.0) : 0.0;
    };
    need.bytesPerSecond = NeedSearch(tryOut, need.framesPerSecond, range).run(calculated);
    logDebug(displayName() + ": needs " + std::to_string(need.bytesPerSecond) +
             " bytes per second for " + toText(need.framesPerSecond) + " frames per second");
    return need;
}
