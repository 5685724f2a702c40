// No function reads or writes behind the last byte of what it is given, and each refuses null where
// it takes none.

#include "tests/support/bounds.h"

#include "appmngr/appmngr_internal.h"
#include "crypto/quelm.h"
#include "tests/support/cases.h"
#include "tests/support/documents.h"
#include "xmlp/xmlp_internal.h"

#include <map>
#include <regex>
#include <sstream>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

// Of each of these every beginning is tried.
const std::string texts[] = {
    "a name of many bytes, \"quoted\", and <more>",
    "&lt;&gt;&amp;&lt;&lt;&lt;&amp;&am",
    "\xE2\x82\xAC\xF0\x9F\x98\x80\xEF\xBB\xBF",
    "tcp 10.11.12.13:65535 255.255.255.255:80",
    "  -18446744073709551617",
    "\t\r\n ",
};

// Calls that take counted bytes.
void readCounted(char *b, uint32_t n) {
    xmlp_isValidName(b, n);
    xmlp_isValidAttrValue(b, n);
    xmlp_isValidChar(b, n);
    xmlp_nameCmp(b, n, "a name of many bytes and more");
    xmlp_unTransStrLen(b, n);
    const uint32_t length = xmlp_transStrLen(b, n);
    const Guarded escaped(std::string(length, '#'));
    EXPECT_EQ(xmlp_transStr(escaped.data(), b, n), escaped.data() + length);
    const Guarded raw(std::string(n, '#'));
    EXPECT_EQ(xmlp_unTransStr(raw.data(), escaped.data(), length), raw.data() + n);
    const XMLP_ITEM item = {0, nullptr, n, b};
    XMLP_NODE *made = _item2Node(&item);
    xmlp_setNodeValue(made, b, n);
    xmlp_delNode(made);
    const Doc doc = parseStatic("<r x=\"1\"><a/></r>");
    xmlp_getChildNodeByName(doc->tree->rootNode, n > 0 ? b : nullptr, n);
    xmlp_isAttrNameExist(doc->tree->rootNode->firstChild->attrList, b, n);
    if ((made = _makeDtree(b, n)) != nullptr) {
        xmlp_delDtree(made);
    }
    _checkXml(b, b + n);
    appmngr_getBomType(reinterpret_cast<const unsigned char *>(b), static_cast<int>(n));
    appmngr_utils_dumpBuf(reinterpret_cast<const unsigned char *>(b), static_cast<int>(n));
}

// The same as the text of an element.
void readNode(char *b, uint32_t n) {
    XMLP_NODE node = {};
    node.value = b;
    node.valueSize = n;
    int32_t number = 0;
    char text[8];
    _appmngr_getNodeInt(&node, &number);
    _appmngr_getNodeStr(&node, text, sizeof text);
    _appmngr_getNodeValue(&node);
    APPMNGR_RULE rule = {};
    g_appmngr_appDb.rule = &rule;
    g_appmngr_appDb.ruleCount = 1;
    uint32_t tuples = 0;
    _appmngr_xmlnode_handler_tuple(&node, &tuples);
    g_appmngr_appDb = {};
}

void cipher(char *b, uint32_t n) {
    const auto size = static_cast<int32_t>(n);
    for (const int encrypt : {0, 1}) {
        const Guarded out(std::string(n + 24, '#'));
        const Guarded blocks(std::string((n + 7) / 8 * 8, '#'));
        quelm_des_min_do(b, size, out.data() + 16, size + 8, "8bytekey", encrypt);
        quelm_des_pcbc_do(b, blocks.data(), size, "8bytekey", "8byteivs", encrypt);
        quelm_des_inplace_do(b, size, "8bytekey", encrypt);
        quelm_md5_des_do(b, size, out.data(), size + 24, "8bytekey", encrypt);
    }
    const Guarded digest(std::string(16, '#'));
    quelm_md5_check(digest.data(), b, size);
    quelm_hmac_md5(b, size, b, size, digest.data());
    uint32_t room = n + 8;
    const Guarded deciphered(std::string(room, '#'));
    appmngr_decrypt(deciphered.data(), &room, b, n);
}

