#include "xmlp/parse/scanner.h"

#include "xmlp/base/chars.h"
#include "xmlp/parse/name_predictor.h"
#include "xmlp/parse/tag_reader.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <span>

namespace velda::xmlp {
namespace {

struct OpenElement {
    uint32_t number; // of its record plus 1; 0 for the document node
    uint32_t name;   // offset in the body
    uint32_t nameLength;
    uint32_t children; // the kinds that it can still be given
};

// What the tag taken last leaves to the text behind it.
enum class TextOwner { nothing, openElement, emptyElement };

class Scanner {
public:
    Scanner(std::string_view body, StringTable &names, ElementRecords &scanned)
        : body_(body.data()), end_(body.data() + body.size()), names_(names), scanned_(scanned),
          predictor_(names), tagEnd_(body_), ampersand_(body_), indexedEnd_(body_) {
        // A tag that begins before this has sixteen bytes to read behind its "<" or "</".
        constexpr size_t margin = sizeof(Block16) + 2;
        safeReadLimit_ = body.size() > margin ? end_ - margin : body_;
    }

    ScanResult run(Indexer indexMarkup) {
        const auto size = static_cast<size_t>(end_ - body_);
        size_t tags = 0;
        for (size_t start = 0; start < size; start += chunkSize) {
            const char *stretch = body_ + start;
            const size_t length = std::min(chunkSize, size - start);
            const size_t count = indexMarkup(stretch, length, offsets_, state_);
            indexedEnd_ = stretch + length;
            if (state_.mayHideMarkup) {
                return ScanResult::refused;
            }
            if (!scanned_.elements.reserveMore(count)) {
                return ScanResult::noMemory;
            }
            const ScanResult result = scanTags(stretch, {offsets_, count});
            if (result != ScanResult::accepted) {
                return result;
            }
            if (start == 0 && !reserveForWhole(size)) {
                return ScanResult::noMemory;
            }
            tags += count;
        }
        // Every tag has been seen to end in its own '>', so any more of them stand in texts.
        const bool isSound = isComplete_ && state_.closing == tags;
        return isSound ? ScanResult::accepted : ScanResult::refused;
    }

private:
    // Room for as many records as there will be if a text of this size goes on as it began: with its
    // first stretch, and the rest of a tag that began there, which may be most of the text. But not for
    // more than one would expect, as that may be its densest part.
    bool reserveForWhole(size_t size) {
        constexpr size_t textBytesPerRecord = 16;
        const size_t most = size / textBytesPerRecord;
        const size_t more = size / std::max(chunkSize, static_cast<size_t>(tagEnd_ - body_));
        return scanned_.elements.reserveMore(std::min(more * scanned_.elements.size(), most)) &&
               scanned_.attributes.reserveMore(std::min(more * scanned_.attributes.size(), most));
    }

    ScanResult scanTags(const char *stretch, std::span<const uint16_t> offsets) {
        // All but the last tag and those beyond the margin, where there is less to read.
        size_t ordinary = offsets.empty() ? 0 : offsets.size() - 1;
        while (ordinary > 0 && stretch + offsets[ordinary] >= safeReadLimit_) {
            --ordinary;
        }
        ScanResult result = ScanResult::accepted;
        size_t i = 0;
        while (i < ordinary && result == ScanResult::accepted) {
            const char *tag = stretch + offsets[i];
            const char *next = stretch + offsets[++i];
            if (tag < tagEnd_) {
                return ScanResult::refused;
            }
            if (tag[1] == '/') {
                result = scanEndTag(tag);
                continue;
            }
            const PredictedName *name = predictor_.predictNext(load16(tag + 1));
            if (name == nullptr) [[unlikely]] {
                name = findName(tag + 1);
            }
            if (name == nullptr || (current_.children & name->kind) == 0) [[unlikely]] {
                result = scanStartTagSlow(tag + 1, name);
                continue;
            }
            current_.children = name->kind;
            tagEnd_ = tag + name->length + 2;
            ElementRecord element = recordOf(name->offset, name->isItem);
            const bool isLeaf = next[1] == '/' && name->matches(load16(next + 2));
            if (isLeaf) {
                result = scanText(next, element);
                scanned_.elements.pushUnchecked(element);
                tagEnd_ = next + name->length + 3;
                textOwner_ = TextOwner::nothing;
                ++i;
            } else {
                scanned_.elements.pushUnchecked(element);
                result = open(tag + 1, name->length, name->isItem);
            }
        }
        for (; i < offsets.size() && result == ScanResult::accepted; ++i) {
            const char *tag = stretch + offsets[i];
            if (tag < tagEnd_) {
                return ScanResult::refused;
            }
            const bool isEndTag = end_ - tag > 1 && tag[1] == '/';
            result = isEndTag ? scanEndTag(tag) : scanStartTagGeneric(tag + 1);
        }
        return result;
    }

