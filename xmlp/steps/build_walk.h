// The one walk that makes nodes of a text that passed the structure check. What the nodes are made
// of is the business of the storage that it is given:
//
//   static constexpr const char *builder   the function that lines are reported for
//   static constexpr uint32_t isStatic
//   XMLP_NODE *newNode()                   a node with all fields zero, or null
//   bool readTag(tag, endCharacter)        a tag has been met, at its '>'
//   bool applyTag(XMLP_NODE *)             gives a node the name and attributes of that tag
//   char *newValue(uint32_t size)          memory for a value, or null
//   void drop(XMLP_NODE *)              drops a node that is not linked yet
//
// An element is made as late as possible: when the text shows whether it has children or a value.
#pragma once

#include "xmlp/base/diagnosis.h"
#include "xmlp/base/entities.h"
#include "xmlp/base/markup.h"
#include "xmlp/tree/node_type.h"
#include "xmlp/xmlp_internal.h"

#include <string_view>

namespace velda::xmlp {

template <class Storage>
class BuildWalk {
public:
    BuildWalk(Storage &storage, XMLP_NODE *root, Diagnosis &diagnosis)
        : storage_(storage), root_(root), parent_(root), previous_(nullptr), diagnosis_(diagnosis) {
    }

    // False when the body can't be built; what was linked so far hangs under the root.
    bool run(std::string_view body) {
        const char *end = body.data() + body.size();
        const char *position = body.data();
        for (; (position = findMarkup(position, end)) < end; ++position) {
            bool isDone = true;
            if (*position == '>') {
                isDone = closeTag(position);
            } else if (byteAfter(position, end) == '/') {
                isDone = beginEndTag(position);
            } else {
                isDone = beginStartTag(position);
            }
            if (!isDone) {
                return false;
            }
        }
        return true;
    }

private:
    enum class State { idle, inStartTag, afterStartTag, afterEmptyElement, inEndTag, afterEndTag };

    bool beginStartTag(const char *position) {
        switch (state_) {
        case State::inStartTag:
        case State::inEndTag:
            return refuse(position);
        case State::afterStartTag:
            if (!addElement({})) {
                return false;
            }
            parent_ = previous_;
            previous_ = nullptr;
            break;
        case State::idle:
        case State::afterEmptyElement:
        case State::afterEndTag:
            break;
        }
        state_ = State::inStartTag;
        mark_ = position + 1;
        startTag_ = position;
        return true;
    }

    bool beginEndTag(const char *position) {
        switch (state_) {
        case State::idle:
        case State::inStartTag:
        case State::inEndTag:
            return refuse(position);
        case State::afterStartTag:
            if (!addElement({mark_, static_cast<size_t>(position - mark_)})) {
                return false;
            }
            break;
        case State::afterEmptyElement:
        case State::afterEndTag:
            if (parent_ == root_) {
                return refuse(position);
            }
            previous_ = parent_;
            parent_ = parent_->parent;
            break;
        }
        state_ = State::inEndTag;
        return true;
    }

    bool closeTag(const char *position) {
        if (state_ == State::inEndTag) {
            state_ = State::afterEndTag;
        } else if (state_ == State::inStartTag && position[-1] == '/') {
            if (!storage_.readTag(mark_, '/') || !addElement({})) {
                return false;
            }
            state_ = State::afterEmptyElement;
        } else if (state_ == State::inStartTag) {
            if (!storage_.readTag(mark_, '>')) {
                return false;
            }
            state_ = State::afterStartTag;
            mark_ = position + 1;
        }
        return true;
    }

    // Makes the element whose tag was taken last and links it; it becomes the previous sibling.
    bool addElement(std::string_view text) {
        XMLP_NODE *node = storage_.newNode();
        if (node == nullptr) {
            return false;
        }
        if (!setValue(node, text) || !storage_.applyTag(node) || link(node) != 0) {
            storage_.drop(node);
            return false;
        }
        previous_ = node;
        const XMLP_ERROR_CODE error = setType(*node, Storage::isStatic != 0);
        if (error != XMLP_ERROR_NONE) {
            XMLP_REFUSE(diagnosis_, "_setType", error, startTag_);
        }
        return error == XMLP_ERROR_NONE;
    }

    bool setValue(XMLP_NODE *node, std::string_view text) {
        if (text.empty()) {
            return true;
        }
        const auto length = static_cast<uint32_t>(text.size());
        const uint32_t size = xmlp_unTransStrLen(text.data(), length);
        if (size == 0) {
            XMLP_REFUSE(diagnosis_, Storage::builder, XMLP_ERROR_VALUE, findBadReference(text));
            return false;
        }
        char *value = storage_.newValue(size);
        if (value == nullptr) {
            return false;
        }
        xmlp_unTransStr(value, text.data(), length);
        node->value = value;
        node->valueSize = size;
        node->type = XMLP_TYPE_LEAF;
        return true;
    }

    int link(XMLP_NODE *node) {
        return previous_ != nullptr ? xmlp_insNodeAfter(node, previous_)
                                    : xmlp_insNodeLast(node, parent_);
    }

    bool refuse(const char *place) {
        XMLP_REFUSE(diagnosis_, Storage::builder, XMLP_ERROR_TAG, place);
        return false;
    }

    Storage &storage_;
    XMLP_NODE *root_;
    XMLP_NODE *parent_;
    XMLP_NODE *previous_;
    const char *mark_ = nullptr;     // the text of the tag, then the byte after its '>'
    const char *startTag_ = nullptr; // of the element made next
    State state_ = State::idle;
    Diagnosis &diagnosis_;
};

} // namespace velda::xmlp
