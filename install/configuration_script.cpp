#include "install/configuration_script.h"

#include <array>
#include <cstdio>

#include "core/error.h"
#include "core/file.h"
#include "core/format_text.h"
#include "core/ipv4_address.h"
#include "core/trace.h"

namespace omniset {

namespace {

constexpr std::size_t kCopyBlock = 4096;

// Unbuffered, so that each read or write shows its own failure.
FilePtr openUnbuffered(const std::string& path, const char* mode, const char* failure) {
  FilePtr file = openFile(path, mode);
  if (!file) throw Failure(failure);
  std::setvbuf(file.get(), nullptr, _IONBF, 0);
  return file;
}

void writeAll(std::FILE* file, const char* data, std::size_t length, const char* failure) {
  if (std::fwrite(data, 1, length, file) != length) throw Failure(failure);
}

void copyScript(const std::string& from, std::FILE* to) {
  const FilePtr script = openUnbuffered(from, "rb", "Could not open script");
  std::array<char, kCopyBlock> block;
  for (;;) {
    const std::size_t length = std::fread(block.data(), 1, block.size(), script.get());
    if (std::ferror(script.get())) throw Failure("Could not read script");
    if (length == 0) return;
    writeAll(to, block.data(), length, "Could not write file");
  }
}

void fillScript(const RouterRecord& record, const std::string& path) {
  const FilePtr file = openUnbuffered(path, "wb", "Could not open temporary file");
  if (record.keepConfiguration) return;
  if (record.useOwnScript) {
    copyScript(record.scriptPath, file.get());
    return;
  }
  const std::string text = generatedScript(record);
  writeAll(file.get(), text.data(), text.size(), "Could not write script");
}

}  // namespace

std::string generatedScript(const RouterRecord& record) {
  if (record.address == 0 || record.netmaskLength == 0) return {};
  std::string text = formatText(
      "\n:local eth\n"
      ":set eth [/interface ethernet get [/interface ethernet find mac-address=%s] name]\n"
      "/interface enable $eth\n"
      "/ip address add address=%s/%d interface=$eth\n"
      "/port set [/port find] baud-rate=%d\n",
      record.mac.text().c_str(), dottedQuad(record.address).c_str(), record.netmaskLength,
      record.baudRate);
  if (record.gateway != 0) {
    text += formatText("/ip route add gateway=%s\n", dottedQuad(record.gateway).c_str());
  }
  return text;
}

std::string buildScript(const RouterRecord& record, TempFiles& tempFiles) {
  std::string path = tempFiles.create("scr");
  traceLine("tempfile:" + path);
  try {
    fillScript(record, path);
  } catch (...) {
    std::remove(path.c_str());
    throw;
  }
  return path;
}

}  // namespace omniset
