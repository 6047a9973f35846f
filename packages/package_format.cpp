#include "packages/package_format.h"

#include <algorithm>

namespace omniset {

namespace {

std::string_view untilNul(std::string_view text) {
  return text.substr(0, text.find('\0'));
}

std::string takeName(ByteReader& bytes) {
  return std::string(untilNul(asText(bytes.take(kPackageNameWidth))));
}

}  // namespace

PackageHeader parsePackageHeader(ByteReader& bytes) {
  PackageHeader header;
  header.name = takeName(bytes);
  header.version = bytes.u32le();
  bytes.take(12);
  return header;
}

PackageDependency parseDependency(ByteReader& bytes) {
  PackageDependency dependency;
  dependency.name = takeName(bytes);
  dependency.minVersion = bytes.u32le();
  bytes.take(4);
  dependency.maxVersion = bytes.u32le();
  bytes.take(4);
  return dependency;
}

std::string descriptionText(std::string_view payload) {
  constexpr std::size_t kDropped = 4;  // one in front, three behind
  const std::string_view text = untilNul(payload);
  const std::size_t length = text.size() < kDropped ? text.size() : text.size() - kDropped;
  std::string shown(text.substr(1, length));
  std::replace(shown.begin(), shown.end(), '\n', ' ');
  return shown;
}

}  // namespace omniset
