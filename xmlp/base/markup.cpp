#include "xmlp/base/markup.h"

#include "xmlp/base/chars.h"

#include <algorithm>
#include <cstddef>

namespace velda::xmlp {

const char *findMarkup(const char *position, const char *end) {
    while (position < end && *position != '<' && *position != '>') {
        position +=
            std::min(static_cast<std::ptrdiff_t>(characterLength(*position)), end - position);
    }
    return position;
}

} // namespace velda::xmlp
