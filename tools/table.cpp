#include "tools/table.h"

#include "tools/text.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <unistd.h>

namespace {

void print(std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
}

bool isColoured() {
    const char *forbidden = std::getenv("NO_COLOR");
    const char *terminal = std::getenv("TERM");
    return isatty(STDOUT_FILENO) != 0 && (forbidden == nullptr || *forbidden == '\0') &&
           terminal != nullptr && std::string_view(terminal) != "dumb";
}

std::string_view codeOf(Style style) {
    switch (style) {
    case Style::plain:
        break;
    case Style::heading:
        return "\x1b[1m";
    case Style::added:
        return "\x1b[32m";
    case Style::removed:
        return "\x1b[31m";
    case Style::changed:
        return "\x1b[33m";
    }
    return "";
}

std::vector<size_t> widthsOf(const Table &table) {
    std::vector<size_t> widths;
    for (const std::string_view column : table.columns) {
        widths.push_back(columnsOf(column));
    }
    for (const auto &row : table.rows) {
        for (size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], columnsOf(row[i].shown));
        }
    }
    return widths;
}

std::string lineOf(const std::vector<Cell> &row, const std::vector<size_t> &widths) {
    std::string line;
    for (size_t i = 0; i < row.size(); ++i) {
        const std::string blanks(widths[i] - columnsOf(row[i].shown), ' ');
        line += i > 0 ? "  " : "";
        line += row[i].isNumber ? blanks + row[i].shown : row[i].shown + blanks;
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line;
}

// A heading stands over its column as the cells do.
std::vector<Cell> headingOf(const Table &table) {
    std::vector<Cell> heading;
    for (size_t i = 0; i < table.columns.size(); ++i) {
        heading.push_back(textCell(table.columns[i]));
        heading[i].isNumber = !table.rows.empty() && table.rows[0][i].isNumber;
    }
    return heading;
}

std::string rowJson(const Table &table, const std::vector<Cell> &row) {
    JsonMembers members;
    for (size_t i = 0; i < row.size(); ++i) {
        members.emplace_back(table.columns[i], row[i].json);
    }
    return jsonObject(members);
}

} // namespace

Cell textCell(std::string_view text) {
    return {escapeForTerminal(text), jsonText(text), false};
}

Cell numberCell(int64_t number) {
    return {std::to_string(number), std::to_string(number), true};
}

Cell numbersCell(const std::vector<int32_t> &numbers) {
    std::string list;
    std::vector<std::string> elements;
    for (const int32_t number : numbers) {
        elements.push_back(std::to_string(number));
        list.append(list.empty() ? "" : ",").append(elements.back());
    }
    return {list, jsonArray(elements), false};
}

void printJson(const Arguments &arguments, const JsonMembers &origin, const Table &table) {
    std::vector<std::string> rows;
    for (const auto &row : table.rows) {
        rows.push_back(rowJson(table, row));
    }
    JsonMembers members = {{"command", jsonText(arguments.command)}};
    members.insert(members.end(), origin.begin(), origin.end());
    members.emplace_back(table.name, jsonLines(rows));
    print(jsonObject(members) + "\n");
}

void printTable(const Arguments &arguments, std::string_view file, const Table &table) {
    if (arguments.wantsJson) {
        printJson(arguments, {{"file", jsonText(file)}}, table);
        return;
    }
    const auto widths = widthsOf(table);
    printLine(Style::heading, lineOf(headingOf(table), widths));
    for (const auto &row : table.rows) {
        printLine(Style::plain, lineOf(row, widths));
    }
}

void printLine(Style style, std::string_view line) {
    const bool isStyled = style != Style::plain && isColoured();
    std::string whole(isStyled ? codeOf(style) : "");
    whole.append(line).append(isStyled ? "\x1b[0m\n" : "\n");
    print(whole);
}