    // Null for a name that is not a short one with a '>' or a space behind it, or for want of memory.
    [[gnu::noinline]] const PredictedName *findName(const char *name) {
        const size_t length = lengthOf(name, nameByte);
        const bool isShort = length > 0 && length <= NamePredictor::maximumLength;
        return isShort && (name[length] == '>' || name[length] == ' ')
                   ? predictor_.take(name, length)
                   : nullptr;
    }

    [[gnu::noinline]] ScanResult scanStartTagSlow(const char *name, const PredictedName *known) {
        if (predictor_.isOutOfMemory()) {
            return ScanResult::noMemory;
        }
        return known != nullptr ? scanStartTagWithAttributes(name, *known)
                                : scanStartTagGeneric(name);
    }

    [[gnu::always_inline]] ScanResult scanEndTag(const char *tag) {
        if (textOwner_ != TextOwner::nothing && tag != tagEnd_) {
            ElementRecord dropped = {};
            const bool isKept = textOwner_ == TextOwner::openElement;
            ElementRecord &element = isKept ? scanned_.elements[current_.number - 1] : dropped;
            if (scanText(tag, element) != ScanResult::accepted && isKept) {
                return ScanResult::refused;
            }
        }
        const char *name = tag + 2;
        const uint32_t length = current_.nameLength;
        if (current_.number == 0 || static_cast<size_t>(end_ - name) <= length ||
            name[length] != '>' || !equalPrefix(name, body_ + current_.name, length)) {
            return ScanResult::refused;
        }
        current_ = enclosing_.last();
        enclosing_.pop();
        close(name + length + 1, TextOwner::nothing);
        return ScanResult::accepted;
    }

    // The text from the last tag to this end. The one behind an empty element is counted as the plain
    // road counts it, and kept by no one. Declined when its references can't be decoded.
    [[gnu::always_inline]] ScanResult scanText(const char *end, ElementRecord &element) {
        const auto size = static_cast<uint32_t>(end - tagEnd_);
        element.text = offsetOf(tagEnd_);
        element.textSize = size;
        if (ampersand_ < end) [[unlikely]] {
            return measureReferences(end, element);
        }
        scanned_.valueBytes += size;
        return ScanResult::accepted;
    }

    [[gnu::noinline]] ScanResult measureReferences(const char *end, ElementRecord &element) {
        const char *begin = std::max(ampersand_, tagEnd_);
        const void *found = std::memchr(begin, '&', static_cast<size_t>(indexedEnd_ - begin));
        ampersand_ = found != nullptr ? static_cast<const char *>(found) : indexedEnd_;
        uint32_t size = element.textSize;
        if (ampersand_ < end) {
            element.textSize |= ElementRecord::escapedBit;
            size = xmlp_unTransStrLen(tagEnd_, size);
        }
        scanned_.valueBytes += size;
        return size != 0 || element.textSize == 0 ? ScanResult::accepted : ScanResult::refused;
    }

    ElementRecord recordOf(uint32_t name, bool isItem) const {
        return {name | (isItem ? ElementRecord::itemBit : 0), current_.number, 0, 0};
    }

    // An element under the one that is open, or the top-level one. False when its parent can't have it.
    // Room for it has been made.
    bool addElement(uint32_t name, bool isItem) {
        const bool isTop = scanned_.elements.isEmpty();
        const Children kind = isItem ? itemChildren : namedChildren;
        if ((current_.children & kind) == 0 && !isTop) {
            return false;
        }
        current_.children = isTop ? noChildren : kind;
        scanned_.elements.pushUnchecked(recordOf(name, isItem));
        return true;
    }

