// A parse from the first byte to the finished tree. parse/ accepts or refuses a body; steps/ explain what
// was refused.

#include "xmlp/base/chars.h"
#include "xmlp/base/memory.h"
#include "xmlp/base/report.h"
#include "xmlp/parse/builders.h"
#include "xmlp/steps/dynamic_tree.h"
#include "xmlp/steps/static_tree.h"
#include "xmlp/xmlp_internal.h"

#include <cstring>
#include <string_view>

using namespace velda::xmlp;

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

// Within the text, which need not end where its white space does.
void dropWhiteSpace(std::string_view &text) {
    while (!text.empty() && isWhiteSpace(text.front())) {
        text.remove_prefix(1);
    }
}

// Says why no tree can be made of a body: the steps of a parse, up to the one that refuses it.
void explain(std::string_view body, bool isStatic) {
    if (_checkXml(body.data(), body.data() + body.size()) != 0) {
        return;
    }
    // Without memory the steps may get on where the parser did not: what they make is dropped.
    XMLP_NODE *root = isStatic ? buildStaticTree(body) : buildDynamicTree(body);
    if (root != nullptr) {
        isStatic ? xmlp_delStree(root) : xmlp_delDtree(root);
    }
}

XMLP_NODE *buildTree(std::string_view body, bool isStatic) {
    const auto build = isStatic ? buildStaticTreeFast : buildDynamicTreeFast;
    XMLP_NODE *root = nullptr;
    if (build(body, fastestIndexer(), root) == BuildResult::refused) {
        explain(body, isStatic);
    }
    return root;
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

    tree->rootNode = buildTree(text, isStatic != 0);
    if (tree->rootNode == nullptr) {
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
