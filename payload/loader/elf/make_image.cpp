// Makes the ELF image: make_elf_image LOADER KERNEL RAMDISK OUTPUT
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>

#include "payload/loader/elf/elf_image.h"

namespace {

using namespace omniset::loader;

std::vector<std::uint8_t> readFile(const char* name) {
  std::ifstream file(name, std::ios::binary);
  std::vector<std::uint8_t> bytes{std::istreambuf_iterator<char>(file), {}};
  if (!file) throw std::runtime_error(std::string(name) + " cannot be read.");
  return bytes;
}

void writeFile(const char* name, const std::vector<std::uint8_t>& bytes) {
  std::ofstream file(name, std::ios::binary);
  std::copy(bytes.begin(), bytes.end(), std::ostreambuf_iterator<char>(file));
  if (!file.flush()) throw std::runtime_error(std::string(name) + " cannot be written.");
}

}  // namespace

int main(int count, char** words) {
  if (count != 5) {
    std::cerr << "Usage: make_elf_image LOADER KERNEL RAMDISK OUTPUT\n";
    return EXIT_FAILURE;
  }
  try {
    const auto ramDiskSize = static_cast<std::uint32_t>(std::filesystem::file_size(words[3]));
    writeFile(words[4], makeElfImage(readFile(words[1]), readFile(words[2]), ramDiskSize));
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return EXIT_FAILURE;
  }
  return EXIT_SUCCESS;
}
