// filtering_stream.h - the host's input stream: a file's bytes, unpacked when it was stored packed.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_PLATFORM_FILTERING_STREAM_H
#define MEMDATA_PLATFORM_FILTERING_STREAM_H

#include <ios>
#include <istream>
#include <memory>
#include <string>

namespace pql::iostreams {

// Reads from front to end, in blocks, so that large files take little memory. Packed files are recognised
// by their first bytes: gzip, of one member or several, and bzip2; all others are plain. Positions cannot be
// sought. A file that cannot be opened, a directory among them, leaves the stream failed; packed data that
// is damaged or ends early leaves it bad. Exceptions leave only where exceptions() asks for them.
class filtering_stream : public std::istream {
public:
    filtering_stream();
    // Opens as open does.
    explicit filtering_stream(const std::string& name, std::ios_base::openmode mode = std::ios_base::binary);
    ~filtering_stream() override;
    filtering_stream& operator=(filtering_stream&&) = delete; // neither copied nor moved

    // Bytes come as they are whatever the mode; a mode that asks for writing fails.
    void open(const std::string& name, std::ios_base::openmode mode = std::ios_base::binary);
    bool is_open() const;
    void close();

    // Whether the open file is packed, so that its bytes are not those of the stream. False while closed.
    bool isPacked() const;

    // What made the stream fail or go bad, for a message; empty when nothing did.
    const std::string& failureReason() const;

private:
    class Chain;
    std::unique_ptr<Chain> chain_;
    std::string failureReason_;
};

} // namespace pql::iostreams

#endif
