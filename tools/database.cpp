#include "tools/database.h"

#include "tools/messages.h"
#include "tools/text.h"

#include <algorithm>
#include <charconv>
#include <cstdio>

std::span<const APPMNGR_APP> Database::apps() const {
    uint32_t count = 0;
    const APPMNGR_APP *first = appmngr_databaseGetApps(held_.get(), &count);
    return {first, count};
}

std::span<const APPMNGR_APPTYPE> Database::types() const {
    return {header().appType, header().appTypeCount};
}

std::span<const APPMNGR_RULE> Database::rules() const {
    return {header().rule, header().ruleCount};
}

std::span<const APPMNGR_DNS_RULE> Database::keywords() const {
    const APPMNGR_APPDNS &dns = *appmngr_databaseGetAppDns(held_.get());
    return {dns.rule, dns.count};
}

std::string_view Database::nameOf(int32_t appId) const {
    const APPMNGR_APP *app = appmngr_databaseGetAppById(held_.get(), appId);
    return app != nullptr ? app->name : std::string_view();
}

void sendReportsToStandardError() {
    appmngr_setReport(printReport, nullptr);
    xmlp_setReport(printReport, nullptr);
}

std::optional<Input> readImage(const char *path) {
    return readInput(path, APPMNGR_IMAGE_SIZE);
}

bool loadModel(const Input &image) {
    if (appmngr_loadImage(image.bytes.data(), static_cast<uint32_t>(image.bytes.size())) != 0) {
        printError(image.name, "the database can't be loaded");
        return false;
    }
    return true;
}

std::optional<Database> loadDatabase(const Input &image) {
    if (!loadModel(image)) {
        return std::nullopt;
    }
    Database database(image.name);
    return database ? std::optional(std::move(database)) : std::nullopt;
}

std::optional<Database> loadDatabase(const Arguments &arguments) {
    const auto image = readImage(arguments.files[0]);
    return image ? loadDatabase(*image) : std::nullopt;
}

std::vector<int32_t> appsMeantBy(const Database &database, const char *app) {
    const std::string_view text = app;
    int32_t id = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), id);
    const bool isNumber = read.ec == std::errc() && read.ptr == text.data() + text.size();
    std::vector<int32_t> ids;
    for (const APPMNGR_APP &known : database.apps()) {
        if ((isNumber && known.id == id) || text == known.name) {
            ids.push_back(known.id);
        }
    }
    if (ids.empty()) {
        printError(database.name(), "no application \"" + escapeForTerminal(text) + "\"");
    }
    return ids;
}

AppFilter::AppFilter(const Database &database, const Arguments &arguments)
    : isOpen_(arguments.app == nullptr),
      ids_(isOpen_ ? std::vector<int32_t>() : appsMeantBy(database, arguments.app)) {}

bool AppFilter::passes(int32_t appId) const {
    return isOpen_ || std::find(ids_.begin(), ids_.end(), appId) != ids_.end();
}
