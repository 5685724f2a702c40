#include "fuzz/trees.h"

#include <cstring>

namespace fuzz {
namespace {

std::string_view textOf(const char *text) {
    return text != nullptr ? std::string_view(text) : std::string_view();
}

std::string_view valueOf(const XMLP_NODE *node) {
    return {node->value, node->valueSize};
}

void requireTypesFit(const XMLP_NODE *node) {
    const XMLP_NODE *parent = node->parent;
    FUZZ_REQUIRE(node->type <= XMLP_TYPE_ITEM);
    FUZZ_REQUIRE(parent->type == XMLP_TYPE_BRANCH || parent->type == XMLP_TYPE_LIST);
    FUZZ_REQUIRE((node->type == XMLP_TYPE_ITEM) == (parent->type == XMLP_TYPE_LIST));
}

void requireLinksFit(const XMLP_NODE *node) {
    const XMLP_NODE *parent = node->parent;
    FUZZ_REQUIRE(node->name != nullptr);
    FUZZ_REQUIRE((node->prev != nullptr ? node->prev->next : parent->firstChild) == node);
    FUZZ_REQUIRE((node->next != nullptr ? node->next->prev : parent->lastChild) == node);
    FUZZ_REQUIRE(node->next == nullptr || node->next->parent == parent);
}

void requireNamesDiffer(const XMLP_ATTR *attr) {
    for (; attr != nullptr; attr = attr->next) {
        FUZZ_REQUIRE(attr->name != nullptr && attr->name[0] != '\0');
        const char *name = attr->name;
        FUZZ_REQUIRE(xmlp_isAttrNameExist(attr->next, name, textOf(name).size() & UINT32_MAX) == 0);
    }
}

// Where a static tree's block begins; null has no place in it.
struct Block {
    const char *start;

    explicit Block(const XMLP_NODE *root)
        : start(root->firstChild != nullptr ? root->firstChild->name
                                            : reinterpret_cast<const char *>(root)) {}

