// Static trees: the parser accepts a body if and only if the steps build it, and makes the same tree,
// down to the layout of the block, however markup is found. A first byte of 1 puts the text across the edge of a chunk: the
// second byte tells how many bytes of it stand before the edge.

#include "fuzz/trees.h"
#include "xmlp/parse/builders.h"
#include "xmlp/steps/static_tree.h"
#include "xmlp/xmlp_internal.h"

#include <string>

using namespace fuzz;
using velda::xmlp::BuildResult;

namespace {

struct FreeStatic {
    void operator()(XMLP_NODE *root) const { xmlp_delStree(root); }
};

using StaticTree = std::unique_ptr<XMLP_NODE, FreeStatic>;

std::string bodyOf(Input input) {
    std::string body(input.take(1));
    if (body == "\x01") {
        body.assign(velda::xmlp::chunkSize - input.byte(), ' ');
    }
    return body.append(input.rest());
}

void checkBody(std::string_view body) {
    StaticTree stepped;
    velda::xmlp::Diagnosis diagnosis;
    if (_checkXml(body.data(), body.data() + body.size()) == 0) {
        stepped.reset(velda::xmlp::buildStaticTree(body, diagnosis));
    }
    FUZZ_REQUIRE(stepped != nullptr || hasPrinted("[ERROR]"));
    forgetPrinted();
    for (const auto indexer : velda::xmlp::indexers()) {
        XMLP_NODE *root = nullptr;
        const BuildResult result = velda::xmlp::buildStaticTreeFast(body, indexer, root);
        const StaticTree parsed(root);
        FUZZ_REQUIRE(printed().empty());
        FUZZ_REQUIRE((result == BuildResult::built) == (root != nullptr));
        FUZZ_REQUIRE((root != nullptr) == (stepped != nullptr));
        if (root != nullptr) {
            requireWhole(root);
            requireSameBlock(root, stepped.get());
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const size_t before = liveBlocks();
    const Text text(bodyOf(Input(data, size)));
    forgetPrinted();
    checkBody({text.data(), text.size()});
    forgetPrinted();
    const bool isLoaded = parse(text, 1) != nullptr;
    FUZZ_REQUIRE(isLoaded == printed().empty());
    FUZZ_REQUIRE(liveBlocks() == before);
    return 0;
}
