#include "xmlp/parse/tag_reader.h"

#include "xmlp/base/chars.h"

#include <algorithm>

namespace velda::xmlp {
namespace {

std::string_view between(const char *begin, const char *end) {
    return {begin, static_cast<size_t>(end - begin)};
}

} // namespace

bool TagReader::readName(std::string_view &name) {
    const char *begin = position_;
    const char *cursor = begin;
    if (*cursor == end_ || *cursor == '\0') {
        return refuse(TagFault::name);
    }
    // The first byte may be any: white space makes the name empty, and then only more white space
    // or the tag's end may follow, or the attributes would be taken for the name.
    const bool isEmpty = isWhiteSpace(*cursor);
    ++cursor;
    if (!isEmpty) {
        while (*cursor != end_ && isNameChar(*cursor)) {
            ++cursor;
        }
    }
    if (*cursor != end_ && !isWhiteSpace(*cursor)) {
        return refuse(TagFault::name);
    }
    name = between(begin, isEmpty ? begin : cursor);
    position_ = skipWhiteSpace(cursor);
    return true;
}

bool TagReader::readAttribute(TagAttribute &attribute) {
    const char *cursor = position_;
    if (*cursor == end_) {
        return false;
    }
    if (!isNameChar(*cursor)) {
        return refuse(TagFault::attribute);
    }
    const char *begin = cursor;
    while (*cursor != end_ && isNameChar(*cursor)) {
        ++cursor;
    }
    if (*cursor == end_) {
        return refuse(TagFault::cutAttribute);
    }
    attribute.name = between(begin, cursor);
    cursor = skipWhiteSpace(cursor);
    if (*cursor != '=') {
        return refuse(TagFault::attribute);
    }
    cursor = skipWhiteSpace(cursor + 1);
    if (*cursor != '"') {
        return refuse(TagFault::attribute);
    }
    begin = ++cursor;
    while (*cursor != end_ && isAttrValueChar(*cursor)) {
        ++cursor;
    }
    if (*cursor == end_) {
        return refuse(TagFault::cutAttribute);
    }
    if (*cursor != '"') {
        return refuse(TagFault::attribute);
    }
    attribute.value = between(begin, cursor);
    position_ = skipWhiteSpace(cursor + 1);
    return true;
}

bool canBeRepeated(std::string_view name) {
    size_t boundary = 0;
    while (boundary < name.size()) {
        boundary += characterLength(name[boundary]);
    }
    return boundary == name.size() && !name.empty() &&
           std::all_of(name.begin(), name.end(), isNameChar);
}

} // namespace velda::xmlp