// Calls that take bytes with a NUL behind them.
void readString(char *b, uint32_t n) {
    _skipWhiteSpace(b);
    xmlp_nameCmp("a name of many bytes and more", 29, b);
    _checkNameAttr(b, '>');
    XMLP_NODE node = {};
    xmlp_setNodeName(&node, b);
    xmlp_addNodeAttr(&node, b, b);
    xmlp_freeAttrList(node.attrList);
    std::free(node.name);
    const Guarded escaped(std::string(n + 1, '#'));
    appmngr_string_escape(escaped.data(), b);
    appmngr_string_safeCaseCmp(b, "a name of many bytes and more");
    appmngr_utils_str2proto(b);
    char *fields[4];
    appmngr_string_makeSubStrByChar(b, ' ', 4, fields);
}

TEST(Bounds, OfBuffersAreKept) {
    outputOf([] {
        for (const std::string &text : texts) {
            for (size_t length = 0; length <= text.size(); ++length) {
                const std::string part = text.substr(0, length);
                for (const auto reader : {readCounted, readNode, cipher}) {
                    reader(Guarded(part).data(), static_cast<uint32_t>(length));
                }
                readString(Guarded(part + '\0').data(), static_cast<uint32_t>(length));
            }
        }
    });
}

TEST(Bounds, OfTextsAreKeptWhereverTheyEnd) {
    const std::string text =
        "\xEF\xBB\xBF <?xml?> <r a=\"1\" b = \"\xC3\xA4\"><l><item>x</item><item/>"
        "</l><v x=\"2\">t&amp;\xF0\x9F\x98\x80</v ><a-long-name-of-an-element/></r> ";
    outputOf([&text] {
        for (size_t length = 0; length < text.size(); ++length) {
            for (const char *tail : {"", "<", "&", "\"", "\xF0"}) {
                parseStatic(text.substr(0, length) + tail);
                parseDynamic(text.substr(0, length) + tail);
            }
        }
    });
}

// An argument for a call of which one pointer is null: other pointers lead to zeros, numbers are 1.
template <class Argument>
Argument argument(bool isNull) {
    static uint64_t zeros[64];
    if constexpr (std::is_pointer_v<Argument>) {
        return isNull ? nullptr : reinterpret_cast<Argument>(zeros);
    } else {
        return Argument{1};
    }
}

// What a call gives and prints, as nulls.cases has it.
template <class Result, class... Arguments, size_t... places>
std::string withNull(Result (*call)(Arguments...), size_t place, std::index_sequence<places...>) {
    std::string outcome;
    const std::string printed = linesOf([&] {
        if constexpr (std::is_void_v<Result>) {
            call(argument<Arguments>(places == place)...);
            outcome = "nothing";
        } else if constexpr (std::is_pointer_v<Result>) {
            outcome = call(argument<Arguments>(places == place)...) == nullptr ? "null" : "given";
        } else {
            outcome = std::to_string(call(argument<Arguments>(places == place)...));
        }
    });
    std::istringstream lines(printed);
    const char *separator = ", ";
    for (std::string line; std::getline(lines, line); separator = "; ") {
        outcome.append(separator).append(line);
    }
    return outcome;
}

struct Call {
    std::vector<bool> isPointer; // for each argument
    std::string (*withNull)(size_t place);
};

template <class Result, class... Arguments>
constexpr auto placesOf(Result (*)(Arguments...)) {
    return std::make_index_sequence<sizeof...(Arguments)>();
}

template <class Result, class... Arguments>
std::vector<bool> pointersOf(Result (*)(Arguments...)) {
    return {std::is_pointer_v<Arguments>...};
}

