// make-bdl: writes package files into a folder, one that is described by options or a ready set.
#include <CLI/CLI.hpp>

#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/tools/bdl_sets.h"

namespace {

using namespace omniset;
using namespace omniset::test;

struct Options {
  std::string folder;
  bool demo = false;
  bool fuzzSeeds = false;
  int many = 0;
  std::string version = "1.0";
  std::string kind = "f";
  std::vector<std::string> dependencies;
  BdlPackage package;
};

void writeFile(const Options& options, const std::string& name, const std::string& content) {
  const auto path = std::filesystem::path(options.folder) / name;
  std::ofstream file(path, std::ios::binary);
  file.write(content.data(), static_cast<std::streamsize>(content.size()));
  if (!file.flush()) throw std::runtime_error("cannot write " + path.string());
}

void writePackage(const Options& options, const BdlPackage& package) {
  writeFile(options, bdlFileName(package), buildBdl(package));
}

std::uint32_t requireVersion(const std::string& text, char kind) {
  if (const auto version = parseVersion(text, kind)) return *version;
  throw std::runtime_error("not a version: \"" + text + "\" (write 2.9, 2.9.7 or 2.9beta3)");
}

// NAME, NAME:MIN or NAME:MIN:MAX; what is left out is "any".
PackageDependency parseDependencyOption(const std::string& text) {
  const std::vector<std::string> parts = CLI::detail::split(text, ':');
  if (parts.empty() || parts.size() > 3 || parts[0].empty()) {
    throw std::runtime_error("not a dependency: \"" + text + "\" (write NAME[:MIN[:MAX]])");
  }
  PackageDependency dependency{parts[0], 0, 0};
  if (parts.size() > 1) dependency.minVersion = requireVersion(parts[1], 'f');
  if (parts.size() > 2) dependency.maxVersion = requireVersion(parts[2], 'f');
  return dependency;
}

void run(Options& options) {
  std::filesystem::create_directories(options.folder);
  if (options.demo) {
    for (const BdlPackage& package : demoPackages()) writePackage(options, package);
  }
  for (int index = 0; index < options.many; ++index) writePackage(options, manyPackage(index));
  if (options.fuzzSeeds) {
    for (const NamedFile& seed : fuzzSeeds()) writeFile(options, seed.name, seed.content);
  }
  if (options.package.name.empty()) return;
  options.package.version = requireVersion(options.version, options.kind[0]);
  for (const std::string& text : options.dependencies) {
    options.package.dependencies.push_back(parseDependencyOption(text));
  }
  writePackage(options, options.package);
}

void declare(CLI::App& app, Options& options) {
  app.add_option("FOLDER", options.folder, "Where to write; made if need be")->required();
  auto* sets = app.add_option_group("what to write");
  sets->add_flag("--demo", options.demo, "Six packages that depend on each other");
  sets->add_option("--many", options.many, "N packages of 64 KB")->check(CLI::Range(1, 1'000'000));
  sets->add_flag("--fuzz-seeds", options.fuzzSeeds, "Small files, sound and broken");
  auto* name = sets->add_option("--name", options.package.name, "One package of this name")
                   ->check([](const std::string& text) {
                     return text.size() <= kPackageNameWidth ? "" : "longer than 16 characters";
                   });
  sets->require_option(1);
  app.add_option("--version", options.version, "2.9, 2.9.7 or 2.9beta3")->needs(name);
  app.add_option("--kind", options.kind, "Release kind of a version that names none")
      ->check(CLI::IsMember({"a", "b", "c", "f"}))
      ->needs(name);
  app.add_option("--description", options.package.description, "Text to show")->needs(name);
  app.add_option("--depends", options.dependencies, "NAME[:MIN[:MAX]]; may be repeated")
      ->allow_extra_args(false)
      ->needs(name);
  app.add_option("--payload-bytes", options.package.payloadBytes, "Size of the contents")
      ->check(CLI::Range(0, 1'000'000'000))
      ->needs(name);
  app.add_option("--seed", options.package.seed, "Of the contents")->needs(name);
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app("Writes package files for tests and demonstrations.");
  Options options;
  declare(app, options);
  CLI11_PARSE(app, argc, argv);
  try {
    run(options);
    return 0;
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "make-bdl: %s\n", failure.what());
    return 1;
  }
}
