// The list, the JSON document and the dumps of a sample, as whole texts.

#include "crypto/quelm.h"
#include "tests/appmngr/model_fixture.h"
#include "tests/support/files.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <sys/resource.h>

namespace {

class Outputs : public Model {
protected:
    // Two applications, of which the second has three rules, one of them with features.
    void loadSample() { ASSERT_EQ(load(readData("sample.xml")), 0) << printed; }

    const TemporaryFolder folder_;
};

TEST_F(Outputs, JsonIsWrittenToTheCurrentFolder) {
    const std::string folder = folder_.path("folder");
    std::filesystem::create_directory(folder);
    std::filesystem::current_path(folder);
    loadSample();
    EXPECT_EQ(outputOf([] { appmngr_createJsonDb(); }), "Create JSON-Format database success!\n");
    EXPECT_EQ(readFile("database.json"), readData("database.json"));
    load("");
    outputOf([] { appmngr_createJsonDb(); });
    EXPECT_EQ(readFile("database.json"), "{\n\"dpi_rules\":[\n]\n}\n");
    std::filesystem::remove_all(folder);
    EXPECT_EXIT(appmngr_createJsonDb(), testing::ExitedWithCode(255),
                "^open database.json failed!\n: No such file or directory\n$");
    std::filesystem::current_path("/");
}

void collect(const char *text, void *context) {
    *static_cast<std::string *>(context) += text;
}

void collectVisit(const XMLP_NODE *node, APPMNGR_VISIT visit, void *context) {
    *static_cast<std::string *>(context) += std::string(node->name) + "teum"[visit] + ' ';
}

TEST_F(Outputs, ReportsAndVisitsGoWhereTheProgramSendsThem) {
    const std::string document =
        "<AppDB><ver/><more/><x>1</x><id>1</id>" + smallDocument().substr(7);
    const std::string broken = "<AppDB><" + std::string(2000, 'n') + " a='1'/></AppDB>";
    std::string tuple = smallDocument();
    tuple.replace(tuple.find("tcp"), 3, "tcp tcp");
    const auto provoke = [&] {
        std::string lines;
        for (const std::string &text : {broken, tuple, std::string("<a></b>")}) {
            load(text);
            lines += printed;
        }
        return lines + outputOf([] {
                   appmngr_utils_str2proto("x");
                   xmlp_setNodeName(nullptr, nullptr);
               });
    };
    const std::string lines = provoke();
    std::string collected;
    appmngr_setReport(collect, &collected);
    xmlp_setReport(collect, &collected);
    quelm_setReport(collect, &collected);
    EXPECT_EQ(provoke(), "");
    EXPECT_EQ(collected, lines);
    collected.clear();
    quelm_md5_des_file("/missing", "/missing", 1);
    EXPECT_EQ(collected.substr(0, 42), "open input file: No such file or directory");
    appmngr_setReport(nullptr, nullptr);
    xmlp_setReport(nullptr, nullptr);
    quelm_setReport(nullptr, nullptr);

    collected.clear();
    appmngr_setVisitor(collectVisit, &collected);
    load(document);
    appmngr_setVisitor(nullptr, nullptr);
    EXPECT_EQ(collected,
              "AppDBt vere moree xu idm vert appTypeListt appTypet idt appListt appt idt "
              "namet ruleListt rulet tupleListt tuplet ");
}

// "function|number|message", of each report; the whole texts are `texts`.
struct Records {
    std::vector<std::string> parts;
    std::string texts;
};

void collectRecord(const APPMNGR_REPORT_RECORD *record, void *context) {
    auto &records = *static_cast<Records *>(context);
    const std::string function = record->function != nullptr ? record->function : "null";
    records.parts.push_back(function + "|" + std::to_string(record->number) + "|" +
                            record->message);
    records.texts += record->text;
}

TEST_F(Outputs, ReportsComeInParts) {
    const std::string tooLong(2000, 'x');
    const auto provoke = [&] {
        appmngr_string_match(nullptr, "");
        appmngr_report("function", -7, "%s", "");
        appmngr_report("function", 8, "two\nlines\r\n\n");
        appmngr_notice("[Error](no) 1: %d\n", 5);
    };
    std::string collected;
    appmngr_setReport(collect, &collected);
    provoke();
    Records records;
    appmngr_setReportRecord(collectRecord, &records);
    provoke();
    EXPECT_EQ(records.texts, collected) << "the last one that was set gets them all";
    EXPECT_EQ(records.texts, outputOf([&] {
                  appmngr_setReportRecord(nullptr, nullptr);
                  provoke();
              }));
    const std::vector<std::string> expected = {"appmngr_string_match|470|Some parameter is null.",
                                               "function|-7|", "function|8|two\nlines",
                                               "null|0|[Error](no) 1: 5"};
    EXPECT_EQ(records.parts, expected);

    records = {};
    appmngr_setReportRecord(collectRecord, &records);
    errno = ENOENT;
    appmngr_systemError("what");
    appmngr_report("function", 9, "%s\n", tooLong.c_str());
    appmngr_setReport(nullptr, nullptr);
    EXPECT_EQ(records.parts[0], "null|0|what: No such file or directory");
    const std::string prefix = "[Error](function) 9: ";
    EXPECT_EQ(records.parts[1], "function|9|" + tooLong.substr(0, 1023 - prefix.size()));
    EXPECT_EQ(records.texts.substr(records.texts.find('\n') + 1).size(), 1023u);
}

TEST_F(Outputs, DumpsOfTheSample) {
    loadSample();
    EXPECT_EQ(outputOf([] { appmngr_dumpAppRules(-2); }), readData("dump-rules-of-two.txt"));
    EXPECT_EQ(outputOf([] { appmngr_dumpAppRules(1); }), readData("dump-rules-of-one.txt"));
    EXPECT_EQ(outputOf([] { appmngr_dumpAppList(); }), readData("dump-applications.txt"));
    EXPECT_EQ(outputOf([] { appmngr_dumpAppDb(); }), readData("dump-all.txt"));
    g_appmngr_appDb.rule[1].proto = 47;
    g_appmngr_app[1].id = 3;
    EXPECT_EQ(outputOf([] { appmngr_dumpAppDb(); }), readData("dump-unknown.txt"));
    // The address of the members' bytes is another one in every run.
    const std::string types = outputOf([] { appmngr_dumpAppTypeList(); });
    EXPECT_EQ(std::regex_replace(types, std::regex("addr:0x[0-9a-f]+"), "addr:0x0"),
              readData("dump-types.txt"));
}

TEST_F(Outputs, AreWrittenToFilesAsPrinted) {
    loadSample();
    const auto rulesOfTwo = [](FILE *file) { return appmngr_writeAppRules(file, -2); };
    const std::pair<int (*)(FILE *), int (*)()> cases[] = {
        {rulesOfTwo, [] { return appmngr_dumpAppRules(-2); }},
        {appmngr_writeAppDb, appmngr_dumpAppDb},
        {appmngr_writeAppList, appmngr_dumpAppList},
        {appmngr_writeAppTypeList, appmngr_dumpAppTypeList},
        {appmngr_writeRulesJson, nullptr},
    };
    FILE *full = std::fopen("/dev/full", "w");
    const std::string path = folder_.path("written");
    for (const auto &[write, dump] : cases) {
        FILE *file = std::fopen(path.c_str(), "w");
        EXPECT_EQ(outputOf([&] { EXPECT_EQ(write(file), 0); }), "");
        EXPECT_EQ(readFile(path), dump != nullptr ? outputOf(dump) : readData("database.json"))
            << "flushed before the file is closed";
        std::fclose(file);
        EXPECT_EQ(write(full), -1);
        std::clearerr(full);
    }
    std::fclose(full);
}

TEST_F(Outputs, DumpsOfTextsAndOfNothing) {
    const auto dumpAll = [] {
        EXPECT_EQ(appmngr_dumpAppRules(0) + appmngr_dumpAppDb(), 0);
        EXPECT_EQ(appmngr_showAppDbXml() + appmngr_showAppDescXml(), 0);
        EXPECT_GE(appmngr_dumpAppList() + appmngr_dumpAppTypeList(), 0);
    };
    EXPECT_EQ(outputOf(dumpAll), readData("dump-nothing.txt"));
    ASSERT_EQ(appmngr_file_alloc(), 0);
    std::strcpy(g_appmngr_appDbXml, "<a/>");
    std::strcpy(g_appmngr_appDescXml, "<b/>");
    EXPECT_EQ(outputOf(dumpAll), readData("dump-texts.txt"));
    appmngr_file_free();
}

TEST_F(Outputs, TellWhenTheListCannotBeClosed) {
    const std::string path = folder_.path("list");
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit usual;
    getrlimit(RLIMIT_FSIZE, &usual);
    const rlimit none = {0, usual.rlim_max};
    const auto save = [&] {
        setrlimit(RLIMIT_FSIZE, &none);
        EXPECT_EQ(appmngr_saveIdAndName(path.c_str()), -1);
        setrlimit(RLIMIT_FSIZE, &usual);
    };
    EXPECT_EQ(outputOf(save), "close " + path + " error!\n");
}

} // namespace
