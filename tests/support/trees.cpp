#include "tests/support/trees.h"

#include "tests/support/bounds.h"

#include <gtest/gtest.h>

namespace {

// The NUL behind the text is the last byte that can be read.
Doc parse(const std::string &text, uint32_t isStatic) {
    const Guarded copy({text.c_str(), text.size() + 1});
    return Doc(xmlp_loadDoc(copy.data(), static_cast<uint32_t>(text.size()), isStatic));
}

} // namespace

Doc parseStatic(const std::string &text) {
    return parse(text, 1);
}

Doc parseDynamic(const std::string &text) {
    return parse(text, 0);
}

std::string treeText(const XMLP_NODE *root) {
    std::string text = root->name == nullptr ? "/" : root->name;
    text += ':';
    text += root->type < 5 ? "NBLSI"[root->type] : '?';
    for (const XMLP_ATTR *attr = root->attrList; attr != nullptr; attr = attr->next) {
        text += attr == root->attrList ? '[' : ' ';
        text += attr->name;
        text += attr->value == nullptr ? std::string() : std::string("=") + attr->value;
        text += attr->next == nullptr ? "]" : "";
    }
    EXPECT_EQ(root->value == nullptr, root->valueSize == 0u) << text;
    if (root->valueSize > 0) {
        text += '"' + std::string(root->value, root->valueSize) + '"';
        EXPECT_EQ(field(root->firstChild), nullptr) << text;
    }
    std::string children;
    const XMLP_NODE *previous = nullptr;
    for (const XMLP_NODE *child = root->firstChild; child != nullptr; child = child->next) {
        EXPECT_EQ(field(child->parent), root) << text;
        EXPECT_EQ(field(child->prev), previous) << text;
        children.append(previous == nullptr ? "" : " ").append(treeText(child));
        previous = child;
    }
    EXPECT_EQ(field(root->lastChild), previous) << text;
    return children.empty() ? text : text + "(" + children + ")";
}
