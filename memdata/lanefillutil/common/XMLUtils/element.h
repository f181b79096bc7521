// element.h - an element with its attributes and children.
// SPDX-License-Identifier: Apache-2.0
//
// An element owns its children; deleting it deletes them all, however deep they are nested. Attributes and children
// are kept in order; each list has a read cursor of its own. Texts handed out belong to the element.
#ifndef MEMDATA_XML_UTILS_ELEMENT_H
#define MEMDATA_XML_UTILS_ELEMENT_H

#include "platform/BasicTypes.h"

#include <cstddef>

enum ElementType : u32 {
    kXML_DECLARATION_ELEMENT = 1, // <?tag ... ?>
    kXML_EMPTY_ELEMENT = 2,       // <tag ... />
    kXML_PARENT_ELEMENT = 3,      // <tag ...> children </tag>
};

namespace memdata {

// A growing list of managed strings, each with an entry in its hidden attribute word.
struct XmlNameList {
    char** names; // null-terminated; null while empty
    u64 count;
    u64 room;
    u64 cursor; // of the next to be read
};

} // namespace memdata

class LNF_XML_Element {
public:
    LNF_XML_Element() = default;
    // Get_Tag_Name is null afterwards when memory was exhausted.
    explicit LNF_XML_Element(const char* tag);
    virtual ~LNF_XML_Element();
    LNF_XML_Element& operator=(LNF_XML_Element&&) = delete; // neither copied nor moved

    // Elements are tracked records; null when memory is exhausted.
    static void* operator new(std::size_t size) noexcept;
    static void operator delete(void* p);

    // A value can hold any characters but NUL. Status 0; 3 a null argument; 7.
    int Add_Attribute(const char* name, const char* value);
    int Add_Attribute_Value_Decimal(const char* name, unsigned long value);
    int Add_Attribute_Value_Hex(const char* name, unsigned long value); // "0x1FF"

    // The value of the first attribute of this name, also in *value (may be null); null when there is none.
    char* Get_Attribute(const char* name, char** value) const;
    // Reads the value as a decimal number, or with the prefixes 0x, 0o and 0n in their radix. Gives the value's text,
    // or null when there is no such attribute or it is no number: *result is left alone then.
    char* Get_Attribute_Integer(const char* name, unsigned long* result) const;
    // The name of the next attribute, its value in *value (may be null); null at the end, until Reset_Next_Attribute.
    char* Get_Next_Attribute(char** value);
    unsigned long Get_Attribute_Count() const { return attributes_.count; }
    void Reset_Next_Attribute() { attributes_.cursor = 0; }

    void Set_Type(ElementType type) { type_ = type; }
    ElementType Get_Type() const { return type_; }
    const char* Get_Tag_Name() const { return tagName_; }

    // The new child, at the end; null when memory is exhausted or the tag is null.
    LNF_XML_Element* Add_Child_Element(const char* tag, ElementType type);
    // The next child with this tag, "*" for any; null at the end, until Reset_Next_Child.
    LNF_XML_Element* Get_Next_Child(const char* tag);
    unsigned long Get_Child_Count() const { return children_.count; }
    void Reset_Next_Child() { children_.cursor = 0; }

    // Set by the reader when the text ended inside the element: what follows in it is lost.
    void Set_Cut_Off() { isCutOff_ = true; }
    bool Is_Cut_Off() const { return isCutOff_; }

    // The element that this one is a child of, or null.
    LNF_XML_Element* parent() const { return parent_; }
    // Without the cursors: the child and the attribute name at an index below the count, the value of that name.
    LNF_XML_Element* child(u64 index) const;
    const char* attributeName(u64 index) const { return attributes_.names[index]; }
    const char* attributeValue(u64 index) const;

private:
    void deleteChildren_();

    char* tagName_ = nullptr;
    ElementType type_ = kXML_PARENT_ELEMENT;
    memdata::XmlNameList attributes_{}; // the hidden word is the value
    memdata::XmlNameList children_{};   // the hidden word is the element
    LNF_XML_Element* parent_ = nullptr;
    bool isCutOff_ = false;
};

// The same under the names of plain operations.
inline LNF_XML_Element* LNF_XML_Element_Add_Child_Element(LNF_XML_Element* parent, const char* tag, ElementType type) {
    return parent->Add_Child_Element(tag, type);
}
inline LNF_XML_Element* LNF_XML_Element_Get_Next_Child(LNF_XML_Element* element, const char* tag) {
    return element->Get_Next_Child(tag);
}
inline int LNF_XML_Element_Add_Attribute(LNF_XML_Element* element, const char* name, const char* value) {
    return element->Add_Attribute(name, value);
}
inline int LNF_XML_Element_Add_Attribute_Value_Decimal(LNF_XML_Element* element, const char* name, u64 value) {
    return element->Add_Attribute_Value_Decimal(name, value);
}
inline int LNF_XML_Element_Add_Attribute_Value_Hex(LNF_XML_Element* element, const char* name, u64 value) {
    return element->Add_Attribute_Value_Hex(name, value);
}
inline char* LNF_XML_Element_Get_Attribute(const LNF_XML_Element* element, const char* name, char** value) {
    return element->Get_Attribute(name, value);
}
inline char* LNF_XML_Element_Get_Attribute_Integer(const LNF_XML_Element* element, const char* name, u64* result) {
    return element->Get_Attribute_Integer(name, result);
}

#endif
