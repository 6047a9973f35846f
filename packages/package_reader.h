// Walks the sections of a package file; docs/package-format.md tells the layout. Every structural
// fault raises BadFile, after which the reader is of no further use.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <optional>

namespace omniset {

// The walker over an abstract source of bytes. Reading and skipping come in two layers: what the
// owner calls, read() and skip(), keeps inside the current section and counts; what a source
// supplies, readBytes() and skipBytes(), just moves along the stream.
class GenericReader {
 public:
  static constexpr std::size_t kMaxWantedTypes = 20;

  explicit GenericReader(std::uint32_t magic) : magic_(magic) {}
  virtual ~GenericReader() = default;
  GenericReader(const GenericReader&) = delete;
  GenericReader& operator=(const GenericReader&) = delete;

  // Adds a section type that nextSection() stops at; to be called before the first nextSection().
  // Raises std::runtime_error beyond kMaxWantedTypes.
  void want(std::uint16_t sectionType);

  // Advances to the next section of a wanted type; false at the end of the package, and from then
  // on. Raises BadFile "wrong magic", "invalid length of file", "invalid length of section",
  // "read error".
  bool nextSection();

  // The type of the current section, 0 without one.
  std::uint16_t sectionType() const { return type_.value_or(0); }
  // The whole size of the current section's payload, and what of it is still unread; 0 without one.
  std::uint32_t sectionSize() const { return size_; }
  std::uint32_t unread() const { return unread_; }

  // Read or pass over `n` bytes of the current section; do nothing without one. Raise BadFile
  // "bad section size" (read) and "bad skip" (skip) when the section has fewer left, "read error"
  // when the stream has.
  void read(std::uint8_t* buffer, std::size_t n);
  void skip(std::size_t n);

  // Passes over what is left of this package and reads the file header of another one behind it in
  // the same stream; false when no valid one follows.
  bool nextImage();

 protected:
  // `n` is at least 1 and may exceed what the stream holds. readBytes() delivers all or raises
  // BadFile "read error"; skipBytes() may leave that to the readBytes() that follows.
  virtual void readBytes(std::uint8_t* buffer, std::size_t n) = 0;
  virtual void skipBytes(std::uint64_t n) = 0;

 private:
  void leaveSection();
  void readFileHeader();
  void readSectionHeader(std::uint64_t left);
  bool isWanted(std::uint16_t sectionType) const;
  std::uint64_t imageEnd() const;

  // All offsets are of the stream. They are wider than the format's lengths, so that no length in a
  // file can make them wrap.
  std::uint64_t imageStart_ = 0;
  std::optional<std::uint32_t> length_;  // from the file header, once that has been read
  std::uint64_t sectionStart_ = 0;
  std::uint64_t consumed_ = 0;
  std::optional<std::uint16_t> type_;
  std::uint32_t size_ = 0;
  std::uint32_t unread_ = 0;
  std::array<std::uint16_t, kMaxWantedTypes> wanted_{};
  std::size_t wantedCount_ = 0;
  std::uint32_t magic_;
};

// Reads a file. The caller opens it for reading in binary mode, keeps it open and closes it.
class Reader : public GenericReader {
 public:
  Reader(std::uint32_t magic, std::FILE* file) : GenericReader(magic), file_(file) {}

 protected:
  void readBytes(std::uint8_t* buffer, std::size_t n) override;
  void skipBytes(std::uint64_t n) override;

 private:
  void readAway(std::uint64_t n);

  std::FILE* file_;
};

}  // namespace omniset
