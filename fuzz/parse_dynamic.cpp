// Dynamic trees: the same as static ones; written in both layouts and read back they are themselves
// again. A failing byte, then the text.

#include "fuzz/trees.h"
#include "xmlp/xmlp_internal.h"

#include <cstdlib>
#include <cstring>

using namespace fuzz;

namespace {

struct Free {
    void operator()(char *text) const { std::free(text); }
};

using Written = std::unique_ptr<char, Free>;

// Whether it ends within a character: in a text that is written that takes markup with it.
bool isCutShort(std::string_view text) {
    size_t at = 0;
    while (at < text.size()) {
        at += _utf8CharLen[static_cast<unsigned char>(text[at])];
    }
    return at > text.size();
}

// The first byte of a name that is read may be any, and an attribute of an element without contents may
// hold a '/', which the short form can't carry.
bool canBeWritten(const XMLP_NODE *node) {
    const std::string_view name = node->name;
    if (name.empty() || xmlp_isValidName(node->name, name.size() & UINT32_MAX) == 0) {
        return false;
    }
    const bool isShort = node->firstChild == nullptr && node->value == nullptr;
    for (const XMLP_ATTR *attr = node->attrList; attr != nullptr; attr = attr->next) {
        const std::string_view value = attr->value != nullptr ? attr->value : "";
        const bool endsTag = isShort && value.find('/') != std::string_view::npos;
        if (endsTag || isCutShort(attr->name) || isCutShort(value)) {
            return false;
        }
    }
    return !isCutShort(name) && !isCutShort({node->value, node->valueSize});
}

// Not where nothing was read, of a text that ends in its first tag. A name with '?' first, where text
// stood before it, comes to stand where a declaration would.
bool canBeReadBack(const XMLP_TREE *tree) {
    const XMLP_NODE *root = tree->rootNode;
    const XMLP_NODE *node = root->firstChild;
    if (node == nullptr || (tree->headerLen == 0 && *node->name == '?')) {
        return false;
    }
    while (node != nullptr && canBeWritten(node)) {
        node = following(root, node);
    }
    return node == nullptr;
}

void checkWritten(XMLP_DOC *doc, uint32_t isCompact) {
    uint32_t length = 0;
    const Written written(xmlp_dumpDoc(doc, isCompact, &length));
    FUZZ_REQUIRE(written != nullptr && written.get()[length] == '\0');
    const XMLP_TREE *tree = doc->tree;
    const Doc again = parse(Text({written.get(), length}), 0);
    if (!canBeReadBack(tree)) {
        return;
    }
    FUZZ_REQUIRE(again != nullptr);
    requireSameTree(again->tree->rootNode, tree->rootNode);
    FUZZ_REQUIRE(again->tree->headerLen == tree->headerLen);
    FUZZ_REQUIRE(tree->headerLen == 0 ||
                 std::memcmp(again->tree->header, tree->header, tree->headerLen) == 0);
}

void checkFailures(const Text &text, XMLP_DOC *doc, uint8_t failing) {
    const size_t before = liveBlocks();
    for (const uint32_t isStatic : {0U, 1U}) {
        forgetPrinted();
        FailingByte failure(failing);
        const Doc again = parse(text, isStatic);
        const bool hasFailed = failure.end();
        FUZZ_REQUIRE((again != nullptr) == (doc != nullptr && !hasFailed));
        FUZZ_REQUIRE(!hasFailed || isStatic == 0 || hasPrinted("malloc failed.\r\n"));
    }
    FUZZ_REQUIRE(liveBlocks() == before);
    if (doc != nullptr) {
        forgetPrinted();
        uint32_t length = 0;
        FailingByte failure('0');
        const Written written(xmlp_dumpDoc(doc, 0, &length));
        FUZZ_REQUIRE(failure.end() && written == nullptr && hasPrinted("malloc failed.\r\n"));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const size_t before = liveBlocks();
    Input input(data, size);
    const uint8_t failing = input.byte();
    const Text text(input.rest());
    forgetPrinted();
    {
        const Doc doc = parse(text, 0);
        FUZZ_REQUIRE((doc != nullptr) == printed().empty());
        FUZZ_REQUIRE(liveBlocks() == before + (doc != nullptr ? blocksOf(doc.get()) : 0));
        const Doc fixed = parse(text, 1);
        FUZZ_REQUIRE((doc != nullptr) == (fixed != nullptr));
        if (doc != nullptr) {
            requireWhole(doc->tree->rootNode);
            requireWhole(fixed->tree->rootNode);
            requireSameTree(doc->tree->rootNode, fixed->tree->rootNode);
            checkWritten(doc.get(), 0);
            checkWritten(doc.get(), 1);
        }
        if (failing != noFailure) {
            checkFailures(text, doc.get(), failing);
        }
    }
    FUZZ_REQUIRE(liveBlocks() == before);
    return 0;
}
