// What xmlp_writeDoc writes reads back as the same tree, or is refused.

#include "tests/support/cases.h"
#include "tests/support/documents.h"

#include <cstring>

namespace {

struct Written {
    std::string text;
    XMLP_WRITE_ERROR error = {};
};

Written write(const XMLP_DOC *doc, uint32_t flags) {
    Written written;
    uint32_t size = 0;
    char *text = xmlp_writeDoc(doc, flags, &size, &written.error);
    EXPECT_EQ(text == nullptr, written.error.code != XMLP_WRITE_NONE);
    if (text != nullptr) {
        EXPECT_EQ(text[size], '\0');
        written.text.assign(text, size);
    }
    std::free(text);
    return written;
}

TEST(WriteDoc, ReadsBackAsTheSameTree) {
    forEachCase("dialect.cases", [](const Case &test) {
        if (!test.has("tree")) {
            return;
        }
        for (const auto parse : {parseStatic, parseDynamic}) {
            const Doc doc = parse(test.text("text"));
            for (const uint32_t flags : {0U, uint32_t{XMLP_WRITE_INDENTED}}) {
                const std::string text = write(doc.get(), flags).text;
                const Doc again = parse(text);
                ASSERT_NE(again, nullptr) << text;
                EXPECT_EQ(treeText(again->tree->rootNode), test.text("tree")) << text;
                EXPECT_EQ(std::string(again->tree->header, again->tree->headerLen),
                          test.text("header"));
            }
        }
    });
}

struct Form {
    const char *read;
    const char *written;
};

TEST(WriteDoc, TakesTheFormThatCanBeRead) {
    const Form forms[] = {
        {"<r><a></a><b x=\"1\"/></r>", "<r><a/><b x=\"1\"/></r>"},
        {"<r><a x=\"p/q\"></a></r>", "<r><a x=\"p/q\"></a></r>"},
        {"<r>< /><  x=\"1\"/></r>", "<r>< /><  x=\"1\"/></r>"},
        {"<a x=\"\xF0\"   >1</a>", "<a x=\"\xF0\"  >1</a>"},
        {"<a\xE0  />", "<a\xE0  />"},
        {"<a>\xE0<b</a>", "<a>\xE0&lt;b</a>"},
        {"<a>\xF0t>\xE0`</a>", "<a>\xF0t>\xE0`</a>"},
        {"<a>&lt;\xF0t>\xE0`</a>", "<a>&lt;\xF0t>\xE0`</a>"},
        {"text<?a/>", ".<?a/>"},
        {"<?xml?><?a/>", "<?xml?><?a/>"},
        {"<unclosed", "<"},
    };
    for (const Form &form : forms) {
        const Doc doc = parseDynamic(form.read);
        ASSERT_NE(doc, nullptr) << form.read;
        EXPECT_EQ(write(doc.get(), 0).text, form.written);
        EXPECT_EQ(treeText(parseDynamic(form.written)->tree->rootNode),
                  treeText(doc->tree->rootNode));
    }
    EXPECT_EQ(write(parseStatic("<r><a x=\"/\"></a><b>1</b></r>").get(), XMLP_WRITE_INDENTED).text,
              "<r>\n  <a x=\"/\"></a>\n  <b>1</b>\n</r>\n");
}

// A tree changed behind the library's back, so that the change is one that no text can hold.
struct Refusal {
    void (*change)(XMLP_NODE *a);
    XMLP_WRITE_CODE code;
    const char *path;
};

void rename(XMLP_NODE *node, const char *name) {
    std::free(node->name);
    node->name = strdup(name);
}

TEST(WriteDoc, NamesTheElementThatCanNotBeWritten) {
    const Refusal refusals[] = {
        {[](XMLP_NODE *a) { rename(a, "a b"); }, XMLP_WRITE_NAME, "/r/a b"},
        {[](XMLP_NODE *a) { rename(a, "a\xE0"); }, XMLP_WRITE_NAME, "/r/a\xE0"},
        {[](XMLP_NODE *a) { rename(a->next, "/"); }, XMLP_WRITE_NAME, "/r//"},
        {[](XMLP_NODE *a) { rename(a, "item"); }, XMLP_WRITE_PLACE, "/r/b"},
        {[](XMLP_NODE *a) { rename(a->parent, "item"); }, XMLP_WRITE_PLACE, "/item"},
        {[](XMLP_NODE *a) { a->value[0] = '\xE0'; }, XMLP_WRITE_VALUE, "/r/a"},
        {[](XMLP_NODE *a) { a->attrList->name[0] = '='; }, XMLP_WRITE_ATTRIBUTE, "/r/a"},
        {[](XMLP_NODE *a) { a->attrList->value[0] = '"'; }, XMLP_WRITE_ATTRIBUTE, "/r/a"},
        {[](XMLP_NODE *a) { a->attrList->next->name[0] = 'x'; }, XMLP_WRITE_ATTRIBUTE, "/r/a"},
    };
    for (const Refusal &refusal : refusals) {
        const Doc doc = parseDynamic("<r><a x=\"1\" y=\"2\">3</a><b/></r>");
        refusal.change(doc->tree->rootNode->firstChild->firstChild);
        Written written;
        const std::string lines = linesOf([&] { written = write(doc.get(), 0); });
        EXPECT_EQ(written.error.code, refusal.code) << refusal.path;
        EXPECT_STREQ(written.error.path, refusal.path);
        EXPECT_EQ(lines, "xmlp_writeDoc: " + std::string(refusal.path) + ": " +
                             written.error.message + "\n");
    }
}

TEST(WriteDoc, RefusesASecondTopLevelElementAndCutsPaths) {
    const std::string name(300, 'n');
    const Doc doc = parseDynamic("<" + name + "/>");
    xmlp_insNodeLast(xmlp_initNode(), doc->tree->rootNode);
    rename(doc->tree->rootNode->lastChild, "second");
    linesOf([&] {
        EXPECT_STREQ(write(doc.get(), 0).error.path, "/second");
        EXPECT_EQ(write(doc.get(), 0).error.code, XMLP_WRITE_PLACE);
        rename(doc->tree->rootNode->firstChild, (name + "=").c_str());
        EXPECT_EQ(write(doc.get(), 0).error.path, "/" + std::string(254, 'n'));
        uint32_t size = 0;
        EXPECT_EQ(xmlp_writeDoc(nullptr, 0, &size, nullptr), nullptr);
        EXPECT_EQ(xmlp_writeDoc(doc.get(), 0, nullptr, nullptr), nullptr);
    });
}

} // namespace
