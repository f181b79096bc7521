// parameters.h - the parameter manager of the standalone host: a plain table of named booleans.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_HOSTS_STANDALONE_PARAMETERS_H
#define MEMDATA_HOSTS_STANDALONE_PARAMETERS_H

#include "platform/HPAParamMgr.h"

#include <map>
#include <string>
#include <vector>

namespace memdata {

class StandaloneParameters : public HPAParamMgr {
public:
    struct Parameter {
        std::string name;
        std::string description;
        bool defaultValue = false;
        bool value = false;
        HPAParamLifeStatus lifeCycle{}; // 0 where none was set
    };

    enum SetResult { kSET, kUNKNOWN_NAME, kNO_BOOLEAN };

    // A name that is registered already takes the new description and default and keeps its value.
    void registerBoolParam(std::string_view name, std::string_view description, bool defaultValue) override;
    // A name that is not registered throws HEXAlgException.
    void setLifeCycle(std::string_view name, HPAParamLifeStatus status) override;
    bool getValueAsBool(std::string_view name) const override;
    bool getValueIfExistAsBool(std::string_view name, bool defaultValue) const override;
    bool getValueIfExistAsCoalescedBool(std::string_view name, bool defaultValue) const override;

    // False when no such parameter is registered; nothing has changed then.
    bool setValue(std::string_view name, bool value);

    // Takes "true", "on", "yes", "1" and their opposites, in any case. Nothing changes unless kSET.
    SetResult setValueFromText(std::string_view name, std::string_view value);

    // All parameters in the order of registration.
    const std::vector<Parameter>& list() const { return parameters_; }
    const Parameter* find(std::string_view name) const; // null for an unknown name

    void resetToDefaults();

private:
    Parameter* find_(std::string_view name);
    Parameter& get_(std::string_view name); // throws HEXAlgException

    std::vector<Parameter> parameters_;
    std::map<std::string, size_t, std::less<>> indexByName_;
};

} // namespace memdata

#endif
