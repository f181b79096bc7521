// lazy_locations.h - a pointer to a location array of a device that is made when it is first read.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_BMM_UTILS_MODEL_LAZY_LOCATIONS_H
#define MEMDATA_BMM_UTILS_MODEL_LAZY_LOCATIONS_H

#include "platform/BasicTypes.h"

#include <concepts>
#include <cstddef>

namespace memdata {

// Reads as a const Element*: a record that is found costs nothing until somebody looks into its arrays. All bytes
// zero is null. The array belongs to whoever made it.
template<class Element>
class LazyLocations {
public:
    using Maker = const Element* (*)(u32 device);

    constexpr LazyLocations() = default;
    constexpr LazyLocations(const Element* array)
        : array_(array), maker_(nullptr), device_(0) {} // not explicit: the field is a pointer to all
    // maker(device) gives the array, and not null. Copies made before the first reading ask for it again.
    constexpr LazyLocations(Maker maker, u32 device) : array_(nullptr), maker_(maker), device_(device) {}

    const Element* get() const {
        if (maker_ != nullptr) {
            array_ = maker_(device_);
            maker_ = nullptr;
        }
        return array_;
    }
    operator const Element*() const { return get(); } // not explicit, as above
    template<std::integral Index>
    const Element& operator[](Index index) const {
        return get()[index];
    }
    // Whether there is an array, without making it.
    friend bool operator==(const LazyLocations& field, std::nullptr_t) {
        return field.array_ == nullptr && field.maker_ == nullptr;
    }

private:
    mutable const Element* array_;
    mutable Maker maker_; // null once the array is made, or where there is none
    u32 device_;          // what the maker knows it by
};

} // namespace memdata

#endif
