// HEXAll.h - the host's family of exceptions.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_PLATFORM_HEX_ALL_H
#define MEMDATA_PLATFORM_HEX_ALL_H

#include <exception>
#include <string>

class HEXAll : public std::exception {
public:
    explicit HEXAll(std::string message) : message_(std::move(message)) {}
    const char* what() const noexcept override { return message_.c_str(); }
    const std::string& getMessage() const { return message_; }

private:
    std::string message_;
};

class HEXFatal : public HEXAll {
    using HEXAll::HEXAll;
};

class HEXInternalException : public HEXAll {
    using HEXAll::HEXAll;
};

class HEXAlgException : public HEXAll {
    using HEXAll::HEXAll;
};

#endif
