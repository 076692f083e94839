// SPDX-License-Identifier: BSD-3-Clause
#include "features/FeatureValue.h"

namespace {

struct Text {
    std::string operator()(bool value) const { return value ? "true" : "false"; }
    std::string operator()(const std::string& value) const { return value; }
    template <typename Number> std::string operator()(Number value) const {
        return std::to_string(value);
    }
};

} // namespace

std::string toText(const FeatureValue& value) {
    return std::visit(Text{}, value);
}
