// HPAParamMgr.h - the host's parameter manager: named booleans with a description and a default.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_PLATFORM_HPA_PARAM_MGR_H
#define MEMDATA_PLATFORM_HPA_PARAM_MGR_H

#include "platform/BasicTypes.h"

#include <string>

enum class HPAParamLifeStatus : int {};

class HPAParamMgr {
public:
    static HPAParamMgr& getParamMgr();

    virtual ~HPAParamMgr() = default;
    virtual void registerBoolParam(const std::string& name, const std::string& description, bool defaultValue) = 0;
    virtual void setLifeCycle(const std::string& name, HPAParamLifeStatus status) = 0;
    // A name that is not registered throws HEXAlgException.
    virtual bool getValueAsBool(const std::string& name) const = 0;
    virtual bool getValueIfExistAsBool(const std::string& name, bool defaultValue) const = 0;
    virtual bool getValueIfExistAsCoalescedBool(const std::string& name, bool defaultValue) const = 0;
};

#endif
