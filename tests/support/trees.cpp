#include "tests/support/trees.h"

#include <cstring>
#include <gtest/gtest.h>

Doc parseStatic(const std::string &text) {
    // A copy whose end a sanitizer guards.
    const auto copy = std::make_unique<char[]>(text.size() + 1);
    std::memcpy(copy.get(), text.c_str(), text.size() + 1);
    return Doc(xmlp_loadDoc(copy.get(), static_cast<uint32_t>(text.size()), 1));
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
