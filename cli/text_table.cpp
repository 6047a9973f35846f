#include "cli/text_table.h"

#include <algorithm>

#include "core/shown_text.h"

namespace omniset {

namespace {

std::string lineOf(const TableRow& row, const std::vector<std::size_t>& widths, std::size_t right) {
  std::string line;
  for (std::size_t column = 0; column < row.size(); ++column) {
    const std::string& cell = row[column];
    if (column == right) line.append(widths[column] - columnsOf(cell), ' ');
    line += column == right ? cell : padded(cell, widths[column]);
    line += "  ";
  }
  line.erase(line.find_last_not_of(' ') + 1);
  return line + "\n";
}

}  // namespace

std::string textTable(const std::vector<TableRow>& rows, std::size_t right) {
  std::vector<std::size_t> widths;
  for (const TableRow& row : rows) {
    widths.resize(row.size());
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], columnsOf(row[i]));
  }
  std::string table;
  for (const TableRow& row : rows) table += lineOf(row, widths, right);
  return table;
}

}  // namespace omniset
