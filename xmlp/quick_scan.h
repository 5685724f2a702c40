// The quick road of a static parse: one pass that checks, interns and records every element.
//
// It takes sound texts only. Whatever it does not like, a fault, a tag out of the ordinary or a '<'
// that a scan by character steps might pass over, it declines without a word, and the plain road
// (check, count, build) goes over the text from the start and says what there is to say. On what it
// takes it must find exactly what the plain road finds.
#pragma once

#include "xmlp/array.h"
#include "xmlp/markup_index.h"
#include "xmlp/name_table.h"

#include <array>
#include <string_view>

namespace velda::xmlp {

// One element. Offsets of texts are from the start of the body, those of names in the name table.
struct ElementRecord {
    uint32_t name;
    uint32_t parent : 31; // the number of its record plus 1; 0 for the document node
    uint32_t isItem : 1;
    uint32_t text;
    uint32_t textSize;
    uint32_t valueSize; // of the text with its references decoded
};

struct AttributeRecord {
    static constexpr uint32_t noValue = UINT32_MAX;

    uint32_t element; // the number of its element's record
    uint32_t name;
    uint32_t value;
};

class QuickScan {
public:
    enum class Result { taken, declined, noMemory };

    QuickScan(std::string_view body, NameTable &names) : body_(body), names_(names) {}

    Result run(IndexMarkup indexMarkup);

    const Array<ElementRecord> &elements() const { return elements_; }
    const Array<AttributeRecord> &attributes() const { return attributes_; }
    size_t valueBytes() const { return valueBytes_; }

private:
    // The start of a name as it stands in a text, long enough for most.
    struct Words {
        uint64_t low;
        uint64_t high;
    };

    // A name met before.
    struct KnownName {
        Words words; // the name and the '>' behind it
        Words mask;  // the bytes of `words` that count
        uint32_t length;
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
        bool isItem;
    };

    enum class Event { none, startTag, emptyElement, endTag };

    static constexpr size_t knownNames = 256;
    static constexpr size_t wordsSize = sizeof(Words);

    Result takeTag(const char *tag);
    Result takeEndTag(const char *tag);
    Result takeStartTag(const char *tag);
    Result takeTagWithAttributes(const char *tag);
    Result addElement(const char *name, uint32_t length, uint32_t offset, bool isItem,
                      bool isEmpty);
    Result takeValue(const char *end);
    bool takeParent(bool isItem);
    KnownName *knowName(const char *name, size_t length);

    Words wordsAt(const char *position) const;
    static Words maskOf(size_t length);
    uint32_t offsetOf(const char *position) const {
        return static_cast<uint32_t>(position - body_.data());
    }
    const char *bodyEnd() const { return body_.data() + body_.size(); }

    std::string_view body_;
    NameTable &names_;
    Array<ElementRecord> elements_;
    Array<AttributeRecord> attributes_;
    Array<OpenElement> open_;
    size_t valueBytes_ = 0;
    MarkupSummary summary_;

    const char *tagEnd_ = nullptr; // behind the '>' of the tag taken last
    Event last_ = Event::none;
    size_t tags_ = 0;
    Children topLevel_ = Children::none;
    uint32_t lastName_ = 0;
    std::array<KnownName, knownNames> known_ = {};
};

} // namespace velda::xmlp
