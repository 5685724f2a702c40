// A database as a load leaves it.
#pragma once

#include "appmngr/appmngr.h"
#include "tools/arguments.h"
#include "tools/input.h"

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

class Database {
public:
    // Takes what the module has loaded from the file of this name.
    explicit Database(std::string name) : name_(std::move(name)), held_(appmngr_takeDatabase()) {}

    // False when there was nothing to take.
    explicit operator bool() const { return held_ != nullptr; }

    const std::string &name() const { return name_; }
    const APPMNGR_APPDB &header() const { return *appmngr_databaseGetAppDb(held_.get()); }
    std::span<const APPMNGR_APP> apps() const;
    std::span<const APPMNGR_APPTYPE> types() const;
    std::span<const APPMNGR_RULE> rules() const;
    std::span<const APPMNGR_DNS_RULE> keywords() const;

    // The name of the first application with this identifier, or nothing.
    std::string_view nameOf(int32_t appId) const;

private:
    struct Release {
        void operator()(APPMNGR_DATABASE *database) const { appmngr_freeDatabase(database); }
    };

    std::string name_;
    std::unique_ptr<APPMNGR_DATABASE, Release> held_;
};

// Sends all that the libraries report to standard error.
void sendReportsToStandardError();

// Reads an image, as much of it as a load does.
std::optional<Input> readImage(const char *path);

// Loads an image into the module. False, after lines on standard error, when it can't be loaded.
bool loadModel(const Input &image);

// Loads an image and takes the database. Nothing, after lines on standard error, when it can't be loaded.
std::optional<Database> loadDatabase(const Input &image);

// Reads and loads the image that the arguments name.
std::optional<Database> loadDatabase(const Arguments &arguments);

// The identifiers of the applications that `app` means, by identifier or by name. Nothing, after a
// line on standard error, when there is none.
std::vector<int32_t> appsMeantBy(const Database &database, const char *app);

// Whether the arguments ask for what belongs to this application.
class AppFilter {
public:
    AppFilter(const Database &database, const Arguments &arguments);
    bool canPass() const { return isOpen_ || !ids_.empty(); }
    bool passes(int32_t appId) const;

private:
    bool isOpen_;
    std::vector<int32_t> ids_;
};
