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

int64_t freed(XMLP_VALUE *values, uint32_t count) {
    count > 0 ? xmlp_freeValueArray(values, count) : std::free(values);
    return values != nullptr ? int64_t{count} : -1;
}

int64_t freed(char *text) {
    std::free(text);
    return text != nullptr ? 0 : -1;
}

int64_t freed(int64_t result, char *text) {
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

using D = XMLP_DOC *;
using Operation = std::function<int64_t(D)>;

// What the check passes and the builders refuse, so that all the steps of a parse are tried.
const std::string refused = "<h>&unknown;</h>";

Operation parse(const std::string &text, uint32_t isStatic) {
    return [text, isStatic](D) {
        D doc = xmlp_loadDoc(text.c_str(), static_cast<uint32_t>(text.size()), isStatic);
        return Doc(doc) != nullptr ? 0 : -1;
    };
}

// Containers in one another, deeper than the walk has levels in place, and a version in the innermost.
int64_t walkDeep() {
    static XMLP_NODE nodes[72];
    static char name[] = "segment";
    static char innermost[] = "ver";
    static char version[] = "2.0";
    static const APPMNGR_HANDLER_INFO table[] = {{name, _appmngr_xmlnode_handler_pass},
                                                 {innermost, _appmngr_xmlnode_handler_ver},
                                                 {nullptr, nullptr}};
    for (size_t i = 0; i < std::size(nodes); ++i) {
        const bool isLast = i + 1 == std::size(nodes);
        nodes[i].name = isLast ? innermost : name;
        nodes[i].type = isLast ? XMLP_TYPE_LEAF : XMLP_TYPE_BRANCH;
        nodes[i].parent = i > 0 ? &nodes[i - 1] : nullptr;
        nodes[i].firstChild = isLast ? nullptr : &nodes[i + 1];
    }
    std::end(nodes)[-1].value = version;
    std::end(nodes)[-1].valueSize = 3;
    appmngr_setHandlerInfo(table);
    const int result = appmngr_xmlnode_handler(&nodes[0], nullptr);
    appmngr_setHandlerInfo(nullptr);
    return result;
}

char y[] = "y";
char two[] = "2";
XMLP_ATTR_PAIR asked = {};
const XMLP_VALUE values[] = {{1, y}, {1, y}};
const XMLP_ATTR_PAIR newAttrs[] = {{"p", y}, {"q", nullptr}};
const XMLP_ATTR_PAIR known[] = {{"b", y}, {"b", y}};
const XMLP_ATTR_PAIR knownA = {"a", y};
const XMLP_ATTR_PAIR wanted = {"b", two};
const XMLP_ATTR_PAIR manyAttrs[] = {
#define PAIRS(n)              \
    {n "a", y}, {n "b", y}, { \
        n "c", y              \
    }
    PAIRS("1"), PAIRS("2"), PAIRS("3"), PAIRS("4"), PAIRS("5"), PAIRS("6"),
    PAIRS("7"), PAIRS("8"), PAIRS("9"), PAIRS("x"), PAIRS("y")};
const XMLP_ITEM items[] = {{2, newAttrs, 1, y}, {0, nullptr, 1, y}};
const uint32_t first = 0;
uint32_t count = 0;
char *name = nullptr;
XMLP_ATTR *attrs = nullptr;
char out[64];
// The database that there is before each operation.
const std::string document =
    smallDocument(appElement(1, "one", "<dnsKwList><dnsKw>k</dnsKw></dnsKwList>"));
const std::string image = packImage(document);
// A container that holds eight bytes.
const std::string container = fromHex("34D07DBA9BD3E1E8B5F7B0143299A7C0982BCA69"
                                      "A6D829722B26C0BBED760C1474F67197B73E935B");

// clang-format off
std::map<std::string, Operation> operations = {
    {"parse static", parse(deepText(3000, 70, ""), 1)},
    {"parse static, refused", parse(deepText(3000, 70, refused), 1)},
    {"parse dynamic", parse(deepText(70, 40, "<v>t&amp;</v><l><item/></l>"), 0)},
    {"parse dynamic, refused", parse(deepText(70, 40, refused), 0)},
    {"setName", [](D d) { return xmlp_setName(d, "/r/v", "w"); }},
    {"setValue", [](D d) { return xmlp_setValue(d, "/r/v", "new", 3); }},
    {"getValue", [](D d) { return freed(xmlp_getValue(d, "/r/v"), 1); }},
    {"add", [](D d) { return xmlp_add(d, "/r/e", 0, "n", values, newAttrs, 2); }},
    {"add many", [](D d) { return xmlp_add(d, "/r", 0, "n", values, manyAttrs, 33); }},
    {"delete", [](D d) { return xmlp_delete(d, "/r/l"); }},
    {"getAttr", [](D d) {
        asked = {"a", nullptr};
        const int result = xmlp_getAttr(d, "/r", &asked);
        return freed(result, asked.value); }},
    {"setAttr", [](D d) { return xmlp_setAttr(d, "/r", &knownA); }},
    {"addAttr", [](D d) { return xmlp_addAttr(d, "/r", newAttrs); }},
    {"getItemValue", [](D d) {
        XMLP_VALUE *got = xmlp_getItemValue(d, "/r/l", XMLP_POS_RANGE, &first, 2, &count);
        return freed(got, count); }},
    {"setItemValue",
     [](D d) { return xmlp_setItemValue(d, "/r/l", XMLP_POS_RANGE, values, &first, 2); }},
    {"addItem", [](D d) { return xmlp_addItem(d, "/r/l", items, 0, 2); }},
    {"getItemAttr", [](D d) {
        asked = {"b", nullptr};
        const int64_t result = xmlp_getItemAttr(d, "/r/l", XMLP_POS_RANGE, &asked, &first, 1);
        return freed(result, asked.value); }},
    {"setItemAttr",
     [](D d) { return xmlp_setItemAttr(d, "/r/l", XMLP_POS_RANGE, known, &first, 2); }},
    {"addItemAttr",
     [](D d) { return xmlp_addItemAttr(d, "/r/l", XMLP_POS_RANGE, newAttrs, &first, 2); }},
    {"getItemValueByAttr", [](D d) {
        XMLP_VALUE *got = xmlp_getItemValueByAttr(d, "/r/l", &wanted, 1, &count);
        return freed(got, count); }},
    {"write compact", [](D d) { return freed(xmlp_dumpDoc(d, 1, &count)); }},
    {"write indented", [](D d) { return freed(xmlp_tree2Xml(d, 0, &count)); }},
    {"read a tag", [](D) {
        const int result = _getNameAttr("t x=\"1\" y=\"\">", '>', &name, &attrs, 0, nullptr);
        xmlp_freeAttrList(attrs);
        return freed(result, name); }},
    {"open", [](D) { return appmngr_checkDbPath("image"); }},
    {"buffers", [](D) { return appmngr_file_alloc() == 0 ? appmngr_file_free() : -1; }},
    {"load", [](D) { return appmngr_load_database(); }},
    {"load image", [](D) {
        return appmngr_loadImage(image.data(), static_cast<uint32_t>(image.size())); }},
    {"load text", [](D) {
        return appmngr_loadText(document.data(), static_cast<uint32_t>(document.size())); }},
    {"take", [](D) {
        APPMNGR_DATABASE *taken = appmngr_takeDatabase();
        appmngr_freeDatabase(taken);
        return taken != nullptr ? 0 : -1; }},
    {"walk deep", [](D) { return walkDeep(); }},
    {"describe", [](D) {
        g_appmngr_counter.descAppCnt = g_appmngr_counter.descAppTypeCnt = 2;
        return _appmngr_alloc_for_appdesc(); }},
    {"list", [](D) { return appmngr_saveIdAndName("list"); }},
    {"dump", [](D) { return appmngr_dumpAppList(); }},
    {"container", [](D) {
        const APPMNGR_CONTAINER given = {0, 40, container.data()};
        return appmngr_db_writeAppDbFromDatabase(given, out); }},
    {"seal", [](D) {
        return quelm_md5_des_do(y, 1, out, sizeof out, "8bytekey", 1) +
               quelm_md5_des_file("image", "sealed", 1); }},
};
// clang-format on

class FailingMemory : public Model {
protected:
    FailingMemory() {
        std::filesystem::current_path(folder_.path(""));
        writeFile("image", image);
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
        const int descriptor = nextDescriptor();
        const auto before = stateOf(doc);
        int64_t result = 0;
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
        EXPECT_EQ(nextDescriptor(), descriptor) << outcome;
        return isFailed;
    }

    const TemporaryFolder folder_;
};

TEST_F(FailingMemory, IsToldAndLeavesNothing) {
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
    bool isFailed = false;
    outputOf([&] { beginCounting(1), appmngr_createJsonDb(), isFailed = endCounting(); });
    const auto unbuffered = readFile("database.json");
    outputOf([] { appmngr_createJsonDb(); });
    EXPECT_TRUE(isFailed && unbuffered == readFile("database.json"));
}

} // namespace