    ptrdiff_t placeOf(const void *address) const {
        return address != nullptr ? static_cast<const char *>(address) - start : -1;
    }
};

class Fingerprint {
public:
    void add(std::string_view bytes) {
        for (const char byte : bytes) {
            add(static_cast<unsigned char>(byte));
        }
        add(0x100 + bytes.size());
    }
    void add(uint64_t number) { sum_ = (sum_ ^ number) * 0x100000001B3U; }
    uint64_t sum() const { return sum_; }

private:
    uint64_t sum_ = 0xCBF29CE484222325U;
};

} // namespace

Doc parse(const Text &text, uint32_t isStatic) {
    return Doc(xmlp_loadDoc(text.data(), text.size(), isStatic));
}

const XMLP_NODE *following(const XMLP_NODE *root, const XMLP_NODE *node) {
    if (node->firstChild != nullptr) {
        return node->firstChild;
    }
    while (node != root && node->next == nullptr) {
        node = node->parent;
    }
    return node != root ? node->next : nullptr;
}

void requireWhole(const XMLP_NODE *root) {
    FUZZ_REQUIRE(root->parent == nullptr && root->prev == nullptr && root->next == nullptr);
    for (const XMLP_NODE *node = root; node != nullptr; node = following(root, node)) {
        FUZZ_REQUIRE((node->value == nullptr) == (node->valueSize == 0));
        FUZZ_REQUIRE((node->firstChild == nullptr) == (node->lastChild == nullptr));
        FUZZ_REQUIRE(node->firstChild == nullptr || node->value == nullptr);
        FUZZ_REQUIRE(node->firstChild == nullptr || node->firstChild->parent == node);
        requireNamesDiffer(node->attrList);
        if (node != root) {
            requireLinksFit(node);
            requireTypesFit(node);
        }
    }
}

void requireSharedItemNames(const XMLP_NODE *root) {
    for (const XMLP_NODE *node = root; node != nullptr; node = following(root, node)) {
        FUZZ_REQUIRE(node->type != XMLP_TYPE_ITEM || node->name == g_xmlp_itemName);
    }
}

size_t blocksOf(const XMLP_DOC *doc) {
    const XMLP_NODE *root = doc->tree->rootNode;
    size_t count = doc->tree->header != nullptr ? 3 : 2;
    for (const XMLP_NODE *node = root; node != nullptr; node = following(root, node)) {
        count += 1;
        count += node->name != nullptr && node->name != g_xmlp_itemName ? 1 : 0;
        count += node->value != nullptr ? 1 : 0;
        for (const XMLP_ATTR *attr = node->attrList; attr != nullptr; attr = attr->next) {
            count += attr->value != nullptr ? 3 : 2;
        }
    }
    return count;
}

void requireSameTree(const XMLP_NODE *a, const XMLP_NODE *b) {
    const XMLP_NODE *rootOfA = a;
    const XMLP_NODE *rootOfB = b;
    while (a != nullptr && b != nullptr) {
        FUZZ_REQUIRE(textOf(a->name) == textOf(b->name));
        FUZZ_REQUIRE(valueOf(a) == valueOf(b));
        FUZZ_REQUIRE(a->type == b->type);
        FUZZ_REQUIRE((a->firstChild == nullptr) == (b->firstChild == nullptr));
        FUZZ_REQUIRE((a->next == nullptr) == (b->next == nullptr));
        const XMLP_ATTR *attrOfA = a->attrList;
        const XMLP_ATTR *attrOfB = b->attrList;
        for (; attrOfA != nullptr && attrOfB != nullptr;
             attrOfA = attrOfA->next, attrOfB = attrOfB->next) {
            FUZZ_REQUIRE(textOf(attrOfA->name) == textOf(attrOfB->name));
            FUZZ_REQUIRE(textOf(attrOfA->value) == textOf(attrOfB->value));
            FUZZ_REQUIRE((attrOfA->value == nullptr) == (attrOfB->value == nullptr));
        }
        FUZZ_REQUIRE(attrOfA == nullptr && attrOfB == nullptr);
        a = following(rootOfA, a);
        b = following(rootOfB, b);
    }
    FUZZ_REQUIRE(a == nullptr && b == nullptr);
}

void requireSameBlock(const XMLP_NODE *a, const XMLP_NODE *b) {
    requireSameTree(a, b);
    const Block inA(a);
    const Block inB(b);
    const auto requireSamePlace = [&](const void *ofA, const void *ofB) {
        FUZZ_REQUIRE(inA.placeOf(ofA) == inB.placeOf(ofB));
    };
    const XMLP_NODE *rootOfA = a;
    const XMLP_NODE *rootOfB = b;
    while (a != nullptr) {
        requireSamePlace(a, b);
        requireSamePlace(a->name, b->name);
        requireSamePlace(a->value, b->value);
        const XMLP_ATTR *attrOfB = b->attrList;
        for (const XMLP_ATTR *attr = a->attrList; attr != nullptr; attr = attr->next) {
            requireSamePlace(attr, attrOfB);
            requireSamePlace(attr->name, attrOfB->name);
            requireSamePlace(attr->value, attrOfB->value);
            attrOfB = attrOfB->next;
        }
        a = following(rootOfA, a);
        b = following(rootOfB, b);
    }
}

uint64_t fingerprint(const XMLP_NODE *root) {
    Fingerprint sum;
    for (const XMLP_NODE *node = root; node != nullptr; node = following(root, node)) {
        sum.add(textOf(node->name));
        sum.add(valueOf(node));
        for (const XMLP_ATTR *attr = node->attrList; attr != nullptr; attr = attr->next) {
            sum.add(textOf(attr->name));
            sum.add(textOf(attr->value));
        }
        sum.add((node->firstChild != nullptr ? 2U : 0U) + (node->next != nullptr ? 1U : 0U));
    }
    return sum.sum();
}

} // namespace fuzz
