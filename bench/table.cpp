#include "bench/table.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace bench {

namespace {

void addOnce(std::vector<std::string> &names, const std::string &name) {
    if (std::find(names.begin(), names.end(), name) == names.end()) {
        names.push_back(name);
    }
}

} // namespace

void Table::set(const std::string &row, const std::string &column, const std::string &cell) {
    addOnce(rows_, row);
    addOnce(columns_, column);
    cells_[{row, column}] = cell;
}

void Table::print() const {
    std::string text = "\n### " + title_ + "\n\n| |";
    std::string rule = "|---|";
    for (const std::string &column : columns_) {
        text += " " + column + " |";
        rule += "---:|";
    }
    text += "\n" + rule + "\n";
    for (const std::string &row : rows_) {
        text += "| " + row + " |";
        for (const std::string &column : columns_) {
            const auto cell = cells_.find({row, column});
            text += " " + (cell != cells_.end() ? cell->second : "") + " |";
        }
        text += "\n";
    }
    std::fputs(text.c_str(), stdout);
    std::fflush(stdout);
}

std::string fixed(double value, int digits) {
    char text[64];
    std::snprintf(text, sizeof text, "%.*f", digits, value);
    return text;
}

double quantile(std::vector<double> values, double share) {
    std::sort(values.begin(), values.end());
    const double last = static_cast<double>(values.size() - 1);
    return values[static_cast<size_t>(std::lround(share * last))];
}

} // namespace bench
