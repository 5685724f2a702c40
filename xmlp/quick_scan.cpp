#include "xmlp/quick_scan.h"

#include "xmlp/chars.h"
#include "xmlp/tag.h"

#include <algorithm>
#include <cstring>

namespace velda::xmlp {
namespace {

constexpr std::string_view itemName = "item";

} // namespace

QuickScan::Words QuickScan::wordsAt(const char *position) const {
    Words words = {};
    if (static_cast<size_t>(bodyEnd() - position) >= wordsSize) {
        std::memcpy(&words, position, wordsSize);
    } else {
        std::memcpy(&words, position, static_cast<size_t>(bodyEnd() - position));
    }
    return words;
}

// The first `length` bytes of two words, at most sixteen.
QuickScan::Words QuickScan::maskOf(size_t length) {
    Words mask = {};
    std::memset(&mask, 0xFF, length);
    return mask;
}

QuickScan::Result QuickScan::run(IndexMarkup indexMarkup) {
    // Short of this many, a text has been given room for more elements than most have.
    constexpr size_t textBytesPerElement = 20;
    if (!elements_.reserve(body_.size() / textBytesPerElement + 16)) {
        return Result::noMemory;
    }
    tagEnd_ = body_.data();
    uint16_t offsets[stretchSize];
    for (size_t start = 0; start < body_.size(); start += stretchSize) {
        const char *stretch = body_.data() + start;
        const size_t size = std::min(stretchSize, body_.size() - start);
        const size_t count = indexMarkup(stretch, size, offsets, summary_);
        if (summary_.mayHideMarkup) {
            return Result::declined;
        }
        for (size_t i = 0; i < count; ++i) {
            const Result result = takeTag(stretch + offsets[i]);
            if (result != Result::taken) {
                return result;
            }
        }
    }
    // Every tag has been seen to end in its own '>', so any more of them stand in texts.
    const bool isSound = open_.isEmpty() && tags_ > 0 && summary_.closing == tags_;
    return isSound ? Result::taken : Result::declined;
}

QuickScan::Result QuickScan::takeTag(const char *tag) {
    if (tag < tagEnd_ || tag + 1 == bodyEnd()) {
        return Result::declined;
    }
    ++tags_;
    return tag[1] == '/' ? takeEndTag(tag) : takeStartTag(tag + 1);
}

QuickScan::Result QuickScan::takeEndTag(const char *tag) {
    if (open_.isEmpty()) {
        return Result::declined;
    }
    if (last_ == Event::startTag || last_ == Event::emptyElement) {
        const Result result = takeValue(tag);
        if (result != Result::taken) {
            return result;
        }
    }
    const OpenElement &element = open_.last();
    const char *name = tag + 2;
    const char *startName = body_.data() + element.name;
    const uint32_t length = element.nameLength;
    if (static_cast<size_t>(bodyEnd() - name) <= length || name[length] != '>') {
        return Result::declined;
    }
    if (length <= wordsSize) {
        const Words end = wordsAt(name);
        const Words start = wordsAt(startName);
        const Words mask = maskOf(length);
        if ((((end.low ^ start.low) & mask.low) | ((end.high ^ start.high) & mask.high)) != 0) {
            return Result::declined;
        }
    } else if (std::memcmp(name, startName, length) != 0) {
        return Result::declined;
    }
    open_.pop();
    tagEnd_ = name + length + 1;
    last_ = Event::endTag;
    return Result::taken;
}

// The text between a start tag and its end tag is the element's; behind an empty element there is a
// text too, which is counted as the plain road counts it and kept by no one.
QuickScan::Result QuickScan::takeValue(const char *end) {
    const auto size = static_cast<uint32_t>(end - tagEnd_);
    if (size == 0) {
        return Result::taken;
    }
    uint32_t valueSize = size;
    if (summary_.hasAmpersand && std::memchr(tagEnd_, '&', size) != nullptr) {
        valueSize = xmlp_unTransStrLen(tagEnd_, size);
    }
    valueBytes_ += valueSize;
    if (last_ == Event::startTag) {
        if (valueSize == 0) {
            return Result::declined;
        }
        ElementRecord &element = elements_[open_.last().element];
        element.text = offsetOf(tagEnd_);
        element.textSize = size;
        element.valueSize = valueSize;
    }
    return Result::taken;
}

QuickScan::Result QuickScan::takeStartTag(const char *tag) {
    const Words words = wordsAt(tag);
    const auto matches = [&words](const KnownName &name) {
        return (((words.low ^ name.words.low) & name.mask.low) |
                ((words.high ^ name.words.high) & name.mask.high)) == 0;
    };
    KnownName *name = &known_[known_[lastName_].next];
    if (name->length == 0 || !matches(*name)) {
        const char *end = tag;
        while (end < bodyEnd() && isOf(*end, nameByte)) {
            ++end;
        }
        const auto length = static_cast<size_t>(end - tag);
        if (end == bodyEnd() || length == 0) {
            return Result::declined;
        }
        if (*end != '>' || length >= wordsSize) {
            return takeTagWithAttributes(tag);
        }
        name = knowName(tag, length);
        if (name == nullptr) {
            return Result::noMemory;
        }
        known_[lastName_].next = static_cast<uint32_t>(name - known_.data());
    }
    lastName_ = static_cast<uint32_t>(name - known_.data());
    tagEnd_ = tag + name->length + 1;
    return addElement(tag, name->length, name->offset, name->isItem != 0, false);
}

// A name of fewer than sixteen bytes with a '>' behind it.
QuickScan::KnownName *QuickScan::knowName(const char *name, size_t length) {
    constexpr uint64_t multiplier = 0x9E3779B97F4A7C15;
    const Words words = wordsAt(name);
    const Words mask = maskOf(length + 1);
    const Words masked = {words.low & mask.low, words.high & mask.high};
    const size_t place = ((masked.low ^ masked.high * 31) * multiplier) >> 56;
    KnownName &known = known_[place];
    if (known.length != length || known.words.low != masked.low ||
        known.words.high != masked.high) {
        size_t offset = 0;
        if (!names_.intern({name, length}, offset)) {
            return nullptr;
        }
        const bool isItem = std::string_view(name, length) == itemName;
        known = {masked,
                 mask,
                 static_cast<uint32_t>(length),
                 static_cast<uint32_t>(offset),
                 known.next,
                 isItem ? 1U : 0U};
    }
    return &known;
}

// Any tag, with the reader that the plain road uses.
QuickScan::Result QuickScan::takeTagWithAttributes(const char *tag) {
    const auto *close =
        static_cast<const char *>(std::memchr(tag, '>', static_cast<size_t>(bodyEnd() - tag)));
    if (close == nullptr || close == tag) {
        return Result::declined;
    }
    const bool isEmpty = close[-1] == '/';
    TagReader reader(tag, isEmpty ? '/' : '>');
    std::string_view name;
    size_t offset = 0;
    if (!reader.readName(name) || name.empty() ||
        !std::all_of(name.begin(), name.end(), [](char c) { return isOf(c, nameByte); })) {
        return Result::declined;
    }
    if (!names_.intern(name, offset)) {
        return Result::noMemory;
    }
    const auto element = static_cast<uint32_t>(elements_.size());
    for (TagAttribute attribute; reader.readAttribute(attribute);) {
        size_t nameOffset = 0;
        size_t valueOffset = AttributeRecord::noValue;
        if (!names_.intern(attribute.name, nameOffset) ||
            (!attribute.value.empty() && !names_.intern(attribute.value, valueOffset))) {
            return Result::noMemory;
        }
        bool isRepeated = false;
        names_.findInTag(attribute.name, element + 1, isRepeated);
        if (isRepeated) {
            return Result::declined;
        }
        if (!attributes_.push(
                {element, static_cast<uint32_t>(nameOffset), static_cast<uint32_t>(valueOffset)})) {
            return Result::noMemory;
        }
    }
    if (reader.fault() != TagFault::none) {
        return Result::declined;
    }
    tagEnd_ = close + 1;
    return addElement(tag, static_cast<uint32_t>(name.size()), static_cast<uint32_t>(offset),
                      name == itemName, isEmpty);
}

// False when the element can't be a child where it stands.
bool QuickScan::takeParent(bool isItem) {
    if (!open_.isEmpty() && open_.last().isItem) {
        return false;
    }
    Children &children = open_.isEmpty() ? topLevel_ : open_.last().children;
    const Children wanted = isItem ? Children::items : Children::named;
    const bool isFirst = children == Children::none;
    // There is one top-level element.
    if (open_.isEmpty() ? !isFirst : !isFirst && children != wanted) {
        return false;
    }
    children = wanted;
    return true;
}

QuickScan::Result QuickScan::addElement(const char *name, uint32_t length, uint32_t offset,
                                        bool isItem, bool isEmpty) {
    if (!takeParent(isItem)) {
        return Result::declined;
    }
    const auto element = static_cast<uint32_t>(elements_.size());
    const uint32_t parent = open_.isEmpty() ? 0 : open_.last().element + 1;
    if (!elements_.push({offset, parent & 0x7FFFFFFFU, isItem ? 1U : 0U, 0, 0, 0})) {
        return Result::noMemory;
    }
    last_ = Event::emptyElement;
    if (!isEmpty) {
        last_ = Event::startTag;
        if (!open_.push({element, offsetOf(name), length, Children::none, isItem})) {
            return Result::noMemory;
        }
    }
    return Result::taken;
}

} // namespace velda::xmlp
