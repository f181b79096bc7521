// gzip.cpp - see gzip.h.
// SPDX-License-Identifier: Apache-2.0
#include "support/gzip.h"

#include <boost/iostreams/device/back_inserter.hpp>
#include <boost/iostreams/filter/gzip.hpp>
#include <boost/iostreams/filtering_stream.hpp>

std::string memdata::testing::gzipped(std::string_view contents) {
    namespace io = boost::iostreams;
    std::string out;
    {
        io::filtering_ostream chain;
        chain.push(io::gzip_compressor());
        chain.push(io::back_inserter(out));
        chain.write(contents.data(), static_cast<std::streamsize>(contents.size()));
    } // what is buffered goes out with the chain
    return out;
}
