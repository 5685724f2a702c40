#include "tools/image_text.h"
#include "tools/subcommands.h"

int packCommand(const Arguments &arguments) {
    const auto document = readDocument(arguments.files[0]);
    if (!document) {
        return 1;
    }
    const auto image = encodeImage(*document);
    return image && writeOutput(arguments.files[1], *image) ? 0 : 1;
}
