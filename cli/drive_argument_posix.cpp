#include <filesystem>
#include <system_error>

#include "cli/bad_input.h"
#include "cli/drive_argument.h"
#include "core/file.h"
#include "core/shown_text.h"
#include "media/drive_checks.h"
#include "media/floppy_maker.h"

namespace omniset {

namespace {

namespace fs = std::filesystem;

constexpr char kDiskLetter = 'D';

std::string quoted(const std::string& path) {
  return "'" + shownText(path) + "'";
}

bool isThere(const std::string& path) {
  std::error_code error;
  return fs::exists(path, error);
}

void refuseEmpty(const std::string& image, const std::string& advice) {
  std::error_code error;
  if (!fs::is_regular_file(image, error) || fs::file_size(image, error) > 0) return;
  throw BadInput("The image file " + quoted(image) + " is empty: " + advice);
}

void createFloppyImage(const std::string& path) {
  std::error_code error;
  if (const FilePtr file = openFile(path, "wbx")) {
    fs::resize_file(path, kFloppyBytes, error);
    if (!error) return;
    fs::remove(path, error);
  }
  throw BadInput("The image file " + quoted(path) +
                 " cannot be created: check its path and its folder's permissions.");
}

// A disk by its own name, also when the operator named it by a link. The programs that write it are
// given a whole path, which no option looks like.
DriveArgument argumentFor(char letter, const std::string& path) {
  std::error_code error;
  const std::string own =
      fs::is_block_file(path, error) ? fs::canonical(path, error).string() : path;
  return {letter, own, {letter, fs::absolute(own).string()}};
}

}  // namespace

DriveArgument diskArgument(const std::string& written) {
  if (!isThere(written)) {
    throw BadInput("There is no " + quoted(written) +
                   ": name a disk (\"omniset-cli drives\" lists them), or make an image file "
                   "first, for example with: truncate -s 64M FILE");
  }
  refuseEmpty(written, "give it a size, for example with: truncate -s 64M FILE");
  return argumentFor(kDiskLetter, written);
}

DriveArgument floppyArgument(const std::string& written, bool mayCreate) {
  if (isThere(written)) {
    refuseEmpty(written, "remove it, so that one of a floppy's size is created.");
    return argumentFor(kFloppyDrive, written);
  }
  if (!mayCreate) {
    throw BadInput("There is no " + quoted(written) +
                   ": an image file of a floppy would be created.\n"
                   "Nothing was written; add --yes to do it.");
  }
  createFloppyImage(written);
  return argumentFor(kFloppyDrive, written);
}

}  // namespace omniset
