// Static trees step by step: a counting pass sizes the block exactly, and the build walk fills it.

#include "xmlp/steps/static_tree.h"

#include "xmlp/base/chars.h"
#include "xmlp/base/memory.h"
#include "xmlp/base/string_table.h"
#include "xmlp/parse/static_block.h"
#include "xmlp/steps/build_walk.h"
#include "xmlp/steps/tag_records.h"

#include <cstring>
#include <utility>

namespace velda::xmlp {
namespace {

// Counts what a tree of the body will hold. `countTag` is given every start tag and returns the
// number of its attributes, or nothing to end the count in failure.
template <class CountTag>
std::optional<Counts> countBody(std::string_view body, CountTag countTag) {
    enum class State { idle, inStartTag, afterStartTag, inEndTag, afterEndTag };
    State state = State::idle;
    Counts counts;
    const char *mark = nullptr;
    const char *end = body.data() + body.size();
    const char *position = body.data();
    for (; (position = findMarkup(position, end)) < end; ++position) {
        if (*position == '<' && byteAfter(position, end) == '/') {
            // Behind an empty element there is a text too, which the walk will drop; the values
            // area may be that much larger than its contents.
            if (state == State::afterStartTag) {
                counts.valueBytes +=
                    xmlp_unTransStrLen(mark, static_cast<uint32_t>(position - mark));
            }
            state = State::inEndTag;
        } else if (*position == '<') {
            state = State::inStartTag;
            mark = position + 1;
        } else if (state == State::inStartTag) {
            const std::optional<size_t> attributes =
                countTag(mark, position[-1] == '/' ? '/' : '>');
            if (!attributes) {
                return std::nullopt;
            }
            ++counts.elements;
            counts.attributes += *attributes;
            state = State::afterStartTag;
            mark = position + 1;
        } else if (state == State::inEndTag) {
            state = State::afterEndTag;
        }
    }
    return counts;
}

// Hands a tag's name, attribute names and non-empty attribute values to `intern`, in this order,
// and counts its attributes; nothing when `intern` fails.
template <class Intern>
std::optional<size_t> internTag(const char *tag, char endCharacter, Intern intern) {
    TagReader reader(tag, endCharacter);
    std::string_view name;
    if (reader.readName(name) && !intern(name)) {
        return std::nullopt;
    }
    size_t count = 0;
    if (reader.fault() == TagFault::none) {
        for (TagAttribute attribute; reader.readAttribute(attribute); ++count) {
            if (!intern(attribute.name) || (!attribute.value.empty() && !intern(attribute.value))) {
                return std::nullopt;
            }
        }
    }
    return count;
}

// Takes nodes, attributes and values from areas of counted size, and never more than was counted.
template <class Names>
class StaticStorage {
public:
    static constexpr const char *builder = "_makeStree";
    static constexpr uint32_t isStatic = 1;

    StaticStorage(Names &names, const Counts &counts, char *values, XMLP_ATTR *attrs,
                  XMLP_NODE *nodes, Diagnosis &diagnosis)
        : names_(names), left_(counts), values_(values), attrs_(attrs), nodes_(nodes),
          diagnosis_(diagnosis) {}

    XMLP_NODE *newNode() {
        if (left_.elements == 0) {
            return nullptr;
        }
        --left_.elements;
        *nodes_ = XMLP_NODE{};
        return nodes_++;
    }

    bool readTag(const char *tag, char endCharacter) {
        const auto count = readStaticTag(tag, endCharacter, names_, tagName_, attrs_,
                                         left_.attributes, diagnosis_);
        tagAttributes_ = count.value_or(0);
        return count.has_value();
    }

    bool applyTag(XMLP_NODE *node) {
        node->name = tagName_;
        if (tagAttributes_ > 0) {
            node->attrList = attrs_;
            attrs_ += tagAttributes_;
            left_.attributes -= tagAttributes_;
        }
        return true;
    }

