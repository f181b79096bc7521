// filtering_stream.cpp - a file behind the filters that its first bytes ask for.
// SPDX-License-Identifier: Apache-2.0
#include "platform/filtering_stream.h"

#include "platform/BasicTypes.h"

#include "platform/run_inputs.h"

#include <algorithm>
#include <array>
#include <boost/iostreams/categories.hpp>
#include <boost/iostreams/filter/bzip2.hpp>
#include <boost/iostreams/filter/gzip.hpp>
#include <boost/iostreams/filtering_streambuf.hpp>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <new>
#include <optional>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace {

namespace filters = boost::iostreams;

constexpr size_t kBLOCK_BYTES = 64 * 1024;

// The first bytes of packed files.
//   gzip   1F 8B 08            08: deflate, the only method there is
//   bzip2  "BZh" '1'..'9' then 31 41 59 26 53 59 of a block or 17 72 45 38 50 90 of an empty file
constexpr size_t kMAGIC_BYTES = 10;
constexpr std::string_view kGZIP_MAGIC("\x1F\x8B\x08", 3);
constexpr std::string_view kBZIP2_MAGIC("BZh", 3);
constexpr std::string_view kBZIP2_BLOCK("\x31\x41\x59\x26\x53\x59", 6);
constexpr std::string_view kBZIP2_END("\x17\x72\x45\x38\x50\x90", 6);

enum Packing { kPLAIN, kGZIP, kBZIP2 };

Packing packingOf(std::string_view head) {
    if (head.starts_with(kGZIP_MAGIC)) return kGZIP;
    if (!head.starts_with(kBZIP2_MAGIC) || head.size() < kMAGIC_BYTES) return kPLAIN;
    const std::string_view first = head.substr(4);
    const bool isLevel = head[3] >= '1' && head[3] <= '9';
    return isLevel && (first == kBZIP2_BLOCK || first == kBZIP2_END) ? kBZIP2 : kPLAIN;
}

// A file, open for reading, whose first bytes have been looked at.
class InputFile {
public:
    explicit InputFile(const std::string& name) : descriptor_(::open(name.c_str(), O_RDONLY | O_CLOEXEC)) {
        if (descriptor_ < 0) throw std::system_error(errno, std::generic_category());
        memdata::noteRunInput(descriptor_);
        try {
            takeFacts_();
            readHead_();
        } catch (...) {
            ::close(descriptor_);
            throw;
        }
    }
    ~InputFile() { ::close(descriptor_); }
    InputFile& operator=(InputFile&&) = delete; // neither copied nor moved

    std::string_view head() const { return {head_.data(), headBytes_}; }

    // What read has not given yet, as far as is known: 0 for pipes and devices.
    u64 bytesLeft() const { return byteCount_ - std::min(byteCount_, bytesGiven_); }

    // From the front, the head included. The count of bytes read; 0 at the end.
    size_t read(char* to, size_t count) {
        const bool inHead = bytesGiven_ < headBytes_;
        const size_t given = inHead ? readHeadAgain_(to, count) : readFile_(to, count);
        bytesGiven_ += given;
        return given;
    }

private:
    void takeFacts_() {
        struct stat facts {};
        if (::fstat(descriptor_, &facts) != 0) throw std::system_error(errno, std::generic_category());
        if (S_ISDIR(facts.st_mode)) throw std::system_error(EISDIR, std::generic_category());
        if (S_ISREG(facts.st_mode)) byteCount_ = static_cast<u64>(facts.st_size);
    }

    // A pipe may give its first bytes one by one.
    void readHead_() {
        while (headBytes_ < head_.size()) {
            const size_t count = readFile_(head_.data() + headBytes_, head_.size() - headBytes_);
            if (count == 0) return;
            headBytes_ += count;
        }
    }

    size_t readHeadAgain_(char* to, size_t count) const {
        const std::string_view left = head().substr(static_cast<size_t>(bytesGiven_));
        return left.copy(to, count);
    }

    size_t readFile_(char* to, size_t count) const {
        ssize_t got = 0;
        do got = ::read(descriptor_, to, count);
        while (got < 0 && errno == EINTR);
        if (got < 0) throw std::system_error(errno, std::generic_category());
        return static_cast<size_t>(got);
    }

    int descriptor_;
    std::array<char, kMAGIC_BYTES> head_{};
    size_t headBytes_ = 0;
    u64 byteCount_ = 0;
    u64 bytesGiven_ = 0;
};

// The file as the filters want it.
struct FileSource {
    using char_type = char;
    using category = filters::source_tag;

    InputFile* file;

    std::streamsize read(char* to, std::streamsize count) {
        const size_t got = file->read(to, static_cast<size_t>(count));
        return got == 0 && count != 0 ? -1 : static_cast<std::streamsize>(got);
    }
};

} // namespace

