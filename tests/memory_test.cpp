// Every allocation of every operation fails once: the failure is told, nothing is left behind, and
// the document and the model are as they were.

#include "appmngr/appmngr_internal.h"
#include "crypto/quelm.h"
#include "tests/appmngr/model_fixture.h"
#include "tests/support/documents.h"
#include "tests/support/failing_memory.h"
#include "tests/support/files.h"
#include "xmlp/xmlp_internal.h"

#include <filesystem>
#include <functional>

namespace {

// The results of operations, which free what they are given. -1 for null.

long dropped(XMLP_VALUE *values, uint32_t count) {
    count > 0 ? xmlp_freeValueArray(values, count) : std::free(values);
    return values != nullptr ? long{count} : -1;
}

long dropped(char *text) {
    const long result = text != nullptr ? 0 : -1;
    std::free(text);
    return result;
}

// Elements of distinct names in one another, enough for every stack and table to grow; in the
// innermost one a tag with many attributes and a text.
std::string deepText(int depth, int attributes, const std::string &innermost) {
    std::string text = "<m";
    for (int i = 0; i < attributes; ++i) {
        text += " m" + std::to_string(i) + "=\"\"";
    }
    text += "/>" + innermost;
    for (int i = 0; i < depth; ++i) {
        const std::string number = std::to_string(i);
        text =
            "<a" + number + " x" + number + "=\"7" + number + "\">" + text + "</a" + number + ">";
    }
    return "<?x?>" + text;
}

using Operation = std::function<long(XMLP_DOC *)>;

// A text whose '<' within a character sends a parse to the plain road.
const std::string hidden = "<h>\xE0<b&amp;</h>";
const std::string deep = deepText(3000, 70, "");
const std::string deepHidden = deepText(3000, 70, hidden);
const std::string lessDeep = deepText(70, 40, "<v>t&amp;</v><l><item/></l>");
const std::string lessDeepHidden = deepText(70, 40, hidden);

Operation parse(const std::string &text, uint32_t isStatic) {
    return [&text, isStatic](XMLP_DOC *) {
        XMLP_DOC *doc = xmlp_loadDoc(text.c_str(), static_cast<uint32_t>(text.size()), isStatic);
        return Doc(doc) != nullptr ? 0 : -1;
    };
}

const std::map<std::string, Operation> parses = {
    {"parse static", parse(deep, 1)},
    {"parse static, plain", parse(deepHidden, 1)},
    {"parse dynamic", parse(lessDeep, 0)},
    {"parse dynamic, plain", parse(lessDeepHidden, 0)},
};

char y[] = "y";
char two[] = "2";
const XMLP_VALUE value = {1, y};
const XMLP_VALUE values[] = {value, value};
const XMLP_ATTR_PAIR newAttrs[] = {{"p", y}, {"q", nullptr}};
const XMLP_ATTR_PAIR known[] = {{"b", y}, {"b", y}};
const XMLP_ITEM items[] = {{2, newAttrs, 1, y}, {0, nullptr, 1, y}};
const uint32_t first = 0;

const std::map<std::string, Operation> edits = {
    {"setName", [](XMLP_DOC *d) { return xmlp_setName(d, "/r/v", "w"); }},
    {"setValue", [](XMLP_DOC *d) { return xmlp_setValue(d, "/r/v", "new", 3); }},
    {"getValue", [](XMLP_DOC *d) { return dropped(xmlp_getValue(d, "/r/v"), 1); }},
    {"add", [](XMLP_DOC *d) { return xmlp_add(d, "/r/e", 0, "n", &value, newAttrs, 2); }},
    {"delete", [](XMLP_DOC *d) { return xmlp_delete(d, "/r/l"); }},
    {"getAttr",
     [](XMLP_DOC *d) {
         XMLP_ATTR_PAIR asked = {"a", nullptr};
         const int result = xmlp_getAttr(d, "/r", &asked);
         std::free(asked.value);
         return result;
     }},
    {"setAttr",
     [](XMLP_DOC *d) {
         const XMLP_ATTR_PAIR attr = {"a", y};
         return xmlp_setAttr(d, "/r", &attr);
     }},
    {"addAttr", [](XMLP_DOC *d) { return xmlp_addAttr(d, "/r", newAttrs); }},
    {"getItemValue",
     [](XMLP_DOC *d) {
         uint32_t count = 0;
         XMLP_VALUE *got = xmlp_getItemValue(d, "/r/l", XMLP_POS_RANGE, &first, 2, &count);
         return dropped(got, count);
     }},
    {"setItemValue",
     [](XMLP_DOC *d) { return xmlp_setItemValue(d, "/r/l", XMLP_POS_RANGE, values, &first, 2); }},
    {"addItem", [](XMLP_DOC *d) { return xmlp_addItem(d, "/r/l", items, 0, 2); }},
    {"getItemAttr",
     [](XMLP_DOC *d) {
         XMLP_ATTR_PAIR asked = {"b", nullptr};
         const long result = xmlp_getItemAttr(d, "/r/l", XMLP_POS_RANGE, &asked, &first, 1);
         std::free(asked.value);
         return result;
     }},
    {"setItemAttr",
     [](XMLP_DOC *d) { return xmlp_setItemAttr(d, "/r/l", XMLP_POS_RANGE, known, &first, 2); }},
    {"addItemAttr",
     [](XMLP_DOC *d) { return xmlp_addItemAttr(d, "/r/l", XMLP_POS_RANGE, newAttrs, &first, 2); }},
    {"getItemValueByAttr",
     [](XMLP_DOC *d) {
         const XMLP_ATTR_PAIR asked = {"b", two};
         uint32_t count = 0;
         XMLP_VALUE *got = xmlp_getItemValueByAttr(d, "/r/l", &asked, 1, &count);
         return dropped(got, count);
     }},
    {"write compact",
     [](XMLP_DOC *d) {
         uint32_t length = 0;
         return dropped(xmlp_dumpDoc(d, 1, &length));
     }},
    {"write indented",
     [](XMLP_DOC *d) {
         uint32_t length = 0;
         return dropped(xmlp_tree2Xml(d, 0, &length));
     }},
    {"read a tag",
     [](XMLP_DOC *) {
         char *name = nullptr;
         XMLP_ATTR *attrs = nullptr;
         const int result = _getNameAttr("t x=\"1\" y=\"\">", '>', &name, &attrs, 0, nullptr);
         EXPECT_EQ(name == nullptr, attrs == nullptr);
         xmlp_freeAttrList(attrs);
         std::free(name);
         return result;
     }},
};

// A container that holds eight bytes.
const std::string container = fromHex("34D07DBA9BD3E1E8B5F7B0143299A7C0982BCA69"
                                      "A6D829722B26C0BBED760C1474F67197B73E935B");

const std::map<std::string, Operation> others = {
    {"open", [](XMLP_DOC *) { return appmngr_checkDbPath("image"); }},
    {"buffers", [](XMLP_DOC *) { return appmngr_file_alloc() == 0 ? appmngr_file_free() : -1; }},
    {"load", [](XMLP_DOC *) { return appmngr_load_database(); }},
    {"describe",
     [](XMLP_DOC *) {
         g_appmngr_counter.descAppCnt = g_appmngr_counter.descAppTypeCnt = 2;
         return _appmngr_alloc_for_appdesc();
     }},
    {"list", [](XMLP_DOC *) { return appmngr_saveIdAndName("list"); }},
    {"dump", [](XMLP_DOC *) { return appmngr_dumpAppList(); }},
    {"container",
     [](XMLP_DOC *) {
         char version[5];
         const auto length = static_cast<uint32_t>(container.size());
         return appmngr_db_writeAppDbFromDatabase({0, length, container.data()}, version);
     }},
    {"seal",
     [](XMLP_DOC *) {
         char out[64];
         return quelm_md5_des_do(y, 1, out, sizeof out, "8bytekey", 1) +
                quelm_md5_des_file("image", "sealed", 1);
     }},
};

class FailingMemory : public Model {
protected:
    FailingMemory() {
        std::filesystem::current_path(folder_.path(""));
        const std::string keyword = "<dnsKwList><dnsKw>k</dnsKw></dnsKwList>";
        writeFile("image", packImage(smallDocument(appElement(1, "one", keyword))));
    }
    ~FailingMemory() override { std::filesystem::current_path("/"); }

