// Lists: nodes whose children are all named "item" and are distinguished by position.

#include "xmlp/base/memory.h"
#include "xmlp/document/frame.h"
#include "xmlp/document/value_copy.h"
#include "xmlp/tree/attr_list.h"
#include "xmlp/tree/owned_node.h"

#include <cstring>
#include <optional>

using namespace velda::xmlp;

namespace {

// An element without children may become a list.
template <class Result, class Work>
Result onList(const Call &call, Result refusal, Work work) {
    return onNodeOf({XMLP_TYPE_LIST, XMLP_TYPE_NONE}, call, refusal, work);
}

// Which items a call is about: `count` of them from one position on, or at given positions.
struct Positions {
    uint32_t mode;
    const uint32_t *positions;
    uint32_t count;

    bool areGiven() const { return positions != nullptr && count != 0; }

    uint32_t last() const {
        return mode == XMLP_POS_RANGE ? positions[0] + (count - 1) : positions[count - 1];
    }

    // Several items that end at XMLP_POS_LAST or wrap around would lie after the last item.
    bool runPastTheEnd() const {
        return count > 1 && (last() == XMLP_POS_LAST || last() < positions[0]);
    }

    // How far it is from item i to the next one.
    uint32_t step(uint32_t i) const {
        return mode == XMLP_POS_RANGE ? 1 : positions[i + 1] - positions[i];
    }
};

// The first item of a selection whose last item exists; null, after a line, when there is none.
XMLP_NODE *firstSelected(const char *function, const XMLP_NODE *list, const Positions &selected) {
    if (selected.mode != XMLP_POS_RANGE && selected.mode != XMLP_POS_LIST) {
        XMLP_REPORT_FOR(function, "unkown mode.");
        return nullptr;
    }
    if (selected.mode == XMLP_POS_LIST && _checkOrder(selected.positions, selected.count) != 0) {
        return nullptr;
    }
    if (selected.runPastTheEnd() || xmlp_getChildNode(list, selected.last()) == nullptr) {
        XMLP_REPORT_FOR(function, "pos over range.");
        return nullptr;
    }
    return xmlp_getChildNode(list, selected.positions[0]);
}

// Gives the selected items in ascending order to `work`, with their number in the selection, until
// it fails. How many were done; nothing when the selection is refused.
template <class Work>
std::optional<uint32_t> onSelected(const char *function, const XMLP_NODE *list,
                                   const Positions &selected, Work work) {
    XMLP_NODE *item = firstSelected(function, list, selected);
    if (item == nullptr) {
        return std::nullopt;
    }
    for (uint32_t i = 0; i < selected.count; ++i) {
        // Reached before the work, which may free the item.
        XMLP_NODE *next = item;
        for (uint32_t left = i + 1 < selected.count ? selected.step(i) : 0; left > 0; --left) {
            next = next->next;
        }
        if (!work(item, i)) {
            return i;
        }
        item = next;
    }
    return selected.count;
}

// The frame of the calls that work item by item and return how many they have done.
template <class Work>
uint32_t onItems(const Call &call, const Positions &selected, Work work) {
    Call checked = call;
    checked.hasArguments = call.hasArguments && selected.areGiven();
    return onList(checked, uint32_t{0}, [&](const XMLP_NODE *list) {
        return onSelected(call.function, list, selected, work).value_or(0);
    });
}

void deleteAll(const XMLP_NODE *list) {
    while (list->firstChild != nullptr) {
        xmlp_delDtree(list->firstChild);
    }
}

// Links a new item after `previous`, or, for the first of them, where the call wants it.
void linkItem(XMLP_NODE *item, XMLP_NODE *list, XMLP_NODE *previous, uint32_t position) {
    if (previous != nullptr) {
        xmlp_insNodeAfter(item, previous);
    } else if (position == 0) {
        xmlp_insNodeFirst(item, list);
    } else {
        xmlp_insNodeLast(item, list);
    }
}

bool hasAttrs(const XMLP_NODE *item, const XMLP_ATTR_PAIR *pairs, uint32_t pairCount) {
    for (uint32_t i = 0; i < pairCount; ++i) {
        if (xmlp_isNodeAttr(item, pairs[i].name, pairs[i].value) == 0) {
            return false;
        }
    }
    return true;
}

Owned<XMLP_VALUE> allocateValues(uint32_t count) {
    return Owned<XMLP_VALUE>(static_cast<XMLP_VALUE *>(std::calloc(count, sizeof(XMLP_VALUE))));
}

} // namespace

