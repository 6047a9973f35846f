// Tables for people.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace omniset {

using TableRow = std::vector<std::string>;

// A line per row, in aligned columns; those of column `right` stand at its right edge. All rows are
// as long, and their texts are fit for a terminal.
std::string textTable(const std::vector<TableRow>& rows, std::size_t right);

}  // namespace omniset
