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

// Whether it ends within a character, which takes markup with it in a text that is written, or has markup
// within one, which is longer there.
bool hasBrokenCharacter(std::string_view text) {
    size_t end = 0;
    for (size_t at = 0; at < text.size(); ++at) {
        if (at >= end) {
            end = at + _utf8CharLen[static_cast<unsigned char>(text[at])];
        } else if (text[at] == '<' || text[at] == '>' || text[at] == '&') {
            return true;
        }
    }
    return end > text.size();
}

// Empty names are read where white space stands in their place, and an attribute of an element without
// contents may hold a '/', which the short form can't carry.
bool canBeWritten(const XMLP_NODE *node) {
    const std::string_view name = node->name;
    if (name.empty()) {
        return false;
    }
    const bool isShort = node->firstChild == nullptr && node->value == nullptr;
    for (const XMLP_ATTR *attr = node->attrList; attr != nullptr; attr = attr->next) {
        const std::string_view value = attr->value != nullptr ? attr->value : "";
        const bool endsTag = isShort && value.find('/') != std::string_view::npos;
        if (endsTag || hasBrokenCharacter(attr->name) || hasBrokenCharacter(value)) {
            return false;
        }
    }
    return !hasBrokenCharacter(name) && !hasBrokenCharacter({node->value, node->valueSize});
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

// Whatever was read can be written so that it is read again.
void checkReadable(XMLP_DOC *doc, uint32_t flags) {
    uint32_t length = 0;
    XMLP_WRITE_ERROR error;
    const Written written(xmlp_writeDoc(doc, flags, &length, &error));
    FUZZ_REQUIRE(written != nullptr && error.code == XMLP_WRITE_NONE);
    const Doc again = parse(Text({written.get(), length}), 0);
    FUZZ_REQUIRE(again != nullptr);
    requireSameTree(again->tree->rootNode, doc->tree->rootNode);
    FUZZ_REQUIRE(again->tree->headerLen == doc->tree->headerLen);
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
            requireSharedItemNames(doc->tree->rootNode);
            requireWhole(fixed->tree->rootNode);
            requireSameTree(doc->tree->rootNode, fixed->tree->rootNode);
            checkWritten(doc.get(), 0);
            checkWritten(doc.get(), 1);
            checkReadable(doc.get(), 0);
            checkReadable(doc.get(), XMLP_WRITE_INDENTED);
        }
        if (failing != noFailure) {
            checkFailures(text, doc.get(), failing);
        }
    }
    FUZZ_REQUIRE(liveBlocks() == before);
    return 0;
}
