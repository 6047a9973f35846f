#include "memory_store.h"

#include "core/byte_cursor.h"
#include "core/error.h"

namespace omniset::sim {

void MemoryStore::beginPreparation(bool keepConfiguration) {
  keptConfiguration_ = keepConfiguration;
  files_.clear();
  preparedAt_ = clock_.now() + preparationTime_;
}

bool MemoryStore::isPrepared() {
  return clock_.now() >= preparedAt_;
}

void MemoryStore::openFile(const std::string& name, std::int32_t size) {
  if (open_) throw Failure("a file is still open: " + open_->name);
  open_ = OpenFile{name, static_cast<std::size_t>(size), {}};
}

void MemoryStore::write(std::span<const std::uint8_t> bytes) {
  if (failing_) {
    failing_ = false;
    throw Failure("disk full");
  }
  open_->content.append(asText(bytes));
}

void MemoryStore::closeFile() {
  if (open_->content.size() != open_->size) throw Failure("wrong length of " + open_->name);
  files_[open_->name] = std::move(open_->content);
  open_.reset();
}

}  // namespace omniset::sim
