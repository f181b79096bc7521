// filtering_stream.h - the host's input stream: a file read whole, unpacked when it was stored packed.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_PLATFORM_FILTERING_STREAM_H
#define MEMDATA_PLATFORM_FILTERING_STREAM_H

#include <ios>
#include <istream>
#include <memory>
#include <string>

namespace pql::iostreams {

// Plain, gzip and bzip2 files, recognised by their first bytes. A file that cannot be opened leaves the
// stream failed; damaged packed data leaves it bad.
class filtering_stream : public std::istream {
public:
    filtering_stream();
    explicit filtering_stream(const std::string& name, std::ios_base::openmode mode = std::ios_base::binary);
    ~filtering_stream() override;
    void open(const std::string& name, std::ios_base::openmode mode = std::ios_base::binary);

private:
    struct Chain;
    std::unique_ptr<Chain> chain_;
};

} // namespace pql::iostreams

#endif
