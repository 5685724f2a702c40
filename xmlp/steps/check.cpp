// The structure check that every text passes before anything is made of it.
//
// Elements nest as deep as the text likes, so the check keeps its own stack of open start tags
// instead of recursing. It still prints what a recursive check would: the function that finds the
// fault prints its line, then every enclosing element adds one.

#include "xmlp/steps/check.h"

#include "xmlp/base/chars.h"
#include "xmlp/base/markup.h"
#include "xmlp/base/memory.h"
#include "xmlp/parse/tag_reader.h"
#include "xmlp/xmlp_internal.h"

#include <cstring>

namespace velda::xmlp {
namespace {

// The start tags of the elements whose end tag is still to come. Those inside the outermost one are
// kept as offsets from the beginning of its content; shallow documents stay in the fixed part.
class OpenTags {
public:
    OpenTags(const char *outermost, const char *content)
        : outermost_(outermost), content_(content) {}

    const char *innermost() const {
        return inner_ == 0 ? outermost_ : content_ + offsets()[inner_ - 1];
    }
    // How many elements enclose the innermost one.
    size_t enclosing() const { return inner_; }
    void pop() { --inner_; }

    bool push(const char *tag) {
        if (inner_ == capacity_ && !grow()) {
            return false;
        }
        offsets()[inner_++] = static_cast<uint32_t>(tag - content_);
        return true;
    }

private:
    static constexpr size_t fixedDepth = 64;

    uint32_t *offsets() { return heap_ != nullptr ? heap_.get() : fixed_; }
    const uint32_t *offsets() const { return heap_ != nullptr ? heap_.get() : fixed_; }

    bool grow() {
        const auto bytes = CheckedSize(0).add(capacity_, 2 * sizeof(uint32_t)).bytes();
        auto larger = bytes ? allocate<uint32_t>(*bytes) : nullptr;
        if (larger == nullptr) {
            return false;
        }
        std::memcpy(larger.get(), offsets(), inner_ * sizeof(uint32_t));
        heap_ = std::move(larger);
        capacity_ *= 2;
        return true;
    }

