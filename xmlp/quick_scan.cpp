#include "xmlp/quick_scan.h"

#include "xmlp/chars.h"
#include "xmlp/tag.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

namespace velda::xmlp {
namespace {

constexpr std::string_view itemName = "item";

// The start of a name as it stands in a text, long enough for most.
struct Words {
    uint64_t low;
    uint64_t high;
};

constexpr size_t wordsSize = sizeof(Words);

// By length, the bytes of two words that a name of that length takes.
constexpr std::array<Words, wordsSize + 1> makeMasks() {
    std::array<Words, wordsSize + 1> masks = {};
    for (size_t length = 0; length <= wordsSize; ++length) {
        std::array<uint8_t, wordsSize> bytes = {};
        std::fill_n(bytes.begin(), length, uint8_t{0xFF});
        masks[length] = std::bit_cast<Words>(bytes);
    }
    return masks;
}

constexpr std::array<Words, wordsSize + 1> masks = makeMasks();

bool areEqual(const Words &a, const Words &b, const Words &mask) {
    return (((a.low ^ b.low) & mask.low) | ((a.high ^ b.high) & mask.high)) == 0;
}

// A name met before, of fewer than sixteen bytes.
struct KnownName {
    Words words; // with the '>' behind it
    Words mask;
    uint32_t length; // 0 in a free place
    uint32_t offset; // in the name table
    uint32_t next;   // the place of the name that came after it the last time
    uint32_t isItem;
};

enum class Children : uint32_t { none, named, items };

struct OpenElement {
    uint32_t element;
    uint32_t name; // offset in the body
    uint32_t nameLength;
    Children children;
    uint32_t isItem;
};

enum class Event { none, startTag, emptyElement, endTag };

class Scanner {
public:
    Scanner(std::string_view body, NameTable &names, ScannedText &scanned)
        : body_(body.data()), end_(body.data() + body.size()), names_(names), scanned_(scanned),
          tagEnd_(body.data()) {}

    ScanResult run(IndexMarkup indexMarkup) {
        // Most texts have fewer elements than this makes room for.
        constexpr size_t textBytesPerElement = 20;
        const auto size = static_cast<size_t>(end_ - body_);
        if (!scanned_.elements.reserve(size / textBytesPerElement + 1)) {
            return ScanResult::noMemory;
        }
        uint16_t offsets[stretchSize];
        for (size_t start = 0; start < size; start += stretchSize) {
            const char *stretch = body_ + start;
            const size_t count =
                indexMarkup(stretch, std::min(stretchSize, size - start), offsets, summary_);
            if (summary_.mayHideMarkup) {
                return ScanResult::declined;
            }
            for (size_t i = 0; i < count; ++i) {
                const ScanResult result = takeTag(stretch + offsets[i]);
                if (result != ScanResult::taken) [[unlikely]] {
                    return result;
                }
            }
            tags_ += count;
        }
        // Every tag has been seen to end in its own '>', so any more of them stand in texts.
        const bool isSound = open_.isEmpty() && tags_ > 0 && summary_.closing == tags_;
        return isSound ? ScanResult::taken : ScanResult::declined;
    }

private:
    [[gnu::always_inline]] ScanResult takeTag(const char *tag) {
        if (tag < tagEnd_ || tag + 1 == end_) {
            return ScanResult::declined;
        }
        return tag[1] == '/' ? takeEndTag(tag) : takeStartTag(tag + 1);
    }

    [[gnu::always_inline]] ScanResult takeEndTag(const char *tag) {
        if (open_.isEmpty()) {
            return ScanResult::declined;
        }
        if (last_ != Event::endTag && tag != tagEnd_ && !takeText(tag)) {
            return ScanResult::declined;
        }
        const OpenElement &element = open_.last();
        const char *name = tag + 2;
        const char *startName = body_ + element.name;
        const uint32_t length = element.nameLength;
        if (static_cast<size_t>(end_ - name) <= length || name[length] != '>') {
            return ScanResult::declined;
        }
        const bool matches = length <= wordsSize
                                 ? areEqual(wordsAt(name), wordsAt(startName), masks[length])
                                 : std::memcmp(name, startName, length) == 0;
        if (!matches) {
            return ScanResult::declined;
        }
        open_.pop();
        tagEnd_ = name + length + 1;
        last_ = Event::endTag;
        return ScanResult::taken;
    }

    // The text between a start tag and its end tag is the element's; behind an empty element there is
    // a text too, which is counted as the plain road counts it and kept by no one.
    [[gnu::always_inline]] bool takeText(const char *end) {
        const auto size = static_cast<uint32_t>(end - tagEnd_);
        uint32_t valueSize = size;
        if (summary_.hasAmpersand && std::memchr(tagEnd_, '&', size) != nullptr) {
            valueSize = xmlp_unTransStrLen(tagEnd_, size);
        }
        scanned_.valueBytes += valueSize;
        if (last_ == Event::startTag) {
            ElementRecord &element = scanned_.elements[open_.last().element];
            element.text = offsetOf(tagEnd_);
            element.textSize = size;
            element.valueSize = valueSize;
            return valueSize != 0;
        }
        return true;
    }