    // What is to stay as it was.
    static std::vector<std::string> stateOf(const Doc &doc) {
        return {treeText(doc->tree->rootNode), modelText(), readFile("list").value_or("no list")};
    }

    // Runs an operation on a document and a model of its own. True when an allocation has failed;
    // `outcome` is its result, its lines, and what it has changed, in one line.
    static bool hasFailed(const Operation &operation, size_t allowed, std::string &outcome) {
        Doc doc = parseDynamic("<?x?><r a=\"1\"><l><item b=\"2\">x</item><item b=\"2\"/></l>"
                               "<v>t</v><e/></r>");
        writeFile("list", "old\n");
        appmngr_checkDbPath("image");
        outputOf([] { EXPECT_EQ(appmngr_load_database(), 0); });
        const auto before = stateOf(doc);
        long result = 0;
        bool isFailed = false;
        std::string lines;
        const std::string errors = errorsOf([&] {
            lines = linesOf([&] {
                beginCounting(allowed);
                result = operation(doc.get());
                isFailed = endCounting();
            });
        });
        const auto after = stateOf(doc);
        outcome = std::to_string(result) + "\n" + lines + errors;
        for (size_t i = 0; i < before.size(); ++i) {
            outcome += after[i] != before[i] ? "now " + after[i] + "\n" : "";
        }
        for (const auto &[found, instead] :
             {std::pair("\n\n+", "\n"), {"(.+\n)\\1+", "$1"}, {"\n(?!$)", " | "}}) {
            outcome = std::regex_replace(outcome, std::regex(found), instead);
        }
        doc.reset();
        outputOf([] { appmngr_dbReInit(); });
        std::free(std::exchange(g_appmngr_decryptBuf, nullptr));
        EXPECT_EQ(blocksLeft(), 0u) << outcome;
        return isFailed;
    }

