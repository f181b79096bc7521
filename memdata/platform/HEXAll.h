// HEXAll.h - the host's family of exceptions.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_PLATFORM_HEX_ALL_H
#define MEMDATA_PLATFORM_HEX_ALL_H

#include <exception>
#include <string>
#include <utility>

// All carry one text for a person to read.
class HEXAll : public std::exception {
public:
    explicit HEXAll(std::string message) : message_(std::move(message)) {}
    const char* what() const noexcept override { return message_.c_str(); }
    const std::string& getMessage() const { return message_; }

private:
    std::string message_;
};

// Nothing can go on.
class HEXFatal : public HEXAll {
    using HEXAll::HEXAll;
};

// A fault of our own, or memory exhausted where no status can say so.
class HEXInternalException : public HEXAll {
    using HEXAll::HEXAll;
};

// A flow cannot do what it was asked for.
class HEXAlgException : public HEXAll {
    using HEXAll::HEXAll;
};

// An XML document cannot be written or read; the text names the file.
class HXMLException : public HEXAll {
    using HEXAll::HEXAll;
};

#endif
