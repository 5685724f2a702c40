// What a load would leave out, cut or misunderstand.

#include "tools/database.h"
#include "tools/image_text.h"
#include "tools/messages.h"
#include "tools/subcommands.h"
#include "tools/table.h"
#include "tools/validator.h"

#include <algorithm>

namespace {

struct Reason {
    int number; // of the report
    std::string_view text;
};

// Empty for what another finding tells already.
constexpr Reason reasons[] = {
    {453, ""}, // too many fields; a line for what they are fields of follows
    {1102, "no type has this identifier: the membership is left out"},
    {1109, "the application's identifier can't belong to types: the membership is left out"},
    {1247, ""}, // too long
    {1268, "left out: not of the form \"proto ip:port ip:port\""},
    {1280, "left out: the protocol is not tcp, udp or icmp"},
    {1295, "left out: the source is not ip:port"},
    {1318, "left out: the source address is neither IPv4 nor 0"},
    {1343, "left out: the destination is not ip:port"},
    {1362, "left out: the destination address is neither IPv4 nor 0"},
};

// Empty for a report that is no finding.
std::string reasonOf(const APPMNGR_REPORT_RECORD &report) {
    if (report.function == nullptr) { // a failure with a function follows
        return "";
    }
    const auto *found =
        std::find_if(std::begin(reasons), std::end(reasons),
                     [&report](const Reason &row) { return row.number == report.number; });
    const std::string_view text = report.text;
    return std::string(found != std::end(reasons)
                           ? found->text
                           : text.substr(0, text.find_last_not_of("\r\n") + 1));
}

class Checker {
public:
    // Loads an image or a document. False when that can't be done; the reports of that are then on standard error.
    bool load(const Input &input);

    const Table &findings() const { return findings_; }

private:
    void visited(const XMLP_NODE *node, APPMNGR_VISIT visit);
    void affected(const APPMNGR_EFFECT &effect);
    void reported(const APPMNGR_REPORT_RECORD &report);
    void refused(const XMLP_REPORT_RECORD &report);
    void add(const std::string &path, std::string_view message);

    ElementPath path_;
    Validator validator_;
    bool isWalking_ = false;
    std::string early_; // reports that are about no element
    Table findings_ = {"findings", {"path", "message"}, {}};
};

void Checker::add(const std::string &path, std::string_view message) {
    findings_.rows.push_back({textCell(path), textCell(message)});
}

void Checker::visited(const XMLP_NODE *node, APPMNGR_VISIT visit) {
    isWalking_ = true;
    path_.enter(node);
    switch (visit) {
    case APPMNGR_VISIT_TAKEN:
        validator_.taken(node);
        break;
    case APPMNGR_VISIT_EMPTY:
        add(path_.text(), "skipped: neither text nor elements");
        break;
    case APPMNGR_VISIT_UNKNOWN:
        add(path_.text(), "skipped: no element of the database");
        break;
    case APPMNGR_VISIT_MISPLACED:
        add(path_.text(), "skipped: not where it belongs");
        break;
    }
}

void Checker::affected(const APPMNGR_EFFECT &effect) {
    validator_.examine(effect, path_,
                       [&](const std::string &message) { add(path_.text(effect.node), message); });
}

void Checker::reported(const APPMNGR_REPORT_RECORD &report) {
    if (!isWalking_) {
        early_ += report.text;
        return;
    }
    const std::string reason = reasonOf(report);
    if (!reason.empty()) {
        add(path_.text(), reason);
    }
}

void Checker::refused(const XMLP_REPORT_RECORD &report) {
    if (!isWalking_) {
        early_ += report.text;
    }
}

// An image begins with the high byte of a length below 64 KiB, a text never with a zero.
bool isImage(const Input &input) {
    return input.bytes.starts_with('\0');
}

bool Checker::load(const Input &input) {
    appmngr_setReportRecord(
        [](const APPMNGR_REPORT_RECORD *report, void *context) {
            static_cast<Checker *>(context)->reported(*report);
        },
        this);
    xmlp_setReportRecord([](const XMLP_REPORT_RECORD *report,
                            void *context) { static_cast<Checker *>(context)->refused(*report); },
                         this);
    appmngr_setEffectListener(
        [](const APPMNGR_EFFECT *effect, void *context) {
            static_cast<Checker *>(context)->affected(*effect);
        },
        this);
    appmngr_setVisitor([](const XMLP_NODE *node, APPMNGR_VISIT visit,
                          void *context) { static_cast<Checker *>(context)->visited(node, visit); },
                       this);
    const auto size = static_cast<uint32_t>(input.bytes.size());
    const int result = isImage(input) ? appmngr_loadImage(input.bytes.data(), size)
                                      : appmngr_loadText(input.bytes.data(), size);
    appmngr_setVisitor(nullptr, nullptr);
    appmngr_setEffectListener(nullptr, nullptr);
    sendReportsToStandardError();
    if (result != 0) {
        std::fputs(early_.c_str(), stderr);
    }
    return result == 0;
}

} // namespace

int checkCommand(const Arguments &arguments) {
    constexpr int unusable = 2;
    const auto input = readInput(arguments.files[0], APPMNGR_DB_XML_SIZE);
    if (!input || (!isImage(*input) && !canBeCarried(*input))) {
        return unusable;
    }
    Checker checker;
    if (!checker.load(*input)) {
        printError(input->name, "the database can't be loaded");
        return unusable;
    }
    const Table &findings = checker.findings();
    if (arguments.wantsJson) {
        printTable(arguments, input->name, findings);
    } else {
        for (const auto &row : findings.rows) {
            printLine(Style::plain, row[0].shown + ": " + row[1].shown);
        }
    }
    return findings.rows.empty() ? 0 : 1;
}