    char *newValue(uint32_t size) {
        if (size > left_.valueBytes) {
            return nullptr;
        }
        left_.valueBytes -= size;
        return std::exchange(values_, values_ + size);
    }

    void drop(XMLP_NODE *) {}

private:
    Names &names_;
    Counts left_;
    char *values_;
    XMLP_ATTR *attrs_;
    XMLP_NODE *nodes_;
    Diagnosis &diagnosis_;
    char *tagName_ = nullptr;
    size_t tagAttributes_ = 0;
};

// The document node takes the first record, the elements the `counts.elements` after it.
template <class Names>
XMLP_NODE *build(std::string_view body, Names &names, const Counts &counts, char *values,
                 XMLP_ATTR *attrs, XMLP_NODE *nodes, Diagnosis &diagnosis) {
    *nodes = XMLP_NODE{};
    StaticStorage<Names> storage(names, counts, values, attrs, nodes + 1, diagnosis);
    return BuildWalk(storage, nodes, diagnosis).run(body) ? nodes : nullptr;
}

XMLP_NODE *refuseMemory(Diagnosis &diagnosis) {
    XMLP_REFUSE(diagnosis, "xmlp_parse", XMLP_ERROR_NO_MEMORY, nullptr);
    return nullptr;
}

// Does the table end here?
bool isFree(const char *place) {
    constexpr char zeros[wordSize] = {};
    return std::memcmp(place, zeros, wordSize) == 0;
}

} // namespace

XMLP_NODE *buildStaticTree(std::string_view body, Diagnosis &diagnosis) {
    StringTable table;
    if (!table.reserve(initialStringTableSize)) {
        return refuseMemory(diagnosis);
    }
    const auto counts = countBody(body, [&table](const char *tag, char endCharacter) {
        return internTag(tag, endCharacter,
                         [&table](std::string_view string) { return table.intern(string); });
    });
    StaticBlock block;
    if (!counts || !block.obtain(table, *counts)) {
        return refuseMemory(diagnosis);
    }
    table.dropBytes();
    IndexedNames names(table, block.names());
    XMLP_NODE *root =
        build(body, names, *counts, block.values(), block.attrs(), block.nodes(), diagnosis);
    if (root != nullptr) {
        block.release();
    }
    return root;
}

} // namespace velda::xmlp

using namespace velda::xmlp;

char *_findName(const char *nameTable, const char *string, uint32_t len) {
    if (nameTable == nullptr || string == nullptr) {
        XMLP_REPORT("invalid params.");
        return nullptr;
    }
    const char *place = nameTable;
    while (!isFree(place) && xmlp_nameCmp(string, len, place) != 0) {
        place += wordSize;
    }
    return const_cast<char *>(place);
}

uint32_t _saveNameAttr(const char *tag, char endCharacter, char *nameTable) {
    if (tag == nullptr || nameTable == nullptr) {
        XMLP_REPORT("invalid params.");
        return 0;
    }
    const auto intern = [nameTable](std::string_view string) {
        char *place = _findName(nameTable, string.data(), static_cast<uint32_t>(string.size()));
        if (isFree(place)) {
            writeEntry(place, string);
        }
        return true;
    };
    return static_cast<uint32_t>(internTag(tag, endCharacter, intern).value_or(0));
}

XMLP_NODE *_makeStree(const char *body, uint32_t bodyLen, char *names, char *values,
                      XMLP_ATTR *attrs, XMLP_NODE *nodes) {
    if (body == nullptr || names == nullptr || values == nullptr || nodes == nullptr) {
        XMLP_REPORT("invalid params.");
        return nullptr;
    }
    const std::string_view text(body, bodyLen);
    auto counts = countBody(text, [](const char *tag, char endCharacter) {
        return internTag(tag, endCharacter, [](std::string_view) { return true; });
    });
    if (attrs == nullptr) {
        counts->attributes = 0;
    }
    SearchedNames searched(names);
    Diagnosis diagnosis;
    return build(text, searched, *counts, values, attrs, nodes, diagnosis);
}
