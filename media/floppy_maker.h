// Writes a boot floppy in drive A for targets that cannot boot over the network. A job for a thread
// of its own.
#pragma once

#include <string>

#include "core/job.h"
#include "core/locked_queue.h"
#include "media/media_services.h"
#include "media/read_back.h"

namespace omniset {

struct FloppyProgress {
  int step = 0;  // 0 to kFloppySteps
  std::string statusText;
};

constexpr int kFloppySteps = 10;
constexpr char kFloppyDrive = 'A';
// The label that is proposed, and the one in place of an empty one.
inline constexpr const char* kProposedLabel = "veltrona";
inline constexpr const char* kNoLabel = "Unnamed";
// The status text of a floppy that is done.
constexpr const char* kFloppyCompleted = "Completed";

class FloppyMaker : public Code {
 public:
  // `label` is what the file label.txt will hold.
  FloppyMaker(std::string label, MediaServices services);

  // Raises Failure and Error as DriveMaker does; the last progress tells the failure's text.
  void run() override;

  // At most one entry, the latest. Any thread.
  LockedQueue<FloppyProgress>& progress() { return progress_; }

 private:
  void make();
  void copySystemFiles();
  void copy(const char* name, int image, int steps);
  void writeLabel();
  void makeBootable();
  void installByAbsoluteAccess();
  void begin(const char* statusText, int steps);
  void post();

  int step_ = 0;
  std::string statusText_;
  LockedQueue<FloppyProgress> progress_;
  std::string label_;
  MediaServices services_;
  ReadBack readBack_;
};

}  // namespace omniset
