// velda-bench-twice: what twice the text costs, and what the most expensive texts cost.
//
//   velda-bench-twice [--quick] <sample.xml>
//   velda-bench-twice --instructions                          counts instead of times
//   velda-bench-twice --repeat <row> <kind> <size> <times>    one piece of work, for the counter
//
// Every text is measured beside one of half its size. Of all rounds the quickest counts: what
// disturbs the machine only adds.
#include "bench/check.h"
#include "bench/instructions.h"
#include "bench/shapes.h"
#include "bench/table.h"

#include "appmngr/appmngr.h"
#include "xmlp/xmlp.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <limits>
#include <memory>

namespace {

using namespace bench;

// Lines about broken texts go nowhere while one of these lives.
class Silence {
public:
    Silence() : kept_(dup(STDOUT_FILENO)) { redirect(open("/dev/null", O_WRONLY | O_CLOEXEC)); }
    ~Silence() { redirect(kept_); }
    Silence(const Silence &) = delete;
    Silence &operator=(const Silence &) = delete;

private:
    static void redirect(int file) {
        std::fflush(stdout);
        dup2(file, STDOUT_FILENO);
        close(file);
    }

    int kept_;
};

struct Work {
    std::function<void()> prepare; // not measured
    std::function<void()> once;
    double best = std::numeric_limits<double>::infinity(); // seconds of processor time
};

double processorSeconds() {
    timespec now;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

void measure(std::vector<Work> &all, int rounds) {
    const Silence silence;
    for (; rounds > 0; --rounds) {
        for (Work &work : all) {
            if (work.prepare) {
                work.prepare();
            }
            const double start = processorSeconds();
            work.once();
            work.best = std::min(work.best, processorSeconds() - start);
        }
    }
}

using MakeWork = std::function<Work(size_t size)>;

std::string ratio(const MakeWork &make, size_t size, int rounds) {
    std::vector<Work> works = {make(size / 2), make(size)};
    measure(works, rounds);
    return fixed(works[1].best / works[0].best, 2);
}

XMLP_DOC *parse(const std::string &text, uint32_t isStatic) {
    return xmlp_loadDoc(text.c_str(), static_cast<uint32_t>(text.size()), isStatic);
}

Work parsing(const std::string &text, uint32_t isStatic) {
    return {{}, [text, isStatic] {
                XMLP_DOC *doc = parse(text, isStatic);
                if (doc != nullptr) {
                    xmlp_releaseDoc(doc);
                }
            }};
}

// ---- Editing ----------------------------------------------------------------------------------

// A call on all members of a list, or with as many of something.
using Call = std::function<void(XMLP_DOC *doc, uint32_t count)>;

struct Edit {
    const char *name;
    Call call;
};

char newText[] = "y";
const uint32_t fromFirst = 0;

std::vector<XMLP_ATTR_PAIR> pairs(uint32_t count, const char *name) {
    return std::vector<XMLP_ATTR_PAIR>(count, XMLP_ATTR_PAIR{name, newText});
}

// Attributes of different names; the names live as long as the program.
std::vector<XMLP_ATTR_PAIR> distinctPairs(uint32_t count) {
    static std::vector<std::string> names;
    if (names.size() < count) {
        names.resize(count);
        for (uint32_t i = 0; i < count; ++i) {
            names[i] = "n" + std::to_string(i);
        }
    }
    std::vector<XMLP_ATTR_PAIR> made;
    for (uint32_t i = 0; i < count; ++i) {
        made.push_back({names[i].c_str(), newText});
    }
    return made;
}

std::vector<uint32_t> everyPosition(uint32_t count) {
    std::vector<uint32_t> positions(count);
    for (uint32_t i = 0; i < count; ++i) {
        positions[i] = i;
    }
    return positions;
}

const Edit edits[] = {
    {"set the texts of all members",
     [](XMLP_DOC *doc, uint32_t count) {
         const std::vector<XMLP_VALUE> values(count, XMLP_VALUE{1, newText});
         xmlp_setItemValue(doc, "/l", XMLP_POS_RANGE, values.data(), &fromFirst, count);
     }},
    {"read the texts of all members, by positions",
     [](XMLP_DOC *doc, uint32_t count) {
         uint32_t found = 0;
         xmlp_freeValueArray(xmlp_getItemValue(doc, "/l", XMLP_POS_LIST,
                                               everyPosition(count).data(), count, &found),
                             found);
     }},
    {"find all members by an attribute",
     [](XMLP_DOC *doc, uint32_t) {
         char one[] = "1";
         const XMLP_ATTR_PAIR asked = {"x", one};
         uint32_t found = 0;
         xmlp_freeValueArray(xmlp_getItemValueByAttr(doc, "/l", &asked, 1, &found), found);
     }},
    {"add an attribute to all members",
     [](XMLP_DOC *doc, uint32_t count) {
         xmlp_addItemAttr(doc, "/l", XMLP_POS_RANGE, pairs(count, "y").data(), &fromFirst, count);
     }},
    {"delete all members, by positions",
     [](XMLP_DOC *doc, uint32_t count) {
         xmlp_deleteItem(doc, "/l", XMLP_POS_LIST, everyPosition(count).data(), count);
     }},
    {"add as many members",
     [](XMLP_DOC *doc, uint32_t count) {
         const std::vector<XMLP_ITEM> items(count, XMLP_ITEM{0, nullptr, 1, newText});
         xmlp_addItem(doc, "/l", items.data(), 1, count);
     }},
    {"add a member with as many attributes",
     [](XMLP_DOC *doc, uint32_t count) {
         const auto attrs = distinctPairs(count);
         const XMLP_ITEM item = {count, attrs.data(), 0, nullptr};
         xmlp_addItem(doc, "/l", &item, 0, 1);
     }},
    {"add an element with as many attributes",
     [](XMLP_DOC *doc, uint32_t count) {
         xmlp_add(doc, "/", 0, "n", nullptr, distinctPairs(count).data(), count);
     }},
    {"write, compact",
     [](XMLP_DOC *doc, uint32_t) {
         uint32_t length = 0;
         std::free(xmlp_dumpDoc(doc, 1, &length));
     }},
    {"write, indented",
     [](XMLP_DOC *doc, uint32_t) {
         uint32_t length = 0;
         std::free(xmlp_dumpDoc(doc, 0, &length));
     }},
};

Work editing(const Edit &edit, size_t size) {
    struct Held {
        std::string text;
        XMLP_DOC *doc = nullptr;
        explicit Held(size_t bytes) : text(listText(bytes)) {}
        ~Held() { drop(); }
        Held(const Held &) = delete;
        Held &operator=(const Held &) = delete;
        void drop() {
            if (doc != nullptr) {
                xmlp_releaseDoc(doc);
            }
        }
    };
    const auto held = std::make_shared<Held>(size);
    return {[held] {
                held->drop();
                held->doc = parse(held->text, 0);
            },
            [held, &edit] { edit.call(held->doc, xmlp_getChildCount(held->doc, "/l")); }};
}

// ---- Loads ------------------------------------------------------------------------------------

constexpr size_t imageTextSize = 204'799; // the most that an image carries

void printLoads(const char *samplePath, int rounds) {
    std::ifstream file(samplePath, std::ios::binary);
    std::vector<std::string> names = {"the full sample"};
    std::vector<std::string> texts = {std::string(std::istreambuf_iterator<char>(file), {})};
    for (const Shape &shape : allShapes()) {
        names.push_back(shape.name);
        texts.push_back(shape.make(imageTextSize));
    }
    std::vector<Work> loads;
    for (const std::string &text : texts) {
        loads.push_back(
            {{}, [&text] { appmngr_loadText(text.data(), static_cast<uint32_t>(text.size())); }});
    }
    measure(loads, rounds);
    Table table("Loads of 204,799 bytes, the full sample = 1");
    for (size_t i = 0; i < loads.size(); ++i) {
        table.set(names[i], "load", fixed(loads[i].best / loads[0].best, 2));
    }
    table.print();
}

// ---- Instructions -----------------------------------------------------------------------------

Work workOf(const std::string &row, const std::string &kind, size_t size) {
    for (const Shape &shape : allShapes()) {
        if (shape.name == row) {
            return parsing(shape.make(size), kind == "static" ? 1 : 0);
        }
    }
    for (const Edit &edit : edits) {
        if (edit.name == row) {
            return editing(edit, size);
        }
    }
    refuse(row, "no such row");
}

// What one more execution adds, its preparation included.
double instructionsEach(const std::string &row, const std::string &kind, size_t size) {
    static const std::string self = std::filesystem::read_symlink("/proc/self/exe");
    const auto count = [&](int times) {
        return instructionsOf(
            {self, "--repeat", row, kind, std::to_string(size), std::to_string(times)});
    };
    return count(2) - count(1);
}

void printInstructions() {
    Table table("Twice the text: its instructions by those of half of it");
    const auto add = [&table](const std::string &row, const std::string &kind) {
        const double half = instructionsEach(row, kind, imageTextSize / 2);
        table.set(row, kind + ", 204,799 B",
                  fixed(instructionsEach(row, kind, imageTextSize) / half, 2));
    };
    for (const Shape &shape : allShapes()) {
        add(shape.name, "static");
        add(shape.name, "dynamic");
    }
    for (const Edit &edit : edits) {
        add(edit.name, "dynamic");
    }
    table.print();
}

} // namespace

int main(int argc, char **argv) {
    if (argc == 2 && std::string(argv[1]) == "--instructions") {
        printInstructions();
        return 0;
    }
    if (argc == 6 && std::string(argv[1]) == "--repeat") {
        std::vector<Work> works = {workOf(argv[2], argv[3], std::strtoul(argv[4], nullptr, 10))};
        measure(works, std::atoi(argv[5]));
        return 0;
    }
    const bool quick = argc == 3 && std::string(argv[1]) == "--quick";
    if (argc != 2 && !quick) {
        refuse("arguments", "the full sample is needed");
    }
    const int rounds = quick ? 5 : 40;
    Table table("Twice the text: its time by that of half of it");
    for (const size_t size : {imageTextSize, size_t{2'000'000}}) {
        const bool isLarge = size != imageTextSize;
        const std::string suffix = isLarge ? ", 2 MB" : ", 204,799 B";
        const int turns = isLarge ? rounds / 4 : rounds;
        for (const Shape &shape : allShapes()) {
            for (const uint32_t isStatic : {1U, 0U}) {
                table.set(shape.name, (isStatic != 0 ? "static" : "dynamic") + suffix,
                          ratio([&](size_t bytes) { return parsing(shape.make(bytes), isStatic); },
                                size, turns));
            }
        }
        for (const Edit &edit : edits) {
            table.set(edit.name, "dynamic" + suffix,
                      ratio([&](size_t bytes) { return editing(edit, bytes); }, size, turns));
        }
        if (quick) {
            break;
        }
    }
    table.print();
    printLoads(argv[argc - 1], rounds);
    return 0;
}
