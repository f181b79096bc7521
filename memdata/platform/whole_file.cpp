// whole_file.cpp - a file read whole through the filtering stream.
// SPDX-License-Identifier: Apache-2.0
#include "platform/whole_file.h"

#include "platform/filtering_stream.h"

#include <algorithm>
#include <new>

namespace {

using memdata::WholeFile;

constexpr u64 kFIRST_BLOCK_BYTES = 64 * 1024;

void explain(std::string* reason, const std::string& text) {
    if (reason != nullptr) *reason = text;
}

// The next size of the buffer: that which a plain file tells, else twice what is filled. One byte more than the limit is
// asked for, so that a file of exactly that size passes, and one more than the size, so that its end is met. The last
// step leads to the limit at once: old and new buffer exist side by side.
u64 nextBufferSize(u64 expected, u64 filled, u64 limit) {
    if (expected != 0 && filled <= expected) return std::min(std::max(expected, kFIRST_BLOCK_BYTES) + 1, limit + 1);
    const u64 doubled = std::max(2 * filled, kFIRST_BLOCK_BYTES);
    return doubled > limit / 2 ? limit + 1 : doubled;
}

template<class Bytes>
WholeFile readToTheEnd(pql::iostreams::filtering_stream& in, Bytes* content, std::string* reason, u64 limit) {
    const u64 expected = static_cast<u64>(std::max<std::streamsize>(0, in.rdbuf()->in_avail()));
    u64 filled = 0;
    if (expected == 0) limit = std::min(limit, memdata::kMAX_UNSIZED_FILE_BYTES);
    while (in.good() && expected <= limit && filled <= limit) {
        const u64 wanted = nextBufferSize(expected, filled, limit);
        content->resize(wanted);
        in.read(reinterpret_cast<char*>(content->data()) + filled, static_cast<std::streamsize>(wanted - filled));
        filled += static_cast<u64>(in.gcount());
    }
    if (in.bad()) {
        explain(reason, in.failureReason());
        return WholeFile::kDAMAGED;
    }
    if (std::max(expected, filled) > limit) {
        explain(reason, "it holds more than " + std::to_string(limit) + " bytes");
        return WholeFile::kTOO_LARGE;
    }
    if (filled < expected) {
        explain(reason, "it was cut short while it was read");
        return WholeFile::kDAMAGED;
    }
    content->resize(filled);
    return WholeFile::kREAD;
}

template<class Bytes>
WholeFile readWhole(const std::string& name, Bytes* content, std::string* reason, u64 limit) {
    content->clear();
    pql::iostreams::filtering_stream in(name);
    if (!in) {
        explain(reason, in.failureReason());
        return WholeFile::kCANNOT_OPEN;
    }
    WholeFile result = WholeFile::kTOO_LARGE;
    try {
        result = readToTheEnd(in, content, reason, std::min<u64>(limit, content->max_size() - 1));
    } catch (const std::bad_alloc&) {
        explain(reason, "it does not fit into memory");
    }
    if (result != WholeFile::kREAD) *content = Bytes();
    return result;
}

} // namespace

namespace memdata {

WholeFile readWholeFile(const std::string& name, std::string* content, std::string* reason, u64 limit) {
    return readWhole(name, content, reason, limit);
}

WholeFile readWholeFile(const std::string& name, std::vector<u8>* content, std::string* reason, u64 limit) {
    return readWhole(name, content, reason, limit);
}

} // namespace memdata
