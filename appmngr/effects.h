// Tells a listener what handlers do with elements.
//
// A load stores what it can and goes on. What it does silently, such as cutting a text, is told here by
// the handler that does it. Telling never changes what is loaded; without a listener it costs one test
// for each element, so that whatever takes longer, such as a look at the siblings, is done here.
#pragma once

#include "appmngr/elements.h"

namespace velda::appmngr {

// Whether somebody is to be told of this element. All that follows asks for that first.
inline bool hasListener(const XMLP_NODE *node) {
    return g_appmngr_effectListener != nullptr && node != nullptr;
}

void notify(const XMLP_NODE *node, APPMNGR_EFFECT_CODE code);
void notify(const APPMNGR_EFFECT &effect);

// What becomes of a leaf that is about to be stored, up to what its kind makes of the text. False when
// there is no text.
bool notifyLeaf(const XMLP_NODE *node, Element element);

void notifyContainer(const XMLP_NODE *node, Element element);

// That a record is filled without an identifier, if it is.
void notifyMissingId(const XMLP_NODE *node);

} // namespace velda::appmngr
