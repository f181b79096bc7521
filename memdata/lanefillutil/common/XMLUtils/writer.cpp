// writer.cpp - documents written.
// SPDX-License-Identifier: Apache-2.0
#include "SystemUtils/memory.h"
#include "XMLUtils/document.h"
#include "XMLUtils/entities.h"

#include <string>
#include <vector>

using namespace memdata;

namespace {

constexpr size_t kBLOCK_BYTES = size_t{64} << 10;

// The text on its way to the file, which takes it in blocks.
struct TextBlockType {
    fileIODescriptor* file;
    std::string text;
};

int flush(TextBlockType* block) {
    const int status = outputLine(block->file, block->text.c_str());
    block->text.clear();
    return status;
}

int flush_when_full(TextBlockType* block) {
    return block->text.size() < kBLOCK_BYTES ? 0 : flush(block);
}

const char* head_of(ElementType type) {
    return type == kXML_DECLARATION_ELEMENT ? "<?" : "<";
}

const char* tail_of(ElementType type) {
    return type == kXML_DECLARATION_ELEMENT ? "?>\n" : type == kXML_EMPTY_ELEMENT ? "/>\n" : ">\n";
}

int OutputXMLElement(TextBlockType* block, const LNF_XML_Element* element, size_t depth) {
    std::string& text = block->text;
    text.append(depth, '\t').append(head_of(element->Get_Type())).append(element->Get_Tag_Name());
    for (u64 i = 0; i < element->Get_Attribute_Count(); ++i) {
        text.append(" ").append(element->attributeName(i)).append("=\"");
        appendXmlValue(&text, element->attributeValue(i));
        text += '"';
    }
    text += tail_of(element->Get_Type());
    return flush_when_full(block);
}

int output_end_tag(TextBlockType* block, const LNF_XML_Element* element, size_t depth) {
    block->text.append(depth, '\t').append("</").append(element->Get_Tag_Name()).append(">\n");
    return flush_when_full(block);
}

// An element that is being written, and the next of its children.
struct OpenElementType {
    const LNF_XML_Element* element;
    u64 nextChild;
};

// Everything in an element, at depth tabs. Open elements stand in a list: no depth of nesting meets the end of the
// stack.
int OutputXMLFile(TextBlockType* block, const LNF_XML_Element* parent) {
    std::vector<OpenElementType> open{{parent, 0}};
    int status = 0;
    while (status == 0) {
        OpenElementType& top = open.back();
        const size_t depth = open.size() - 1;
        if (top.nextChild == top.element->Get_Child_Count()) {
            if (depth == 0) break;
            status = output_end_tag(block, top.element, depth - 1);
            open.pop_back();
            continue;
        }
        const LNF_XML_Element* child = top.element->child(top.nextChild++);
        status = OutputXMLElement(block, child, depth);
        if (child->Get_Type() == kXML_PARENT_ELEMENT) open.push_back({child, 0});
    }
    return status;
}

} // namespace

int LNF_XML::WriteXML(fileSpecType* file, const char* suffix, int flags) {
    if (file == nullptr) return 3;
    spec = file;
    attributes = static_cast<u32>(flags) | kTEXT_WRITE | kREFUSE_OVERWRITE;
    Tracked<fileIODescriptor, abandonFile> output;
    if (int status = OpenDiskFile(file, nullptr, "xml", suffix, attributes, output.out()); status != 0) return status;

    TextBlockType block{output.get(), {}};
    if (!hasDeclaration) block.text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    int status = OutputXMLFile(&block, this);
    if (status == 0) status = flush(&block);
    if (status != 0) return status;
    fileIODescriptor* finished = output.release();
    status = Close_File(&finished);
    abandonFile(&finished);
    return status;
}
