// Images into containers and back.

#include "appmngr/appmngr.h"
#include "crypto/quelm.h"
#include "tools/input.h"
#include "tools/messages.h"
#include "tools/subcommands.h"

#include <array>

namespace {

constexpr uint32_t containerSpare = 64; // beyond the image, for the header and the cipher

} // namespace

int sealCommand(const Arguments &arguments) {
    quelm_setReport(printReport, nullptr);
    const auto image = readInput(arguments.files[0], APPMNGR_IMAGE_SIZE);
    if (!image) {
        return 1;
    }
    const auto imageLength = static_cast<uint32_t>(image->bytes.size());
    uint32_t length = imageLength + containerSpare;
    std::string container(length, '\0');
    const int32_t result =
        appmngr_db_sealAppDb(container.data(), &length, image->bytes.data(), imageLength);
    if (result != APPMNGR_SUCCESS) {
        printError(image->name, result == APPMNGR_ERR_FILE_INVALID_FORMAT
                                    ? "the image is cut short"
                                    : "no database image: its block is too long");
        return 1;
    }
    container.resize(length);
    return writeOutput(arguments.files[1], container) ? 0 : 1;
}

int unsealCommand(const Arguments &arguments) {
    quelm_setReport(printReport, nullptr);
    const auto input = readInput(arguments.files[0], APPMNGR_DB_XML_SIZE);
    if (!input) {
        return 1;
    }
    const auto length = static_cast<uint32_t>(input->bytes.size());
    std::array<char, APPMNGR_VERSION_SIZE> accepted = {};
    const int32_t result =
        appmngr_db_writeAppDbFromDatabase({0, length, input->bytes.data()}, accepted.data());
    uint32_t plainLength = length + containerSpare;
    std::string plain(plainLength, '\0');
    if (result != APPMNGR_SUCCESS ||
        appmngr_db_openContainer(plain.data(), &plainLength, input->bytes.data(), length) !=
            APPMNGR_SUCCESS) {
        printError(input->name, "no sound container: " +
                                    std::string(appmngr_errStr(static_cast<int16_t>(result))));
        return 1;
    }
    // The header begins with the length, as an image does.
    const std::string image =
        plain.substr(0, APPMNGR_IMAGE_LENGTH_SIZE) +
        plain.substr(APPMNGR_CONTAINER_HEADER_SIZE, plainLength - APPMNGR_CONTAINER_HEADER_SIZE);
    return writeOutput(arguments.files[1], image) ? 0 : 1;
}
