// The walk: every element goes to the handlers of its name.
//
// A walk goes as deep as its tree, so it must not recurse. Handlers of containers come in halves,
// `enter` and `leave`; the walk calls them around the children and keeps its way back in levels. A
// caller's own handler that walks its children by appmngr_xmlnode_handler does recurse, and begins
// there a walk on top of the levels that there are.

#include "appmngr/walk.h"

#include "appmngr/effects.h"

#include <cstdlib>

using namespace velda::appmngr;

namespace {

constinit APPMNGR_VISITOR chosenVisitor = nullptr;
constinit void *chosenContext = nullptr;

// ---- Levels -------------------------------------------------------------------------------------

// The children of one element.
//
// `row` is null while `child` has not been looked at; then it is the first row that has not been tried
// on it. Levels do not move: `param` may be the address of `tuples`.
struct Level {
    const XMLP_NODE *node;
    XMLP_NODE *child;
    const APPMNGR_HANDLER_INFO *row;
    void *param;
    int (*leave)(const XMLP_NODE *node, uint32_t tuples);
    uint32_t tuples;
    Surroundings surroundings;
};

// Real documents need eight levels. Where the table is the module's own, a walk goes no deeper than the
// levels in place, so that a load needs no memory for them.
constexpr uint32_t levelsInPlace = APPMNGR_LEVELS_MAX;

struct Chunk {
    Level levels[levelsInPlace];
    Chunk *before;
    Chunk *after; // what was obtained stays until all walks have ended
};

constinit Chunk inPlace = {};
constinit Chunk *chunk = &inPlace;
constinit uint32_t used = 0; // of the chunk
constinit uint32_t depth = 0;

Level &top() {
    return chunk->levels[used - 1];
}

// Makes the next chunk the current one. False without memory.
bool extend() {
    if (chunk->after == nullptr) {
        chunk->after = static_cast<Chunk *>(std::malloc(sizeof(Chunk)));
        if (chunk->after == nullptr) {
            appmngr_report("appmngr_xmlnode_handler", 1870, "malloc memory faild.\n");
            return false;
        }
        chunk->after->before = chunk;
        chunk->after->after = nullptr;
    }
    chunk = chunk->after;
    used = 0;
    return true;
}

void freeChunks() {
    while (inPlace.after != nullptr) {
        Chunk *const first = inPlace.after;
        inPlace.after = first->after;
        std::free(first);
    }
}

bool isAtLimit() {
    return depth >= levelsInPlace && g_appmngr_handlerInfo == g_appmngr_nodeHandlers;
}

// Null where the walk goes no deeper.
Level *push() {
    if (isAtLimit()) {
        return nullptr;
    }
    if (used == levelsInPlace && !extend()) {
        return nullptr;
    }
    ++depth;
    return &chunk->levels[used++];
}

void pop() {
    --used;
    --depth;
    if (used == 0 && chunk != &inPlace) {
        chunk = chunk->before;
        used = levelsInPlace;
    }
    if (depth == 0) {
        freeChunks();
    }
}

// False, with nothing entered, where the walk goes no deeper.
bool enterChildren(XMLP_NODE *node, const Descent &descent, bool isCounted) {
    Level *level = push();
    if (level == nullptr) {
        if (hasListener(node) && node->firstChild != nullptr && isAtLimit()) {
            notify(node, APPMNGR_EFFECT_TOO_DEEP);
        }
        return false;
    }
    level->node = node;
    level->child = xmlp_getChildNode(node, 0);
    level->row = nullptr;
    level->param = descent.hasCounter ? &level->tuples : descent.param;
    level->leave = descent.leave;
    level->tuples = 0;
    level->surroundings = {descent.scope, isCounted};
    return true;
}

Descent plainDescent(const XMLP_NODE *node, void *param) {
    return {param, false, scopeIn(node, scopeAround(node)), nullptr};
}

using Leave = int (*)(const XMLP_NODE *node, uint32_t tuples);

int leave(Leave leaving, const XMLP_NODE *node, uint32_t tuples) {
    return leaving != nullptr ? leaving(node, tuples) : 0;
}

// ---- Handing out elements -----------------------------------------------------------------------

// The first of these rows that an element goes to; null when there is none.
const APPMNGR_HANDLER_INFO *matchingRow(const APPMNGR_HANDLER_INFO *row, const XMLP_NODE *node) {
    for (; row->name != nullptr; ++row) {
        if (row->handler != nullptr && appmngr_string_safeCaseCmp(row->name, node->name) == 0) {
            return row;
        }
    }
    return nullptr;
}

// A row that an element goes to, null for none; how to enter the element when the row's handler is that
// of a container; and the rows to try after it, null where none can match.
struct Match {
    const APPMNGR_HANDLER_INFO *row;
    Enter enter;
    const APPMNGR_HANDLER_INFO *rest;
};

Match matchFrom(const APPMNGR_HANDLER_INFO *rows, const XMLP_NODE *node) {
    const APPMNGR_HANDLER_INFO *row = matchingRow(rows, node);
    return row != nullptr ? Match{row, enterOf(row->handler), row + 1} : Match{};
}

// In the module's table no name stands twice.
Match matchIn(const APPMNGR_HANDLER_INFO *table, const XMLP_NODE *node) {
    if (table != g_appmngr_nodeHandlers) {
        return matchFrom(table, node);
    }
    const Element element = elementOf(node);
    return element != Element::unknown
               ? Match{table + static_cast<uint32_t>(element), enterOf(element), nullptr}
               : Match{};
}

APPMNGR_VISIT visitOf(const APPMNGR_HANDLER_INFO *row, const XMLP_NODE *node, const void *param) {
    if (row == nullptr) {
        return APPMNGR_VISIT_UNKNOWN;
    }
    const Element element = elementOf(node);
    const APPMNGR_HANDLER_INFO &own = g_appmngr_nodeHandlers[static_cast<uint32_t>(element)];
    return row->handler == own.handler && !isValidContext(element, node, param)
               ? APPMNGR_VISIT_MISPLACED
               : APPMNGR_VISIT_TAKEN;
}

void tellVisitor(const XMLP_NODE *node, APPMNGR_VISIT visit) {
    if (chosenVisitor != nullptr) {
        chosenVisitor(node, visit, chosenContext);
    }
}

// Looks at an element and finds the first row that it goes to. False when no table is set.
bool look(const XMLP_NODE *node, const void *param, Match &match) {
    match = {};
    if (node->type == XMLP_TYPE_NONE) {
        tellVisitor(node, APPMNGR_VISIT_EMPTY);
        return true;
    }
    const APPMNGR_HANDLER_INFO *table = g_appmngr_handlerInfo;
    if (table == nullptr) {
        appmngr_report("appmngr_childnode_handler", 1894, "Null pHandlerInfo\n");
        return false;
    }
    match = matchIn(table, node);
    if (chosenVisitor != nullptr) {
        tellVisitor(node, visitOf(match.row, node, param));
    }
    return true;
}

// ---- The walk -----------------------------------------------------------------------------------

// Enters a container; where the walk goes no deeper it has no children.
void enterContainer(Enter enter, XMLP_NODE *node, void *param) {
    Descent descent = plainDescent(node, param);
    if (enter(node, param, descent) && !enterChildren(node, descent, isCounted(elementOf(node)))) {
        leave(descent.leave, node, 0);
    }
}

// One step in the innermost level: an element is looked at, handed to one row, or passed.
void step(Level &level) {
    XMLP_NODE *const child = level.child;
    Match match = {};
    if (level.row != nullptr) {
        match = matchFrom(level.row, child);
    } else if (!look(child, level.param, match)) {
        level.child = nullptr;
        return;
    }
    level.row = match.rest;
    if (match.rest == nullptr) {
        level.child = child->next;
    }
    if (match.enter != nullptr) {
        enterContainer(match.enter, child, level.param);
    } else if (match.row != nullptr) {
        match.row->handler(child, level.param);
    }
}

// Walks the innermost level and all below it, and leaves it.
int walkLevel() {
    const uint32_t around = depth - 1;
    int result = 0;
    while (depth > around) {
        Level &level = top();
        if (level.child != nullptr) {
            step(level);
            continue;
        }
        // After the level is gone: what is done on leaving may walk again.
        const auto leaving = level.leave;
        const XMLP_NODE *const node = level.node;
        const uint32_t tuples = level.tuples;
        pop();
        result = leave(leaving, node, tuples);
    }
    return result;
}

} // namespace

