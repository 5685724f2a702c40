#include "bench/cases.h"

#include "bench/check.h"
#include "bench/documents.h"

#include <benchmark/benchmark.h>

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

} // namespace

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
