// A parse from the first byte to the finished tree: declaration, check, builder.

#include "xmlp/chars.h"
#include "xmlp/dynamic_tree.h"
#include "xmlp/memory.h"
#include "xmlp/quick_tree.h"
#include "xmlp/report.h"
#include "xmlp/static_tree.h"
#include "xmlp/xmlp_internal.h"

#include <cstring>
#include <string_view>

using namespace velda::xmlp;

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

// Within the text, which need not end where its white space does.
void dropWhiteSpace(std::string_view &text) {
    while (!text.empty() && isOf(text.front(), whiteSpaceByte)) {
        text.remove_prefix(1);
    }
}

bool buildTree(std::string_view body, XMLP_TREE &tree) {
    const bool isStatic = tree.isStatic != 0;
    const auto buildQuickly = isStatic ? buildStaticTreeQuickly : buildDynamicTreeQuickly;
    const QuickTree result = buildQuickly(body, markupIndexer(), tree.rootNode);
    if (result != QuickTree::declined) {
        return result == QuickTree::built;
    }
    if (_checkXml(body.data(), body.data() + body.size()) != 0) {
        return false;
    }
    tree.rootNode = isStatic ? buildStaticTree(body) : buildDynamicTree(body);
    return tree.rootNode != nullptr;
}

} // namespace

XMLP_TREE *xmlp_parse(const char *xmlBuf, uint32_t len, uint32_t isStatic) {
    if (xmlBuf == nullptr) {
        XMLP_REPORT("xmlBuf is null.");
        return nullptr;
    }
    Owned<XMLP_TREE> tree(static_cast<XMLP_TREE *>(std::calloc(1, sizeof(XMLP_TREE))));
    if (tree == nullptr) {
        XMLP_REPORT("malloc failed.");
        return nullptr;
    }
    tree->isStatic = isStatic;

    std::string_view text(xmlBuf, len);
    if (startsWith(text, byteOrderMark)) {
        text.remove_prefix(byteOrderMark.size());
    }
    dropWhiteSpace(text);
    Owned<char> header;
    if (startsWith(text, "<?")) {
        const size_t close = text.find("?>", 2);
        if (close == std::string_view::npos) {
            XMLP_REPORT("error in xml header.");
            return nullptr;
        }
        text.remove_prefix(close + 2);
        const auto headerLen = static_cast<uint32_t>(text.data() - xmlBuf);
        header = allocate<char>(headerLen);
        if (header == nullptr) {
            XMLP_REPORT("malloc failed.");
            return nullptr;
        }
        std::memcpy(header.get(), xmlBuf, headerLen);
        tree->headerLen = headerLen;
    }
    dropWhiteSpace(text);

    if (!buildTree(text, *tree)) {
        return nullptr;
    }
    tree->header = header.release();
    return tree.release();
}

XMLP_DOC *xmlp_xml2Tree(const char *xmlBuf, uint32_t len, uint32_t isStatic) {
    if (xmlBuf == nullptr) {
        XMLP_REPORT("xmlBuf is null.");
        return nullptr;
    }
    auto doc = allocate<XMLP_DOC>(sizeof(XMLP_DOC));
    if (doc == nullptr) {
        XMLP_REPORT("malloc failed.");
        return nullptr;
    }
    doc->tree = xmlp_parse(xmlBuf, len, isStatic);
    if (doc->tree == nullptr) {
        return nullptr;
    }
    doc->tree->refCount = 1;
    return doc.release();
}
