// Ownership of nodes of dynamic trees.
#pragma once

#include "xmlp/xmlp.h"

#include <memory>

namespace velda::xmlp {

struct DropNode {
    void operator()(XMLP_NODE *node) const { xmlp_delNode(node); }
};

struct DropTree {
    void operator()(XMLP_NODE *root) const { xmlp_delDtree(root); }
};

// A node without children that is not linked yet.
using OwnedNode = std::unique_ptr<XMLP_NODE, DropNode>;

// A node with all that is under it.
using OwnedTree = std::unique_ptr<XMLP_NODE, DropTree>;

} // namespace velda::xmlp
