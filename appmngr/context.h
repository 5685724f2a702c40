// Where the handlers of the database document act.
//
// What the counting pass counts fills records of its own, so it has to stand exactly where it is counted:
// records are sized by these counts. Everything else writes into the current record, wherever the walk
// comes to it; there it is enough that this record is the one being read.
#pragma once

#include "appmngr/elements.h"

namespace velda::appmngr {

// What is being read around an element. `any` is a tree of a caller's own that begins below the
// database, where the current records are all there is to go by.
enum class Scope : uint32_t { any, database, app, appType };

// The scope of the elements in `node`, which itself stands in the scope `around`.
Scope scopeIn(const XMLP_NODE *node, Scope around);

// The scope in which an element stands: known to the walk while it is at this element's level, else found from
// the elements around it.
Scope scopeAround(const XMLP_NODE *node);

inline bool isTag(const void *param) {
    constexpr uintptr_t largestTag = 1;
    return reinterpret_cast<uintptr_t>(param) <= largestTag;
}

// Whether this is one of the elements that the counting pass counts or goes through, lists and below.
bool isCounted(Element element);

// Each is true for an element on which its handler acts. Names other than those of the database document
// are a caller's own, whose context is the caller's matter.

bool inCountedPath(const XMLP_NODE *node);
bool inRecord(const XMLP_NODE *node, const void *param); // of an application or of a type
bool inApp(const XMLP_NODE *node);
bool inDirection(const XMLP_NODE *node, const void *param); // originating or reply

// Whether the handler of this element acts on `node`.
bool isValidContext(Element element, const XMLP_NODE *node, const void *param);

// Whether the format has this element where `node` stands. Elsewhere its handler may act all the same.
bool hasValidParent(Element element, const XMLP_NODE *node);

} // namespace velda::appmngr
