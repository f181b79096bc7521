// document.h - an XML document: read from a file, written to one.
// SPDX-License-Identifier: Apache-2.0
//
// What is read passes the preprocessor as any text of the engine: macros, directives and C comments work. A
// backslash is an ordinary character in values. The reader is lenient: what it does not understand inside an element
// it drops quietly, and the caller tests for what it needs.
#ifndef MEMDATA_XML_UTILS_DOCUMENT_H
#define MEMDATA_XML_UTILS_DOCUMENT_H

#include "FileUtils/FileUtils.h"
#include "ParseUtils/streams.h"
#include "XMLUtils/element.h"

// The root: its children are the elements of the document, and the declaration when one was read.
class LNF_XML : public LNF_XML_Element {
public:
    // Adds what the file holds to the document.
    //   macroDefines  a text that is read ahead of the file; may be null
    //   attributes    open flags, kept with the document
    // Status 0; 17 the file is empty; 2 with kERROR_UNEXPECTED_SYMBOL_AND_EXPECTED for what is no element, comment or
    // declaration; that of opening or reading otherwise. What was read ahead of a failure stays in the document.
    int ReadXML(fileSpecType* spec, const char* macroDefines, unsigned attributes);

    // Writes the document; the file appears whole or not at all. A declaration is added unless one was read. Values
    // are written so that any XML reader gets them back.
    //   spec        an extension other than xml is replaced
    //   suffix      of the base name; may be null
    //   attributes  open flags; those of a text output are added
    // Status 0; that of opening or writing.
    int WriteXML(fileSpecType* spec, const char* suffix, int attributes);

    parse_stream* stream = nullptr; // while reading
    u32 attributes = 0;             // open flags
    fileSpecType* spec = nullptr;   // of the latest reading or writing; not owned
    bool hasDeclaration = false;    // one was read
};

inline int LNF_XML_ReadXML(LNF_XML* document, fileSpecType* spec, const char* macroDefines, unsigned attributes) {
    return document->ReadXML(spec, macroDefines, attributes);
}
inline int LNF_XML_WriteXML(LNF_XML* document, fileSpecType* spec, const char* suffix, int attributes) {
    return document->WriteXML(spec, suffix, attributes);
}

// The steps of reading. A token that ends a step is left in token for the next one.

// Reads elements up to the end of the stream. Status as ReadXML.
int ParseXMLFile(LNF_XML* document);
// Reads an element and all that is in it; its opening mark has been read. What is malformed ends the element quietly
// where it stands.
//   names, attributes  allowed names, ended by null; null allows all
//   type      of the element, when it ends with endToken; with ">" it becomes one with children
//   parent    gets the element
// Status 0; 3 with an alert at a limit; 7; that of reading.
int ParseXMLElement(parse_stream* stream, token_element* token, const char* const* names, const char* const* attributes,
    ElementType type, const token_type* endToken, LNF_XML_Element* parent);
// Reads attributes up to the next mark. What is no attribute is passed over.
int ParseXMLAttributeList(
    parse_stream* stream, token_element* token, const char* const* names, LNF_XML_Element* element);
int ParseXMLAttribute(parse_stream* stream, token_element* token, const char* const* names, LNF_XML_Element* element);

#endif
