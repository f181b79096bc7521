// element.cpp - see element.h.
// SPDX-License-Identifier: Apache-2.0
#include "XMLUtils/element.h"

#include "ParseUtils/numbers.h"
#include "StringUtils/StringUtils.h"
#include "SystemUtils/memory.h"

#include <algorithm>
#include <cstring>
#include <utility>

using memdata::OwnedString;
using memdata::XmlNameList;

namespace {

constexpr u64 kFIRST_ROOM = 4; // entries; most elements have fewer attributes or children, or very many children

bool has_room(XmlNameList* list) {
    if (list->count < list->room) return true;
    const u64 room = std::max(kFIRST_ROOM, 2 * list->room);
    auto** names = static_cast<char**>(getMemory("XML name list", (room + 1) * sizeof(char*)));
    if (names == nullptr) return false;
    std::copy_n(list->names, list->count, names);
    if (list->names != nullptr) releaseMemory(list->names);
    list->names = names;
    list->room = room;
    return true;
}

void delete_names(XmlNameList* list) {
    for (u64 i = 0; i < list->count; ++i) StrDelete(list->names[i]);
    if (list->names != nullptr) releaseMemory(list->names);
    *list = {};
}

// One block for name and value, which stands behind the name's terminator: documents are mostly attributes.
char* new_attribute(const char* name, const char* value) {
    const size_t nameBytes = std::strlen(name) + 1;
    const size_t valueLength = std::strlen(value);
    char* text = StrNew("XML attribute", nameBytes + valueLength);
    if (text == nullptr) return nullptr;
    std::memcpy(text, name, nameBytes);
    std::memcpy(text + nameBytes, value, valueLength + 1);
    StrSetAttribute(text, text + nameBytes);
    return text;
}

char* value_of(const char* name) {
    return static_cast<char*>(StrGetAttribute(name));
}

LNF_XML_Element* element_of(const char* name) {
    return static_cast<LNF_XML_Element*>(StrGetAttribute(name));
}

} // namespace

LNF_XML_Element::LNF_XML_Element(const char* tag) : tagName_(StrDup(tag)) {}

LNF_XML_Element::~LNF_XML_Element() {
    deleteChildren_();
    delete_names(&attributes_);
    StrDelete(tagName_);
}

void* LNF_XML_Element::operator new(std::size_t size) noexcept {
    return getMemory("a 'LNF_XML_Element' record", size);
}

void LNF_XML_Element::operator delete(void* p) {
    if (p != nullptr) releaseMemory(p);
}

// Bottom up along the parents, so that no depth of nesting meets the end of the stack.
void LNF_XML_Element::deleteChildren_() {
    LNF_XML_Element* at = this;
    for (;;) {
        if (at->children_.count != 0) {
            at = element_of(at->children_.names[at->children_.count - 1]);
            continue;
        }
        delete_names(&at->children_);
        if (at == this) return;
        LNF_XML_Element* parent = at->parent_;
        delete at;
        StrDelete(parent->children_.names[--parent->children_.count]);
        at = parent;
    }
}

int LNF_XML_Element::Add_Attribute(const char* name, const char* value) {
    if (name == nullptr || value == nullptr) return 3;
    if (!has_room(&attributes_)) return 7;
    char* attribute = new_attribute(name, value);
    if (attribute == nullptr) return 7;
    attributes_.names[attributes_.count++] = attribute;
    return 0;
}

int LNF_XML_Element::Add_Attribute_Value_Decimal(const char* name, unsigned long value) {
    return Add_Attribute(name, memdata::formatted("%lld", value).c_str());
}

int LNF_XML_Element::Add_Attribute_Value_Hex(const char* name, unsigned long value) {
    return Add_Attribute(name, memdata::formatted("0x%llX", value).c_str());
}

char* LNF_XML_Element::Get_Attribute(const char* name, char** value) const {
    char* found = nullptr;
    for (u64 i = 0; i < attributes_.count && found == nullptr && name != nullptr; ++i)
        if (std::strcmp(attributes_.names[i], name) == 0) found = value_of(attributes_.names[i]);
    if (value != nullptr) *value = found;
    return found;
}

char* LNF_XML_Element::Get_Attribute_Integer(const char* name, unsigned long* result) const {
    char* text = Get_Attribute(name, nullptr);
    long double value = 0;
    if (text == nullptr || StrToNum(text, 10, true, nullptr, nullptr, &value) == 0) return nullptr;
    *result = memdata::unsignedFromValue(value);
    return text;
}

char* LNF_XML_Element::Get_Next_Attribute(char** value) {
    char* name = attributes_.cursor < attributes_.count ? attributes_.names[attributes_.cursor++] : nullptr;
    if (value != nullptr) *value = name == nullptr ? nullptr : value_of(name);
    return name;
}

LNF_XML_Element* LNF_XML_Element::Add_Child_Element(const char* tag, ElementType type) {
    if (tag == nullptr || !has_room(&children_)) return nullptr;
    OwnedString name(StrDup(tag));
    memdata::Tracked<LNF_XML_Element, [](LNF_XML_Element* element) { delete element; }> added;
    if (name != nullptr) added.reset(new LNF_XML_Element(tag));
    if (added == nullptr || added->tagName_ == nullptr) return nullptr;
    added->type_ = type;
    added->parent_ = this;
    StrSetAttribute(name.get(), added.get());
    children_.names[children_.count++] = name.release();
    return added.release();
}

LNF_XML_Element* LNF_XML_Element::Get_Next_Child(const char* tag) {
    if (tag == nullptr) return nullptr;
    const bool takesAny = std::strcmp(tag, "*") == 0;
    while (children_.cursor < children_.count) {
        const char* name = children_.names[children_.cursor++];
        if (takesAny || std::strcmp(name, tag) == 0) return element_of(name);
    }
    return nullptr;
}

LNF_XML_Element* LNF_XML_Element::child(u64 index) const {
    return element_of(children_.names[index]);
}

const char* LNF_XML_Element::attributeValue(u64 index) const {
    return value_of(attributes_.names[index]);
}
