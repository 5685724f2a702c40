// The scanner. Its grammar, in which `text` is what stands between two tags:
//
//   body     = text element text | text "<" rest         (rest: no further markup, no '/' first)
//   element  = "<" tag "/>" | "<" tag ">" content "</" name ">"
//   content  = text | text element { text element } text
//   tag      = name { space } { attribute }              (TagReader defines these)
//
// An end tag repeats the name of the start tag, which then consists of name characters; an empty element
// may bear any name that TagReader reads. A '<' or '>' in a text is refused, unless a multi-byte lead
// byte hides it. The second form of a body is a tag that never ends: it makes a tree without elements.
//
// There are two ways through a tag. The fast one compares sixteen bytes at a time with the names that
// the predictor expects, and relies on this:
//
//   - the chunk hides no markup, and what is read belongs to the chunk, so that a '>' after a name is
//     the tag's end;
//   - there are sixteen bytes to read after the "<" or "</";
//   - the tag is not the chunk's last, so that there is a next one to look at.
//
// Whatever it doesn't meet in its plainest form goes the general way, from the tag's beginning: a name of
// more than 15 bytes, white space other than one space before each attribute, 64 attributes and more, a
// '/' where no end of the tag is. There TagReader reads the tag, and its end is found by single steps,
// as the steps find it.
//
// Invariants between two tags: tagEnd_ is where the last tag ended; textOwner_ says whose text begins
// there; all elements that have begun have their record, those that are open are in open_; every '<'
// before tagEnd_ began a tag. So when in the end there were as many '>' as '<', none stood in a text.

#include "xmlp/parse/scanner.h"

#include "xmlp/base/chars.h"
#include "xmlp/base/markup.h"
#include "xmlp/parse/name_predictor.h"
#include "xmlp/parse/open_elements.h"
#include "xmlp/parse/tag_reader.h"
#include "xmlp/tree/node_type.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <span>

namespace velda::xmlp {
namespace {

// Who owns the text after the previous tag.
enum class TextOwner { nobody, openElement, emptyElement };

class Scanner {
public:
    // cppcheck-suppress uninitMemberVar ; of offsets_ as much is read as was written
    Scanner(std::string_view body, StringTable &names, ElementRecords &records)
        : body_(body.data()), end_(body.data() + body.size()), names_(names), records_(records),
          predictor_(names), tagEnd_(body_), ampersand_(body_), indexedEnd_(body_) {
        safeReadLimit_ = body.size() > padding ? end_ - padding : body_;
    }

    ScanResult run(Indexer indexer) {
        const auto size = static_cast<size_t>(end_ - body_);
        size_t tags = 0;
        for (size_t start = 0; start < size; start += chunkSize) {
            const char *chunk = body_ + start;
            const size_t length = std::min(chunkSize, size - start);
            state_.hidesMarkup = false;
            const size_t count = indexer(chunk, length, offsets_, state_);
            indexedEnd_ = chunk + length;
            if (!records_.elements.reserveMore(count)) {
                return ScanResult::noMemory;
            }
            const ScanResult result = scanTags(chunk, {offsets_, count});
            if (result != ScanResult::accepted) {
                return result;
            }
            if (start == 0 && !reserveForWhole(size)) {
                return ScanResult::noMemory;
            }
            tags += count;
        }
        const size_t closing = isUnclosed_ ? tags - 1 : tags;
        return isComplete_ && state_.closing == closing ? ScanResult::accepted
                                                        : ScanResult::refused;
    }

private:
    // A tag that begins so many bytes before an end has sixteen bytes to read after its "<" or "</".
    static constexpr size_t padding = sizeof(Block16) + 2;

    // Capacity for as many records as there will be if a text of this size goes on as it began: with its
    // first chunk, and the rest of a tag that began there, which may be most of the text. But not for
    // more than one would expect, as that may be its densest part.
    bool reserveForWhole(size_t size) {
        constexpr size_t textBytesPerRecord = 16;
        const size_t most = size / textBytesPerRecord;
        const size_t more = size / std::max(chunkSize, static_cast<size_t>(tagEnd_ - body_));
        return records_.elements.reserveMore(std::min(more * records_.elements.size(), most)) &&
               records_.attributes.reserveMore(std::min(more * records_.attributes.size(), most));
    }

