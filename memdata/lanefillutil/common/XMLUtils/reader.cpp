// reader.cpp - documents read.
// SPDX-License-Identifier: Apache-2.0
#include "ParseUtils/ParseUtils.h"
#include "ParseUtils/context_texts.h"
#include "SystemUtils/alerts.h"
#include "XMLUtils/document.h"
#include "XMLUtils/entities.h"
#include "XMLUtils/limits.h"
#include "XMLUtils/xml_symbols.h"

#include <cstring>
#include <string_view>

using namespace memdata;

namespace {

constexpr const char* validDeclarationName[] = {"xml", nullptr};
constexpr const char* validDeclarationAttributes[] = {"version", "encoding", nullptr};
constexpr std::string_view kBYTE_ORDER_MARK = "\xEF\xBB\xBF";

bool is_allowed(const char* name, const char* const* names) {
    if (names == nullptr) return true;
    while (*names != nullptr && std::strcmp(*names, name) != 0) ++names;
    return *names != nullptr;
}

bool is_allowed_word(const token_element* token, const char* const* names) {
    return token->type == &kIDENTIFIER_TOKEN && is_allowed(token->text, names);
}

bool is_mark(const token_element* token) {
    return isOfClass(token->type, kXML_MARK_TOKEN) || token->type == &kEND_OF_FILE;
}

// Moves behind the mark that ends a comment, or to the end of the text, by characters: words of a comment may touch
// its marks, and quotes, slashes and macros mean nothing in it.
void pass_comment(parse_stream* stream) {
    parse_stream* context = activeContext(stream);
    if (context->lookAhead->depth != 0) set_stream_position(stream, get_stream_position(stream));
    while (context->position < context->textEnd && *context->position != '\xFF') {
        const std::string_view rest(context->position, static_cast<size_t>(context->textEnd - context->position));
        if (rest.starts_with("-->")) {
            context->position += 3;
            return;
        }
        if (rest[0] == '\n' || rest[0] == '\r')
            passLineEnd(context);
        else
            ++context->position;
    }
}

int pass_comment_and_read(parse_stream* stream, token_element* token) {
    pass_comment(stream);
    return get_next_token(stream, token);
}

// The state of an element after a piece of it was read.
enum class ElementState {
    kOPEN,  // its children follow
    kENDED, // it is whole, or was malformed
};

struct ElementHeadType {
    const char* const* names;
    const char* const* attributes;
    ElementType type;
    const token_type* endToken;
};
constexpr ElementHeadType kDECLARATION_HEAD = {
    validDeclarationName, validDeclarationAttributes, kXML_DECLARATION_ELEMENT, &kXML_DECLARATION_END};
constexpr ElementHeadType kELEMENT_HEAD = {nullptr, nullptr, kXML_EMPTY_ELEMENT, &kXML_EMPTY_TAG_END};

// From the name to the mark that ends the tag.
int read_head(parse_stream* stream, token_element* token, const ElementHeadType& head, LNF_XML_Element* parent,
    u32 depth, LNF_XML_Element** element, ElementState* state) {
    *state = ElementState::kENDED;
    if (int status = get_next_token(stream, token); status != 0) return status;
    if (!is_allowed_word(token, head.names)) return 0;
    if (depth >= kMAX_XML_DEPTH)
        return PrintErrorLocation(stream, kERROR_XML_TOO_DEEP, 3, token, token->text, kMAX_XML_DEPTH);
    *element = parent->Add_Child_Element(token->text, head.type);
    if (*element == nullptr) return 7;
    int status = get_next_token(stream, token);
    if (status == 0) status = ParseXMLAttributeList(stream, token, head.attributes, *element);
    if (status != 0) return status;
    if (token->type == &kXML_TAG_END) {
        (*element)->Set_Type(kXML_PARENT_ELEMENT);
        *state = ElementState::kOPEN;
    } else if (token->type != head.endToken) {
        if (token->type == &kEND_OF_FILE) (*element)->Set_Cut_Off();
        return 0;
    }
    return get_next_token(stream, token);
}

// The end tag of an element, from its mark on. What does not match is left in token.
int read_end_tag(parse_stream* stream, token_element* token, LNF_XML_Element* element) {
    if (int status = get_next_token(stream, token); status != 0) return status;
    if (token->type == &kIDENTIFIER_TOKEN && std::strcmp(token->text, element->Get_Tag_Name()) == 0) {
        if (int status = get_next_token(stream, token); status != 0) return status;
        if (token->type == &kXML_TAG_END) return get_next_token(stream, token);
    }
    if (token->type == &kEND_OF_FILE) element->Set_Cut_Off();
    return 0;
}

// An open element with all that is in it. Children are walked along their parents, not by recursion.
int read_contents(
    parse_stream* stream, token_element* token, LNF_XML_Element* element, const LNF_XML_Element* outside) {
    for (u32 depth = 1; element != outside;) {
        int status = 0;
        if (token->type == &kXML_COMMENT_BEGIN) {
            status = pass_comment_and_read(stream, token);
        } else if (token->type == &kXML_START_TAG_BEGIN) {
            LNF_XML_Element* child = nullptr;
            ElementState state{};
            status = read_head(stream, token, kELEMENT_HEAD, element, depth, &child, &state);
            if (status == 0 && state == ElementState::kOPEN) {
                element = child;
                ++depth;
            }
        } else {
            if (token->type == &kXML_END_TAG_START)
                status = read_end_tag(stream, token, element);
            else if (token->type == &kEND_OF_FILE)
                element->Set_Cut_Off();
            element = element->parent();
            --depth;
        }
        if (status != 0) return status;
    }
    return 0;
}

void pass_byte_order_mark(parse_stream* root) {
    const std::string_view text(root->position, static_cast<size_t>(root->textEnd - root->position));
    if (text.starts_with(kBYTE_ORDER_MARK)) root->position += kBYTE_ORDER_MARK.size();
}

} // namespace

