#include "bench/documents.h"

#include "xmlp/xmlp.h"

#include <expat.h>
#include <libxml/parser.h>
#include <libxml/xmlreader.h>
#include <pugixml.hpp>
#include <rapidxml/rapidxml.hpp>
#include <tinyxml2.h>

#include <cstdlib>

namespace bench {

namespace {

// ---- xmlp --------------------------------------------------------------------------------------

template <uint32_t isStatic>
class Xmlp : public Document {
public:
    explicit Xmlp(const std::string &text)
        : doc_(xmlp_loadDoc(text.c_str(), static_cast<uint32_t>(text.size()), isStatic)) {}

    ~Xmlp() override {
        if (doc_ != nullptr) {
            xmlp_releaseDoc(doc_);
        }
    }

    size_t elements() const override { return doc_ != nullptr ? below(doc_->tree->rootNode) : 0; }

    size_t write(Layout layout) const override {
        uint32_t length = 0;
        std::free(xmlp_tree2Xml(doc_, layout == Layout::compact ? 1 : 0, &length));
        return length;
    }

private:
    static size_t below(const XMLP_NODE *node) {
        size_t count = 0;
        for (const XMLP_NODE *child = node->firstChild; child != nullptr; child = child->next) {
            count += 1 + below(child);
        }
        return count;
    }

    XMLP_DOC *doc_;
};

// ---- pugixml -----------------------------------------------------------------------------------

template <unsigned options>
class Pugixml : public Document {
public:
    explicit Pugixml(const std::string &text)
        : sound_(doc_.load_buffer(text.data(), text.size(), options, pugi::encoding_utf8)) {}

    size_t elements() const override { return sound_ ? below(doc_) : 0; }

    size_t write(Layout layout) const override {
        StringWriter writer;
        writer.text.reserve(lastSize_); // so that it does not grow but the first time
        const unsigned format = layout == Layout::compact ? pugi::format_raw : pugi::format_indent;
        doc_.save(writer, "  ", format | pugi::format_no_declaration, pugi::encoding_utf8);
        lastSize_ = writer.text.size();
        return lastSize_;
    }

private:
    struct StringWriter : pugi::xml_writer {
        std::string text;
        void write(const void *data, size_t size) override {
            text.append(static_cast<const char *>(data), size);
        }
    };

    static size_t below(pugi::xml_node node) {
        size_t count = 0;
        for (pugi::xml_node child : node.children()) {
            count += child.type() == pugi::node_element ? 1 + below(child) : 0;
        }
        return count;
    }

    pugi::xml_document doc_;
    bool sound_;
    mutable size_t lastSize_ = 0;
};

// ---- RapidXML ----------------------------------------------------------------------------------

size_t elementsBelow(const rapidxml::xml_node<> &node) {
    size_t count = 0;
    for (const auto *child = node.first_node(); child != nullptr; child = child->next_sibling()) {
        count += child->type() == rapidxml::node_element ? 1 + elementsBelow(*child) : 0;
    }
    return count;
}

// Its tree points into the text, whose bytes are left as they are: no strings are ended, no
// references decoded.
class RapidxmlInPlace : public Document {
public:
    explicit RapidxmlInPlace(const std::string &text) {
        // Not written to with these flags.
        doc_.parse<rapidxml::parse_fastest | rapidxml::parse_validate_closing_tags>(
            const_cast<char *>(text.c_str()));
    }

    size_t elements() const override { return elementsBelow(doc_); }

private:
    rapidxml::xml_document<> doc_;
};

// A copy of the text, in which strings are ended and references decoded.
class RapidxmlCopy : public Document {
public:
    explicit RapidxmlCopy(const std::string &text) : copy_(text) {
        doc_.parse<rapidxml::parse_no_data_nodes | rapidxml::parse_validate_closing_tags>(
            copy_.data());
    }

