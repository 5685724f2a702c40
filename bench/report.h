// Measures columns with Google Benchmark and prints them as Markdown tables of ratios.
#pragma once

#include "bench/cases.h"

#include <map>
#include <string>
#include <vector>

namespace bench {

// Times of one column by row, of one execution each, in seconds of processor time.
using Times = std::map<std::string, std::vector<double>>;

// Runs the cases of a column in random turns.
Times measure(const Column &column);

class Table {
public:
    explicit Table(std::string title) : title_(std::move(title)) {}

    // The medians, each divided by that of its reference.
    void add(const Column &column, const Times &times);

    void print() const;

private:
    std::string title_;
    std::vector<std::string> columns_;
    std::vector<std::string> rows_; // in the order of the first column
    std::map<std::string, std::map<std::string, std::string>> cells_; // by row and column
};

// How far the quartiles of the times measured so far lie from their medians, as a sentence.
std::string spread();

} // namespace bench
