#include "bench/cases.h"

#include "bench/documents.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <memory>

namespace bench {

namespace {

std::shared_ptr<Document> parsed(const Parser &parser, const Text &text) {
    return parser.parse(text.bytes);
}

const Parser &parserNamed(const std::string &name) {
    for (const Parser &parser : allParsers()) {
        if (parser.name == name) {
            return parser;
        }
    }
    refuse(name, "no such parser");
}

// pugixml writes "<a />" where xmlp writes "<a/>".
bool sameButSpaces(size_t size, size_t other, const Text &text) {
    const size_t difference = size > other ? size - other : other - size;
    return size > 0 && difference <= text.elements;
}

void checkWriters(const Text &text, Layout layout) {
    size_t first = 0;
    for (const Parser &parser : allParsers()) {
        if (!parser.writesAs.empty()) {
            const size_t size = parsed(parser, text)->write(layout);
            first = first == 0 ? size : first;
            if (!sameButSpaces(size, first, text)) {
                refuse(parser.name + " writing " + text.name,
                       std::to_string(size) + " bytes against " + std::to_string(first));
            }
        }
    }
}

} // namespace

void refuse(const std::string &what, const std::string &why) {
    std::fprintf(stderr, "velda-bench: %s: %s\n", what.c_str(), why.c_str());
    std::exit(1);
}

void checkParsers(const Text &text) {
    for (const Parser &parser : allParsers()) {
        try {
            const size_t found = parsed(parser, text)->elements();
            if (found != text.elements) {
                refuse(parser.name + " reading " + text.name, std::to_string(found) +
                                                                  " elements found of " +
                                                                  std::to_string(text.elements));
            }
        } catch (const std::exception &error) {
            refuse(parser.name + " reading " + text.name, error.what());
        }
    }
    checkWriters(text, Layout::compact);
    checkWriters(text, Layout::indented);
}

Column readingColumn(const Text &text) {
    Column column{text.name, text.bytes.size(), {}};
    for (const Parser &parser : allParsers()) {
        column.cases.push_back({parser.name, referenceParser, [&text, &parser] {
                                    benchmark::DoNotOptimize(parser.parse(text.bytes));
                                }});
    }
    // Elsewhere dropping takes too little of the time to be measured apart.
    const Parser &parser = parserNamed("xmlp, dynamic");
    const auto held = std::make_shared<std::shared_ptr<Document>>();
    column.cases.push_back({parser.name + ", only dropped", referenceParser,
                            [held] { held->reset(); },
                            [held, &text, &parser] { *held = parsed(parser, text); }});
    return column;
}

Column writingColumn(const Text &text) {
    Column column{text.name, text.bytes.size(), {}};
    for (const Layout layout : {Layout::compact, Layout::indented}) {
        const std::string suffix = layout == Layout::compact ? ", compact" : ", indented";
        for (const Parser &parser : allParsers()) {
            if (!parser.writesAs.empty()) {
                const std::shared_ptr<Document> document = parsed(parser, text);
                column.cases.push_back(
                    {parser.writesAs + suffix, referenceParser + suffix,
                     [document, layout] { benchmark::DoNotOptimize(document->write(layout)); }});
            }
        }
    }
    return column;
}

} // namespace bench