int _checkOrder(const uint32_t *positions, uint32_t count) {
    if (positions == nullptr || count == 0) {
        return -1;
    }
    for (uint32_t i = 1; i < count; ++i) {
        if (positions[i] <= positions[i - 1]) {
            XMLP_REPORT("error order in pos.");
            return -1;
        }
    }
    return 0;
}

XMLP_NODE *_item2Node(const XMLP_ITEM *item) {
    if (item == nullptr) {
        XMLP_REPORT("item is null.");
        return nullptr;
    }
    OwnedNode node(xmlp_initNode());
    if (node == nullptr) {
        return nullptr;
    }
    if (item->value != nullptr && item->valueSize != 0) {
        auto value = allocate<char>(item->valueSize);
        if (value == nullptr) {
            XMLP_REPORT("malloc failed.");
            return nullptr;
        }
        std::memcpy(value.get(), item->value, item->valueSize);
        node->value = value.release();
        node->valueSize = item->valueSize;
    }
    if (item->attrs != nullptr && item->attrCount > 0 &&
        !addAttrs(node.get(), item->attrs, item->attrCount)) {
        return nullptr;
    }
    return node.release();
}

int xmlp_isItemExist(XMLP_DOC *doc, const char *path, uint32_t index) {
    return onList({__func__, Access::read, doc, path}, 0, [&](const XMLP_NODE *list) {
        return xmlp_getChildNode(list, index) != nullptr ? 1 : 0;
    });
}

XMLP_VALUE *xmlp_getItemValue(XMLP_DOC *doc, const char *path, uint32_t mode,
                              const uint32_t *positions, uint32_t count, uint32_t *outCount) {
    const Positions selected = {mode, positions, count};
    const bool hasArguments = selected.areGiven() && outCount != nullptr;
    if (doc != nullptr && path != nullptr && hasArguments) {
        *outCount = 0;
    }
    const Call call = {__func__, Access::read, doc, path, hasArguments};
    return onList(
        call, static_cast<XMLP_VALUE *>(nullptr), [&](const XMLP_NODE *list) -> XMLP_VALUE * {
            Owned<XMLP_VALUE> values;
            onSelected(call.function, list, selected, [&](XMLP_NODE *item, uint32_t i) {
                if (values == nullptr) {
                    values = allocateValues(count);
                }
                if (values == nullptr || !copyValue(*item, Terminator::added, values.get()[i])) {
                    XMLP_REPORT_FOR(call.function, "malloc failed.");
                    return false;
                }
                *outCount = i + 1;
                return true;
            });
            return values.release();
        });
}

uint32_t xmlp_setItemValue(XMLP_DOC *doc, const char *path, uint32_t mode, const XMLP_VALUE *values,
                           const uint32_t *positions, uint32_t count) {
    return onItems({__func__, Access::change, doc, path, values != nullptr},
                   {mode, positions, count}, [&](XMLP_NODE *item, uint32_t i) {
                       return xmlp_setNodeValue(item, values[i].value, values[i].valueSize) == 0;
                   });
}

uint32_t xmlp_addItem(XMLP_DOC *doc, const char *path, const XMLP_ITEM *items, uint32_t position,
                      uint32_t count) {
    const Call call = {__func__, Access::change, doc, path, items != nullptr && count != 0};
    return onList(call, uint32_t{0}, [&](XMLP_NODE *list) {
        list->type = XMLP_TYPE_LIST;
        XMLP_NODE *previous = nullptr;
        if (position != 0 && position != XMLP_POS_LAST) {
            previous = xmlp_getChildNode(list, position - 1);
            if (previous == nullptr) {
                XMLP_REPORT_FOR(call.function, "pos over range.");
                return uint32_t{0};
            }
        }
        for (uint32_t i = 0; i < count; ++i) {
            XMLP_NODE *item = _item2Node(&items[i]);
            if (item == nullptr) {
                return i;
            }
            item->name = g_xmlp_itemName;
            item->type = XMLP_TYPE_ITEM;
            linkItem(item, list, previous, position);
            previous = item;
        }
        return count;
    });
}