namespace pql::iostreams {

// The buffer behind the stream: file, filters where needed, one block of unpacked bytes. Empty while closed.
class filtering_stream::Chain : public std::streambuf {
public:
    explicit Chain(filtering_stream* owner) : owner_(owner) {}

    // Throws std::system_error.
    void open(const std::string& name) {
        file_.emplace(name);
        const Packing packing = packingOf(file_->head());
        if (packing == kPLAIN) return;
        filters_.emplace();
        if (packing == kGZIP) filters_->push(filters::gzip_decompressor(), kBLOCK_BYTES);
        if (packing == kBZIP2) filters_->push(filters::bzip2_decompressor(), kBLOCK_BYTES);
        filters_->push(FileSource{&*file_}, kBLOCK_BYTES);
    }

    void close() {
        filters_.reset(); // reads from the file
        file_.reset();
        hasFailed_ = false;
        setg(nullptr, nullptr, nullptr);
    }

    bool isOpen() const { return file_.has_value(); }
    bool isPacked() const { return filters_.has_value(); }

protected:
    int_type underflow() override {
        if (gptr() != egptr()) return traits_type::to_int_type(*gptr());
        const size_t got = next_(block_.data(), block_.size());
        setg(block_.data(), block_.data(), block_.data() + got);
        return got == 0 ? traits_type::eof() : traits_type::to_int_type(*gptr());
    }

    // What in_avail() tells of a plain file: how many bytes will come, so that a reader can make room at once.
    std::streamsize showmanyc() override {
        return file_ && !filters_ && !hasFailed_ ? static_cast<std::streamsize>(file_->bytesLeft()) : 0;
    }

    // Large requests go past the block.
    std::streamsize xsgetn(char* to, std::streamsize count) override {
        std::streamsize done = 0;
        while (done < count) {
            const std::streamsize wanted = count - done;
            if (gptr() != egptr()) {
                const std::streamsize held = std::min<std::streamsize>(wanted, egptr() - gptr());
                std::memcpy(to + done, gptr(), static_cast<size_t>(held));
                gbump(static_cast<int>(held));
                done += held;
            } else if (wanted >= static_cast<std::streamsize>(block_.size())) {
                const size_t got = next_(to + done, static_cast<size_t>(wanted));
                if (got == 0) break;
                done += static_cast<std::streamsize>(got);
            } else if (underflow() == traits_type::eof()) {
                break;
            }
        }
        return done;
    }

private:
    // The next bytes; none at the end, and none behind damage. Whatever goes wrong below makes the stream
    // bad here, because a reader of the buffer itself would meet the exception otherwise.
    size_t next_(char* to, size_t count) {
        if (!file_ || hasFailed_) return 0;
        try {
            if (!filters_) return file_->read(to, count);
            const std::streamsize got = filters_->sgetn(to, static_cast<std::streamsize>(count));
            return got < 0 ? 0 : static_cast<size_t>(got);
        } catch (const std::ios_base::failure&) { // of the filters, and a system_error, too
            owner_->failureReason_ = "the packed data is damaged or ends early";
        } catch (const std::system_error& error) {
            owner_->failureReason_ = error.code().message();
        } catch (const std::bad_alloc&) {
            owner_->failureReason_ = "there is not enough memory to unpack it";
        }
        hasFailed_ = true;
        owner_->setstate(std::ios_base::badbit);
        return 0;
    }

    filtering_stream* owner_;
    std::optional<InputFile> file_;
    std::optional<filters::filtering_streambuf<filters::input>> filters_;
    std::array<char, kBLOCK_BYTES> block_{};
    bool hasFailed_ = false;
};

filtering_stream::filtering_stream() : std::istream(nullptr), chain_(std::make_unique<Chain>(this)) {
    rdbuf(chain_.get()); // clears the state, which is bad without a buffer
}

filtering_stream::filtering_stream(const std::string& name, std::ios_base::openmode mode) : filtering_stream() {
    open(name, mode);
}

filtering_stream::~filtering_stream() = default;

void filtering_stream::open(const std::string& name, std::ios_base::openmode mode) {
    close();
    failureReason_.clear();
    clear();
    try {
        if ((mode & (std::ios_base::out | std::ios_base::app)) != 0)
            throw std::system_error(EINVAL, std::generic_category());
        chain_->open(name);
    } catch (const std::system_error& error) {
        failureReason_ = error.code().message();
    }
    if (!chain_->isOpen()) setstate(std::ios_base::failbit);
}

bool filtering_stream::is_open() const {
    return chain_->isOpen();
}

void filtering_stream::close() {
    chain_->close();
}

bool filtering_stream::isPacked() const {
    return chain_->isPacked();
}

const std::string& filtering_stream::failureReason() const {
    return failureReason_;
}

} // namespace pql::iostreams
