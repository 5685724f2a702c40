// Measures columns with Google Benchmark and tells them as ratios.
#pragma once

#include "bench/cases.h"
#include "bench/table.h"

#include <map>
#include <string>
#include <vector>

namespace bench {

// Times of one column by row, of one execution each, in seconds of processor time.
using Times = std::map<std::string, std::vector<double>>;

// Runs the cases of a column in random turns.
Times measure(const Column &column);

// Enters the medians, each divided by that of its reference; the reference's own for a byte of text,
// times `scale`, in `unit`.
void addRatios(Table &table, const Column &column, const Times &times, const std::string &unit,
               double scale);

// How far the quartiles of the times measured so far lie from their medians, as a sentence.
std::string spread();

} // namespace bench