    [[gnu::always_inline]] ScanResult takeStartTag(const char *tag) {
        const Words words = wordsAt(tag);
        const KnownName *name = &known_[known_[lastName_].next];
        if (name->length == 0 || !areEqual(words, name->words, name->mask)) [[unlikely]] {
            const char *nameEnd = tag;
            while (nameEnd < end_ && isOf(*nameEnd, nameByte)) {
                ++nameEnd;
            }
            const auto length = static_cast<size_t>(nameEnd - tag);
            if (nameEnd == end_ || length == 0) {
                return ScanResult::declined;
            }
            if (*nameEnd != '>' || length >= wordsSize) {
                return takeAnyStartTag(tag);
            }
            name = knowName(tag, length);
            if (name == nullptr) {
                return ScanResult::noMemory;
            }
        }
        lastName_ = static_cast<uint32_t>(name - known_.data());
        tagEnd_ = tag + name->length + 1;
        return addElement(tag, name->length, name->offset, name->isItem, false);
    }

    // A name of fewer than sixteen bytes with a '>' behind it.
    [[gnu::noinline]] const KnownName *knowName(const char *name, size_t length) {
        constexpr uint64_t multiplier = 0x9E3779B97F4A7C15;
        const Words words = wordsAt(name);
        const Words &mask = masks[length + 1];
        const Words masked = {words.low & mask.low, words.high & mask.high};
        const size_t place = ((masked.low ^ masked.high * 31) * multiplier) >> 56;
        static_assert(std::tuple_size_v<decltype(known_)> == 1 << (64 - 56));
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
        known_[lastName_].next = static_cast<uint32_t>(place);
        return &known;
    }

    // Any tag, with the reader that the plain road uses.
    [[gnu::noinline]] ScanResult takeAnyStartTag(const char *tag) {
        const auto *close =
            static_cast<const char *>(std::memchr(tag, '>', static_cast<size_t>(end_ - tag)));
        if (close == nullptr || close == tag) {
            return ScanResult::declined;
        }
        const bool isEmpty = close[-1] == '/';
        TagReader reader(tag, isEmpty ? '/' : '>');
        std::string_view name;
        size_t offset = 0;
        if (!reader.readName(name) || name.empty() ||
            !std::all_of(name.begin(), name.end(), [](char c) { return isOf(c, nameByte); })) {
            return ScanResult::declined;
        }
        if (!names_.intern(name, offset)) {
            return ScanResult::noMemory;
        }
        const ScanResult result = takeAttributes(reader);
        if (result != ScanResult::taken) {
            return result;
        }
        tagEnd_ = close + 1;
        return addElement(tag, static_cast<uint32_t>(name.size()), static_cast<uint32_t>(offset),
                          name == itemName ? 1 : 0, isEmpty);
    }

    ScanResult takeAttributes(TagReader &reader) {
        const auto element = static_cast<uint32_t>(scanned_.elements.size());
        for (TagAttribute attribute; reader.readAttribute(attribute);) {
            size_t value = AttributeRecord::noValue;
            if (!names_.intern(attribute.name) ||
                (!attribute.value.empty() && !names_.intern(attribute.value, value))) {
                return ScanResult::noMemory;
            }
            bool isRepeated = false;
            const size_t name = names_.findInTag(attribute.name, element + 1, isRepeated);
            if (isRepeated) {
                return ScanResult::declined;
            }
            if (!scanned_.attributes.push(
                    {element, static_cast<uint32_t>(name), static_cast<uint32_t>(value)})) {
                return ScanResult::noMemory;
            }
        }
        return reader.fault() == TagFault::none ? ScanResult::taken : ScanResult::declined;
    }

    [[gnu::always_inline]] ScanResult addElement(const char *name, uint32_t length, uint32_t offset,
                                                 uint32_t isItem, bool isEmpty) {
        uint32_t parent = 0;
        if (open_.isEmpty()) {
            if (!scanned_.elements.isEmpty()) { // there is one top-level element
                return ScanResult::declined;
            }
        } else {
            OpenElement &element = open_.last();
            const Children wanted = isItem != 0 ? Children::items : Children::named;
            if (element.isItem != 0 ||
                (element.children != wanted && element.children != Children::none)) {
                return ScanResult::declined;
            }
            element.children = wanted;
            parent = element.element + 1;
        }
        const auto element = static_cast<uint32_t>(scanned_.elements.size());
        if (!scanned_.elements.push({offset, parent & 0x7FFFFFFFU, isItem & 1U, 0, 0, 0})) {
            return ScanResult::noMemory;
        }
        last_ = isEmpty ? Event::emptyElement : Event::startTag;
        if (!isEmpty && !open_.push({element, offsetOf(name), length, Children::none, isItem})) {
            return ScanResult::noMemory;
        }
        return ScanResult::taken;
    }

    [[gnu::always_inline]] Words wordsAt(const char *position) const {
        Words words = {};
        if (static_cast<size_t>(end_ - position) >= wordsSize) [[likely]] {
            std::memcpy(&words, position, wordsSize);
        } else {
            std::memcpy(&words, position, static_cast<size_t>(end_ - position));
        }
        return words;
    }

    uint32_t offsetOf(const char *position) const {
        return static_cast<uint32_t>(position - body_);
    }

    const char *body_;
    const char *end_;
    NameTable &names_;
    ScannedText &scanned_;
    Array<OpenElement> open_;
    MarkupSummary summary_;
    const char *tagEnd_; // behind the '>' of the tag taken last
    Event last_ = Event::none;
    size_t tags_ = 0;
    uint32_t lastName_ = 0;
    std::array<KnownName, 256> known_ = {};
};

} // namespace

ScanResult quickScan(std::string_view body, IndexMarkup indexMarkup, NameTable &names,
                     ScannedText &scanned) {
    return Scanner(body, names, scanned).run(indexMarkup);
}

} // namespace velda::xmlp
