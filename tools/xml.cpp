// The document in an image.

#include "appmngr/appmngr.h"
#include "common/owned.h"
#include "tools/database.h"
#include "tools/image_text.h"
#include "tools/messages.h"
#include "tools/subcommands.h"

#include <memory>

namespace {

struct ReleaseDoc {
    void operator()(XMLP_DOC *doc) const { xmlp_releaseDoc(doc); }
};

std::optional<std::string> indented(const std::string &text) {
    const std::unique_ptr<XMLP_DOC, ReleaseDoc> doc(
        xmlp_loadDoc(text.c_str(), static_cast<uint32_t>(text.size()), 0));
    uint32_t length = 0;
    const velda::Owned<char> written(
        doc != nullptr ? xmlp_writeDoc(doc.get(), XMLP_WRITE_INDENTED, &length, nullptr) : nullptr);
    return written != nullptr ? std::optional(std::string(written.get(), length)) : std::nullopt;
}

} // namespace

int xmlCommand(const Arguments &arguments) {
    const auto image = readImage(arguments.files[0]);
    auto text = image ? decodeText(*image) : std::nullopt;
    if (!text) {
        return 1;
    }
    if (arguments.wantsIndent) {
        text = indented(*text);
        if (!text) {
            printError(image->name, "the text is no document");
            return 1;
        }
    }
    return writeOutput("-", *text) ? 0 : 1;
}
