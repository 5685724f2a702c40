#include "appmngr/effects.h"

#include "appmngr/context.h"
#include "appmngr/node_text.h"

#include <algorithm>

namespace velda::appmngr {

namespace {

// Each stops at the nearest one, so that many equal siblings do not take time in the square of their number.
template <class... Elements>
bool comesAfter(const XMLP_NODE *node, Elements... elements) {
    const XMLP_NODE *sibling = node->prev;
    while (sibling != nullptr && !(isA(sibling, elements) || ...)) {
        sibling = sibling->prev;
    }
    return sibling != nullptr;
}

void notifyParent(const XMLP_NODE *node, Element element) {
    if (!hasValidParent(element, node)) {
        notify(node, APPMNGR_EFFECT_ELSEWHERE);
    }
}

void notifyString(const XMLP_NODE *node, uint32_t fieldSize) {
    APPMNGR_EFFECT effect = {APPMNGR_EFFECT_TEXT, node, 0, node->value, node->valueSize};
    effect.size = std::min(effect.size, fieldSize - 1);
    notify(effect);
}

void notifyId(const XMLP_NODE *node, int32_t id) {
    const bool isLate =
        isA(node->parent, Element::app) && !comesAfter(node, Element::id) &&
        comesAfter(node, Element::typeIdList, Element::ruleList, Element::dnsKwList);
    notify({isLate ? APPMNGR_EFFECT_LATE_IDENTIFIER : APPMNGR_EFFECT_IDENTIFIER, node, id,
            node->value, node->valueSize});
}

void notifyInteger(const XMLP_NODE *node, Element element) {
    const Integer integer =
        parseInteger({node->value, node->value != nullptr ? node->valueSize : 0});
    if (!integer.isExact) {
        notify(node, APPMNGR_EFFECT_NOT_NUMBER);
    } else if (element == Element::id) {
        notifyId(node, integer.value);
    }
}

} // namespace

void notify(const APPMNGR_EFFECT &effect) {
    g_appmngr_effectListener(&effect, g_appmngr_effectListenerContext);
}

void notify(const XMLP_NODE *node, APPMNGR_EFFECT_CODE code) {
    notify({code, node, 0, node->value, node->valueSize});
}

bool notifyLeaf(const XMLP_NODE *node, Element element) {
    const ElementInfo &info = infoOf(element);
    notifyParent(node, element);
    if (!info.isRepeatable && comesAfter(node, element)) {
        notify(node, APPMNGR_EFFECT_REPEATED);
    }
    if (node->firstChild != nullptr) {
        notify(node, APPMNGR_EFFECT_NO_TEXT);
        return false;
    }
    if (node->valueSize >= APPMNGR_NODE_TEXT_SIZE) {
        notify(node, APPMNGR_EFFECT_TOO_LONG);
        return false;
    }
    if (info.kind == Kind::integer) {
        notifyInteger(node, element);
    } else {
        notifyString(node, info.field.size);
    }
    return true;
}

void notifyContainer(const XMLP_NODE *node, Element element) {
    notifyParent(node, element);
    if (node->firstChild == nullptr) {
        notify(node, APPMNGR_EFFECT_NO_ELEMENTS);
    }
}

void notifyMissingId(const XMLP_NODE *node) {
    const XMLP_NODE *child = node->firstChild;
    while (child != nullptr && (child->type == XMLP_TYPE_NONE || !isA(child, Element::id))) {
        child = child->next;
    }
    if (child == nullptr) {
        notify(node, APPMNGR_EFFECT_NO_ID);
    }
}

} // namespace velda::appmngr

void appmngr_setEffectListener(APPMNGR_EFFECT_LISTENER listener, void *context) {
    g_appmngr_effectListener = listener;
    g_appmngr_effectListenerContext = context;
}
