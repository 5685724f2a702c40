// Uses every library from C++: prints the version, a digest, and a report about a text that is none.
#include <velda-db/appmngr/appmngr.h>
#include <velda-db/common/version.h>
#include <velda-db/crypto/quelm.h>

#include <array>
#include <cstdio>
#include <string>
#include <string_view>

int main() {
    std::string reports;
    xmlp_setReport(
        [](const char *text, void *context) { *static_cast<std::string *>(context) += text; },
        &reports);
    const bool isRefused = xmlp_loadDoc("no tag", 6, 1) == nullptr;

    std::array<unsigned char, QUELM_MD5_SIZE> digest{};
    quelm_md5_sum(digest.data(), "", 0);

    const bool isWhole = std::string_view(velda_version()) == VELDA_VERSION &&
                         appmngr_getStampStr(nullptr) == -1 && isRefused;
    std::printf("%s %02x %s", VELDA_VERSION, digest[0], reports.c_str());
    return isWhole ? 0 : 1;
}
