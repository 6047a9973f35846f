#include "target/folder_store.h"

#include <fstream>
#include <system_error>

#include "core/error.h"
#include "core/file_name.h"

namespace omniset {

namespace fs = std::filesystem;

namespace {

// Names of our own begin with a dot, names that are taken from the network never do.
constexpr const char* kMark = ".omniset-store";
constexpr const char* kPart = ".omniset-part";

void deleteFiles(const fs::path& folder) {
  for (const auto& entry : fs::directory_iterator(folder)) {
    if (entry.is_regular_file() && entry.path().filename() != kMark) fs::remove(entry.path());
  }
}

}  // namespace

void FolderStore::claim() {
  std::error_code error;
  fs::create_directories(folder_, error);
  if (error) throw Failure("Cannot make the folder " + path() + ": " + error.message());
  if (fs::exists(folder_ / kMark, error)) return;
  const bool isEmpty = fs::is_empty(folder_, error);
  if (error) throw Failure("Cannot read the folder " + path() + ": " + error.message());
  if (!isEmpty) throw Failure(path() + " holds files of others; name an empty or a new folder.");
  if (!std::ofstream(folder_ / kMark)) throw Failure("Cannot write to the folder " + path());
}

void FolderStore::beginPreparation(bool keepConfiguration) {
  claim();
  if (!keepConfiguration) deleteFiles(folder_);
}

fs::path FolderStore::partPath() const {
  return folder_ / kPart;
}

void FolderStore::openFile(const std::string& name, std::int32_t size) {
  abandon();
  if (!isSafeFileName(name)) throw Failure("A file of this name is not taken: " + name);
  std::error_code unknown;
  if (fs::space(folder_, unknown).available < static_cast<std::uintmax_t>(size)) {
    throw Failure("Not enough space for " + name);
  }
  name_ = name;
  file_.reset(std::fopen(partPath().string().c_str(), "wb"));
  if (!file_) throw Failure("Cannot create " + name);
}

void FolderStore::write(std::span<const std::uint8_t> bytes) {
  if (std::fwrite(bytes.data(), 1, bytes.size(), file_.get()) != bytes.size()) {
    throw Failure("Cannot write " + name_);
  }
}

void FolderStore::closeFile() {
  const bool isWritten = std::fclose(file_.release()) == 0;
  std::error_code error;
  if (isWritten) fs::rename(partPath(), folder_ / name_, error);
  if (isWritten && !error) return;
  removePart();
  throw Failure("Cannot write " + name_);
}

void FolderStore::abandon() {
  if (!file_) return;
  file_.reset();
  removePart();
}

void FolderStore::removePart() {
  std::error_code ignored;
  fs::remove(partPath(), ignored);
}

}  // namespace omniset