int velda::appmngr::walkContainer(Enter enter, XMLP_NODE *node, void *param) {
    Descent descent = plainDescent(node, param);
    if (!enter(node, param, descent)) {
        return -1;
    }
    const bool isPlaced = node != nullptr && isCounted(elementOf(node));
    return enterChildren(node, descent, isPlaced) ? walkLevel() : leave(descent.leave, node, 0);
}

const Surroundings *velda::appmngr::surroundingsIn(const XMLP_NODE *parent) {
    return depth > 0 && parent != nullptr && top().node == parent ? &top().surroundings : nullptr;
}

void appmngr_setVisitor(APPMNGR_VISITOR visitor, void *context) {
    chosenVisitor = visitor;
    chosenContext = context;
}

int appmngr_setHandlerInfo(const APPMNGR_HANDLER_INFO *table) {
    // Nothing here writes to a table; the getter's type is the one that callers know.
    g_appmngr_handlerInfo = const_cast<APPMNGR_HANDLER_INFO *>(table);
    return 0;
}

APPMNGR_HANDLER_INFO *appmngr_getHandlerInfo(void) {
    return g_appmngr_handlerInfo;
}

int appmngr_xmlnode_handler(XMLP_NODE *node, void *param) {
    if (enterChildren(node, plainDescent(node, param), false)) {
        walkLevel();
    }
    return 0;
}

int appmngr_childnode_handler(XMLP_NODE *node, void *param) {
    if (node == nullptr) {
        return 0;
    }
    Match match = {};
    if (!look(node, param, match)) {
        return -1;
    }
    while (match.row != nullptr) {
        match.row->handler(node, param);
        match = match.rest != nullptr ? matchFrom(match.rest, node) : Match{};
    }
    return 0;
}
