// A store in a folder of the test's.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "core/byte_cursor.h"
#include "core/error.h"
#include "core/path.h"
#include "target/folder_store.h"
#include "tests/fakes/temp_folder.h"

namespace omniset::test {

struct StoreFixture : ::testing::Test {
  void write(std::string_view text) {
    store.write({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
  }
  void put(const std::string& name, std::string_view content) {
    store.openFile(name, static_cast<std::int32_t>(content.size()));
    write(content);
    store.closeFile();
  }
  // The files that count.
  std::vector<std::string> files() const {
    std::vector<std::string> names = folder.names();
    std::erase_if(names, [](const std::string& name) { return name.starts_with('.'); });
    return names;
  }
  std::string contentOf(const std::string& name) const {
    return readFile(joinPath(folder.path(), name));
  }
  template <class Call>
  static std::string failureOf(Call call) {
    try {
      call();
    } catch (const Failure& e) {
      return e.what();
    }
    return "none";
  }
  std::string refusal(const std::string& name) {
    return failureOf([&] { store.openFile(name, 1); });
  }

  TempFolder folder;
  FolderStore store{folder.path()};
};

}  // namespace omniset::test