    ScanResult scanTags(const char *chunk, std::span<const uint16_t> offsets) {
        size_t fast = offsets.empty() || state_.hidesMarkup ? 0 : offsets.size() - 1;
        while (fast > 0 && chunk + offsets[fast] + padding >= indexedEnd_) {
            --fast;
        }
        ScanResult result = ScanResult::accepted;
        size_t i = 0;
        while (i < fast && result == ScanResult::accepted) {
            const char *tag = chunk + offsets[i];
            const char *next = chunk + offsets[++i];
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
            if (name == nullptr || !open_.addChild(name->kind)) [[unlikely]] {
                result = scanStartTagSlow(tag + 1, name);
                continue;
            }
            tagEnd_ = tag + name->length + 2;
            ElementRecord element = recordOf(name->offset, name->isItem);
            const bool isLeaf = next[1] == '/' && name->matches(load16(next + 2));
            if (isLeaf) {
                result = scanText(next, element);
                records_.elements.pushUnchecked(element);
                tagEnd_ = next + name->length + 3;
                textOwner_ = TextOwner::nobody;
                ++i;
            } else {
                records_.elements.pushUnchecked(element);
                result = open(tag + 1, name->length, name->isItem);
            }
        }
        for (; i < offsets.size() && result == ScanResult::accepted; ++i) {
            const char *tag = chunk + offsets[i];
            if (tag < tagEnd_) {
                return ScanResult::refused;
            }
            const bool isEndTag = end_ - tag > 1 && tag[1] == '/';
            result = isEndTag ? scanEndTagGeneric(tag) : scanStartTagGeneric(tag + 1);
        }
        return result;
    }

    // Null for a name that is not a short one followed by a '>' or a space, or for want of memory.
    [[gnu::noinline]] const PredictedName *findName(const char *name) {
        const size_t length = lengthOf(name, nameByte);
        const bool isShort = length > 0 && length <= NamePredictor::maximumLength;
        return isShort && (name[length] == '>' || name[length] == ' ')
                   ? predictor_.add(name, length)
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
        if (textOwner_ != TextOwner::nobody && tag != tagEnd_) {
            ElementRecord dropped = {};
            const bool isKept = textOwner_ == TextOwner::openElement;
            ElementRecord &element =
                isKept ? records_.elements[open_.innermost().number - 1] : dropped;
            if (scanText(tag, element) != ScanResult::accepted && isKept) {
                return ScanResult::refused;
            }
        }
        const char *name = tag + 2;
        const uint32_t length = open_.innermost().nameLength;
        if (open_.isOutside() || static_cast<size_t>(end_ - name) <= length ||
            name[length] != '>' || !equalPrefix(name, body_ + open_.innermost().name, length)) {
            return ScanResult::refused;
        }
        open_.close();
        close(name + length + 1, TextOwner::nobody);
        return ScanResult::accepted;
    }

    // Where the '>' right after the name may be hidden.
    [[gnu::noinline]] ScanResult scanEndTagGeneric(const char *tag) {
        const char *close = findMarkup(tag + 1, end_);
        return close == tag + 2 + open_.innermost().nameLength ? scanEndTag(tag)
                                                               : ScanResult::refused;
    }

    // The text from the last tag to this end. The one after an empty element is counted as the steps
    // count it, and kept by no one. Refused when its references can't be decoded.
    [[gnu::always_inline]] ScanResult scanText(const char *end, ElementRecord &element) {
        const auto size = static_cast<uint32_t>(end - tagEnd_);
        element.value = offsetOf(tagEnd_);
        element.valueSize = size;
        if (ampersand_ < end) [[unlikely]] {
            return measureReferences(end, element);
        }
        records_.valueBytes += size;
        return ScanResult::accepted;
    }

    [[gnu::noinline]] ScanResult measureReferences(const char *end, ElementRecord &element) {
        const char *begin = std::max(ampersand_, tagEnd_);
        const void *found = std::memchr(begin, '&', static_cast<size_t>(indexedEnd_ - begin));
        ampersand_ = found != nullptr ? static_cast<const char *>(found) : indexedEnd_;
        uint32_t size = element.valueSize;
        if (ampersand_ < end) {
            element.name |= ElementRecord::escapedBit;
            size = xmlp_unTransStrLen(tagEnd_, size);
        }
        records_.valueBytes += size;
        return size != 0 || element.valueSize == 0 ? ScanResult::accepted : ScanResult::refused;
    }

    ElementRecord recordOf(uint32_t name, bool isItem) const {
        return {name | (isItem ? ElementRecord::itemBit : 0), open_.innermost().number, 0, 0};
    }

    // The element added last is open until its end tag comes.
    [[gnu::always_inline]] ScanResult open(const char *name, uint32_t length, bool isItem) {
        if (!open_.open({static_cast<uint32_t>(records_.elements.size()), offsetOf(name), length,
                         isItem ? noChildren : anyChildren})) {
            return ScanResult::noMemory;
        }
        textOwner_ = TextOwner::openElement;
        return ScanResult::accepted;
    }

    // An element has ended with a tag that ends here.
    [[gnu::always_inline]] void close(const char *tagEnd, TextOwner textOwner) {
        tagEnd_ = tagEnd;
        textOwner_ = textOwner;
        if (open_.isOutside()) [[unlikely]] {
            isComplete_ = true;
            tagEnd_ = end_; // so that no tag may follow
        }
    }

