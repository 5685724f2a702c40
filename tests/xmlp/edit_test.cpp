// Editing by path and by position: a document before, one call, the document after.

#include "tests/support/documents.h"
#include "xmlp/xmlp_internal.h"

#include <functional>

namespace {

struct Edit {
    const char *before;
    std::function<int64_t(XMLP_DOC *)> call;
    int64_t result;
    const char *after; // null: as before
    Lines lines = {};
};

void expectEdits(const std::vector<Edit> &edits) {
    for (size_t i = 0; i < edits.size(); ++i) {
        const Edit &edit = edits[i];
        const Doc doc = parseDynamic(edit.before);
        ASSERT_NE(doc, nullptr) << edit.before;
        EXPECT_EQ(lineListOf([&] { EXPECT_EQ(edit.call(doc.get()), edit.result) << i; }),
                  edit.lines)
            << i;
        EXPECT_EQ(documentText(doc.get()), edit.after != nullptr ? edit.after : edit.before) << i;
        treeText(doc->tree->rootNode); // checks the links
    }
}

XMLP_ATTR_PAIR pair(const char *name, const char *value) {
    return {name, const_cast<char *>(value)};
}

XMLP_VALUE value(const char *text) {
    return {static_cast<uint32_t>(std::string(text).size()), const_cast<char *>(text)};
}

XMLP_ITEM item(const char *text, const std::vector<XMLP_ATTR_PAIR> &attrs = {}) {
    return {static_cast<uint32_t>(attrs.size()), attrs.data(), value(text).valueSize, text};
}

TEST(Path, CallsChangeOneElement) {
    const char *doc = "<r><a x=\"1\">1</a><b/><c><d/></c></r>";
    const XMLP_VALUE text = value("t");
    const XMLP_VALUE none = {0, nullptr};
    const XMLP_VALUE broken = {1, nullptr};
    const std::vector<XMLP_ATTR_PAIR> attrs = {pair("p", "1"), pair("q", nullptr)};
    const std::vector<XMLP_ATTR_PAIR> twice = {pair("p", "1"), pair("p", "2")};
    // clang-format off
    const auto add = [](const char *path, uint32_t position, const char *name,
        const XMLP_VALUE *held = nullptr, const std::vector<XMLP_ATTR_PAIR> &pairs = {}) {
        return [=](XMLP_DOC *d) { return xmlp_add(d, path, position, name, held, pairs.data(),
        static_cast<uint32_t>(pairs.size())); }; };
    const auto set = [](const char *path, const char *to) {
        return [=](XMLP_DOC *d) { return xmlp_setValue(d, path, to, value(to).valueSize); }; };
    const auto rename = [](const char *path, const char *name) {
        return [=](XMLP_DOC *d) { return xmlp_setName(d, path, name); }; };
    const auto remove = [](const char *path) {
        return [=](XMLP_DOC *d) { return xmlp_delete(d, path); }; };
    const auto attr = [](auto call, const char *path, XMLP_ATTR_PAIR given) {
        return [=](XMLP_DOC *d) { return call(d, path, &given); }; };
    const auto removeAttr = [](const char *path, const char *name) {
        return [=](XMLP_DOC *d) { return xmlp_deleteAttr(d, path, name); }; };
    const std::string badParams = "xmlp_getChildNodeByName: invalid params.";
    expectEdits({
        {doc, set("/r/a", "<2>"), 0, "<r><a x=\"1\">&lt;2&gt;</a><b/><c><d/></c></r>"},
        {doc, set("/r/b", "2"), -1, nullptr, {"xmlp_setValue: error node type."}},
        {doc, set("/r/c", "2"), -1, nullptr, {"xmlp_setValue: error node type."}},
        {doc, set("/r/e", "2"), -1, nullptr, {"xmlp_setValue: node not exist."}},
        {doc, set("/r/", "2"), -1, nullptr, {badParams, "xmlp_setValue: node not exist."}},
        {doc, rename("/r/c/d", "e"), 0, "<r><a x=\"1\">1</a><b/><c><e/></c></r>"},
        {doc, rename("/r/c", "a"), -1, nullptr, {"xmlp_setNodeName: node name existed."}},
        {doc, add("/r/b", 0, "n", &text, attrs), 0,
         "<r><a x=\"1\">1</a><b><n p=\"1\" q=\"\">t</n></b><c><d/></c></r>"},
        {doc, add("/r", 1, "a"), 0, "<r><a x=\"1\">1</a><a/><b/><c><d/></c></r>"},
        {doc, add("/r/c", XMLP_POS_LAST, "item", &none), 0,
         "<r><a x=\"1\">1</a><b/><c><d/><item/></c></r>"},
        {doc, add("/r/c", 2, "n"), -1, nullptr, {"xmlp_addChildNode: child[1] not found."}},
        {doc, add("/r/a", 0, "n"), -1, nullptr, {"xmlp_add: error node type."}},
        {doc, add("/r/c", 0, "n", &text, twice), -1, nullptr,
         {"xmlp_addNodeAttr: attribute existed."}},
        {doc, add("/r/c", 0, "n", &broken), -1, nullptr,
         {"xmlp_setNodeValue: value is null but valueSize > 0."}},
        {doc, add("/r/c", 0, "n", &text, {pair("a b", "")}), -1, nullptr,
         {"xmlp_addNodeAttr: invalid attribute name a b."}},
        {doc, add("/r/c", 0, "a b"), -1, nullptr, {"xmlp_setNodeName: invalid name."}},
        {doc, remove("/r/c"), 0, "<r><a x=\"1\">1</a><b/></r>"},
        {doc, remove("/r/a"), 0, "<r><b/><c><d/></c></r>"},
        {doc, remove("/r"), 0, ""},
        {doc, remove("/"), -1, nullptr, {"xmlp_delete: not allow to delete root node."}},
        {doc, attr(xmlp_setAttr, "/r/a", pair("x", nullptr)), 0,
         "<r><a x=\"\">1</a><b/><c><d/></c></r>"},
        {doc, attr(xmlp_setAttr, "/r/a", pair("y", "2")), -1, nullptr,
         {"xmlp_setNodeAttr: attribute not exist."}},
        {doc, attr(xmlp_addAttr, "/r/b", pair("y", "2")), 0,
         "<r><a x=\"1\">1</a><b y=\"2\"/><c><d/></c></r>"},
        {doc, removeAttr("/r/a", "x"), 0, "<r><a>1</a><b/><c><d/></c></r>"},
        {doc, removeAttr("/r/a", "y"), -1, nullptr, {"xmlp_delNodeAttr: attribute not exist."}},
    });
    // clang-format on
}

TEST(Path, CallsReadBothKindsOfDocuments) {
    const std::string text = "<r><a x=\"1\">val</a><b y=\"\"/><l><item/></l></r>";
    for (const auto parse : {parseStatic, parseDynamic}) {
        const Doc doc = parse(text);
        EXPECT_EQ(xmlp_isExist(doc.get(), "/r/b"), 1);
        EXPECT_EQ(xmlp_isExist(doc.get(), "/"), 1);
        EXPECT_EQ(xmlp_isExist(doc.get(), "r"), 0);
        EXPECT_EQ(xmlp_getChildCount(doc.get(), "/r"), 3u);
        XMLP_VALUE *read = xmlp_getValue(doc.get(), "/r/a");
        EXPECT_EQ(read->valueSize, 3u);
        EXPECT_STREQ(read->value, "val");
        xmlp_freeValueArray(read, 1);
        read = xmlp_getValue(doc.get(), "/r/b");
        EXPECT_EQ(read->value, nullptr);
        std::free(read);
        XMLP_ATTR_PAIR asked = pair("x", nullptr);
        EXPECT_EQ(xmlp_getAttr(doc.get(), "/r/a", &asked), 0);
        EXPECT_STREQ(asked.value, "1");
        std::free(asked.value);
        EXPECT_EQ(lineListOf([&] {
                      EXPECT_EQ(xmlp_getValue(doc.get(), "/r"), nullptr);
                      EXPECT_EQ(xmlp_getValue(doc.get(), "/r/l/item"), nullptr);
                      EXPECT_EQ(xmlp_getChildCount(doc.get(), "/x"), 0u);
                  }),
                  (Lines{"xmlp_getValue: error node type.", "xmlp_getValue: error node type.",
                         "xmlp_getChildCount: node not exist."}));
    }
}

TEST(Path, StaticDocumentsAreRefusedFirst) {
    const Doc doc = parseStatic("<r/>");
    const uint32_t last = XMLP_POS_LAST;
    const XMLP_ITEM one = {};
    const XMLP_ATTR_PAIR named = pair("x", "1");
    EXPECT_EQ(lineListOf([&] {
                  EXPECT_EQ(xmlp_setValue(doc.get(), "/none", "v", 1), -1);
                  EXPECT_EQ(xmlp_delete(doc.get(), "/"), -1);
                  EXPECT_EQ(xmlp_addAttr(doc.get(), "/r", &named), -1);
                  EXPECT_EQ(xmlp_addItem(doc.get(), "/r", &one, 0, 1), 0u);
                  EXPECT_EQ(xmlp_deleteItem(doc.get(), "/r", 0, &last, 0), -1);
              }),
              (Lines{"xmlp_setValue: static xml.", "xmlp_delete: static xml.",
                     "xmlp_addAttr: static xml.", "xmlp_addItem: static xml.",
                     "xmlp_deleteItem: static xml."}));
    EXPECT_EQ(documentText(doc.get()), "<r/>");
}

const char *const letters =
    "<l><item>a</item><item>b</item><item>c</item><item>d</item><item>e</item></l>";

// The letters of a list's items, asked for by positions; the lines when that is refused.
std::string selected(uint32_t mode, std::vector<uint32_t> positions, uint32_t count) {
    const Doc doc = parseStatic(letters);
    std::string found;
    const Lines lines = lineListOf([&] {
        uint32_t filled = 77;
        XMLP_VALUE *values =
            xmlp_getItemValue(doc.get(), "/l", mode, positions.data(), count, &filled);
        for (uint32_t i = 0; values != nullptr && i < filled; ++i) {
            found += values[i].value;
        }
        EXPECT_EQ(filled, count == 0 ? 77 : found.size());
        xmlp_freeValueArray(values, filled);
    });
    return lines.empty() ? found : lines.front();
}

TEST(Items, AreSelectedByRangeOrList) {
    const std::string overRange = "xmlp_getItemValue: pos over range.";
    const struct {
        uint32_t mode;
        std::vector<uint32_t> positions;
        uint32_t count;
        std::string result;
    } cases[] = {
        {XMLP_POS_RANGE, {2}, 3, "cde"},
        {XMLP_POS_RANGE, {0}, 1, "a"},
        {XMLP_POS_RANGE, {2}, 4, overRange},
        {XMLP_POS_RANGE, {XMLP_POS_LAST}, 1, "e"},
        {XMLP_POS_RANGE, {XMLP_POS_LAST}, 2, overRange},
        {XMLP_POS_RANGE, {XMLP_POS_LAST - 1}, 2, overRange},
        {XMLP_POS_RANGE, {1}, XMLP_POS_LAST, overRange},
        {XMLP_POS_RANGE, {2}, XMLP_POS_LAST, overRange},
        {XMLP_POS_LIST, {1, 3, 4}, 3, "bde"},
        {XMLP_POS_LIST, {XMLP_POS_LAST}, 1, "e"},
        {XMLP_POS_LIST, {3, XMLP_POS_LAST}, 2, overRange},
        {XMLP_POS_LIST, {4, 5}, 2, overRange},
        {XMLP_POS_LIST, {1, 1}, 2, "_checkOrder: error order in pos."},
        {XMLP_POS_LIST, {3, 1}, 2, "_checkOrder: error order in pos."},
        {2, {0}, 1, "xmlp_getItemValue: unkown mode."},
        {XMLP_POS_RANGE, {0}, 0, "xmlp_getItemValue: invalid params."},
    };
    for (const auto &test : cases) {
        EXPECT_EQ(selected(test.mode, test.positions, test.count), test.result);
    }
}

TEST(Items, CallsChangeMembers) {
    const char *ab = "<l><item>a</item><item>b</item></l>";
    // clang-format off
    const auto add = [](const char *path, std::vector<XMLP_ITEM> items, uint32_t position) {
        return [=](XMLP_DOC *d) { return xmlp_addItem(d, path, items.data(), position,
        static_cast<uint32_t>(items.size())); }; };
    const auto remove = [](uint32_t mode, std::vector<uint32_t> positions, uint32_t count) {
        return [=](XMLP_DOC *d) { return xmlp_deleteItem(d, "/l", mode, positions.data(), count); };
        };
    const auto set = [](std::vector<XMLP_VALUE> values) { return [=](XMLP_DOC *d) {
        const uint32_t start = 0;
        return xmlp_setItemValue(d, "/l", XMLP_POS_RANGE, values.data(), &start,
        static_cast<uint32_t>(values.size())); }; };
    const auto attrs = [](auto call, std::vector<XMLP_ATTR_PAIR> pairs) { return [=](XMLP_DOC *d) {
        const uint32_t positions[] = {0, 1};
        return call(d, "/l", XMLP_POS_LIST, pairs.data(), positions, 2); }; };
    const auto removeAttr = [](XMLP_DOC *d) { const uint32_t start = 0;
        return xmlp_deleteItemAttr(d, "/l", XMLP_POS_RANGE, "x", &start, 2); };
    const std::vector<XMLP_ATTR_PAIR> bad = {pair("x", "1"), pair("x", "1")};
    const std::vector<XMLP_ITEM> xy = {item("x"), item("y")};
    expectEdits({
        {ab, add("/l", xy, 0), 2,
         "<l><item>x</item><item>y</item><item>a</item><item>b</item></l>"},
        {ab, add("/l", xy, 1), 2,
         "<l><item>a</item><item>x</item><item>y</item><item>b</item></l>"},
        {ab, add("/l", xy, XMLP_POS_LAST), 2,
         "<l><item>a</item><item>b</item><item>x</item><item>y</item></l>"},
        {ab, add("/l", xy, 3), 0, nullptr, {"xmlp_addItem: pos over range."}},
        {ab, add("/l", {item("x"), item("y", bad)}, 0), 1,
         "<l><item>x</item><item>a</item><item>b</item></l>",
         {"xmlp_addNodeAttr: attribute existed."}},
        {"<l/>", add("/l", {item("")}, 0), 1, "<l><item/></l>"},
        {"<l/>", add("/l", xy, 1), 0, nullptr, {"xmlp_addItem: pos over range."}},
        {"<l>t</l>", add("/l", xy, 0), 0, nullptr, {"xmlp_addItem: error node type."}},
        {letters, remove(XMLP_POS_LIST, {1, 3, 4}, 3), 0, "<l><item>a</item><item>c</item></l>"},
        {letters, remove(XMLP_POS_RANGE, {1}, 4), 0, "<l><item>a</item></l>"},
        {letters, remove(XMLP_POS_LIST, {XMLP_POS_LAST}, 1), 0,
         "<l><item>a</item><item>b</item><item>c</item><item>d</item></l>"},
        {letters, remove(XMLP_POS_RANGE, {XMLP_POS_LAST}, 0), 0, "<l/>"},
        {letters, remove(XMLP_POS_RANGE, {XMLP_POS_LAST}, 2), 0, "<l/>"},
        {letters, remove(XMLP_POS_LIST, {0}, 0), -1, nullptr, {"xmlp_deleteItem: invalid params."}},
        {letters, remove(XMLP_POS_RANGE, {1}, 5), -1, nullptr,
         {"xmlp_deleteItem: pos over range."}},
        {letters, remove(XMLP_POS_LIST, {0, 2, 1, 3}, 4), -1, nullptr,
         {"_checkOrder: error order in pos."}},
        {ab, set({value("1"), {0, nullptr}}), 2, "<l><item>1</item><item/></l>"},
        {ab, set({value("1"), value("")}), 1, "<l><item>1</item><item>b</item></l>",
         {"xmlp_setNodeValue: value is not null but valueSize is 0."}},
        {ab, attrs(xmlp_addItemAttr, {pair("x", "1"), pair("y", nullptr)}), 2,
         "<l><item x=\"1\">a</item><item y=\"\">b</item></l>"},
        {"<l><item x=\"1\"/><item/></l>", attrs(xmlp_setItemAttr, {pair("x", "2"), pair("x", "2")}),
         1, "<l><item x=\"2\"/><item/></l>", {"xmlp_setNodeAttr: attribute not exist."}},
        {"<l><item x=\"1\"/><item x=\"1\"/></l>", removeAttr, 2, "<l><item/><item/></l>"},
    });
    // clang-format on
}

TEST(Items, AreReadByPositionAndFoundByAttributes) {
    const Doc doc = parseStatic("<r><l><item a=\"1\" b=\"\">x</item><item a=\"1\"/>"
                                "<item a=\"2\" b=\"\">y</item></l><e/></r>");
    EXPECT_EQ(xmlp_isItemExist(doc.get(), "/r/l", 2), 1);
    EXPECT_EQ(xmlp_isItemExist(doc.get(), "/r/l", 3), 0);
    EXPECT_EQ(xmlp_isItemExist(doc.get(), "/r/l", XMLP_POS_LAST), 1);
    EXPECT_EQ(xmlp_isItemExist(doc.get(), "/r/e", 0), 0);

    const auto found = [&doc](std::vector<XMLP_ATTR_PAIR> pairs) {
        uint32_t count = 77;
        XMLP_VALUE *values = xmlp_getItemValueByAttr(doc.get(), "/r/l", pairs.data(),
                                                     static_cast<uint32_t>(pairs.size()), &count);
        std::string text = std::to_string(count);
        for (uint32_t i = 0; i < count; ++i) {
            text += ' ' + std::string(values[i].value, values[i].valueSize);
        }
        xmlp_freeValueArray(values, count);
        return text;
    };
    EXPECT_EQ(found({pair("a", "1")}), "2 x ");
    EXPECT_EQ(found({pair("b", nullptr)}), "2 x y");
    EXPECT_EQ(found({pair("b", nullptr), pair("a", "2")}), "1 y");
    EXPECT_EQ(found({pair("a", nullptr)}), "0");

    XMLP_ATTR_PAIR asked[] = {pair("a", nullptr), pair("b", nullptr)};
    const uint32_t start = 0;
    EXPECT_EQ(lineListOf([&] {
                  EXPECT_EQ(xmlp_getItemAttr(doc.get(), "/r/l", XMLP_POS_RANGE, asked, &start, 2),
                            1u);
              }),
              Lines{"xmlp_getNodeAttr: attribute not exist."});
    EXPECT_STREQ(asked[0].value, "1");
    std::free(asked[0].value);
}

} // namespace
