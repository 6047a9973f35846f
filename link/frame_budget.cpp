#include "link/frame_budget.h"

#include "link/link_frame.h"

namespace omniset {

std::int64_t framesForFile(std::int64_t fileSize) {
  constexpr std::int64_t kChunk = kChunkLength;
  return 1 + (fileSize + kChunk - 1) / kChunk;
}

std::int64_t framesForInstallation(std::span<const std::int64_t> fileSizes) {
  std::int64_t frames = 2;
  for (const std::int64_t size : fileSizes) frames += framesForFile(size);
  return frames;
}

}  // namespace omniset
