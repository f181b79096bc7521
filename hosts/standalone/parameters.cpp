// parameters.cpp - the parameter manager of the standalone host.
// SPDX-License-Identifier: Apache-2.0
#include "hosts/standalone/parameters.h"

#include "platform/HEXAll.h"

#include <algorithm>

namespace {

struct BooleanWord {
    std::string_view text;
    bool value;
};

constexpr BooleanWord kBOOLEAN_WORDS[] = {
    {"true", true},
    {"false", false},
    {"on", true},
    {"off", false},
    {"yes", true},
    {"no", false},
    {"1", true},
    {"0", false},
};

[[noreturn]] void throwUnknown(std::string_view name) {
    throw HEXAlgException("There is no parameter '" + std::string(name) + "'.");
}

char lowerCase(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

bool sameWord(std::string_view a, std::string_view b) {
    return std::ranges::equal(a, b, {}, lowerCase, lowerCase);
}

} // namespace

namespace memdata {

void StandaloneParameters::registerBoolParam(std::string_view name, std::string_view description, bool defaultValue) {
    if (Parameter* known = find_(name); known != nullptr) {
        known->description = description;
        known->defaultValue = defaultValue;
        return;
    }
    parameters_.push_back({std::string(name), std::string(description), defaultValue, defaultValue, {}});
    indexByName_.emplace(name, parameters_.size() - 1);
}

void StandaloneParameters::setLifeCycle(std::string_view name, HPAParamLifeStatus status) {
    get_(name).lifeCycle = status;
}

bool StandaloneParameters::getValueAsBool(std::string_view name) const {
    const Parameter* known = find(name);
    if (known == nullptr) throwUnknown(name);
    return known->value;
}

bool StandaloneParameters::getValueIfExistAsBool(std::string_view name, bool defaultValue) const {
    const Parameter* known = find(name);
    return known == nullptr ? defaultValue : known->value;
}

// One table, one level.
bool StandaloneParameters::getValueIfExistAsCoalescedBool(std::string_view name, bool defaultValue) const {
    return getValueIfExistAsBool(name, defaultValue);
}

bool StandaloneParameters::setValue(std::string_view name, bool value) {
    Parameter* known = find_(name);
    if (known == nullptr) return false;
    known->value = value;
    return true;
}

StandaloneParameters::SetResult StandaloneParameters::setValueFromText(std::string_view name, std::string_view value) {
    if (find(name) == nullptr) return kUNKNOWN_NAME;
    const auto* word =
        std::ranges::find_if(kBOOLEAN_WORDS, [&](const BooleanWord& known) { return sameWord(known.text, value); });
    if (word == std::end(kBOOLEAN_WORDS)) return kNO_BOOLEAN;
    setValue(name, word->value);
    return kSET;
}

const StandaloneParameters::Parameter* StandaloneParameters::find(std::string_view name) const {
    const auto place = indexByName_.find(name);
    return place == indexByName_.end() ? nullptr : &parameters_[place->second];
}

void StandaloneParameters::resetToDefaults() {
    for (Parameter& parameter : parameters_) parameter.value = parameter.defaultValue;
}

StandaloneParameters::Parameter* StandaloneParameters::find_(std::string_view name) {
    const auto place = indexByName_.find(name);
    return place == indexByName_.end() ? nullptr : &parameters_[place->second];
}

StandaloneParameters::Parameter& StandaloneParameters::get_(std::string_view name) {
    Parameter* known = find_(name);
    if (known == nullptr) throwUnknown(name);
    return *known;
}

} // namespace memdata
