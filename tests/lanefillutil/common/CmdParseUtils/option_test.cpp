// option_test.cpp - see option_test.h.
// SPDX-License-Identifier: Apache-2.0
#include "option_test.h"

#include "lanefillCore/records/progress.h"

namespace memdata::testing {

namespace {

class Dump {
public:
    void line(const char* name, const std::string& value) { text_ += std::string(name) + ": " + value + "\n"; }
    void text(const char* name, const char* value) {
        if (value != nullptr) line(name, value);
    }
    void file(const char* name, const fileSpecType* spec) {
        if (spec != nullptr) line(name, spec->fullName);
    }
    void flag(const char* name, bool value) {
        if (value) text_ += std::string(name) + "\n";
    }
    void number(const char* name, u64 value) {
        if (value != 0) line(name, std::to_string(value));
    }
    void words(const char* name, StrList list) {
        for (unsigned long i = 0; StrListGet(list, i) != nullptr; ++i) line(name, StrListGet(list, i));
    }
    void maps(FileSpecList list) {
        for (unsigned long i = 0; FileSpecListGet(list, i) != nullptr; ++i) {
            const fileSpecType* spec = FileSpecListGet(list, i);
            std::string value = std::string(1, static_cast<char>(spec->subType)) + " " + spec->fullName;
            u64 size = 0;
            if (const char* data = FileSpecGetFileData(spec, &size); data != nullptr)
                value += " {" + std::string(data, size) + "}";
            const auto* root = static_cast<const char*>(FileSpecGetAttribute(spec));
            if (root != nullptr) value += std::string(" root ") + root;
            line("map", value);
        }
    }
    void files(const char* name, FileSpecList list) {
        for (unsigned long i = 0; FileSpecListGet(list, i) != nullptr; ++i) file(name, FileSpecListGet(list, i));
    }
    void nodes(const char* name, const BDSwitchDataType* node) {
        for (; node != nullptr; node = node->next) {
            std::string value = node->dataFile->fullName;
            if (node->boot.kind != 0) value += " boot " + std::to_string(node->boot.kind);
            if (node->boot.address != 0) value += " at " + std::to_string(node->boot.address);
            if (node->start.isSet) value += " start " + std::to_string(node->start.address);
            if (node->tagCount >= 0) value += " tags " + std::to_string(node->tagCount);
            for (unsigned long i = 0; StrListGet(node->tagNames, i) != nullptr; ++i)
                value += std::string(" ") + StrListGet(node->tagNames, i);
            line(name, value);
        }
    }
    std::string take() { return std::move(text_); }

private:
    std::string text_;
};

std::string trimmed(const std::string& text) {
    const size_t first = text.find_first_not_of('\n');
    if (first == std::string::npos) return "";
    return text.substr(first, text.find_last_not_of('\n') + 1 - first);
}

} // namespace

std::string dumpOptions(const CmdStringOptionsType& options) {
    Dump dump;
    dump.file("program", options.programFile);
    dump.file("preprocess", options.preprocessFile);
    dump.text("defines", options.macroDefines);
    dump.file("optionFile", options.optionFile);
    dump.file("log", options.logFile);
    dump.flag("dumpEnabled", options.dumpEnabled);
    dump.number("dumpMask", options.dumpMask);
    dump.words("include", options.includePaths);
    dump.number("quietMask", options.quietMask);
    dump.maps(options.bmmFiles);
    dump.file("bit", options.bitFile);
    dump.nodes("data", options.bdList);
    dump.file("dataset", options.datasetFile);
    dump.nodes("mem folder", options.bxList);
    dump.file("out xml", options.outputXmlBmmFile);
    dump.file("out bit", options.outputBitFile);
    dump.file("out dump", options.dumpFile);
    dump.file("out vhdl", options.outputVhdlFile);
    dump.files("out image", options.outputImageFiles);
    dump.file("out mem", options.outputMemFile);
    dump.file("out bmm", options.outputBmmFile);
    dump.file("out ucf", options.outputUcfFile);
    dump.file("out verilog", options.outputVerilogFile);
    dump.flag("ignoreUnmapped", options.ignoreUnmapped);
    dump.flag("autoInit", options.autoInit);
    dump.flag("updateAll", options.updateAll);
    dump.flag("designBmm", options.designBmm);
    dump.text("part", options.partName);
    dump.flag("device", options.device != nullptr);
    dump.flag("progress", options.progress == OutputProgress);
    dump.file("image", options.imageFile);
    if (options.byteWidth != 0) dump.line("byteWidth", formatted("%.3Lf", options.byteWidth));
    dump.flag("fillEnabled", options.fillEnabled);
    dump.number("fillByte", options.fillByte);
    dump.number("splitFormat", options.splitFormat);
    dump.words("workflow", options.workflowOps);
    dump.text("info", options.bmmInfoText);
    dump.words("topic", options.helpTopics);
    return dump.take();
}

std::string Options::failure(const std::string& text) {
    EnablePrintAlerts(62); // an earlier text may have changed it
    const int status = parse(text);
    std::string said = trimmed(alerts.take()) + messages.text();
    messages.clear();
    DeleteCmdStringOptions(&options);
    return std::to_string(status) + ": " + said;
}

} // namespace memdata::testing
