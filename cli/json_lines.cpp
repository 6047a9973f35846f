#include "cli/json_lines.h"

#include <nlohmann/json.hpp>

#include "install/status_name.h"
#include "packages/version_text.h"

namespace omniset {

namespace {

using Json = nlohmann::ordered_json;

std::string line(const Json& object) {
  return object.dump(-1, ' ', true, Json::error_handler_t::replace) + "\n";
}

}  // namespace

std::string packageJson(const PackageRecord& package) {
  Json dependencies = Json::array();
  for (const PackageDependency& dependency : package.dependencies) {
    dependencies.push_back({{"name", dependency.name},
                            {"min", std::string(versionText(dependency.minVersion))},
                            {"max", std::string(versionText(dependency.maxVersion))}});
  }
  return line({{"name", package.name},
               {"version", versionText(package.version)},
               {"file", package.fileName},
               {"size", package.size},
               {"description", package.description},
               {"dependencies", dependencies},
               {"missing", package.missing}});
}

std::string routerJson(const MacAddress& mac, const std::string& label) {
  return line({{"mac", mac.text()}, {"label", label}});
}

void JsonEvents::routerSeen(const MacAddress& mac, const std::string& label) {
  out_ << line({{"event", "router"}, {"mac", mac.text()}, {"label", label}}) << std::flush;
}

void JsonEvents::statusChanged(const RouterState& state) {
  out_ << line({{"event", "status"},
                {"mac", state.mac.text()},
                {"code", static_cast<int>(state.status)},
                {"status", statusName(state.status)},
                {"text", state.text},
                {"bytes", state.bytes},
                {"total", state.total}})
       << std::flush;
}

void JsonEvents::routerDone(const MacAddress& mac, bool ok, const std::string& text) {
  out_ << line({{"event", "result"}, {"mac", mac.text()}, {"ok", ok}, {"text", text}})
       << std::flush;
}

}  // namespace omniset
