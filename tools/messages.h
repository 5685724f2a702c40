#pragma once

#include <string>
#include <string_view>

// Writes "velda-dbtool: <name>: <reason>" to standard error.
void printError(std::string_view name, std::string_view reason);

// The same with the system's reason.
void printErrno(std::string_view name, int error);

// A report callback of the libraries that writes to standard error.
void printReport(const char *text, void *);
