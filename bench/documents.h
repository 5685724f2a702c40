// The parsers under comparison, each behind the same small interface.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace bench {

enum class Layout { compact, indented };

// What a parser keeps of a text; dropping it is part of the work. Parsers that keep nothing have
// counted the elements on the way.
class Document {
public:
    Document() = default;
    virtual ~Document() = default;
    Document(const Document &) = delete;
    Document &operator=(const Document &) = delete;

    // Of the document, found by walking the tree where there is one; 0 when the text was refused.
    virtual size_t elements() const = 0;

    // Writes the document anew into memory and drops that; the number of bytes. 0 where the parser
    // does not take part in the comparison of writing.
    virtual size_t write(Layout) const { return 0; }
};

// The text stays alive and unchanged as long as the document; a NUL follows it.
using Parse = std::unique_ptr<Document> (*)(const std::string &text);

struct Parser {
    std::string name; // as a row of a table
    Parse parse;
    std::string writesAs = ""; // its row among the writers, if it is one
};

// The parser that all others are set in relation to.
inline constexpr char referenceParser[] = "pugixml";

const std::vector<Parser> &allParsers();

} // namespace bench
