// The quick road of a parse against the plain one, with each way of finding markup.

#include "tests/support/capture.h"
#include "tests/support/trees.h"
#include "xmlp/parse/builders.h"
#include "xmlp/steps/static_tree.h"
#include "xmlp/xmlp_internal.h"

#include <random>

namespace {

using velda::xmlp::BuildResult;
using velda::xmlp::Indexer;

// The tree, and where in its block each part of it lies; nothing for no tree.
std::string layout(XMLP_NODE *root) {
    if (root == nullptr) {
        return {};
    }
    std::string text = treeText(root);
    const char *block = root->firstChild != nullptr ? root->firstChild->name : nullptr;
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

std::string plainLayout(const std::string &body) {
    XMLP_NODE *root = nullptr;
    outputOf([&] {
        if (_checkXml(body.data(), body.data() + body.size()) == 0) {
            root = velda::xmlp::buildStaticTree(body);
        }
    });
    return layout(root);
}

// True when the quick road took the body; whatever it takes it must take as the plain road does.
bool isTakenAlike(const std::string &body) {
    const std::string plain = plainLayout(body);
    bool isTaken = false;
    for (const Indexer indexer : velda::xmlp::indexers()) {
        XMLP_NODE *root = nullptr;
        EXPECT_EQ(outputOf([&] {
                      isTaken = velda::xmlp::buildStaticTreeFast(body, indexer, root) ==
                                BuildResult::built;
                  }),
                  "");
        XMLP_NODE *editable = nullptr;
        const BuildResult result = velda::xmlp::buildDynamicTreeFast(body, indexer, editable);
        EXPECT_EQ(result == BuildResult::built, isTaken) << body;
        if (isTaken) {
            EXPECT_EQ(treeText(editable), treeText(root)) << body;
            EXPECT_EQ(layout(root), plain) << body;
            xmlp_delDtree(editable);
        }
    }
    return isTaken;
}

std::string randomElement(std::mt19937 &random, int depth) {
    // clang-format off
    static const char *const names[] = {"a", "bb", "item", "name-of-16-bytes", "\xC3\xA4",
                                        "fifteen-bytes-x", "a-name-longer-than-words"};
    // clang-format on
    static const char *const texts[] = {"",    " ", "text", "1 &lt; 2", "&amp;", "\xE2\x82\xAC<",
                                        "\n\n"};
    const std::string name = names[random() % std::size(names)];
    std::string tag = "<" + name;
    static const char *const values[] = {"",  "1", "a/b", "\xE2\x82\xAC", "a value of 21 bytes",
                                         "a>"};
    for (auto i = random() % 5; i > 1; --i) {
        tag += random() % 16 == 0 ? " x" : " x" + std::to_string(i);
        tag += random() % 4 == 0 ? " = \"" : "=\"";
        tag += random() % 2 == 0 ? names[random() % 4] : values[random() % 16 % 6];
        tag += '"';
    }
    if (random() % 6 == 0) {
        return tag + "/>";
    }
    std::string content = texts[random() % std::size(texts)];
    for (auto i = depth > 0 && random() % 3 != 0 ? random() % 4 : 0; i > 0; --i) {
        content += randomElement(random, depth - 1) + texts[random() % 3];
    }
    return tag + (random() % 8 == 0 ? " >" : ">") + content + "</" + name + ">";
}

TEST(QuickRoad, TakesWhatItTakesAsThePlainRoadDoes) {
    std::mt19937 random(20260202);
    int taken = 0;
    for (int round = 0; round < 3000; ++round) {
        std::string body = randomElement(random, 5);
        for (auto faults = random() % 3; faults > 1; --faults) {
            body[random() % body.size()] = "<>/ =\"&;ax\xC3\xF0"[random() % 12];
        }
        taken += isTakenAlike(body) ? 1 : 0;
    }
    EXPECT_GT(taken, 500);
}

TEST(QuickRoad, TakesTheOrdinary) {
    std::string large = "<r>";
    for (int i = 0; i < 2000; ++i) { // several stretches, with markup on their edges
        large += "<row" + std::to_string(i % 300) + ">" +
                 std::string(static_cast<size_t>(i % 70), 'x') + "</row" + std::to_string(i % 300) +
                 ">\n";
    }
    for (const std::string body : {"<a/>", "<a>1</a>", "<r> <a>x</a> <a x=\"1\"/>y</r> ",
                                   "<l><item>1</item><item/></l>", "<a>\xC3\xA4</a>"}) {
        EXPECT_TRUE(isTakenAlike(body)) << body;
    }
    EXPECT_TRUE(isTakenAlike(large + "</r>"));
    EXPECT_FALSE(isTakenAlike(large + "></r>"));
    EXPECT_FALSE(isTakenAlike("<r></r><a/><b/><c>a text longer than the margin</c>"));
    EXPECT_FALSE(isTakenAlike("<a>\xE0<b</a>")) << "a '<' within a character";
}

} // namespace
