// A database text into the model and out again in each form. A failing byte, then the text.

#include "appmngr/appmngr_internal.h"
#include "fuzz/model.h"

#include <string>

using namespace fuzz;

namespace {

// Reads all that a listener is told.
void readEffect(const APPMNGR_EFFECT *effect, void *) {
    FUZZ_REQUIRE(effect->node != nullptr && (effect->text != nullptr || effect->size == 0));
    FUZZ_REQUIRE(std::string(effect->text != nullptr ? effect->text : "", effect->size).size() ==
                 effect->size);
}

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
    appmngr_setEffectListener(readEffect, nullptr);
    const int result = load(text);
    appmngr_setEffectListener(nullptr, nullptr);
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
