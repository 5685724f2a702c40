// The structure check that every text passes before anything is made of it.
//
// Elements nest as deep as the text likes, so the check keeps its own stack of open start tags
// instead of recursing. It still prints what a recursive check would: the function that finds the
// fault prints its line, then every enclosing element adds one.

#include "xmlp/base/chars.h"
#include "xmlp/base/markup.h"
#include "xmlp/base/memory.h"
#include "xmlp/base/report.h"
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

} // namespace
} // namespace velda::xmlp

using namespace velda::xmlp;

int _checkNameAttr(const char *tag, char endCharacter) {
    if (tag == nullptr) {
        XMLP_REPORT("buf is null.");
        return -1;
    }
    TagReader reader(tag, endCharacter);
    std::string_view name;
    TagAttribute attribute;
    if (reader.readName(name)) {
        while (reader.readAttribute(attribute)) {
        }
    }
    switch (reader.fault()) {
    case TagFault::none:
        return 0;
    case TagFault::name:
        XMLP_REPORT("error xml tag name.");
        return -1;
    case TagFault::attribute:
        XMLP_REPORT("error xml attribute.");
        return -1;
    case TagFault::cutAttribute:
        XMLP_REPORT("error xml attributeibute.");
        return -1;
    }
    return -1;
}

const char *_subXml(const char *startTag, const char *position, const char *bodyEnd) {
    if (startTag == nullptr || position == nullptr || bodyEnd == nullptr) {
        XMLP_REPORT("invalid params.");
        return nullptr;
    }
    enum class State { content, childTag, endTag };
    State state = State::content;
    const char *tag = nullptr;
    OpenTags open(startTag, position);

    const char *const function = __func__;
    const auto passUp = [&open, function]() -> const char * {
        for (size_t level = open.enclosing(); level > 0; --level) {
            XMLP_REPORT_FOR(function, "error xml tag.");
        }
        return nullptr;
    };
    const auto refuse = [&passUp, function](const char *message) {
        XMLP_REPORT_FOR(function, "%s", message);
        return passUp();
    };

    while ((position = findMarkup(position, bodyEnd)) < bodyEnd) {
        if (*position == '<') {
            if (state != State::content) {
                return refuse("error xml tag.");
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
            return refuse("error xml tag.");
        } else if (position[-1] == '/') { // a '<' stands before it
            if (state != State::childTag || _checkNameAttr(tag, '/') != 0) {
                return refuse("error xml tag.");
            }
            state = State::content;
        } else if (state == State::childTag) {
            if (!open.push(tag)) {
                return refuse("malloc failed.");
            }
            state = State::content;
        } else {
            switch (matchEndTag(tag, position, open.innermost())) {
            case EndTag::matches:
                break;
            case EndTag::differs:
                return refuse("not same tag name.");
            case EndTag::badByte:
                return refuse("valid tag name.");
            case EndTag::matchesWithAttributes:
                if (_checkNameAttr(open.innermost(), '>') != 0) {
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
    return refuse("error xml tag.");
}

int _checkXml(const char *bodyStart, const char *bodyEnd) {
    if (bodyStart == nullptr || bodyEnd == nullptr) {
        XMLP_REPORT("invalid params.");
        return -1;
    }
    enum class State { nothing, startTag, complete };
    State state = State::nothing;
    const char *tag = nullptr;
    const char *position = bodyStart;
    while ((position = findMarkup(position, bodyEnd)) < bodyEnd) {
        if (*position == '<') {
            if (state != State::nothing || byteAfter(position, bodyEnd) == '/') {
                XMLP_REPORT("error xml tag.");
                return -1;
            }
            state = State::startTag;
            tag = ++position;
            continue;
        }
        const char *next = position + 1;
        if (state == State::startTag) {
            if (position[-1] != '/') {
                next = _subXml(tag, next, bodyEnd);
            } else if (_checkNameAttr(tag, '/') != 0) {
                next = nullptr;
            }
        }
        if (state != State::startTag || next == nullptr) {
            XMLP_REPORT("error xml tag.");
            return -1;
        }
        state = State::complete;
        position = next;
    }
    if (state == State::nothing) {
        XMLP_REPORT("no xml tag found.");
        return -1;
    }
    return 0;
}