// clang-format off
#define C(name) {#name, {pointersOf(name), [](size_t at) { return withNull(name, at, placesOf(name)); }}},
#define X(name) C(xmlp_##name)
#define A(name) C(appmngr_##name)
#define H(name) C(_appmngr_xmlnode_handler_##name)
const std::map<std::string, Call> calls = {
    C(_skipWhiteSpace) C(_checkXml) C(_subXml) C(_checkNameAttr) C(_getNameAttr) C(_setType)
    C(_findName) C(_saveNameAttr) C(_makeStree) C(_makeDtree) C(_checkOrder) C(_item2Node)
    C(_tree2Xml) C(_tree2FormatXml) C(_initLock) C(_lock) C(_unLock) C(_destroyLock) X(loadDoc)
    X(copyDoc) X(releaseDoc) X(parse) X(xml2Tree) X(seekXml) X(isExist) X(getValue) X(setValue)
    X(setName) X(add) X(getChildCount) X(delete) X(getAttr) X(setAttr) X(addAttr) X(deleteAttr)
    X(isItemExist) X(getItemValue) X(setItemValue) X(addItem) X(deleteItem) X(getItemAttr)
    X(setItemAttr) X(addItemAttr) X(deleteItemAttr) X(getItemValueByAttr) X(freeValueArray)
    X(dumpDoc) X(tree2Xml) X(getChildNode) X(getChildNodeByName) X(getChildNodeCount)
    X(getNodeAttrCount) X(isChildNameExist) X(getNodeAttr) X(isNodeAttr) X(isAttrNameExist)
    X(insNodeFirst) X(insNodeLast) X(insNodeAfter) X(insNodeBefore) X(addChildNode) X(setNodeName)
    X(setNodeValue) X(addNodeAttr) X(setNodeAttr) X(delNodeAttr) X(freeAttrList) X(delNode)
    X(delDtree) X(delStree) X(destroyXmlTree) X(nameCmp) X(isValidName) X(isValidAttrValue)
    X(isValidChar) X(transStrLen) X(transStr) X(unTransStrLen) X(unTransStr) A(string_safeCaseCmp)
    A(string_match) A(string_makeSubStrByChar) A(string_escape) A(utils_str2proto) A(utils_dumpBuf)
    A(getStampStr) A(decrypt) A(db_checkVersion) A(getBomType) A(childnode_handler)
    C(_appmngr_readDbFile) C(_appmngr_parseNode) A(parseThroughXML) C(_appmngr_getNodeValue)
    C(_appmngr_getNodeStr) H(app) H(appType) H(id) H(name) H(visible) H(typeid) H(rule) H(tuple)
    H(start) H(dpiType) H(dnsKw) C(quelm_des_min_do) C(quelm_des_inplace_do) C(quelm_md5_des_do)
    A(checkDbPath) C(_appmngr_putNodeValue) A(loadImage) A(loadText)
    A(db_openContainer) A(writeRulesJson) A(writeAppRules) A(writeAppDb) A(writeAppList)
    A(writeAppTypeList) 
};
// clang-format on

TEST(Bounds, OfPointersAreTold) {
    std::map<std::string, std::vector<bool>> tried; // as Call::isPointer
    forEachCase("nulls.cases", [&tried](const Case &test) {
        static const std::regex form(R"((\w+)\(([^)]*)\) = ([^]*))");
        std::istringstream lines(test.lines("call"));
        for (std::string line; std::getline(lines, line);) {
            std::smatch parts;
            ASSERT_TRUE(std::regex_match(line, parts, form)) << line;
            const Call &call = calls.at(parts[1]);
            std::vector<bool> &places = tried[parts[1]];
            places.resize(call.isPointer.size());
            std::istringstream arguments(parts[2]);
            size_t place = 0;
            for (std::string name; std::getline(arguments >> std::ws, name, ','); ++place) {
                if (name == "null") {
                    places.at(place) = true;
                    EXPECT_EQ(call.withNull(place), parts[3]) << line;
                }
            }
            EXPECT_EQ(place, places.size()) << line;
        }
    });
    for (const auto &[name, call] : calls) {
        EXPECT_EQ(tried[name], call.isPointer) << name;
    }
}

} // namespace
