// A database text into the model and out again in each form. A failing byte, then the text.

#include "appmngr/appmngr_internal.h"
#include "fuzz/model.h"

using namespace fuzz;

namespace {

int load(std::string_view text) {
    appmngr_dbReInit();
    forgetPrinted();
    return appmngr_loadText(text.data(), static_cast<uint32_t>(text.size()));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const size_t before = liveBlocks();
    Input input(data, size);
    const uint8_t failing = input.byte();
    const std::string_view text = input.rest();
    const int result = load(text);
    requireSoundModel(result);
    if (result == 0) {
        writeModel();
    }
    if (failing != noFailure) {
        FailingByte failure(failing);
        const int again = load(text);
        const bool hasFailed = failure.end();
        FUZZ_REQUIRE(again == result || (hasFailed && again == -1));
        requireSoundModel(again);
    }
    appmngr_dbReInit();
    FUZZ_REQUIRE(liveBlocks() == before);
    return 0;
}
