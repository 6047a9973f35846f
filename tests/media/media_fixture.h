// A computer with drives C (the system's), E (to be installed onto) and F (its neighbour), floppy
// A, packages and a script.
#pragma once

#include <gmock/gmock.h>

#include <string>

#include "core/path.h"
#include "media/boot_sector.h"
#include "media/drive_maker.h"
#include "media/floppy_maker.h"
#include "tests/fakes/captured_trace.h"
#include "tests/fakes/fake_volumes.h"

namespace omniset::test {

class MediaFixture : public ::testing::Test {
 protected:
  MediaFixture() {
    volumes.drives['A'];
    volumes.drives['C'].type = 3;
    volumes.drives['E'].files["old.txt"] = bytesOf("what was there");
    volumes.drives['F'].files["precious.txt"] = bytesOf("keep me");
    volumes.drives['F'].firstSector = formattedSector(99);
    volumes.files[joinPath("packages", "system-2.9.bdl")] = bytesOf("the system");
    volumes.files[joinPath("packages", "routing-2.9.bdl")] = bytesOf("routes");
    volumes.files["first.rsc"] = bytesOf(std::string(10'000, 's') + "\n");
  }

  static RInfo plainInfo() {
    return {'E', "packages", {"system-2.9.bdl", "routing-2.9.bdl"}, false, "", 0};
  }

  // All that a run reports is lost but for the last record.
  DriveReport make(const RInfo& what) {
    DriveMaker maker(what, fakeServices(volumes, format), 1000);
    lastFailure.clear();
    try {
      maker.run();
    } catch (const std::exception& failure) {
      lastFailure = failure.what();
    }
    return maker.reports().pop().value();
  }

  FloppyProgress makeFloppy(const std::string& label) {
    FloppyMaker maker(label, fakeServices(volumes, format));
    lastFailure.clear();
    try {
      maker.run();
    } catch (const std::exception& failure) {
      lastFailure = failure.what();
    }
    return maker.progress().pop().value();
  }

  std::string fileOn(char letter, const std::string& name) {
    const auto& files = volumes.drives.at(letter).files;
    const auto found = files.find(name);
    if (found == files.end()) return "(no such file)";
    return {found->second.begin(), found->second.end()};
  }

  CapturedTrace trace;
  FakeVolumes volumes;
  FakeFormat format{volumes};
  std::string lastFailure;
};

}  // namespace omniset::test
