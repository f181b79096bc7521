// report_test.cpp - the table of benchmarks: ratios, marks, growth, what is
// missing, the document, profiles. SPDX-License-Identifier: Apache-2.0
#include "support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <string>

namespace memdata::testing {
namespace {

// What a piece of Python prints that has `report` imported.
class Report : public ::testing::Test {
protected:
    std::string python(const std::string& text) {
        folder_.write("script.py", "import sys\n"
                                   "sys.path.insert(0, '" MEMDATA_TEST_DATA "/../bench')\n"
                                   "import json, report\n" +
                                       text);
        FILE* pipe = popen(("python3 -B -E -S '" + (folder_.path() / "script.py").string() + "' 2>&1").c_str(), "r");
        if (pipe == nullptr) return "no python3";
        std::string printed;
        for (int c; (c = std::fgetc(pipe)) != EOF;) printed += static_cast<char>(c);
        pclose(pipe);
        return printed;
    }
    // The chosen entries of the record that comes of a row and samples, both as
    // Python has them.
    std::string record(const std::string& row, const std::string& samples, const std::string& entries) {
        return python("row = {'group': 'jobs', 'name': 'a job', " + row +
                      "}\n"
                      "record = report.record_of(row, " +
                      samples +
                      ")\n"
                      "print(*[record[entry] for entry in '" +
                      entries + "'.split()])\n");
    }
    TemporaryFolder folder_;
};

constexpr const char* kTWO_ROUNDS = "{'p:a': [{'rate': 2e8, 'seconds': 0.004, 'over': 3.0}, {'rate': 3e8, "
                                    "'seconds': 0.002, 'over': 2.0}]}";

TEST_F(Report, TakesTheBestRoundAsTheFigureInItsUnit) {
    EXPECT_EQ(record("'from': 'p:a', 'value': 'rate', 'unit': 'MB/s'", kTWO_ROUNDS, "value rounds"), "300.0 2\n");
    EXPECT_EQ(record("'from': 'p:a', 'value': 'seconds', 'unit': 'ms'", kTWO_ROUNDS, "value"), "2.0\n");
}

TEST_F(Report, ScalesACounterByTheRowsOwnFactor) {
    EXPECT_EQ(record("'from': 'p:a', 'value': 'over', 'unit': 'us', 'factor': 1", kTWO_ROUNDS, "value"), "2.0\n");
}

TEST_F(Report, TakesTheMedianOfRatiosAndTellsTheirRange) {
    EXPECT_EQ(record("'from': 'p:a', 'value': 'n', 'unit': 'ms', 'ratio': 'r'",
                  "{'p:a': [{'n': 1, 'r': 9.0}, {'n': 1, 'r': 1.0}, {'n': 1, "
                  "'r': 2.0}]}",
                  "ratio lowest_ratio highest_ratio"),
        "2.0 1.0 9.0\n");
}

TEST_F(Report, PairsTwoSourcesRoundByRound) {
    const std::string samples = "{'p:large': [{'t': 6.0}, {'t': 40.0}, {'t': 9.0}],"
                                " 'p:small': [{'t': 3.0}, {'t': 10.0}, {'t': 3.0}]}";
    // 2, 4 and 3: the median of the best times would be 6 over 3.
    EXPECT_EQ(
        record("'from': 'p:large', 'over': 'p:small', 'value': 't', 'unit': 's'", samples, "value ratio"), "6.0 3.0\n");
}

TEST_F(Report, TellsGrowthOfARateAsTheTimeOfAByte) {
    const std::string samples = "{'p:64': [{'rate': 1e8}], 'p:1': [{'rate': 2e8}]}";
    EXPECT_EQ(record("'from': 'p:64', 'over': 'p:1', 'value': 'rate', 'unit': "
                     "'MB/s', 'ratio_most': 1.25",
                  samples, "ratio mark met"),
        "2.0 <= 1.25 False\n");
}

TEST_F(Report, MeetsAMarkAtItsEdge) {
    EXPECT_EQ(python("for limit in ({'ratio_least': 0.5}, {'ratio_least': 0.51}, "
                     "{'ratio_most': 0.5},\n"
                     "              {'ratio_most': 0.49}, {'value_most': 10}, "
                     "{'value_least': 10.1}):\n"
                     "    row = {'group': 'jobs', 'name': 'a job', 'from': "
                     "'p:a', 'value': 'n', 'unit': 'ms',\n"
                     "           'ratio': 'r', **limit}\n"
                     "    record = report.record_of(row, {'p:a': [{'n': 0.010, "
                     "'r': 0.5}]})\n"
                     "    print(record['mark'], record['met'])\n"),
        ">= 0.5 True\n>= 0.51 False\n<= 0.5 True\n<= 0.49 False\n<= 10 ms "
        "True\n>= 10.1 ms False\n");
}

TEST_F(Report, ARowWithoutAMarkIsNeitherMetNorMissed) {
    EXPECT_EQ(record("'from': 'p:a', 'value': 'rate', 'unit': 'MB/s'", kTWO_ROUNDS, "mark met"), "None None\n");
}

TEST_F(Report, LeavesOutARowWhosePeerIsNotInstalled) {
    EXPECT_EQ(record("'from': 'p:a', 'value': 'rate', 'unit': 'MB/s', 'ratio': "
                     "'peer', 'ratio_least': 1, 'needs': "
                     "'no-such-program'",
                  kTWO_ROUNDS, "met value note"),
        "None None left out: no-such-program is not installed\n");
}

TEST_F(Report, AMarkedRowWithoutItsFigureIsMissed) {
    const std::string marked = "'value': 'rate', 'unit': 'MB/s', 'value_least': 1";
    EXPECT_EQ(record("'from': 'p:b', " + marked, kTWO_ROUNDS, "met note"), "False failed: p:b was not measured\n");
    EXPECT_EQ(record("'from': 'p:a', 'ratio': 'peer', " + marked, kTWO_ROUNDS, "met note"),
        "False failed: p:a has no figure peer\n");
}

TEST_F(Report, ReadsTheOutputOfABenchmarkProgramInSeconds) {
    EXPECT_EQ(python("print(report.samples_of_output('p', {'benchmarks': ["
                     "{'name': 'a/1', 'real_time': 2.0, 'cpu_time': 1.0, "
                     "'time_unit': 'ms', 'iterations': 7, 'x': 5.0},"
                     "{'name': 'a_median', 'run_type': 'aggregate'}]}))"),
        "{'p:a/1': {'real_time': 0.002, 'cpu_time': 0.001, 'x': 5.0}}\n");
}

TEST_F(Report, ABenchmarkThatSkipsWithAnErrorIsAProblem) {
    EXPECT_THAT(python("report.samples_of_output('p', {'benchmarks': [{'name': "
                       "'a', 'error_occurred': True, "
                       "'error_message': 'no file'}]})"),
        ::testing::HasSubstr("Problem: p:a: no file\n"));
}

TEST_F(Report, AsksAProgramForTheNamedBenchmarksAlone) {
    EXPECT_EQ(python("print(report.filter_of(['read/x.y', 'encode a RAMB36']))"), "^(read/x\\.y|encode a RAMB36)$\n");
}

TEST_F(Report, LaysOutFiguresRatiosAndMarks) {
    EXPECT_EQ(python("rows = [{'group': 'jobs', 'name': 'a job', 'from': 'p:a', "
                     "'value': 'rate', 'unit': 'MB/s',"
                     " 'ratio': 'over', 'yardstick': 'times cp', 'ratio_most': 2, "
                     "'goal': 1.5},"
                     " {'group': 'jobs', 'name': '  its memory', 'from': 'p:a', "
                     "'value': 'over', 'unit': 'times',"
                     " 'yardstick': 'times the file', 'value_most': 3}]\n"
                     "facts = {'machine': {'processor': 'one', 'cores': 2, "
                     "'architecture': 'x86_64', 'load_before': 0.1},"
                     " 'rounds': 2, 'date': 'today', 'commit': 'c0'}\n"
                     "print(report.table(report.report_of(rows, " +
                     std::string(kTWO_ROUNDS) + ", {}, facts)))\n"),
        "one, 2 cores, x86_64; load 0.1 before the run; 2 rounds; today; commit "
        "c0\n"
        "                  figure  ratio               mark            met\n"
        "jobs\n"
        "  a job         300 MB/s  2.5 times cp        <= 2, goal 1.5  NO\n"
        "    its memory            2.5 times the file  <= 3            yes\n"
        "2 rows, 2 with a mark: 1 met, 1 missed\n");
}

TEST_F(Report, RenewsOneTableOfADocumentAndLeavesTheRest) {
    EXPECT_EQ(python("document = 'a\\n<!-- one -->\\nold\\n<!-- end of table "
                     "-->\\nb\\n<!-- two -->\\nold\\n"
                     "<!-- end of table -->\\nc'\n"
                     "print(report.with_table(document, '<!-- two -->', 'new'))"),
        "a\n<!-- one -->\nold\n<!-- end of table -->\nb\n<!-- two "
        "-->\nnew\n<!-- end of table -->\nc\n");
}

TEST_F(Report, ADocumentWithoutAPlaceForTheTableIsAProblem) {
    EXPECT_THAT(python("report.with_table('text', '<!-- one -->', 'new')"),
        ::testing::HasSubstr("Problem: there is no '<!-- one -->'"));
    EXPECT_THAT(python("report.with_table('<!-- one -->', '<!-- one -->', 'new')"),
        ::testing::HasSubstr("Problem: there is no '<!-- one -->'"));
}

TEST_F(Report, TheDocumentHasAPlaceForEachTable) {
    EXPECT_EQ(python("import profile_jobs\n"
                     "document = open(report.DOCUMENT).read()\n"
                     "for head in (report.TABLE_BEGIN, profile_jobs.TABLE_BEGIN):\n"
                     "    report.with_table(document, head, '')\n"),
        "");
}

TEST_F(Report, EveryRowOfTheMarksIsWellFormed) {
    EXPECT_EQ(python("known = {'group', 'name', 'from', 'over', 'value', 'unit', "
                     "'factor', 'ratio', 'yardstick', 'goal',"
                     " 'needs', 'value_least', 'value_most', 'ratio_least', "
                     "'ratio_most'}\n"
                     "for row in report.read_rows(report.MARKS):\n"
                     "    wrong = set(row) - known\n"
                     "    limits = [key for key in row if "
                     "key.endswith(('_least', '_most'))]\n"
                     "    has_ratio = 'ratio' in row or 'over' in row\n"
                     "    if wrong or row['unit'] not in report.UNITS or "
                     "len(limits) > 1: print(row)\n"
                     "    if any(key.startswith('ratio') for key in limits) and "
                     "not has_ratio: print(row)\n"
                     "    if has_ratio and 'yardstick' not in row: print(row)\n"
                     "    if 'ratio' in row and 'over' in row: print(row)\n"),
        "");
}

TEST_F(Report, EveryWholeProcessJobOfTheMarksIsThere) {
    EXPECT_EQ(python("import whole_process\n"
                     "for name in "
                     "report.needed(report.read_rows(report.MARKS))['process']:\n"
                     "    if name.split('/')[0] not in whole_process.JOBS: print(name)\n"),
        "");
}

// Profiles.

TEST_F(Report, TakesAListingOfStacksApart) {
    EXPECT_EQ(python("import profile_jobs\n"
                     "text = '    55d0 lay(int) (/b/lanefill)\\n    7f00 main "
                     "(/b/lanefill)\\n\\n"
                     "ffff clear_page ([kernel.kallsyms])\\n\\n'\n"
                     "text = text.replace('\\nffff', '\\n    ffff')\n"
                     "print(list(profile_jobs.samples_of_script(text)))"),
        "[[('lay(int)', '/b/lanefill'), ('main', '/b/lanefill')], "
        "[('clear_page', 'kernel')]]\n");
}

TEST_F(Report, SharesSamplesOutByModuleAndByWhatTheKernelWasAskedFor) {
    EXPECT_EQ(python("import profile_jobs\n"
                     "modules = {'lay': 'lanes'}\n"
                     "for frames in ([('memdata::(anonymous namespace)::lay<1ul>', "
                     "'/b/lanefill')],\n"
                     "               [('std::sort', '/b/lanefill')],\n"
                     "               [('_int_free', '/lib/libc.so.6')],\n"
                     "               [('clear_page', 'kernel'), ('asm_exc_page_fault', "
                     "'kernel'), ('lay', '/b/lanefill')],\n"
                     "               [('copy', 'kernel'), ('ksys_write', 'kernel')]):\n"
                     "    print(*profile_jobs.group_of(frames, modules), sep=' | ')\n"),
        "lanes | lay\n"
        "tool and templates | std::sort\n"
        "C library: memory | _int_free\n"
        "kernel: first touch of memory and of mapped pages | clear_page\n"
        "kernel: taking what is written | copy\n");
}

} // namespace
} // namespace memdata::testing