    const TemporaryFolder folder_;
};

TEST_F(FailingMemory, IsToldAndLeavesNothing) {
    std::map<std::string, Operation> operations = parses;
    operations.insert(edits.begin(), edits.end());
    operations.insert(others.begin(), others.end());
    size_t all = 0;
    forEachCase("memory.cases", [&](const Case &test) {
        const auto node = operations.extract(test.text("operation"));
        ASSERT_FALSE(node.empty());
        std::string outcomes; // each once
        std::string outcome;
        size_t points = 0;
        for (bool isFailed = true; isFailed; points += isFailed ? 1 : 0) {
            isFailed = hasFailed(node.mapped(), points, outcome);
            outcomes += outcomes.find(outcome) == std::string::npos ? outcome : "";
        }
        EXPECT_EQ(outcomes, test.lines("outcome")) << node.key();
        all += points;
        std::printf("%5zu failure points: %s\n", points, node.key().c_str());
    });
    EXPECT_TRUE(operations.empty()) << operations.begin()->first << " has no case";
    std::printf("%5zu in all\n", all);
}

TEST_F(FailingMemory, EndsTheProcessThatWritesJsonOrIsNoHindrance) {
    ASSERT_EQ(load(smallDocument()), 0);
    EXPECT_EXIT((beginCounting(0), appmngr_createJsonDb()), testing::ExitedWithCode(255),
                "^open database.json failed!\n: Cannot allocate memory\n$");
    outputOf([] { appmngr_createJsonDb(); });
    const auto whole = readFile("database.json");
    bool isFailed = false;
    outputOf([&] { beginCounting(1), appmngr_createJsonDb(), isFailed = endCounting(); });
    EXPECT_TRUE(isFailed);
    EXPECT_EQ(readFile("database.json"), whole) << "written without a buffer";
}

} // namespace
