// The walk: every element goes to the handlers of its name.
//
// A walk goes as deep as its tree, so it must not recurse. Handlers of containers come in halves,
// `enter` and `leave`; the walk calls them around the children and keeps its way back in levels. A
// caller's own handler that walks its children by appmngr_xmlnode_handler does recurse, and begins
// there a walk on top of the levels that there are.

#include "appmngr/walk.h"

#include <cstdlib>

APPMNGR_HANDLER_INFO *g_appmngr_handlerInfo;

using namespace velda::appmngr;

namespace {

constinit APPMNGR_VISITOR chosenVisitor = nullptr;
constinit void *chosenContext = nullptr;

// ---- Levels -------------------------------------------------------------------------------------

// The children of one element.
//
// `row` is null until `child` has been looked at; then it is the first row that has not been tried on
// it. Levels do not move: `param` may be the address of `tuples`.
struct Level {
    const XMLP_NODE *node;
    XMLP_NODE *child;
    const APPMNGR_HANDLER_INFO *row;
    void *param;
    int (*leave)(uint32_t tuples);
    uint32_t tuples;
    Scope scope;
};

// Real documents need eight levels. Where the table is the module's own, a walk goes no deeper than the
// levels in place, so that a load needs no memory for them.
constexpr uint32_t levelsOfLoad = 64;

struct Chunk {
    Level levels[levelsOfLoad];
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

// Null where the walk goes no deeper.
Level *push() {
    if (depth >= levelsOfLoad && g_appmngr_handlerInfo == g_appmngr_nodeHandlers) {
        return nullptr;
    }
    if (used == levelsOfLoad && !extend()) {
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
        used = levelsOfLoad;
    }
    if (depth == 0) {
        freeChunks();
    }
}

// False, with nothing entered, where the walk goes no deeper.
bool enterChildren(XMLP_NODE *node, const Descent &descent) {
    Level *level = push();
    if (level == nullptr) {
        return false;
    }
    *level = {node,         xmlp_getChildNode(node, 0), nullptr, descent.param, descent.leave, 0,
              descent.scope};
    if (descent.hasCounter) {
        level->param = &level->tuples;
    }
    return true;
}

Descent plainDescent(const XMLP_NODE *node, void *param) {
    return {param, false, scopeIn(node, scopeAround(node)), nullptr};
}

int leave(int (*leaving)(uint32_t tuples), uint32_t tuples) {
    return leaving != nullptr ? leaving(tuples) : 0;
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

const APPMNGR_HANDLER_INFO *firstRow(const APPMNGR_HANDLER_INFO *table, const XMLP_NODE *node) {
    if (table != g_appmngr_nodeHandlers) {
        return matchingRow(table, node);
    }
    const Element element = elementOf(node);
    return element != Element::unknown ? table + static_cast<uint32_t>(element) : nullptr;
}

// The module's row for an element; the end row for one that it does not know.
const APPMNGR_HANDLER_INFO *ownRow(const XMLP_NODE *node) {
    return g_appmngr_nodeHandlers + static_cast<uint32_t>(elementOf(node));
}

// Where to look for further rows. In the module's table no name stands twice.
const APPMNGR_HANDLER_INFO *rowAfter(const APPMNGR_HANDLER_INFO *row, const XMLP_NODE *node) {
    return row == ownRow(node) ? g_appmngr_nodeHandlers + static_cast<uint32_t>(Element::unknown)
                               : row + 1;
}

APPMNGR_VISIT visitOf(const APPMNGR_HANDLER_INFO *row, const XMLP_NODE *node, const void *param) {
    if (row == nullptr) {
        return APPMNGR_VISIT_UNKNOWN;
    }
    const bool isOwn = row->handler == ownRow(node)->handler;
    return isOwn && !acts(elementOf(node), node, param) ? APPMNGR_VISIT_MISPLACED
                                                        : APPMNGR_VISIT_TAKEN;
}

void tellVisitor(const XMLP_NODE *node, APPMNGR_VISIT visit) {
    if (chosenVisitor != nullptr) {
        chosenVisitor(node, visit, chosenContext);
    }
}

// Looks at an element and finds the first row that it goes to, null when there is none. False when no
// table is set.
bool look(const XMLP_NODE *node, const void *param, const APPMNGR_HANDLER_INFO *&row) {
    row = nullptr;
    if (node->type == XMLP_TYPE_NONE) {
        tellVisitor(node, APPMNGR_VISIT_EMPTY);
        return true;
    }
    const APPMNGR_HANDLER_INFO *table = g_appmngr_handlerInfo;
    if (table == nullptr) {
        appmngr_report("appmngr_childnode_handler", 1894, "Null pHandlerInfo\n");
        return false;
    }
    row = firstRow(table, node);
    if (chosenVisitor != nullptr) {
        tellVisitor(node, visitOf(row, node, param));
    }
    return true;
}

// Calls a handler, or enters the container whose handler it is.
void handOver(const APPMNGR_HANDLER_INFO &row, XMLP_NODE *node, void *param) {
    const Enter enter = enterOf(row.handler);
    if (enter == nullptr) {
        row.handler(node, param);
        return;
    }
    Descent descent = plainDescent(node, param);
    if (enter(node, param, descent) && !enterChildren(node, descent)) {
        leave(descent.leave, 0);
    }
}

// ---- The walk -----------------------------------------------------------------------------------

// One step in the innermost level: an element is looked at, handed to one row, or passed.
void step(Level &level) {
    XMLP_NODE *const child = level.child;
    const APPMNGR_HANDLER_INFO *row = nullptr;
    if (level.row != nullptr) {
        row = matchingRow(level.row, child);
    } else if (!look(child, level.param, row)) {
        level.child = nullptr;
        return;
    }
    if (row == nullptr) {
        level.row = nullptr;
        level.child = child->next;
        return;
    }
    level.row = rowAfter(row, child);
    handOver(*row, child, level.param);
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
        const uint32_t tuples = level.tuples;
        pop();
        result = leave(leaving, tuples);
    }
    return result;
}

} // namespace

int velda::appmngr::walkContainer(Enter enter, XMLP_NODE *node, void *param) {
    Descent descent = plainDescent(node, param);
    if (!enter(node, param, descent)) {
        return -1;
    }
    return enterChildren(node, descent) ? walkLevel() : leave(descent.leave, 0);
}

bool velda::appmngr::walkScope(const XMLP_NODE *parent, Scope &scope) {
    if (depth == 0 || parent == nullptr || top().node != parent) {
        return false;
    }
    scope = top().scope;
    return true;
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
    if (enterChildren(node, plainDescent(node, param))) {
        walkLevel();
    }
    return 0;
}

int appmngr_childnode_handler(XMLP_NODE *node, void *param) {
    const APPMNGR_HANDLER_INFO *row = nullptr;
    if (node == nullptr) {
        return 0;
    }
    if (!look(node, param, row)) {
        return -1;
    }
    while (row != nullptr) {
        row->handler(node, param);
        row = matchingRow(rowAfter(row, node), node);
    }
    return 0;
}
