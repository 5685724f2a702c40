// Calls on one dynamic document. The text of the document ends at the first NUL; then come operations:
// a letter, a failing byte and what the operation reads. After each of them the tree must be whole, own
// all that is allocated, and be as it was when the call refused.

#include "fuzz/editor.h"
#include "xmlp/xmlp_internal.h"

#include <cstdlib>

using namespace fuzz;

namespace {

constexpr size_t operationsMax = 64;

enum class Done { nothing, something };

Done changed(bool isDone) {
    return isDone ? Done::something : Done::nothing;
}

Done setValue(Editor &e) {
    const char *path = e.path();
    const XMLP_VALUE value = e.value();
    return changed(xmlp_setValue(e.doc, path, value.value, value.valueSize) == 0);
}

Done setName(Editor &e) {
    const char *path = e.path();
    e.hasRenamed = true;
    return changed(xmlp_setName(e.doc, path, e.name()) == 0);
}

Done add(Editor &e) {
    const char *path = e.path();
    const uint32_t position = e.position();
    const char *name = e.name();
    const XMLP_VALUE value = e.value();
    const XMLP_ATTR_PAIR pairs[] = {e.pair(), e.pair()};
    return changed(xmlp_add(e.doc, path, position, name, e.flag() ? &value : nullptr, pairs,
                            e.byte() % 3) == 0);
}

Done remove(Editor &e) {
    return changed(xmlp_delete(e.doc, e.path()) == 0);
}

Done addAttr(Editor &e) {
    const char *path = e.path();
    const XMLP_ATTR_PAIR pair = e.pair();
    return changed(xmlp_addAttr(e.doc, path, &pair) == 0);
}

Done setAttr(Editor &e) {
    const char *path = e.path();
    const XMLP_ATTR_PAIR pair = e.pair();
    return changed(xmlp_setAttr(e.doc, path, &pair) == 0);
}

Done deleteAttr(Editor &e) {
    const char *path = e.path();
    return changed(xmlp_deleteAttr(e.doc, path, e.name()) == 0);
}

Done addItem(Editor &e) {
    const char *path = e.path();
    const uint32_t position = e.position();
    const XMLP_VALUE values[] = {e.value(), e.value()};
    const XMLP_ATTR_PAIR pairs[] = {e.pair(), e.pair()};
    const XMLP_ITEM items[] = {{2, pairs, values[0].valueSize, values[0].value},
                               {1, pairs, values[1].valueSize, values[1].value}};
    return changed(xmlp_addItem(e.doc, path, items, position, e.byte() % 3) > 0);
}

Done deleteItem(Editor &e) {
    const char *path = e.path();
    const Selection s(e);
    return changed(xmlp_deleteItem(e.doc, path, s.mode, s.positions, s.count) == 0);
}

Done setItemValue(Editor &e) {
    const char *path = e.path();
    const Selection s(e);
    const XMLP_VALUE values[] = {e.value(), e.value()};
    return changed(xmlp_setItemValue(e.doc, path, s.mode, values, s.positions, s.count) > 0);
}

template <auto call>
Done changeItemAttr(Editor &e) {
    const char *path = e.path();
    const Selection s(e);
    const XMLP_ATTR_PAIR pairs[] = {e.pair(), e.pair()};
    return changed(call(e.doc, path, s.mode, pairs, s.positions, s.count) > 0);
}

Done deleteItemAttr(Editor &e) {
    const char *path = e.path();
    const Selection s(e);
    return changed(xmlp_deleteItemAttr(e.doc, path, s.mode, e.name(), s.positions, s.count) > 0);
}

Done getItems(Editor &e) {
    const char *path = e.path();
    const Selection s(e);
    uint32_t count = 0;
    XMLP_VALUE *values = xmlp_getItemValue(e.doc, path, s.mode, s.positions, s.count, &count);
    count > 0 ? xmlp_freeValueArray(values, count) : std::free(values);
    XMLP_ATTR_PAIR pairs[] = {e.pair(), e.pair()};
    count = xmlp_getItemAttr(e.doc, path, s.mode, pairs, s.positions, s.count);
    while (count > 0) {
        std::free(pairs[--count].value);
    }
    const XMLP_ATTR_PAIR wanted[] = {e.pair(), e.pair()};
    values = xmlp_getItemValueByAttr(e.doc, path, wanted, e.byte() % 3, &count);
    xmlp_freeValueArray(values, values != nullptr ? count : 0);
    return Done::nothing;
}

Done get(Editor &e) {
    const char *path = e.path();
    xmlp_freeValueArray(xmlp_getValue(e.doc, path), 1);
    XMLP_ATTR_PAIR pair = e.pair();
    if (xmlp_getAttr(e.doc, path, &pair) == 0) {
        std::free(pair.value);
    }
    xmlp_getChildCount(e.doc, path);
    xmlp_isItemExist(e.doc, path, e.position());
    return Done::nothing;
}

Done write(Editor &e) {
    uint32_t length = 0;
    char *text = xmlp_dumpDoc(e.doc, e.byte() % 2, &length);
    FUZZ_REQUIRE(text == nullptr || text[length] == '\0');
    std::free(text);
    return Done::nothing;
}

int insert(XMLP_NODE *node, XMLP_NODE *place, uint8_t how) {
    switch (how % 4) {
    case 0:
        return xmlp_insNodeFirst(node, place);
    case 1:
        return xmlp_insNodeLast(node, place);
    case 2:
        return xmlp_insNodeAfter(node, place);
    default:
        return xmlp_insNodeBefore(node, place);
    }
}

// A new element beside or below another one, typed as a parse types it.
Done insertNode(Editor &e) {
    XMLP_NODE *place = e.element(e.byte());
    const uint8_t how = e.byte();
    const bool isUnder = how % 4 < 2;
    const bool canHaveMore = !isUnder || place->value == nullptr;
    const bool wouldBeLeaf =
        isUnder && (place->type == XMLP_TYPE_LEAF || place->type == XMLP_TYPE_ITEM);
    XMLP_NODE *node = xmlp_initNode();
    if (node == nullptr) {
        return Done::nothing;
    }
    if (!canHaveMore || wouldBeLeaf || xmlp_setNodeName(node, e.name()) != 0 ||
        insert(node, place, how) != 0) {
        xmlp_delNode(node);
        return Done::nothing;
    }
    if (_setType(node, 0) != 0) {
        xmlp_delNode(node);
        return Done::nothing;
    }
    return Done::something;
}

struct Operation {
    char letter;
    Done (*run)(Editor &);
};

constexpr Operation operations[] = {
    {'v', setValue},
    {'n', setName},
    {'a', add},
    {'d', remove},
    {'+', addAttr},
    {'=', setAttr},
    {'-', deleteAttr},
    {'i', addItem},
    {'x', deleteItem},
    {'V', setItemValue},
    {'P', changeItemAttr<xmlp_addItemAttr>},
    {'E', changeItemAttr<xmlp_setItemAttr>},
    {'M', deleteItemAttr},
    {'G', getItems},
    {'g', get},
    {'w', write},
    {'N', insertNode},
};

const Operation &operationOf(uint8_t byte) {
    for (const Operation &operation : operations) {
        if (operation.letter == static_cast<char>(byte)) {
            return operation;
        }
    }
    return operations[byte % std::size(operations)];
}

void runOne(Editor &editor, size_t before) {
    const XMLP_NODE *root = editor.doc->tree->rootNode;
    const uint64_t sum = fingerprint(root);
    const Operation &operation = operationOf(editor.byte());
    forgetPrinted();
    FailingByte failure(editor.byte());
    const Done done = operation.run(editor);
    FUZZ_REQUIRE(!failure.end() || hasPrinted("malloc failed.\r\n"));
    FUZZ_REQUIRE(done == Done::something || fingerprint(root) == sum);
    requireWhole(root);
    if (!editor.hasRenamed) {
        requireSharedItemNames(root);
    }
    FUZZ_REQUIRE(liveBlocks() == before + blocksOf(editor.doc));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const size_t before = liveBlocks();
    Input input(data, size);
    forgetPrinted();
    Doc doc = parse(Text(input.takeUntil('\0')), 0);
    if (doc != nullptr) {
        Editor editor(doc.get(), input);
        for (size_t i = 0; i < operationsMax && !editor.isAtEnd(); ++i) {
            runOne(editor, before);
        }
        doc.reset();
    }
    FUZZ_REQUIRE(liveBlocks() == before);
    return 0;
}
