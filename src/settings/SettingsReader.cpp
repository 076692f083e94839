// SPDX-License-Identifier: BSD-3-Clause
#include "settings/SettingsReader.h"

#include "features/BandwidthLimit.h"
#include "features/FeatureController.h"
#include "sdk/ErrorText.h"
#include "settings/PersistenceCommands.h"
#include "settings/SelectorPositions.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace settings {

namespace {

using Selectors = std::vector<const Setting*>;

bool isSaved(const Setting& setting) {
    return setting.type() >= OrvFeatureDataInt && setting.type() <= OrvFeatureDataRaw &&
           setting.type() != OrvFeatureDataCommand &&
           (setting.isStreamable() || BandwidthLimit::hasPart(setting.name()));
}

class Reader {
public:
    Reader(const SettingTable& table, const std::function<bool()>& isCancelled)
        : m_table(table), m_isCancelled(isCancelled), m_positions(table) {
        m_result.problems = table.problems();
    }

    ReadSettings read() {
        // Features of the same selectors are read together, so that those are moved once.
        std::vector<std::pair<Selectors, std::vector<const Setting*>>> groups;
        std::map<Selectors, std::size_t> known;
        for (const Setting& setting : m_table.all()) {
            if (!isSaved(setting))
                continue;
            const Selectors selectors = m_table.selectorsOf(setting);
            // The value of a selector that is itself selected is only the way to other values.
            if (!selectors.empty() && !setting.selected().empty())
                continue;
            const auto [group, isNew] = known.emplace(selectors, groups.size());
            if (isNew)
                groups.emplace_back(selectors, std::vector<const Setting*>());
            groups[group->second].second.push_back(&setting);
        }
        for (const auto& [selectors, settings] : groups)
            readGroup(selectors, 0, {}, settings);
        for (const std::string& problem : m_positions.putBack())
            m_result.problems.push_back(problem);
        const auto place = [this](const SavedFeature& feature) {
            return m_table.find(feature.name);
        };
        std::stable_sort(m_result.features.begin(), m_result.features.end(),
                         [&](const SavedFeature& first, const SavedFeature& second) {
                             return std::less<>()(place(first), place(second));
                         });
        return std::move(m_result);
    }

private:
    /// Reads the settings for all values of the selectors from \p next on.
    void readGroup(const Selectors& selectors, std::size_t next, const Selection& selection,
                   const std::vector<const Setting*>& settings) {
        if (next == selectors.size()) {
            for (const Setting* setting : settings)
                readOne(*setting, selection);
            return;
        }
        const Setting& selector = *selectors[next];
        for (const FeatureValue& value : valuesOf(selector)) {
            if (m_isCancelled())
                return;
            Selection extended = selection;
            extended.emplace_back(selector.name(), value);
            if (const std::string problem = m_positions.select({extended.back()}); problem.empty())
                readGroup(selectors, next + 1, extended, settings);
            else
                m_result.problems.push_back(problem);
        }
    }

    /// All values of a selector that can be moved, else its present one.
    std::vector<FeatureValue> valuesOf(const Setting& selector) {
        bool writable = false;
        std::vector<FeatureValue> values(1);
        OrvErrorType error = selector.isWritable(writable);
        if (error == OrvErrorSuccess)
            error = writable ? selector.values(values) : selector.read(values.front());
        if (error == OrvErrorSuccess)
            return values;
        m_result.problems.push_back("The values of " + selector.name() + " cannot be read. " +
                                    errorText(error));
        return {};
    }

    void readOne(const Setting& setting, const Selection& selection) {
        if (m_isCancelled())
            return;
        SavedFeature feature{setting.name(), setting.type(), selection, {}};
        bool readable = false;
        bool writable = false;
        OrvErrorType error = setting.isReadable(readable);
        if (error == OrvErrorSuccess)
            error = setting.isWritable(writable);
        // What the camera itself decides now could not be written back.
        if (error == OrvErrorSuccess && (!readable || !writable))
            return;
        if (error == OrvErrorSuccess)
            error = setting.read(feature.value);
        const auto* const number = std::get_if<double>(&feature.value);
        if (error == OrvErrorSuccess && number && !std::isfinite(*number))
            error = OrvErrorInvalidValue;
        if (error == OrvErrorSuccess)
            m_result.features.push_back(std::move(feature));
        else
            m_result.problems.push_back(labelOf(feature) + " cannot be read. " + errorText(error));
    }

    const SettingTable& m_table;
    const std::function<bool()>& m_isCancelled;
    SelectorPositions m_positions;
    ReadSettings m_result;
};

} // namespace

ReadSettings readSettings(const std::shared_ptr<FeatureController>& camera,
                          const std::function<bool()>& isCancelled) {
    const auto module = camera->getModule(cameraModule);
    if (!module)
        return {{}, {"It is not open."}};
    const SettingTable table(*module);
    PersistenceCommands commands(camera, Persistence::Reading);
    ReadSettings result = Reader(table, isCancelled).read();
    if (const std::string problem = commands.end(); !problem.empty())
        result.problems.push_back(problem);
    return result;
}

} // namespace settings
