// Parsing and comparing trees.
#pragma once

#include "xmlp/xmlp.h"

#include <memory>
#include <string>

struct ReleaseDoc {
    void operator()(XMLP_DOC *doc) const { xmlp_releaseDoc(doc); }
};

using Doc = std::unique_ptr<XMLP_DOC, ReleaseDoc>;

// A copy of a record's field. A packed field must not be bound to a reference, as EXPECT_EQ does.
template <class T>
T field(T value) {
    return value;
}

// Parse a copy of the text behind which nothing can be read.
Doc parseStatic(const std::string &text);
Doc parseDynamic(const std::string &text);

// A tree in one line: every element as name:type, then [name=value ...] of its attributes (a name
// alone for one without value), "text" and (children). Types are N, B, L(eaf), S (list) and I(tem).
// Complains, as a failed test, of every link that is not as it should be.
std::string treeText(const XMLP_NODE *root);
