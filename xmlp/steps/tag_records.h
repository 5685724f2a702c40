// From the text of a tag to its name and attribute records.
#pragma once

#include "xmlp/base/diagnosis.h"
#include "xmlp/base/string_table.h"
#include "xmlp/parse/tag_reader.h"
#include "xmlp/xmlp_internal.h"

#include <optional>

namespace velda::xmlp {

// Strings of a static tree, found by searching the name table itself.
class SearchedNames {
public:
    explicit SearchedNames(const char *table) : table_(table) {}

    void beginTag() {}
    char *find(std::string_view string) const;
    char *findNew(std::string_view name, const XMLP_ATTR *tagAttrs) const;

private:
    const char *table_;
};

// The same, found through the index that the counting pass has built. `base` is where the table's
// bytes lie now.
class IndexedNames {
public:
    IndexedNames(StringTable &index, char *base) : index_(index), base_(base) {}

    void beginTag() { ++tagNumber_; }
    char *find(std::string_view string) const { return base_ + index_.find(string); }
    char *findNew(std::string_view name, const XMLP_ATTR *tagAttrs);

private:
    StringTable &index_;
    char *base_;
    uint32_t tagNumber_ = 0;
};

// In whose name tags are refused.
inline constexpr char tagReaderName[] = "_getNameAttr";

// Reads a tag that passed the check: `name` becomes the element's name, and the attributes are
// written as consecutive records at `attrs`, at most `capacity` of them. The number of
// attributes, or nothing when the tag can't be read.
template <class Names>
std::optional<size_t> readStaticTag(const char *tag, char endCharacter, Names &names, char *&name,
                                    XMLP_ATTR *attrs, size_t capacity, Diagnosis &diagnosis) {
    TagReader reader(tag, endCharacter);
    std::string_view text;
    if (!reader.readName(text)) {
        return std::nullopt;
    }
    name = names.find(text);
    names.beginTag();
    size_t count = 0;
    for (TagAttribute attribute; reader.readAttribute(attribute); ++count) {
        if (count == capacity) {
            return std::nullopt;
        }
        char *attrName = names.findNew(attribute.name, count == 0 ? nullptr : attrs);
        if (attrName == nullptr) {
            XMLP_REFUSE(diagnosis, tagReaderName, XMLP_ERROR_REPEATED_ATTRIBUTE,
                        attribute.name.data());
            return std::nullopt;
        }
        char *value = attribute.value.empty() ? nullptr : names.find(attribute.value);
        attrs[count] = {attrName, value, nullptr};
        if (count > 0) {
            attrs[count - 1].next = &attrs[count];
        }
    }
    if (reader.fault() != TagFault::none) {
        return std::nullopt;
    }
    return count;
}

// Reads a tag into a copy of its name and a list of its attributes. False, with nothing allocated,
// when the tag can't be read.
bool readDynamicTag(const char *tag, char endCharacter, char *&name, XMLP_ATTR *&attrs,
                    Diagnosis &diagnosis);

} // namespace velda::xmlp
