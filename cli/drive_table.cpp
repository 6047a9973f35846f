#include "cli/drive_table.h"

#include "cli/text_table.h"
#include "core/shown_text.h"
#include "install/router_record.h"
#include "media/drive_checks.h"

namespace omniset {

namespace {

constexpr std::size_t kSizeColumn = 2;

std::string shownOrDash(const std::string& text) {
  return text.empty() ? "-" : shownText(text);
}

std::string remarkOn(const DriveFacts& facts) {
  if (!facts.obstacle.empty()) return "cannot be used: " + shownText(facts.obstacle);
  return facts.bytes == 0 ? "no medium, or it cannot be read" : "";
}

TableRow rowOf(const DriveRow& row) {
  const DriveFacts& facts = row.facts;
  return {shownText(row.drive.root),
          driveTypeName(row.drive.type),
          facts.bytes == 0 ? "-" : driveSizeText(facts.bytes),
          shownOrDash(facts.label),
          shownOrDash(facts.contents),
          remarkOn(facts)};
}

}  // namespace

std::string driveTable(const std::vector<DriveRow>& rows) {
  std::vector<TableRow> table{{"Drive", "Media", "Size", "Label", "Contents", ""}};
  for (const DriveRow& row : rows) table.push_back(rowOf(row));
  return textTable(table, kSizeColumn);
}

}  // namespace omniset
