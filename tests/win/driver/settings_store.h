// The program's settings in the registry of the user, prepared and read by tests.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

namespace omniset::test {

constexpr char kMainKey[] = "SOFTWARE\\Veltrona\\Deployhub";
constexpr char kSetsKey[] = "SOFTWARE\\Veltrona\\Deployhub\\Package Sets";

// As on a computer where the program never ran.
void clearSettings();

void storeNumber(const std::string& name, DWORD value);
void storeText(const std::string& name, const std::string& value);
void storeSet(const std::string& name, const std::vector<std::string>& packages);

// Nothing when the value is absent or of another type.
std::optional<DWORD> storedNumber(const std::string& name);
std::optional<std::string> storedText(const std::string& name);
std::optional<std::vector<std::string>> storedSet(const std::string& name);
std::vector<std::string> storedSetNames();

}  // namespace omniset::test
