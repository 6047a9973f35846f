// Stands in for the system's format command, which Wine does not have: asks what the real one asks,
// and puts the empty volume that tests/win/driver/drives.sh keeps for the drive onto it.
//
//   format.com X: OPTION...
//
// In the folder that OMNISET_TEST_DRIVES names: X.fresh is the volume's beginning; format.log gets
// a line with the command line and the answers; while there is a file "hang", no format comes to
// its end.
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

namespace {

std::string drivesFolder() {
  const char* folder = std::getenv("OMNISET_TEST_DRIVES");
  return std::string(folder ? folder : ".") + "\\";
}

std::string readAll(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::string answer() {
  std::string line;
  std::getline(std::cin, line);
  return line.substr(0, line.find('\r'));
}

bool writeVolume(char letter, const std::string& fresh) {
  const std::string path = std::string("\\\\.\\") + letter + ":";
  const HANDLE volume =
      CreateFileA(path.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                  nullptr, OPEN_EXISTING, 0, nullptr);
  if (volume == INVALID_HANDLE_VALUE) return false;
  DWORD written = 0;
  const auto size = static_cast<DWORD>(fresh.size());
  const bool done = WriteFile(volume, fresh.data(), size, &written, nullptr) && written == size;
  return CloseHandle(volume) && done;
}

int fail(const char* reason) {
  std::cout << reason << "\r\n" << std::flush;
  return 4;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) return fail("Required parameter missing -");
  const char letter = argv[1][0];
  std::cout << "Insert new disk for drive " << letter << ":\r\nand press ENTER when ready... "
            << std::flush;
  const std::string first = answer();
  while (std::ifstream(drivesFolder() + "hang")) Sleep(50);
  const std::string fresh = readAll(drivesFolder() + letter + ".fresh");
  const bool done = !fresh.empty() && writeVolume(letter, fresh);
  if (done) {
    std::cout << "The type of the file system is FAT.\r\nQuickFormatting\r\n"
              << "Format complete.\r\nQuickFormat another (Y/N)? " << std::flush;
  }
  const std::string second = answer();
  std::ofstream(drivesFolder() + "format.log", std::ios::app | std::ios::binary)
      << GetCommandLineA() << " [" << first << "] [" << second << "]\n";
  return done ? 0 : fail("Cannot open volume for direct access.");
}