    // The element added last is open until its end tag comes.
    [[gnu::always_inline]] ScanResult open(const char *name, uint32_t length, bool isItem) {
        if (!enclosing_.push(current_)) {
            return ScanResult::noMemory;
        }
        current_ = {static_cast<uint32_t>(scanned_.elements.size()), offsetOf(name), length,
                    isItem ? noChildren : anyChildren};
        textOwner_ = TextOwner::openElement;
        return ScanResult::accepted;
    }

    // An element has ended with a tag that ends here.
    [[gnu::always_inline]] void close(const char *tagEnd, TextOwner textOwner) {
        tagEnd_ = tagEnd;
        textOwner_ = textOwner;
        if (current_.number == 0) [[unlikely]] {
            isComplete_ = true;
            tagEnd_ = end_; // so that no tag may follow
        }
    }

    // A tag as it is mostly written: one space before each attribute and none elsewhere. What is not
    // so is left to scanStartTagGeneric, from the tag's beginning.
    [[gnu::noinline]] ScanResult scanStartTagWithAttributes(const char *name,
                                                            const PredictedName &known) {
        const PredictedName element = known; // its place may be taken by another string
        const size_t before = scanned_.attributes.size();
        const char *position = name + element.length;
        while (*position == ' ') {
            const ScanResult result = scanAttribute(position, before);
            if (result == ScanResult::noMemory) {
                return result;
            }
            if (result == ScanResult::refused) {
                break;
            }
        }
        // To the plain road the first slash in a tag that ends with one is its end.
        const bool isEmpty =
            position[0] == '/' && position[1] == '>' && std::find(name, position, '/') == position;
        if (*position != '>' && !isEmpty) {
            scanned_.attributes.shrink(before);
            return scanStartTagGeneric(name);
        }
        return endStartTag(position + (isEmpty ? 2 : 1), {name, element.length}, element.offset,
                           element.isItem, isEmpty);
    }

    // The attribute behind this space; `position` is moved behind its value. Declined, without having
    // moved, when it's written in any other than the plainest way.
    ScanResult scanAttribute(const char *&position, size_t firstOfTag) {
        const char *name = position + 1;
        if (name > safeReadLimit_) {
            return ScanResult::refused;
        }
        const PredictedName *known = predictor_.predictNext(load16(name));
        if (known == nullptr) {
            const size_t length = lengthOf(name, nameByte);
            if (length == 0 || length > NamePredictor::maximumLength || name[length] != '=') {
                return ScanResult::refused;
            }
            known = predictor_.take(name, length);
            if (known == nullptr) {
                return ScanResult::noMemory;
            }
        }
        const char *value = name + known->length + 2;
        if (known->behind != '=' || value[-1] != '"' || value > safeReadLimit_) {
            return ScanResult::refused;
        }
        AttributeRecord attribute = {numberOfNext(), known->offset, AttributeRecord::noValue};
        const size_t length = lengthOf(value, attrValueByte);
        if (value[length] != '"' || isRepeated(attribute.name, firstOfTag)) {
            return ScanResult::refused;
        }
        if (length > 0) {
            size_t place = 0;
            if (!names_.intern({value, length}, place)) {
                return ScanResult::noMemory;
            }
            attribute.value = static_cast<uint32_t>(place);
        }
        if (!scanned_.attributes.push(attribute)) {
            return ScanResult::noMemory;
        }
        position = value + length + 1;
        return ScanResult::accepted;
    }

    // Few names are compared one by one; a tag of many attributes is found to be out of the ordinary.
    bool isRepeated(uint32_t name, size_t firstOfTag) const {
        constexpr size_t many = 64;
        const size_t count = scanned_.attributes.size();
        for (size_t i = firstOfTag; i < count; ++i) {
            if (scanned_.attributes[i].name == name) {
                return true;
            }
        }
        return count - firstOfTag == many;
    }

    // Any tag, with the reader that the plain road uses.
    [[gnu::noinline]] ScanResult scanStartTagGeneric(const char *tag) {
        const auto *close =
            static_cast<const char *>(std::memchr(tag, '>', static_cast<size_t>(end_ - tag)));
        if (close == nullptr || close == tag) {
            return ScanResult::refused;
        }
        const bool isEmpty = close[-1] == '/';
        TagReader reader(tag, isEmpty ? '/' : '>');
        std::string_view name;
        size_t offset = 0;
        if (!reader.readName(name) || name.empty() ||
            !std::all_of(name.begin(), name.end(), [](char c) { return isNameChar(c); })) {
            return ScanResult::refused;
        }
        if (!names_.intern(name, offset)) {
            return ScanResult::noMemory;
        }
        const ScanResult result = readAttributes(reader);
        if (result != ScanResult::accepted) {
            return result;
        }
        return endStartTag(close + 1, name, static_cast<uint32_t>(offset), name == itemName,
                           isEmpty);
    }

