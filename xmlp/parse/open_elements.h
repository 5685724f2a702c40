// Which elements are open, and what children each can still be given.
#pragma once

#include "xmlp/base/array.h"

#include <cstdint>

namespace velda::xmlp {

// Kinds of children; an element has only those of one kind.
enum Children : uint32_t {
    noChildren = 0,
    namedChildren = 1,
    itemChildren = 2,
    anyChildren = namedChildren | itemChildren,
    topLevelChild = 4 // one of either kind
};

// Invariant: `innermost()` is the element whose end tag comes next, the document node (number 0) when
// there is none; the stack has those around it, the document node first. An element's `children` only
// ever loses bits: its first child settles which kind it has.
class OpenElements {
public:
    struct Element {
        uint32_t number; // of its record plus 1; 0 for the document node
        uint32_t name;   // offset in the body
        uint32_t nameLength;
        uint32_t children;
    };

    const Element &innermost() const { return innermost_; }
    bool isOutside() const { return innermost_.number == 0; }

    // An element inside another one is given a child. False when it can't have one of this kind, and
    // for the document node.
    bool addChild(uint32_t kind) {
        if ((innermost_.children & kind) == 0) {
            return false;
        }
        innermost_.children = kind;
        return true;
    }

    // The same for the top-level element.
    bool addTopLevel() {
        const bool canHave = innermost_.children == topLevelChild;
        innermost_.children = noChildren;
        return canHave;
    }

    // False when memory runs out.
    bool open(const Element &element) {
        if (!enclosing_.push(innermost_)) {
            return false;
        }
        innermost_ = element;
        return true;
    }

    // Not for the document node.
    void close() {
        innermost_ = enclosing_.last();
        enclosing_.pop();
    }

private:
    Element innermost_ = {0, 0, 0, topLevelChild};
    Array<Element> enclosing_;
};

} // namespace velda::xmlp
