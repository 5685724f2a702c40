// A parse from the first byte to the finished tree. parse/ accepts or refuses a body; steps/ explain what
// was refused.

#include "xmlp/base/chars.h"
#include "xmlp/base/diagnosis.h"
#include "xmlp/base/memory.h"
#include "xmlp/parse/builders.h"
#include "xmlp/steps/check.h"
#include "xmlp/steps/dynamic_tree.h"
#include "xmlp/steps/static_tree.h"
#include "xmlp/xmlp_internal.h"

#include <cstring>
#include <string_view>

using namespace velda::xmlp;

namespace {

constexpr char parseName[] = "xmlp_parse";
constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

// Within the text, which need not end where its white space does.
void dropWhiteSpace(std::string_view &text) {
    while (!text.empty() && isWhiteSpace(text.front())) {
        text.remove_prefix(1);
    }
}

// Says why no tree can be made of a body: the steps of a parse, up to the one that refuses it.
void explain(std::string_view body, bool isStatic, Diagnosis &diagnosis) {
    if (!checkBody(body.data(), body.data() + body.size(), diagnosis)) {
        return;
    }
    // Without memory the steps may get on where the parser did not: what they make is dropped.
    XMLP_NODE *root =
        isStatic ? buildStaticTree(body, diagnosis) : buildDynamicTree(body, diagnosis);
    if (root != nullptr) {
        isStatic ? xmlp_delStree(root) : xmlp_delDtree(root);
    }
}

XMLP_NODE *buildTree(std::string_view body, bool isStatic, Diagnosis &diagnosis) {
    const auto build = isStatic ? buildStaticTreeFast : buildDynamicTreeFast;
    XMLP_NODE *root = nullptr;
    if (build(body, fastestIndexer(), root) == BuildResult::refused) {
        explain(body, isStatic, diagnosis);
    }
    return root;
}

// Drops white space, a byte-order mark before it, and a declaration; gives the body that is left.
// `declaration` becomes a copy of all that came before the body, and is null without one.
bool dropDeclaration(std::string_view &text, Owned<char> &declaration, uint32_t &size,
                     Diagnosis &diagnosis) {
    const char *start = text.data();
    if (startsWith(text, byteOrderMark)) {
        text.remove_prefix(byteOrderMark.size());
    }
    dropWhiteSpace(text);
    if (startsWith(text, "<?")) {
        const size_t close = text.find("?>", 2);
        if (close == std::string_view::npos) {
            XMLP_REFUSE(diagnosis, parseName, XMLP_ERROR_DECLARATION, text.data());
            return false;
        }
        text.remove_prefix(close + 2);
        size = static_cast<uint32_t>(text.data() - start);
        declaration = allocate<char>(size);
        if (declaration == nullptr) {
            XMLP_REFUSE(diagnosis, parseName, XMLP_ERROR_NO_MEMORY, nullptr);
            return false;
        }
        std::memcpy(declaration.get(), start, size);
    }
    dropWhiteSpace(text);
    return true;
}

XMLP_TREE *parse(const char *xmlBuf, uint32_t len, uint32_t isStatic, Diagnosis &diagnosis) {
    Owned<XMLP_TREE> tree(static_cast<XMLP_TREE *>(std::calloc(1, sizeof(XMLP_TREE))));
    if (tree == nullptr) {
        XMLP_REFUSE(diagnosis, parseName, XMLP_ERROR_NO_MEMORY, nullptr);
        return nullptr;
    }
    tree->isStatic = isStatic;
    std::string_view text(xmlBuf, len);
    Owned<char> declaration;
    uint32_t declarationSize = 0;
    if (!dropDeclaration(text, declaration, declarationSize, diagnosis)) {
        return nullptr;
    }
    tree->rootNode = buildTree(text, isStatic != 0, diagnosis);
    if (tree->rootNode == nullptr) {
        return nullptr;
    }
    tree->header = declaration.release();
    tree->headerLen = declarationSize;
    return tree.release();
}

// A document of one reference.
XMLP_DOC *loadDoc(const char *xmlBuf, uint32_t len, uint32_t isStatic, Diagnosis &diagnosis) {
    constexpr char function[] = "xmlp_xml2Tree";
    if (xmlBuf == nullptr) {
        XMLP_REFUSE(diagnosis, function, XMLP_ERROR_NO_TEXT, nullptr);
        return nullptr;
    }
    auto doc = allocate<XMLP_DOC>(sizeof(XMLP_DOC));
    if (doc == nullptr) {
        XMLP_REFUSE(diagnosis, function, XMLP_ERROR_NO_MEMORY, nullptr);
        return nullptr;
    }
    doc->tree = parse(xmlBuf, len, isStatic, diagnosis);
    if (doc->tree == nullptr) {
        return nullptr;
    }
    doc->tree->refCount = 1;
    return doc.release();
}

} // namespace

XMLP_TREE *xmlp_parse(const char *xmlBuf, uint32_t len, uint32_t isStatic) {
    Diagnosis diagnosis(xmlBuf);
    if (xmlBuf == nullptr) {
        XMLP_REFUSE(diagnosis, parseName, XMLP_ERROR_NO_TEXT, nullptr);
        return nullptr;
    }
    return parse(xmlBuf, len, isStatic, diagnosis);
}

XMLP_DOC *xmlp_xml2Tree(const char *xmlBuf, uint32_t len, uint32_t isStatic) {
    Diagnosis diagnosis(xmlBuf);
    return loadDoc(xmlBuf, len, isStatic, diagnosis);
}

XMLP_DOC *xmlp_loadDocWithError(const char *xmlBuf, uint32_t len, uint32_t isStatic,
                                XMLP_ERROR *error) {
    Diagnosis diagnosis(xmlBuf);
    XMLP_DOC *doc = loadDoc(xmlBuf, len, isStatic, diagnosis);
    if (error != nullptr) {
        // Without a finding memory has run out.
        *error =
            doc == nullptr && !diagnosis.hasFinding() ? Diagnosis::noMemory() : diagnosis.error();
    }
    return doc;
}
