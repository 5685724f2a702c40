// Tables in Markdown.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace bench {

class Table {
public:
    explicit Table(std::string title) : title_(std::move(title)) {}

    // Rows and columns stand in the order in which they are first named.
    void set(const std::string &row, const std::string &column, const std::string &cell);

    void print() const;

private:
    std::string title_;
    std::vector<std::string> columns_;
    std::vector<std::string> rows_;
    std::map<std::pair<std::string, std::string>, std::string> cells_;
};

std::string fixed(double value, int digits);

// The value at this share of the sorted values: 0.5 for the median.
double quantile(std::vector<double> values, double share);

} // namespace bench
