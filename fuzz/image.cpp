// An image, decoded and loaded, and its list.

#include "appmngr/appmngr_internal.h"
#include "fuzz/model.h"

using namespace fuzz;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const size_t before = liveBlocks();
    forgetPrinted();
    const int result = appmngr_loadImage(data, static_cast<uint32_t>(size));
    requireSoundModel(result);
    if (result == 0) {
        writeModel();
    }
    FUZZ_REQUIRE(g_appmngr_flashBuf == nullptr && g_appmngr_appDbXml == nullptr &&
                 g_appmngr_appDescXml == nullptr);
    APPMNGR_DATABASE *database = appmngr_takeDatabase();
    FUZZ_REQUIRE((database != nullptr) == (result == 0) && g_appmngr_app == nullptr);
    appmngr_freeDatabase(database);
    appmngr_dbReInit();
    FUZZ_REQUIRE(liveBlocks() == before);
    return 0;
}