    const char *outermost_;
    const char *content_;
    size_t inner_ = 0;
    size_t capacity_ = fixedDepth;
    uint32_t fixed_[fixedDepth] = {};
    Owned<uint32_t> heap_;
};

enum class EndTag { matches, matchesWithAttributes, differs, badByte };

// Holds an end tag's name against the text of the start tag, whose attributes are not looked at.
EndTag matchEndTag(const char *name, const char *nameEnd, const char *startTag) {
    for (; name < nameEnd; ++name, ++startTag) {
        if (*name != *startTag) {
            return EndTag::differs;
        }
        if (!isNameChar(*name)) {
            return EndTag::badByte;
        }
    }
    if (*startTag == '>') {
        return EndTag::matches;
    }
    return isWhiteSpace(*startTag) ? EndTag::matchesWithAttributes : EndTag::differs;
}

// Checks a tag whose text begins at `tag`.
bool checkTag(const char *tag, char endCharacter, Diagnosis &diagnosis) {
    TagReader reader(tag, endCharacter);
    std::string_view name;
    TagAttribute attribute;
    if (reader.readName(name)) {
        while (reader.readAttribute(attribute)) {
        }
    }
    constexpr char function[] = "_checkNameAttr";
    switch (reader.fault()) {
    case TagFault::none:
        return true;
    case TagFault::name:
        XMLP_REFUSE(diagnosis, function, XMLP_ERROR_NAME, reader.position());
        break;
    case TagFault::attribute:
        XMLP_REFUSE(diagnosis, function, XMLP_ERROR_ATTRIBUTE, reader.position());
        break;
    case TagFault::cutAttribute:
        XMLP_REFUSE(diagnosis, function, XMLP_ERROR_CUT_ATTRIBUTE, reader.position());
        break;
    }
    return false;
}

// Checks the content of an element up to its end tag, and gives the position after that.
const char *checkContent(const char *startTag, const char *position, const char *bodyEnd,
                         Diagnosis &diagnosis) {
    enum class State { content, childTag, endTag };
    State state = State::content;
    const char *tag = nullptr;
    OpenTags open(startTag, position);

    static constexpr char function[] = "_subXml";
    const auto passUp = [&open, &diagnosis, bodyEnd]() -> const char * {
        for (size_t level = open.enclosing(); level > 0; --level) {
            XMLP_REFUSE(diagnosis, function, XMLP_ERROR_TAG, bodyEnd);
        }
        return nullptr;
    };
    const auto refuse = [&passUp, &diagnosis](XMLP_ERROR_CODE code, const char *place) {
        XMLP_REFUSE(diagnosis, function, code, place);
        return passUp();
    };

    while ((position = findMarkup(position, bodyEnd)) < bodyEnd) {
        if (*position == '<') {
            if (state != State::content) {
                return refuse(XMLP_ERROR_TAG, position);
            }
            state = State::childTag;
            tag = position + 1;
            if (byteAfter(position, bodyEnd) == '/') {
                state = State::endTag;
                if (++tag >= bodyEnd) {
                    return passUp();
                }
            }
        } else if (state == State::content) {
            return refuse(XMLP_ERROR_TAG, position);
        } else if (position[-1] == '/') { // a '<' stands before it
            if (state != State::childTag) {
                return refuse(XMLP_ERROR_TAG, tag - 2);
            }
            if (!checkTag(tag, '/', diagnosis)) {
                return refuse(XMLP_ERROR_TAG, tag - 1);
            }
            state = State::content;
        } else if (state == State::childTag) {
            if (!open.push(tag)) {
                return refuse(XMLP_ERROR_NO_MEMORY, nullptr);
            }
            state = State::content;
        } else {
            switch (matchEndTag(tag, position, open.innermost())) {
            case EndTag::matches:
                break;
            case EndTag::differs:
                return refuse(XMLP_ERROR_END_TAG, tag - 2);
            case EndTag::badByte:
                return refuse(XMLP_ERROR_END_TAG_NAME, tag);
            case EndTag::matchesWithAttributes:
                if (!checkTag(open.innermost(), '>', diagnosis)) {
                    return passUp();
                }
                break;
            }
            if (open.enclosing() == 0) {
                return position + 1;
            }
            open.pop();
            state = State::content;
        }
        ++position;
    }
    return refuse(XMLP_ERROR_TAG, bodyEnd);
}

} // namespace

bool checkBody(const char *bodyStart, const char *bodyEnd, Diagnosis &diagnosis) {
    enum class State { nothing, startTag, complete };
    State state = State::nothing;
    const char *tag = nullptr;
    const char *position = bodyStart;
    static constexpr char function[] = "_checkXml";
    const auto refuse = [&diagnosis](const char *place) {
        XMLP_REFUSE(diagnosis, function, XMLP_ERROR_TAG, place);
        return false;
    };
    while ((position = findMarkup(position, bodyEnd)) < bodyEnd) {
        if (*position == '<') {
            if (state != State::nothing || byteAfter(position, bodyEnd) == '/') {
                return refuse(position);
            }
            state = State::startTag;
            tag = ++position;
            continue;
        }
        if (state != State::startTag) {
            return refuse(position);
        }
        const char *next = position + 1;
        if (position[-1] != '/') {
            next = checkContent(tag, next, bodyEnd, diagnosis);
        } else if (!checkTag(tag, '/', diagnosis)) {
            next = nullptr;
        }
        if (next == nullptr) {
            return refuse(bodyEnd);
        }
        state = State::complete;
        position = next;
    }
    if (state == State::nothing) {
        XMLP_REFUSE(diagnosis, function, XMLP_ERROR_NO_TAG, skipWhiteSpaceUpTo(bodyStart, bodyEnd));
        return false;
    }
    return true;
}

} // namespace velda::xmlp

using namespace velda::xmlp;

int _checkNameAttr(const char *tag, char endCharacter) {
    if (tag == nullptr) {
        XMLP_REPORT("buf is null.");
        return -1;
    }
    Diagnosis diagnosis;
    return checkTag(tag, endCharacter, diagnosis) ? 0 : -1;
}

const char *_subXml(const char *startTag, const char *position, const char *bodyEnd) {
    if (startTag == nullptr || position == nullptr || bodyEnd == nullptr) {
        XMLP_REPORT("invalid params.");
        return nullptr;
    }
    Diagnosis diagnosis;
    return checkContent(startTag, position, bodyEnd, diagnosis);
}

int _checkXml(const char *bodyStart, const char *bodyEnd) {
    if (bodyStart == nullptr || bodyEnd == nullptr) {
        XMLP_REPORT("invalid params.");
        return -1;
    }
    Diagnosis diagnosis;
    return checkBody(bodyStart, bodyEnd, diagnosis) ? 0 : -1;
}
