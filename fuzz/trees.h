// XML trees under fuzzing: what holds for each of them, and comparing two.
#pragma once

#include "fuzz/support.h"
#include "xmlp/xmlp.h"

namespace fuzz {

struct ReleaseDoc {
    void operator()(XMLP_DOC *doc) const { xmlp_releaseDoc(doc); }
};

using Doc = std::unique_ptr<XMLP_DOC, ReleaseDoc>;

Doc parse(const Text &text, uint32_t isStatic);

// The element after this one in document order; null at the end of the tree.
const XMLP_NODE *following(const XMLP_NODE *root, const XMLP_NODE *node);

// Requires of a tree all that its records promise.
void requireWhole(const XMLP_NODE *root);

// Requires that members of lists share one name, as those do that were never renamed.
void requireSharedItemNames(const XMLP_NODE *root);

// How many allocations a dynamic document owns.
size_t blocksOf(const XMLP_DOC *doc);

// Requires the same elements, types, texts and attributes.
void requireSameTree(const XMLP_NODE *a, const XMLP_NODE *b);

// Of two static trees: requires the same tree at the same places of the block.
void requireSameBlock(const XMLP_NODE *a, const XMLP_NODE *b);

// A number that changes with the elements, their texts and attributes, not with their types.
uint64_t fingerprint(const XMLP_NODE *root);

} // namespace fuzz