int ParseXMLAttribute(parse_stream* stream, token_element* token, const char* const* names, LNF_XML_Element* element) {
    const bool isAllowed = is_allowed(token->text, names);
    TokenOwner name(dup_token_element(token));
    if (name == nullptr) return 7;
    if (int status = get_next_token(stream, token); status != 0) return status;
    if (!isAllowed || token->type != &kEQUAL) return 0;
    if (int status = get_next_token(stream, token); status != 0) return status;
    if (token->type != &kQUOTED_STRING_TOKEN && token->type != &kQUOTED_TEXT_TOKEN) return 0;
    if (element->Get_Attribute_Count() >= kMAX_XML_ATTRIBUTES)
        return PrintErrorLocation(
            stream, kERROR_TOO_MANY_XML_ATTRIBUTES, 3, token, element->Get_Tag_Name(), kMAX_XML_ATTRIBUTES);
    token->length = static_cast<u32>(replaceXmlEntities(token->text, token->length));
    if (std::memchr(token->text, '\0', token->length) != nullptr)
        return PrintErrorLocation(stream, kERROR_XML_ZERO_BYTE, 3, token, name->text, element->Get_Tag_Name());
    if (int status = element->Add_Attribute(name->text, token->text); status != 0) return status;
    return get_next_token(stream, token);
}

int ParseXMLAttributeList(
    parse_stream* stream, token_element* token, const char* const* names, LNF_XML_Element* element) {
    while (!is_mark(token)) {
        const bool isWord = token->type == &kIDENTIFIER_TOKEN;
        const int status = isWord ? ParseXMLAttribute(stream, token, names, element) : get_next_token(stream, token);
        if (status != 0) return status;
    }
    return 0;
}

int ParseXMLElement(parse_stream* stream, token_element* token, const char* const* names, const char* const* attributes,
    ElementType type, const token_type* endToken, LNF_XML_Element* parent) {
    LNF_XML_Element* element = nullptr;
    ElementState state{};
    const int status = read_head(stream, token, {names, attributes, type, endToken}, parent, 0, &element, &state);
    if (status != 0 || state == ElementState::kENDED) return status;
    return read_contents(stream, token, element, parent);
}

int ParseXMLFile(LNF_XML* document) {
    parse_stream* stream = document->stream;
    TokenOwner token(get_token_element());
    if (token == nullptr) return 7;
    int status = get_next_token(stream, token.get());
    while (status == 0 && token->type != &kEND_OF_FILE) {
        const auto parse = [&](const ElementHeadType& head) {
            return ParseXMLElement(
                stream, token.get(), head.names, head.attributes, head.type, head.endToken, document);
        };
        if (token->type == &kXML_DECLARATION_BEGIN) {
            const u64 countBefore = document->Get_Child_Count();
            status = parse(kDECLARATION_HEAD);
            if (document->Get_Child_Count() != countBefore) document->hasDeclaration = true;
        } else if (token->type == &kXML_COMMENT_BEGIN) {
            status = pass_comment_and_read(stream, token.get());
        } else if (token->type == &kXML_START_TAG_BEGIN) {
            status = parse(kELEMENT_HEAD);
        } else {
            status = PrintErrorLocation(
                stream, kERROR_UNEXPECTED_SYMBOL_AND_EXPECTED, 2, token.get(), token->text, "valid XML syntax");
        }
    }
    return status;
}

int LNF_XML::ReadXML(fileSpecType* file, const char* macroDefines, unsigned flags) {
    if (file == nullptr) return 3;
    spec = file;
    attributes = flags;
    StreamOwner opened;
    if (int status = open_parse_DiskFile(file, "xml", &xml_symbol_set, macroDefines, nullptr, opened.out());
        status != 0)
        return status;
    pass_byte_order_mark(opened.get());
    // Values hold file names: a backslash separates folders there. The text ahead of the file keeps its own modes.
    opened->parseModes |= kMODE_RAW_BACKSLASH;
    showAsFile(opened.get());
    stream = opened.get();
    const int status = ParseXMLFile(this);
    stream = nullptr;
    if (status != 0) return status;
    parse_stream* finished = opened.release();
    return close_parse_stream(&finished);
}
