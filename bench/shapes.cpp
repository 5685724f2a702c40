#include "bench/shapes.h"

namespace bench {

namespace {

// "#" in a part stands for the number of its turn.
std::string part(const std::string &pattern, size_t turn) {
    std::string text;
    for (const char c : pattern) {
        c == '#' ? text += std::to_string(turn) : text += c;
    }
    return text;
}

// The parts between head and tail, as many as there is room for, each with its counterpart behind
// those of the later ones; then spaces.
std::string filled(size_t size, const std::string &head, const std::string &pattern,
                   const std::string &counterpart, const std::string &tail) {
    std::string text = head;
    size_t closing = 0;
    size_t turn = 0;
    for (;; ++turn) {
        const std::string next = part(pattern, turn);
        const size_t back = part(counterpart, turn).size();
        if (text.size() + next.size() + closing + back + tail.size() > size) {
            break;
        }
        text += next;
        closing += back;
    }
    while (closing > 0 && turn > 0) {
        text += part(counterpart, --turn);
    }
    text += tail;
    return text.append(size - text.size(), ' ');
}

const std::string start = "<AppDB><ver>1</ver><appTypeList><appType><id>1</id></appType>"
                          "</appTypeList><appList>";
const std::string rule = "<ruleList><rule><tupleList><tuple>tcp 0:0 0:80</tuple></tupleList></rule>"
                         "</ruleList>";
const std::string end = "</appList></AppDB>";

struct Pattern {
    const char *name;
    std::string pattern;
    std::string counterpart = "";
    std::string before = "";
    std::string behind = "";
};

// Beside the applications.
const Pattern besides[] = {
    {"distinct names", "<n#/>"},
    {"distinct names of leaves", "<a-name-of-an-element-#>x</a-name-of-an-element-#>"},
    {"names that are tails of others", "<abcd#/><#/>"},
    {"distinct attribute values", "<a x=\"v#\"/>"},
    {"distinct attribute names", "<a x#=\"1\"/>"},
    {"the same attributes", "<a x=\"1\" y=\"2\" z=\"\"/>"},
    {"one tag of attributes", " x#=\"1\"", "", "<a", "/>"},
    {"one tag of attributes and their tails", " abcd#=\"\" #=\"\"", "", "<a", "/>"},
    {"tags of 33 attributes",
     "<a a=\"\" b=\"\" c=\"\" d=\"\" e=\"\" f=\"\" g=\"\" h=\"\" i=\"\" j=\"\" k=\"\" l=\"\" "
     "m=\"\" "
     "n=\"\" o=\"\" p=\"\" q=\"\" r=\"\" s=\"\" t=\"\" u=\"\" v=\"\" w=\"\" x=\"\" y=\"\" z=\"\" "
     "a1=\"\" a2=\"\" a3=\"\" a4=\"\" a5=\"\" a6=\"\" a7=\"\"/>"},
    {"deep", "<a>", "</a>"},
    {"deep, distinct names", "<n#>", "</n#>"},
    {"deep, attributes", "<a x=\"1\">", "</a>"},
    {"deep, a known name", "<ori>", "</ori>"},
    {"siblings", "<a/>"},
    {"siblings with texts", "<a>x</a>"},
    {"siblings, texts between", "<a/>text"},
    {"list members", "<item/>", "", "<l>", "</l>"},
    {"spaces in tags", "<a  x = \"1\" >x</a>"},
    {"spaces in every other tag", "<a x=\"1\">x</a><a x =\"1\">x</a>"},
    {"hidden markup", "<a>\xE0<b</a>"},
    {"hidden markup at the end", "<a>x</a>", "", "", "<a>\xE0<b</a>"},
    {"references", "<a>&lt;</a>"},
    {"one text of references", "&amp;", "", "<a>", "</a>"},
    {"one text", "x", "", "<a>", "</a>"},
    {"one name", "x", "", "<", "/>"},
    {"one attribute value", "x", "", "<a x=\"", "\"/>"},
    {"one attribute name", "x", "", "<a ", "=\"\"/>"},
    {"white space", " "},
};

// In the list of applications.
const Pattern applications[] = {
    {"applications", "<app><id>#</id><name>n#</name>" + rule + "</app>"},
    {"memberships", "<typeId>1</typeId>", "", "<app><id>1</id><typeIdList>",
     "</typeIdList>" + rule + "</app>"},
    {"memberships in unknown types", "<typeId>#</typeId>", "", "<app><typeIdList>",
     "</typeIdList></app>"},
    {"tuples", "<tuple>tcp 0:0 10.0.0.1:#</tuple>", "", "<app><ruleList><rule><tupleList>",
     "</tupleList></rule></ruleList></app>"},
    {"tuples that are none", "<tuple>x</tuple>", "", "<app><ruleList><rule><tupleList>",
     "</tupleList></rule></ruleList></app>"},
    {"keywords", "<dnsKw>k#</dnsKw>", "", "<app><dnsKwList>", "</dnsKwList></app>"},
    {"types", "<appType><id>#</id></appType>", "", "</appList><appTypeList>",
     "</appTypeList><appList>"},
    {"lists in lists", "<typeIdList>", "</typeIdList>", "<app>", "</app>"},
};

// Not in a database.
const Pattern broken[] = {
    {"not closed", "<a>"},
    {"not closed, distinct names", "<n#>"},
    {"closed by another name", "<a>", "</a>", "<r>", "</s>"},
    {"an attribute repeated at the end", " x#=\"1\"", "", "<a", " x0=\"\"/>"},
    {"a bad reference at the end", "<a>x</a>", "", "<r>", "<a>&x</a></r>"},
    {"a bad attribute at the end", "<a x=\"1\"/>", "", "<r>", "<a x/></r>"},
    {"a bad attribute at the bottom", "<a>", "</a>", "<r>", "<a x/></r>"},
    {"a bracket at the end", "<a>x</a>", "", "<r>", "></r>"},
    {"an item at the end", "<a/>", "", "<r>", "<item/></r>"},
    {"a second element at the end", "<a/>", "", "<r>", "</r><r/>"},
    {"a tag without end", " x#=\"1\"", "", "<a", ""},
    {"a value without end", "x", "", "<a x=\"", ""},
    {"a declaration without end", "x", "", "<?", ""},
    {"only opening brackets", "<"},
    {"only closing brackets", ">"},
    {"only end tags", "</a>"},
};

void add(std::vector<Shape> &shapes, const Pattern &pattern, const std::string &head,
         const std::string &tail) {
    shapes.push_back({pattern.name, [&pattern, head, tail](size_t size) {
                          return filled(size, head + pattern.before, pattern.pattern,
                                        pattern.counterpart, pattern.behind + tail);
                      }});
}

} // namespace

const std::vector<Shape> &allShapes() {
    static const std::vector<Shape> shapes = [] {
        std::vector<Shape> made;
        const std::string app = "<app><id>1</id>" + rule + "</app>";
        for (const Pattern &pattern : besides) {
            add(made, pattern, start + app + "</appList>", "</AppDB>");
        }
        for (const Pattern &pattern : applications) {
            add(made, pattern, start + app, end);
        }
        for (const Pattern &pattern : broken) {
            add(made, pattern, "", "");
        }
        return made;
    }();
    return shapes;
}

std::string listText(size_t size) {
    return filled(size, "<l>", "<item x=\"1\">x</item>", "", "</l>");
}

} // namespace bench
