// HPAParamMgr.h - the host's parameter manager: named booleans with a description and a default.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_PLATFORM_HPA_PARAM_MGR_H
#define MEMDATA_PLATFORM_HPA_PARAM_MGR_H

#include "platform/BasicTypes.h"

#include <string_view>

// A stage in the life of a parameter. What a value means lies with the manager.
enum class HPAParamLifeStatus : int {};

// Names are dotted ("memdata.debugLanefill") and compared byte by byte.
class HPAParamMgr {
public:
    static HPAParamMgr& getParamMgr(); // of the host in force

    HPAParamMgr() = default;
    HPAParamMgr(const HPAParamMgr&) = delete;
    HPAParamMgr& operator=(const HPAParamMgr&) = delete;
    virtual ~HPAParamMgr() = default;

    virtual void registerBoolParam(std::string_view name, std::string_view description, bool defaultValue) = 0;
    virtual void setLifeCycle(std::string_view name, HPAParamLifeStatus status) = 0;

    // A name that is not registered throws HEXAlgException, whose text holds the name.
    virtual bool getValueAsBool(std::string_view name) const = 0;

    // A name that is not registered gives defaultValue. The coalesced form asks all levels at which a
    // manager keeps values; a manager of one level answers both alike.
    virtual bool getValueIfExistAsBool(std::string_view name, bool defaultValue) const = 0;
    virtual bool getValueIfExistAsCoalescedBool(std::string_view name, bool defaultValue) const = 0;
};

#endif
