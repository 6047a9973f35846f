#include "packages/package_reader.h"

#include <algorithm>
#include <exception>
#include <span>
#include <stdexcept>

#include "core/byte_cursor.h"
#include "core/error.h"
#include "packages/package_format.h"

namespace omniset {

void GenericReader::want(std::uint16_t sectionType) {
  if (wantedCount_ == wanted_.size()) throw std::runtime_error("too many wanted section types");
  wanted_[wantedCount_++] = sectionType;
}

bool GenericReader::isWanted(std::uint16_t sectionType) const {
  const auto end = wanted_.begin() + static_cast<std::ptrdiff_t>(wantedCount_);
  return std::find(wanted_.begin(), end, sectionType) != end;
}

std::uint64_t GenericReader::imageEnd() const {
  return imageStart_ + kFileHeaderWidth + length_.value_or(0);
}

void GenericReader::leaveSection() {
  type_.reset();
  size_ = unread_ = 0;
}

void GenericReader::readFileHeader() {
  std::uint8_t header[kFileHeaderWidth];
  readBytes(header, sizeof header);
  ByteReader bytes(header);
  if (bytes.u32le() != magic_) throw BadFile("wrong magic");
  length_ = bytes.u32le();
  sectionStart_ = imageStart_ + kFileHeaderWidth;
  consumed_ = sectionStart_;
}

void GenericReader::readSectionHeader(std::uint64_t left) {
  std::uint8_t header[kSectionHeaderWidth];
  readBytes(header, sizeof header);
  consumed_ += sizeof header;
  ByteReader bytes(header);
  type_ = bytes.u16le();
  size_ = unread_ = bytes.u32le();
  if (size_ > left - kSectionHeaderWidth) throw BadFile("invalid length of section");
}

bool GenericReader::nextSection() {
  if (!length_) readFileHeader();
  for (;;) {
    if (type_) sectionStart_ += kSectionHeaderWidth + std::uint64_t{size_};
    if (sectionStart_ == imageEnd()) {
      leaveSection();
      return false;
    }
    // A section that was found too long may have put its end behind that of the package.
    if (sectionStart_ + kSectionHeaderWidth > imageEnd()) throw BadFile("invalid length of file");
    if (unread_ > 0) {
      skipBytes(unread_);
      consumed_ += unread_;
      unread_ = 0;
    }
    readSectionHeader(imageEnd() - sectionStart_);
    if (isWanted(*type_)) return true;
  }
}

void GenericReader::read(std::uint8_t* buffer, std::size_t n) {
  if (!type_ || n == 0) return;
  if (n > unread_) throw BadFile("bad section size");
  readBytes(buffer, n);
  unread_ -= static_cast<std::uint32_t>(n);
  consumed_ += n;
}

void GenericReader::skip(std::size_t n) {
  if (!type_ || n == 0) return;
  if (n > unread_) throw BadFile("bad skip");
  skipBytes(n);
  unread_ -= static_cast<std::uint32_t>(n);
  consumed_ += n;
}

bool GenericReader::nextImage() {
  try {
    if (!length_) readFileHeader();
    const std::uint64_t end = imageEnd();
    if (end > consumed_) skipBytes(end - consumed_);
    imageStart_ = end;
    length_.reset();
    leaveSection();
    readFileHeader();
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

void Reader::readBytes(std::uint8_t* buffer, std::size_t n) {
  if (std::fread(buffer, n, 1, file_) != 1) throw BadFile("read error");
}

// A seek beyond the end of the file succeeds; the next readBytes() then finds nothing.
void Reader::skipBytes(std::uint64_t n) {
  constexpr std::uint64_t kFarthestSeek = 0x4000'0000;  // fits the call's argument everywhere
  while (n > 0) {
    const std::uint64_t step = std::min(n, kFarthestSeek);
    if (std::fseek(file_, static_cast<long>(step), SEEK_CUR) != 0) {
      readAway(n);
      return;
    }
    n -= step;
  }
}

void Reader::readAway(std::uint64_t n) {
  std::uint8_t chunk[4096];
  while (n > 0) {
    const std::size_t step = static_cast<std::size_t>(std::min<std::uint64_t>(n, sizeof chunk));
    readBytes(chunk, step);
    n -= step;
  }
}

}  // namespace omniset