    size_t elements() const override { return elementsBelow(doc_); }

private:
    std::string copy_;
    rapidxml::xml_document<> doc_;
};

// ---- Expat -------------------------------------------------------------------------------------

class Expat : public Document {
public:
    explicit Expat(const std::string &text) {
        const XML_Parser parser = XML_ParserCreate("UTF-8");
        size_t count = 0;
        XML_SetUserData(parser, &count);
        XML_SetElementHandler(
            parser, [](void *data, const char *, const char **) { ++*static_cast<size_t *>(data); },
            nullptr);
        XML_SetCharacterDataHandler(parser, [](void *, const char *, int) {});
        if (XML_Parse(parser, text.data(), static_cast<int>(text.size()), XML_TRUE) ==
            XML_STATUS_OK) {
            elements_ = count;
        }
        XML_ParserFree(parser);
    }

    size_t elements() const override { return elements_; }

private:
    size_t elements_ = 0;
};

// ---- libxml2 -----------------------------------------------------------------------------------

// Short texts in the node itself and no nodes of white space: less to make and to free.
constexpr int libxml2Options =
    XML_PARSE_COMPACT | XML_PARSE_NOBLANKS | XML_PARSE_NONET | XML_PARSE_HUGE;

class Libxml2Tree : public Document {
public:
    explicit Libxml2Tree(const std::string &text)
        : doc_(xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, "UTF-8",
                             libxml2Options)) {}

    ~Libxml2Tree() override { xmlFreeDoc(doc_); }

    size_t elements() const override {
        return doc_ != nullptr ? from(xmlDocGetRootElement(doc_)) : 0;
    }

private:
    // The node and those behind it, with all that is under them.
    static size_t from(const xmlNode *node) {
        size_t count = 0;
        for (; node != nullptr; node = node->next) {
            count += node->type == XML_ELEMENT_NODE ? 1 + from(node->children) : 0;
        }
        return count;
    }

    xmlDoc *doc_;
};

class Libxml2Reader : public Document {
public:
    explicit Libxml2Reader(const std::string &text) {
        xmlTextReader *reader = xmlReaderForMemory(text.data(), static_cast<int>(text.size()),
                                                   nullptr, "UTF-8", libxml2Options);
        size_t count = 0;
        int state = xmlTextReaderRead(reader);
        for (; state == 1; state = xmlTextReaderRead(reader)) {
            count += xmlTextReaderNodeType(reader) == XML_READER_TYPE_ELEMENT ? 1u : 0u;
        }
        elements_ = state == 0 ? count : 0;
        xmlFreeTextReader(reader);
    }

    size_t elements() const override { return elements_; }

private:
    size_t elements_;
};

// ---- TinyXML-2 ---------------------------------------------------------------------------------

class Tinyxml2 : public Document {
public:
    explicit Tinyxml2(const std::string &text) { doc_.Parse(text.data(), text.size()); }

    size_t elements() const override { return doc_.Error() ? 0 : below(doc_); }

private:
    static size_t below(const tinyxml2::XMLNode &node) {
        size_t count = 0;
        for (const auto *child = node.FirstChildElement(); child != nullptr;
             child = child->NextSiblingElement()) {
            count += 1 + below(*child);
        }
        return count;
    }

    tinyxml2::XMLDocument doc_{true, tinyxml2::PRESERVE_WHITESPACE};
};

template <class Kind>
std::unique_ptr<Document> parseAs(const std::string &text) {
    return std::make_unique<Kind>(text);
}

} // namespace

const std::vector<Parser> &allParsers() {
    static const std::vector<Parser> parsers = {
        {"xmlp, static", parseAs<Xmlp<1>>, "xmlp, static"},
        {"xmlp, dynamic", parseAs<Xmlp<0>>, "xmlp, dynamic"},
        {referenceParser, parseAs<Pugixml<pugi::parse_minimal>>},
        // Decodes references, so that writing has the same work as elsewhere.
        {"pugixml, default options", parseAs<Pugixml<pugi::parse_default>>, referenceParser},
        {"RapidXML, in place", parseAs<RapidxmlInPlace>},
        {"RapidXML, copy", parseAs<RapidxmlCopy>},
        {"Expat, events", parseAs<Expat>},
        {"libxml2, tree", parseAs<Libxml2Tree>},
        {"libxml2, reader", parseAs<Libxml2Reader>},
        {"TinyXML-2", parseAs<Tinyxml2>},
    };
    return parsers;
}

} // namespace bench
