// No function reads or writes behind the last byte of what it is given. What they make of it is for
// other tests to say.

#include "tests/support/bounds.h"

#include "appmngr/appmngr_internal.h"
#include "crypto/quelm.h"
#include "tests/support/documents.h"
#include "xmlp/xmlp_internal.h"

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

using Reader = void (*)(char *bytes, uint32_t length);

XMLP_NODE nodeOf(char *bytes, uint32_t length) {
    XMLP_NODE node = {};
    node.value = bytes;
    node.valueSize = length;
    return node;
}

// Of counted bytes.
const Reader readers[] = {
    [](char *b, uint32_t n) { xmlp_isValidName(b, n); },
    [](char *b, uint32_t n) { xmlp_isValidAttrValue(b, n); },
    [](char *b, uint32_t n) { xmlp_isValidChar(b, n); },
    [](char *b, uint32_t n) { xmlp_nameCmp(b, n, "a name of many bytes and more"); },
    [](char *b, uint32_t n) {
        const uint32_t length = xmlp_transStrLen(b, n);
        const Guarded escaped(std::string(length, '#'));
        EXPECT_EQ(xmlp_transStr(escaped.data(), b, n), escaped.data() + length);
        const Guarded raw(std::string(n, '#'));
        EXPECT_EQ(xmlp_unTransStr(raw.data(), escaped.data(), length), raw.data() + n);
        xmlp_unTransStrLen(b, n);
    },
    [](char *b, uint32_t n) {
        XMLP_NODE node = {};
        xmlp_setNodeValue(&node, b, n);
        std::free(node.value);
        const XMLP_ITEM item = {0, nullptr, n, b};
        xmlp_delNode(_item2Node(&item));
    },
    [](char *b, uint32_t n) {
        const Doc doc = parseStatic("<r x=\"1\"><a/></r>");
        xmlp_getChildNodeByName(doc->tree->rootNode, n > 0 ? b : nullptr, n);
        xmlp_isAttrNameExist(doc->tree->rootNode->firstChild->attrList, b, n);
    },
    [](char *b, uint32_t n) {
        XMLP_NODE *root = _makeDtree(b, n);
        if (root != nullptr) {
            xmlp_delDtree(root);
        }
    },
    [](char *b, uint32_t n) { _checkXml(b, b + n); },
    [](char *b, uint32_t n) {
        appmngr_getBomType(reinterpret_cast<const unsigned char *>(b), static_cast<int>(n));
    },
    [](char *b, uint32_t n) {
        XMLP_NODE node = nodeOf(b, n);
        int32_t number = 0;
        char text[8];
        uint32_t tuples = 0;
        _appmngr_getNodeInt(&node, &number);
        _appmngr_getNodeStr(&node, text, sizeof text);
        _appmngr_getNodeValue(&node);
        APPMNGR_RULE rule = {};
        g_appmngr_appDb.rule = &rule;
        g_appmngr_appDb.ruleCount = 1;
        _appmngr_xmlnode_handler_tuple(&node, &tuples);
        g_appmngr_appDb = {};
    },
    [](char *b, uint32_t n) {
        appmngr_utils_dumpBuf(reinterpret_cast<const unsigned char *>(b), static_cast<int>(n));
    },
    [](char *b, uint32_t n) {
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
        quelm_md5_sum(digest.data(), b, size);
        quelm_md5_check(digest.data(), b, size);
        quelm_hmac_md5(b, size, b, size, digest.data());
        uint32_t room = n + 8;
        const Guarded deciphered(std::string(room, '#'));
        appmngr_decrypt(deciphered.data(), &room, b, n);
    },
};

// Of bytes with a NUL behind them.
const Reader stringReaders[] = {
    [](char *b, uint32_t) { _skipWhiteSpace(b); },
    [](char *b, uint32_t) { xmlp_nameCmp("a name of many bytes and more", 29, b); },
    [](char *b, uint32_t) { _checkNameAttr(b, '>'); },
    [](char *b, uint32_t) {
        XMLP_NODE node = {};
        xmlp_setNodeName(&node, b);
        xmlp_addNodeAttr(&node, b, b);
        xmlp_freeAttrList(node.attrList);
        std::free(node.name);
    },
    [](char *b, uint32_t n) {
        const Guarded escaped(std::string(n + 1, '#'));
        appmngr_string_escape(escaped.data(), b);
        appmngr_string_safeCaseCmp(b, "a name of many bytes and more");
        appmngr_utils_str2proto(b);
        char *fields[4];
        appmngr_string_makeSubStrByChar(b, ' ', 4, fields);
    },
};

TEST(Bounds, OfBuffersAreKept) {
    outputOf([] {
        for (const std::string &text : texts) {
            for (size_t length = 0; length <= text.size(); ++length) {
                const std::string part = text.substr(0, length);
                for (const Reader reader : readers) {
                    reader(Guarded(part).data(), static_cast<uint32_t>(length));
                }
                for (const Reader reader : stringReaders) {
                    reader(Guarded(part + '\0').data(), static_cast<uint32_t>(length));
                }
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

} // namespace
