// SPDX-License-Identifier: BSD-3-Clause
#include "settings/SettingsRestorer.h"

#include "features/FeatureController.h"
#include "sdk/ErrorText.h"
#include "settings/PersistenceCommands.h"
#include "settings/SelectorPositions.h"

#include <algorithm>
#include <map>
#include <set>

namespace settings {

namespace {

/// More dependencies in a row than any camera has; ends a circle of features that undo each other.
constexpr int mostPasses = 16;

class Restorer {
public:
    Restorer(const SettingTable& table, const std::vector<SavedFeature>& saved,
             const std::function<bool()>& isCancelled)
        : m_table(table), m_saved(saved), m_isCancelled(isCancelled) {}

    /// Writes what differs until a pass changes nothing. Returns what could not be done.
    std::vector<std::string> write() {
        SelectorPositions positions(m_table);
        std::set<std::string> before;
        for (int pass = 0; pass < mostPasses; ++pass) {
            std::set<std::string> differing;
            for (const SavedFeature& feature : m_saved) {
                if (m_isCancelled())
                    return {};
                if (!isSelector(feature) && !hasValue(feature, positions)) {
                    differing.insert(labelOf(feature));
                    writeOne(feature);
                }
            }
            if (differing.empty() || differing == before)
                break;
            before = std::move(differing);
        }
        for (const SavedFeature& feature : m_saved) {
            if (isSelector(feature))
                positions.setHome(feature.name, feature.value);
        }
        return positions.putBack();
    }

    /// \p explains: also tells what the camera would refuse as it is now.
    std::vector<Difference> compare(std::vector<std::string>& problems, bool explains = false) {
        std::vector<Difference> differences;
        // Selectors first: the others move them.
        for (const bool areSelectors : {true, false}) {
            SelectorPositions positions(m_table);
            for (const SavedFeature& feature : m_saved) {
                if (m_isCancelled())
                    return differences;
                if (isSelector(feature) != areSelectors || hasValue(feature, positions))
                    continue;
                if (explains && m_present)
                    m_reasons[labelOf(feature)] = refusal(feature);
                differences.push_back({feature, m_present, m_reasons[labelOf(feature)]});
            }
            for (const std::string& problem : positions.putBack())
                problems.push_back(problem);
        }
        return differences;
    }

private:
    bool isSelector(const SavedFeature& feature) const {
        const Setting* const setting = m_table.find(feature.name);
        return setting && !setting->selected().empty() && feature.selection.empty();
    }

    /// Reads the feature, into m_present, too. False also when it cannot be read.
    bool hasValue(const SavedFeature& feature, SelectorPositions& positions) {
        m_present.reset();
        std::string& reason = m_reasons[labelOf(feature)];
        const Setting* const setting = m_table.find(feature.name);
        if (!setting) {
            reason = "the camera has no such feature";
            return false;
        }
        if (std::string problem = positions.select(feature.selection); !problem.empty()) {
            reason = std::move(problem);
            return false;
        }
        FeatureValue present;
        if (const OrvErrorType error = setting->read(present); error != OrvErrorSuccess) {
            reason = "it cannot be read " + errorText(error);
            return false;
        }
        m_present = std::move(present);
        return setting->isSame(feature.value, *m_present);
    }

    /// Why the camera would not take the value now. Requires a present value.
    std::string refusal(const SavedFeature& feature) const {
        const Setting& setting = *m_table.find(feature.name);
        return setting.type() == feature.type ? setting.refusal(feature.value)
                                              : "it has another type";
    }

    /// Requires a call of hasValue() before.
    void writeOne(const SavedFeature& feature) {
        if (!m_present)
            return;
        std::string& reason = m_reasons[labelOf(feature)];
        reason = refusal(feature);
        if (!reason.empty())
            return;
        const OrvErrorType error = m_table.find(feature.name)->write(feature.value);
        reason = error == OrvErrorSuccess ? "the camera took another value"
                                          : "the camera refused it " + errorText(error);
    }

    const SettingTable& m_table;
    const std::vector<SavedFeature>& m_saved;
    const std::function<bool()>& m_isCancelled;
    std::optional<FeatureValue> m_present;
    std::map<std::string, std::string> m_reasons;
};

RestoredSettings notOpened() {
    RestoredSettings result;
    result.problems.emplace_back("It is not open.");
    return result;
}

void noteInterruption(const std::function<bool()>& isCancelled, RestoredSettings& result) {
    result.isInterrupted = isCancelled();
    if (!result.isInterrupted)
        return;
    // Not all features were compared.
    result.changed = 0;
    result.problems.emplace_back("It was interrupted.");
}

} // namespace

RestoredSettings compareSettings(const std::shared_ptr<FeatureController>& camera,
                                 const std::vector<SavedFeature>& saved,
                                 const std::function<bool()>& isCancelled) {
    const auto module = camera->getModule(cameraModule);
    if (!module)
        return notOpened();
    const SettingTable table(*module);
    RestoredSettings result;
    result.problems = table.problems();
    result.differences = Restorer(table, saved, isCancelled).compare(result.problems, true);
    noteInterruption(isCancelled, result);
    return result;
}

RestoredSettings restoreSettings(const std::shared_ptr<FeatureController>& camera,
                                 const std::vector<SavedFeature>& saved,
                                 const std::function<bool()>& isCancelled) {
    const auto module = camera->getModule(cameraModule);
    if (!module)
        return notOpened();
    const SettingTable table(*module);
    RestoredSettings result;
    result.problems = table.problems();
    const auto add = [&](const std::vector<std::string>& problems) {
        result.problems.insert(result.problems.end(), problems.begin(), problems.end());
    };
    Restorer restorer(table, saved, isCancelled);
    const auto before = static_cast<int>(restorer.compare(result.problems).size());
    if (before > 0) {
        PersistenceCommands commands(camera, Persistence::Writing);
        add(restorer.write());
        if (const std::string problem = commands.end(); !problem.empty())
            add({problem});
        result.differences = restorer.compare(result.problems);
        // The end of the writing may have changed what was not consistent.
        if (commands.isBegun() && !result.differences.empty()) {
            add(restorer.write());
            result.differences = restorer.compare(result.problems);
        }
    }
    result.changed = std::max(0, before - static_cast<int>(result.differences.size()));
    noteInterruption(isCancelled, result);
    return result;
}

} // namespace settings