    ScanResult readAttributes(TagReader &reader) {
        for (TagAttribute attribute; reader.readAttribute(attribute);) {
            size_t value = AttributeRecord::noValue;
            if (!names_.intern(attribute.name) ||
                (!attribute.value.empty() && !names_.intern(attribute.value, value))) {
                return ScanResult::noMemory;
            }
            bool isRepeated = false;
            const size_t name = names_.findInTag(attribute.name, numberOfNext(), isRepeated);
            if (isRepeated) {
                return ScanResult::refused;
            }
            if (!scanned_.attributes.push(
                    {numberOfNext(), static_cast<uint32_t>(name), static_cast<uint32_t>(value)})) {
                return ScanResult::noMemory;
            }
        }
        return reader.fault() == TagFault::none ? ScanResult::accepted : ScanResult::refused;
    }

    ScanResult endStartTag(const char *tagEnd, std::string_view name, uint32_t offset, bool isItem,
                           bool isEmpty) {
        if (!addElement(offset, isItem)) {
            return ScanResult::refused;
        }
        if (isEmpty) {
            close(tagEnd, TextOwner::emptyElement);
            return ScanResult::accepted;
        }
        tagEnd_ = tagEnd;
        return open(name.data(), static_cast<uint32_t>(name.size()), isItem);
    }

    static size_t lengthOf(const char *string, ByteClass byteClass) {
        const char *end = string;
        while (isOf(*end, byteClass)) {
            ++end;
        }
        return static_cast<size_t>(end - string);
    }

    bool equalPrefix(const char *a, const char *b, size_t length) const {
        if (length > sizeof(Block16) || a > safeReadLimit_) {
            return std::memcmp(a, b, length) == 0;
        }
        const Block16 x = load16(a);
        const Block16 y = load16(b);
        const Block16 &mask = masks[length];
        return (((x.low ^ y.low) & mask.low) | ((x.high ^ y.high) & mask.high)) == 0;
    }

    uint32_t numberOfNext() const { return static_cast<uint32_t>(scanned_.elements.size() + 1); }
    uint32_t offsetOf(const char *position) const {
        return static_cast<uint32_t>(position - body_);
    }

    const char *body_;
    const char *end_;
    const char *safeReadLimit_;
    StringTable &names_;
    ElementRecords &scanned_;
    NamePredictor predictor_;
    OpenElement current_ = {0, 0, 0, noChildren};
    Array<OpenElement> enclosing_;
    IndexState state_;
    const char *tagEnd_;    // behind the '>' of the tag taken last
    const char *ampersand_; // from the place last looked at, there is none before this
    const char *indexedEnd_;
    TextOwner textOwner_ = TextOwner::nothing;
    bool isComplete_ = false;
    uint16_t offsets_[chunkSize + indexPadding]; // of the '<' in the stretch
};

// A scanner has some 40 KiB, more than a small thread's stack can give.
struct DropScanner {
    void operator()(Scanner *scanner) const {
        scanner->~Scanner();
        std::free(scanner);
    }
};

} // namespace

ScanResult scanBody(std::string_view body, Indexer indexMarkup, StringTable &names,
                    ElementRecords &scanned) {
    // Sizes in the records are 31 bits wide, and a name table may be somewhat larger than its text.
    constexpr size_t largest = (size_t{1} << 31) - 1;
    if (body.size() > largest) {
        return ScanResult::refused;
    }
    if (!names.reserve(initialStringTableSize)) {
        return ScanResult::noMemory;
    }
    void *place = std::malloc(sizeof(Scanner));
    if (place == nullptr) {
        return ScanResult::noMemory;
    }
    const std::unique_ptr<Scanner, DropScanner> scanner(new (place) Scanner(body, names, scanned));
    return scanner->run(indexMarkup);
}

} // namespace velda::xmlp
