#include "cli/json_lines.h"

#include <nlohmann/json.hpp>

#include "core/ipv4_address.h"
#include "install/status_name.h"
#include "packages/version_text.h"

namespace omniset {

namespace {

using Json = nlohmann::ordered_json;

std::string line(const Json& object) {
  return object.dump(-1, ' ', true, Json::error_handler_t::replace) + "\n";
}

Json bootStep(const char* step, const BootEvent& event) {
  return {{"event", "boot"}, {"step", step}, {"mac", event.client.text()}};
}

Json imageStep(const char* step, const BootEvent& event) {
  Json object = bootStep(step, event);
  object["image"] = event.image;
  object["name"] = bootImageName(event.image);
  return object;
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

std::string driveJson(const DriveRow& row) {
  return line({{"drive", row.drive.root},
               {"media", driveTypeName(row.drive.type)},
               {"size", row.facts.bytes},
               {"label", row.facts.label},
               {"contents", row.facts.contents},
               {"obstacle", row.facts.obstacle}});
}

std::string bootJson(const BootEvent& event) {
  Json object;
  switch (event.kind) {
    case BootEvent::Kind::kAnswered:
      object = bootStep("answered", event);
      object["address"] = dottedQuad(event.address);
      break;
    case BootEvent::Kind::kRefused:
      object = bootStep("refused", event);
      object["text"] = event.text;
      break;
    case BootEvent::Kind::kRequested:
      object = imageStep("requested", event);
      object["file"] = event.text;
      break;
    case BootEvent::Kind::kSent:
      object = imageStep("sent", event);
      object["bytes"] = event.length;
      break;
    case BootEvent::Kind::kGaveUp:
      object = imageStep("gave-up", event);
      object["requested"] = event.requested;
      break;
    case BootEvent::Kind::kDone:
      object = bootStep("done", event);
      break;
  }
  return line(object);
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

void JsonMediaEvents::changed(const MediaState& state) {
  const bool isBytes = state.unit == MediaState::Unit::kBytes;
  out_ << line({{"event", "status"},
                {"device", device_},
                {"text", state.text},
                {isBytes ? "bytes" : "step", state.done},
                {isBytes ? "total" : "steps", state.total}})
       << std::flush;
}

void JsonMediaEvents::ended(const MediaOutcome& outcome) {
  out_ << line({{"event", "result"},
                {"device", device_},
                {"ok", outcome.isDone},
                {"text", outcome.text}})
       << std::flush;
}

}  // namespace omniset