    // A tag as it is mostly written: one space before each attribute and none elsewhere. What is not
    // so is left to scanStartTagGeneric, from the tag's beginning.
    [[gnu::noinline]] ScanResult scanStartTagWithAttributes(const char *name,
                                                            const PredictedName &known) {
        const PredictedName element = known; // its place may be taken by another string
        const size_t before = records_.attributes.size();
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
        // To the steps the first slash in a tag that ends with one is its end.
        const bool isEmpty =
            position[0] == '/' && position[1] == '>' && std::find(name, position, '/') == position;
        if (*position != '>' && !isEmpty) {
            records_.attributes.shrink(before);
            return scanStartTagGeneric(name);
        }
        return endStartTag(position + (isEmpty ? 2 : 1), {name, element.length}, element.offset,
                           element.isItem, isEmpty);
    }

    // The attribute after this space; `position` is moved past its value. Refused, without having
    // moved, when it's written in any other than the plainest way: that is for the general way.
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
            known = predictor_.add(name, length);
            if (known == nullptr) {
                return ScanResult::noMemory;
            }
        }
        const char *value = name + known->length + 2;
        if (known->terminator != '=' || value[-1] != '"' || value > safeReadLimit_) {
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
        if (!records_.attributes.push(attribute)) {
            return ScanResult::noMemory;
        }
        position = value + length + 1;
        return ScanResult::accepted;
    }

    // Few names are compared one by one; a tag of many attributes is found to be out of the ordinary.
    bool isRepeated(uint32_t name, size_t firstOfTag) const {
        constexpr size_t many = 64;
        const size_t count = records_.attributes.size();
        for (size_t i = firstOfTag; i < count; ++i) {
            if (records_.attributes[i].name == name) {
                return true;
            }
        }
        return count - firstOfTag == many;
    }

    // Any tag, with the reader that the steps use.
    [[gnu::noinline]] ScanResult scanStartTagGeneric(const char *tag) {
        const char *close = findMarkup(tag, end_);
        if (close == end_) {
            return acceptUnclosed();
        }
        if (*close == '<') {
            return ScanResult::refused;
        }
        const bool isEmpty = close[-1] == '/';
        TagReader reader(tag, isEmpty ? '/' : '>');
        std::string_view name;
        size_t offset = 0;
        if (!reader.readName(name) || !(isEmpty || canBeRepeated(name))) {
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

    // A tag without an end: that is all that there may be.
    ScanResult acceptUnclosed() {
        isUnclosed_ = records_.elements.isEmpty();
        isComplete_ = isUnclosed_;
        tagEnd_ = end_;
        return isUnclosed_ ? ScanResult::accepted : ScanResult::refused;
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
            if (!records_.attributes.push(
                    {numberOfNext(), static_cast<uint32_t>(name), static_cast<uint32_t>(value)})) {
                return ScanResult::noMemory;
            }
        }
        return reader.fault() == TagFault::none ? ScanResult::accepted : ScanResult::refused;
    }

    ScanResult endStartTag(const char *tagEnd, std::string_view name, uint32_t offset, bool isItem,
                           bool isEmpty) {
        const bool canStandHere = open_.isOutside()
                                      ? open_.addTopLevel()
                                      : open_.addChild(isItem ? itemChildren : namedChildren);
        if (!canStandHere) {
            return ScanResult::refused;
        }
        records_.elements.pushUnchecked(recordOf(offset, isItem)); // reserved for the whole chunk
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

    uint32_t numberOfNext() const { return static_cast<uint32_t>(records_.elements.size() + 1); }
    uint32_t offsetOf(const char *position) const {
        return static_cast<uint32_t>(position - body_);
    }

    const char *body_;
    const char *end_;
    const char *safeReadLimit_;
    StringTable &names_;
    ElementRecords &records_;
    NamePredictor predictor_;
    OpenElements open_;
    IndexState state_;
    const char *tagEnd_;    // after the '>' of the previous tag
    const char *ampersand_; // there is none between the place last looked at and this
    const char *indexedEnd_;
    TextOwner textOwner_ = TextOwner::nobody;
    bool isComplete_ = false;                    // the top-level element has ended
    bool isUnclosed_ = false;                    // the first tag never ends
    uint16_t offsets_[chunkSize + indexPadding]; // of the '<' in the chunk
};

// A scanner has some 40 KiB, more than a small thread's stack can give.
struct DropScanner {
    void operator()(Scanner *scanner) const {
        scanner->~Scanner();
        std::free(scanner);
    }
};

} // namespace

ScanResult scanBody(std::string_view body, Indexer indexer, StringTable &names,
                    ElementRecords &records) {
    if (!names.reserve(initialStringTableSize)) {
        return ScanResult::noMemory;
    }
    void *place = std::malloc(sizeof(Scanner));
    if (place == nullptr) {
        return ScanResult::noMemory;
    }
    const std::unique_ptr<Scanner, DropScanner> scanner(new (place) Scanner(body, names, records));
    const ScanResult result = scanner->run(indexer);
    // Short names by the hundred million take more than they do in the text.
    const bool isTooLarge = names.usedBytes() > UINT32_MAX;
    return result == ScanResult::accepted && isTooLarge ? ScanResult::noMemory : result;
}

} // namespace velda::xmlp
