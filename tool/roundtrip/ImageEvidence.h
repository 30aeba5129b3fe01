// What the library recorded of a machine, read back, and did: taken from the captured file and the
// journal of its messages.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "handlers/internal/ConfigFile.h"
#include "platform/simulated/Machine.h"
#include "tool/roundtrip/ImageRestore.h"

namespace tool {

/// Borrows the image, and hands out changes that live as long as both.
class ImageEvidence {
 public:
  using Match = std::function<bool(const simulated::Change& change)>;

  explicit ImageEvidence(const ImageRestore& image);
  ImageEvidence(const ImageEvidence&) = delete;
  ImageEvidence& operator=(const ImageEvidence&) = delete;

  /// An entry of the captured file.
  std::optional<std::string> Value(std::string_view section, std::string_view key);

  /// The adapter's position among those that the capture looks at.
  std::optional<int> NumberOf(const simulated::Adapter& adapter) const;
  /// The section that the capture wrote of the adapter; empty when there is none.
  std::string SectionOf(const simulated::Adapter& adapter) const;
  /// Configure took the section for one of an adapter.
  bool WasRead(const std::string& section) const;

  /// The capture's last attempt to write the key; null when there was none.
  const simulated::Change* WriteOf(std::string_view section, std::string_view key) const;
  /// Configure's last change of that kind that matches; null when there was none.
  const simulated::Change* LastRestoring(const char* call, const Match& matches) const;

  /// What ended the restore early; empty when all that was asked for was done.
  std::string RestoreFailure() const;
  /// Why the adapter has no section of its own.
  std::string WhyNotRecorded(const simulated::Adapter& adapter) const;
  /// Why the adapter's section was not read.
  std::string WhyNotRead(const simulated::Adapter& adapter) const;

 private:
  bool HasSection(int number) const;

  const ImageRestore& image_;
  ConfigFile file_{/*caseSensitive=*/false};
  std::vector<simulated::Change> restoring_;
  /// Configure came to apply the file's sections.
  bool wasRead_ = false;
};

/// Why the machine refused the change; empty when it did it, or when there is none.
std::string RefusalOf(const simulated::Change* change);

/// Why the capture failed, with the address that it could not read if that is why; empty when it
/// succeeded.
std::string CaptureFailure(const ImageRestore& image);

}  // namespace tool
