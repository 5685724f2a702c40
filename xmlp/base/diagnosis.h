// Why a text is refused, and where.
//
// The functions that find a fault refuse it here. Each refusal is a line; the first one is the finding,
// since those after it come from the elements around the fault.
#pragma once

#include "xmlp/base/report.h"
#include "xmlp/xmlp.h"

#include <string_view>

namespace velda::xmlp {

// The one list of messages is XMLP_ERROR_CODES.
const char *messageOf(XMLP_ERROR_CODE code);

class Diagnosis {
public:
    // For a part of a text that nobody asks for places of.
    Diagnosis() = default;
    explicit Diagnosis(const char *text) : text_(text) {}

    // Reports the code's message in the name of `function`. `place` is the first byte of what is
    // refused, null where the text is not to blame.
    void refuse(XMLP_ERROR_CODE code, const char *place, const char *function, int line);

    bool hasFinding() const { return code_ != XMLP_ERROR_NONE; }

    // The finding; code XMLP_ERROR_NONE when nothing was refused.
    XMLP_ERROR error() const;

    // The one of those who ran out of memory without a line.
    static XMLP_ERROR noMemory() {
        return {XMLP_ERROR_NO_MEMORY, 0, 0, 0, messageOf(XMLP_ERROR_NO_MEMORY)};
    }

private:
    bool hasPlace() const { return text_ != nullptr && place_ != nullptr; }

    const char *text_ = nullptr;
    XMLP_ERROR_CODE code_ = XMLP_ERROR_NONE;
    const char *place_ = nullptr;
};

} // namespace velda::xmlp

// Refuses in the name of a function of the interface.
#define XMLP_REFUSE(diagnosis, function, code, place) \
    (diagnosis).refuse(code, place, function, __LINE__)
