// What the walk asks of the handlers of containers, and they of the walk.
#pragma once

#include "appmngr/context.h"

namespace velda::appmngr {

// How a container is walked.
struct Descent {
    void *param;     // what its children are given
    bool hasCounter; // they are given the address of a counter of tuples instead
    Scope scope;     // that they stand in; set before, for a handler to change
    int (*leave)(const XMLP_NODE *node,
                 uint32_t tuples); // what is left to do afterwards; its result is the handler's
};

// The first half of a container's handler. False when it does not act on this element.
using Enter = bool (*)(const XMLP_NODE *node, void *param, Descent &descent);

// Null when a handler, or that in the row of an element, is none of this module's containers.
Enter enterOf(int (*handler)(XMLP_NODE *node, void *param));
Enter enterOf(Element element);

// A whole handler: enters, walks the children, leaves. -1 where it does not enter.
int walkContainer(Enter enter, XMLP_NODE *node, void *param);

// What the walk knows of the children of an element.
struct Surroundings {
    Scope scope;
    bool isCounted; // the element is one of those that are counted, and stands where it is
};

// Null when the walk is not at the children of `parent` now.
const Surroundings *surroundingsIn(const XMLP_NODE *parent);

} // namespace velda::appmngr
