// Makes XML of a given size in bytes.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace bench {

class XmlMaker {
public:
    explicit XmlMaker(bool compact, size_t depth = 0) : compact_(compact), depth_(depth) {}

    void open(std::string_view name) {
        line("<", name, ">");
        open_.emplace_back(name);
        ++elements_;
    }

    void close() {
        const std::string name = open_.back();
        open_.pop_back();
        line("</", name, ">");
    }

    void leaf(std::string_view name, std::string_view value) {
        line("<", name, ">", value, "</", name, ">");
        ++elements_;
    }

    // An element without contents; `attributes` begins with a space.
    void empty(std::string_view name, std::string_view attributes) {
        line("<", name, attributes, "/>");
        ++elements_;
    }

    // Has `makeMember` write members of the open element until the next would not fit into `size`
    // bytes, completes the size by a leaf named `filler`, and closes all that is open.
    template <class MakeMember>
    void fill(size_t size, std::string_view filler, MakeMember makeMember) {
        for (;;) {
            XmlMaker member(compact_, depth_ + open_.size());
            makeMember(member);
            if (member.text_.size() > room(size, filler)) {
                break;
            }
            text_ += member.text_;
            elements_ += member.elements_;
        }
        leaf(filler, std::string(room(size, filler), 'x'));
        while (!open_.empty()) {
            close();
        }
    }

    const std::string &text() const { return text_; }
    size_t elements() const { return elements_; }

private:
    template <class... Parts>
    void line(const Parts &...parts) {
        if (!compact_) {
            text_.append(2 * (depth_ + open_.size()), ' ');
        }
        (text_.append(parts), ...);
        if (!compact_) {
            text_ += '\n';
        }
    }

    // What is left of `size` beside the filler's tags and those that close the open elements.
    size_t room(size_t size, std::string_view filler) const {
        XmlMaker rest(compact_, depth_);
        rest.open_ = open_;
        rest.leaf(filler, "");
        while (!rest.open_.empty()) {
            rest.close();
        }
        return size - text_.size() - rest.text_.size();
    }

    bool compact_;
    size_t depth_; // of the element that holds all this
    std::string text_;
    std::vector<std::string> open_;
    size_t elements_ = 0;
};

} // namespace bench