int xmlp_deleteItem(XMLP_DOC *doc, const char *path, uint32_t mode, const uint32_t *positions,
                    uint32_t count) {
    const Positions selected = {mode, positions, count};
    const bool isAll =
        positions != nullptr && mode == XMLP_POS_RANGE && positions[0] == XMLP_POS_LAST;
    const Call call = {__func__, Access::change, doc, path, isAll || selected.areGiven()};
    return onList(call, -1, [&](const XMLP_NODE *list) {
        if (isAll) {
            deleteAll(list);
            return 0;
        }
        const auto deleted =
            onSelected(call.function, list, selected, [](XMLP_NODE *item, uint32_t) {
                xmlp_delNode(item);
                return true;
            });
        return deleted ? 0 : -1;
    });
}

uint32_t xmlp_getItemAttr(XMLP_DOC *doc, const char *path, uint32_t mode, XMLP_ATTR_PAIR *pairs,
                          const uint32_t *positions, uint32_t count) {
    return onItems({__func__, Access::read, doc, path, pairs != nullptr}, {mode, positions, count},
                   [&](const XMLP_NODE *item, uint32_t i) {
                       return xmlp_getNodeAttr(item, pairs[i].name, &pairs[i].value) == 0;
                   });
}

uint32_t xmlp_setItemAttr(XMLP_DOC *doc, const char *path, uint32_t mode,
                          const XMLP_ATTR_PAIR *pairs, const uint32_t *positions, uint32_t count) {
    return onItems({__func__, Access::change, doc, path, pairs != nullptr},
                   {mode, positions, count}, [&](XMLP_NODE *item, uint32_t i) {
                       return xmlp_setNodeAttr(item, pairs[i].name, pairs[i].value) == 0;
                   });
}

uint32_t xmlp_addItemAttr(XMLP_DOC *doc, const char *path, uint32_t mode,
                          const XMLP_ATTR_PAIR *pairs, const uint32_t *positions, uint32_t count) {
    return onItems({__func__, Access::change, doc, path, pairs != nullptr},
                   {mode, positions, count}, [&](XMLP_NODE *item, uint32_t i) {
                       return xmlp_addNodeAttr(item, pairs[i].name, pairs[i].value) == 0;
                   });
}

uint32_t xmlp_deleteItemAttr(XMLP_DOC *doc, const char *path, uint32_t mode, const char *name,
                             const uint32_t *positions, uint32_t count) {
    return onItems({__func__, Access::change, doc, path, name != nullptr}, {mode, positions, count},
                   [&](XMLP_NODE *item, uint32_t) { return xmlp_delNodeAttr(item, name) == 0; });
}

XMLP_VALUE *xmlp_getItemValueByAttr(XMLP_DOC *doc, const char *path, const XMLP_ATTR_PAIR *pairs,
                                    uint32_t pairCount, uint32_t *outCount) {
    const Call call = {__func__, Access::read, doc, path,
                       pairs != nullptr && pairCount != 0 && outCount != nullptr};
    return onList(
        call, static_cast<XMLP_VALUE *>(nullptr), [&](const XMLP_NODE *list) -> XMLP_VALUE * {
            uint32_t matches = 0;
            for (const XMLP_NODE *item = list->firstChild; item != nullptr; item = item->next) {
                matches += hasAttrs(item, pairs, pairCount) ? 1U : 0U;
            }
            if (matches == 0) {
                *outCount = 0;
                return nullptr;
            }
            XMLP_VALUE *values = allocateValues(matches).release();
            uint32_t filled = 0;
            bool isComplete = values != nullptr;
            for (const XMLP_NODE *item = list->firstChild; item != nullptr && isComplete;
                 item = item->next) {
                if (hasAttrs(item, pairs, pairCount)) {
                    isComplete = copyValue(*item, Terminator::none, values[filled++]);
                }
            }
            if (!isComplete) {
                XMLP_REPORT_FOR(call.function, "malloc failed.");
                xmlp_freeValueArray(values, matches);
                return nullptr;
            }
            *outCount = matches;
            return values;
        });
}
