// The parser against the steps: it accepts a body if and only if they build it, and makes the same tree,
// with every indexer that the processor has.

#include "tests/support/capture.h"
#include "tests/support/cases.h"
#include "tests/support/trees.h"
#include "xmlp/parse/builders.h"
#include "xmlp/steps/dynamic_tree.h"
#include "xmlp/steps/static_tree.h"
#include "xmlp/xmlp_internal.h"

#include <random>

namespace {

using velda::xmlp::BuildResult;
using velda::xmlp::chunkSize;
using velda::xmlp::Indexer;

// The tree, and where in its block each part of it lies; nothing for no tree. Frees it.
std::string layout(XMLP_NODE *root) {
    if (root == nullptr) {
        return {};
    }
    std::string text = treeText(root);
    const char *block =
        root->firstChild != nullptr ? root->firstChild->name : reinterpret_cast<const char *>(root);
    const auto place = [&](const void *part) {
        text +=
            ' ' + (part == nullptr ? "-" : std::to_string(static_cast<const char *>(part) - block));
    };
    for (const XMLP_NODE *node = root; node != nullptr;) {
        place(node);
        place(node->name);
        place(node->value);
        for (const XMLP_ATTR *attr = node->attrList; attr != nullptr; attr = attr->next) {
            place(attr);
            place(attr->name);
            place(attr->value);
        }
        const XMLP_NODE *next = node->firstChild;
        for (; next == nullptr && node != nullptr; node = node->parent) {
            next = node->next;
        }
        node = next;
    }
    xmlp_delStree(root);
    return text;
}

std::string dynamicText(XMLP_NODE *root) {
    const std::string text = root != nullptr ? treeText(root) : "";
    if (root != nullptr) {
        xmlp_delDtree(root);
    }
    return text;
}

// What the steps make of a body: nothing where they refuse it.
struct Expected {
    std::string layout;
    std::string dynamic;
};

Expected byTheSteps(const std::string &body) {
    Expected expected;
    velda::xmlp::Diagnosis diagnosis;
    outputOf([&] {
        if (_checkXml(body.data(), body.data() + body.size()) == 0) {
            expected.layout = layout(velda::xmlp::buildStaticTree(body, diagnosis));
            expected.dynamic = dynamicText(velda::xmlp::buildDynamicTree(body, diagnosis));
        }
    });
    return expected;
}

// Gives whether the body is accepted.
bool expectLaw(const std::string &body) {
    const Expected expected = byTheSteps(body);
    EXPECT_EQ(expected.layout.empty(), expected.dynamic.empty()) << body;
    for (const Indexer indexer : velda::xmlp::indexers()) {
        XMLP_NODE *root = nullptr;
        XMLP_NODE *editable = nullptr;
        BuildResult results[2] = {};
        EXPECT_EQ(outputOf([&] {
                      results[0] = velda::xmlp::buildStaticTreeFast(body, indexer, root);
                      results[1] = velda::xmlp::buildDynamicTreeFast(body, indexer, editable);
                  }),
                  "");
        for (const BuildResult result : results) {
            EXPECT_EQ(result == BuildResult::built, !expected.layout.empty()) << body;
        }
        EXPECT_EQ(layout(root), expected.layout) << body;
        EXPECT_EQ(dynamicText(editable), expected.dynamic) << body;
    }
    return !expected.layout.empty();
}

// Far from the text's end the scanner reads sixteen bytes at a time.
const std::string padding(64, ' ');

std::string inside(const std::string &text) {
    return "<r><a>1</a>" + text + "<b/></r>" + padding;
}

// Texts that differ from this one in a byte: another one, one more, one less.
template <class Action>
void forEachNeighbour(const std::string &text, Action action) {
    for (size_t place = 0; place < text.size(); ++place) {
        std::string changed = text;
        changed.erase(place, 1);
        action(changed);
        for (const char byte : std::string_view("<>/ =\"&a\xC3\xE0\0", 11)) {
            changed = text;
            changed[place] = byte;
            action(changed);
            action(changed.insert(place, 1, text[place]));
        }
    }
}

TEST(Parser, AcceptsWhatTheStepsBuild) {
    forEachCase("dialect.cases", [](const Case &test) {
        const std::string text = test.text("text");
        expectLaw(text);
        expectLaw(text + padding);
        expectLaw(inside(text));
        if (text.size() < 100) {
            forEachNeighbour(text, [](const std::string &changed) {
                expectLaw(changed + padding);
                expectLaw(inside(changed));
            });
        }
    });
}

// Where one chunk ends and the next begins: names, tags, characters and texts across the edge.
TEST(Parser, AcceptsItAcrossChunksToo) {
    const std::string texts[] = {
        "<name>one</name><name>two</name>",
        "<a x=\"1\" y=\"2\">3</a>",
        "<a-name-longer-than-16-bytes/>",
        "<r><item>\xE2\x82\xAC</item><item/></r>",
        "<\xC3\xA4>\xC3\xA4</\xC3\xA4>",
        "<a>\xE0<b</a>",
        "<a\xE0>b>c</a\xE0>b>",
        "<a>1 &lt; 2</a>",
        "<a-name-of-twenty-one-\xE0>1</a-name-of-twenty-one-\xE0>",
    };
    for (const std::string &text : texts) {
        for (size_t before = 0; before < text.size() + 4; ++before) {
            const std::string start = "<r>" + std::string(chunkSize - 3 - before, ' ');
            expectLaw(start + text + "</r>" + padding);
            expectLaw(start + "</r>" + text);
        }
    }
}

TEST(Parser, AcceptsItInRandomTextsToo) {
    std::mt19937 random(20260202);
    const auto below = [&random](size_t limit) { return random() % limit; };
    static const std::string parts[] = {"<a>",
                                        "</a>",
                                        "<b>",
                                        "</b>",
                                        "<item>",
                                        "</item>",
                                        "<a/>",
                                        "<abcdefgh1>",
                                        "</abcdefgh2>",
                                        "<",
                                        "</",
                                        "/>",
                                        ">",
                                        " x=\"1\"",
                                        " x = \"a/b\"",
                                        " y=\"\"",
                                        "\"",
                                        "a",
                                        "text",
                                        " ",
                                        "&lt;",
                                        "&",
                                        "\xC3\xA4",
                                        "\xE0",
                                        "\xF4",
                                        "\xFF",
                                        "\xC0",
                                        "<a-name-longer-than-16-bytes x=\"1\">",
                                        "</a-name-longer-than-16-bytes>",
                                        "<r><a/<b/>>"};
    int accepted = 0;
    for (int round = 0; round < 20000; ++round) {
        std::string text;
        for (size_t i = below(10); i > 0; --i) {
            text += parts[below(std::size(parts))];
        }
        accepted += expectLaw(inside(text)) ? 1 : 0;
        expectLaw(text);
    }
    EXPECT_GT(accepted, 500);
}

// A document of several chunks, with names of every length, attributes and references.
std::string longDocument() {
    std::string text = "<r>";
    for (size_t i = 0; i < 3000; ++i) {
        const std::string name = "row" + std::string(i % 20, 'w') + std::to_string(i % 300);
        const std::string attributes = i % 7 == 0 ? " id=\"" + std::to_string(i) + "\" k=\"\"" : "";
        text += "<" + name + attributes + ">" + std::string(i % 70, 'x') +
                (i % 9 == 0 ? "&amp;" : "") + (i % 11 == 0 ? "\xE2\x82\xAC" : "") + "</" + name +
                ">\n";
    }
    return text + "</r>";
}

TEST(Parser, RefusesALongDocumentForOneByte) {
    const std::string document = longDocument();
    EXPECT_TRUE(expectLaw(document));
    std::mt19937 random(7);
    for (int round = 0; round < 100; ++round) {
        std::string changed = document;
        const size_t place = random() % changed.size();
        changed[place] = "<>/& \xE0"[random() % 6];
        expectLaw(changed);
    }
}

} // namespace
