// option_record.cpp - see option_record.h.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/records/option_record.h"

#include "FileUtils/journal.h"
#include "ParseUtils/preprocessor.h"

namespace {

// The instance under which the instances of a map are is the attribute of its spec.
void delete_roots(FileSpecList maps) {
    unsigned long i = 0;
    while (fileSpecType* spec = FileSpecListGet(maps, i++)) {
        StrDelete(static_cast<char*>(FileSpecGetAttribute(spec)));
        FileSpecSetAttribute(spec, nullptr);
    }
}

} // namespace

void DeleteCmdStringOptions(CmdStringOptionsType* options) {
    if (options->logFile != nullptr) CloseJournalingFile();
    if (gPP_include_path_list == options->includePaths) register_parsing_include_search_paths(nullptr);
    delete_roots(options->bmmFiles);
    for (fileSpecType** spec : {&options->programFile, &options->preprocessFile, &options->outputBmmFile,
             &options->optionFile, &options->logFile, &options->dumpFile, &options->bitFile, &options->datasetFile,
             &options->outputXmlBmmFile, &options->outputUcfFile, &options->outputVerilogFile, &options->outputVhdlFile,
             &options->outputMemFile, &options->outputBitFile, &options->keyFile, &options->imageFile})
        DeleteFileSpec(spec);
    for (char* text : {options->cmdString, options->macroDefines, options->partName, options->keyText1,
             options->keyText2, options->keyText3, options->bmmInfoText})
        StrDelete(text);
    for (StrList list : {options->includePaths, options->workflowOps, options->helpTopics}) StrListDelete(list);
    for (FileSpecList list : {options->bmmFiles, options->outputImageFiles}) FileSpecListDelete(list);
    delete_BD_switch_data_list(&options->bdList);
    delete_BD_switch_data_list(&options->bxList);
    *options = {};
}
