// list_appender.h - appending to a list of the option record again and again, in linear time.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_LANEFILL_CORE_RECORDS_LIST_APPENDER_H
#define MEMDATA_LANEFILL_CORE_RECORDS_LIST_APPENDER_H

#include "FileUtils/file_spec.h"
#include "StringUtils/StringUtils.h"
#include "SystemUtils/memory.h"
#include "platform/HEXAll.h"

#include <algorithm>

namespace memdata {

// What differs between the two kinds of lists.
struct StringLists {
    using List = StrList;
    using Item = char*;
    static List make(unsigned long n) { return StrListNew(n); }
    static void set(List list, unsigned long i, Item item) { StrListSet(list, i, item); }
    static Item get(List list, unsigned long i) { return StrListGet(list, i); }
    static unsigned long count(List list) { return StrListCount(list); }
};
struct FileSpecLists {
    using List = FileSpecList;
    using Item = fileSpecType*;
    static List make(unsigned long n) { return FileSpecListNew(n); }
    static void set(List list, unsigned long i, Item item) { FileSpecListSet(list, i, item); }
    static Item get(List list, unsigned long i) { return FileSpecListGet(list, i); }
    static unsigned long count(List list) { return FileSpecListCount(list); }
};

// StrListExtend and FileSpecListExtend copy the whole list each time, which a long option text can not afford. This
// keeps spare room behind the entries: null ones, which belong to no list.
template<class Lists>
class ListAppender {
public:
    explicit ListAppender(typename Lists::List* list) : list_(list) { look(); }
    ListAppender& operator=(ListAppender&&) = delete; // neither copied nor moved

    // Others have changed the list.
    void look() { count_ = room_ = Lists::count(*list_); }

    // The list owns the item only on status 0; 7 without memory.
    int append(typename Lists::Item item) {
        if (count_ == room_ && !grow()) return 7;
        Lists::set(*list_, count_++, item);
        return 0;
    }

private:
    bool grow() {
        const unsigned long room = std::max(2 * room_, kFIRST_ROOM);
        try {
            typename Lists::List longer = Lists::make(room);
            for (unsigned long i = 0; i < count_; ++i) Lists::set(longer, i, Lists::get(*list_, i));
            if (*list_ != nullptr) releaseMemory(*list_);
            *list_ = longer;
        } catch (const HEXInternalException&) {
            return false; // lists throw where records give null
        }
        room_ = room;
        return true;
    }

    static constexpr unsigned long kFIRST_ROOM = 4;

    typename Lists::List* list_;
    unsigned long count_ = 0;
    unsigned long room_ = 0;
};

} // namespace memdata

#endif
