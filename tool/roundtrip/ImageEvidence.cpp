#include "tool/roundtrip/ImageEvidence.h"

#include <algorithm>

#include "base/ConfigKeys.h"
#include "base/LetterCase.h"
#include "common/sys/NicInfoWriter.h"
#include "common/sys/NicText.h"
#include "tool/machine/ChangeText.h"

namespace tool {
namespace {

using base::Key;
using simulated::Adapter;
using simulated::Change;

const Change* FindLast(const std::vector<Change>& changes, const char* call,
                       const ImageEvidence::Match& matches) {
  const auto found = std::find_if(changes.rbegin(), changes.rend(), [&](const Change& change) {
    return change.call == call && matches(change);
  });
  return found == changes.rend() ? nullptr : &*found;
}

bool IsPci(const Adapter& adapter) { return sys::ParsePnpDeviceId(adapter.pnpDeviceId).isPci; }

/// The first text of an adapter that the capture looks up as a host name and that is none.
std::optional<std::string> UnknownHost(const simulated::Machine& machine, const Adapter& adapter) {
  if (!adapter.ipEnabled || !IsPci(adapter)) return std::nullopt;
  std::vector<std::string> texts;
  if (!adapter.ipAddresses.empty()) texts.push_back(adapter.ipAddresses.front());
  texts.insert(texts.end(), adapter.gateways.begin(), adapter.gateways.end());
  texts.insert(texts.end(), adapter.dnsServers.begin(), adapter.dnsServers.end());
  for (const std::string& text : texts) {
    const std::string first = base::Folded(text.substr(0, 1));
    const bool isName = first >= "a" && first <= "z";
    if (isName && std::none_of(machine.hosts.begin(), machine.hosts.end(),
                               [&](const auto& host) { return base::SameText(host.name, text); })) {
      return text;
    }
  }
  return std::nullopt;
}

}  // namespace

ImageEvidence::ImageEvidence(const ImageRestore& image) : image_(image) {
  if (image.captured) file_.Parse(image.captured->text, /*merge=*/false);
  for (const Delivery& delivery : image.restore.deliveries) {
    restoring_.insert(restoring_.end(), delivery.changes.begin(), delivery.changes.end());
    if (delivery.Result() == "Success" || delivery.Result() == "Reboot") wasRead_ = true;
  }
  if (LastRestoring("wmi.method", [](const simulated::Change& /*change*/) { return true; }))
    wasRead_ = true;
}

std::optional<std::string> ImageEvidence::Value(std::string_view section, std::string_view key) {
  const auto value = file_.FindValue(section, key);
  return value ? std::optional<std::string>(*value) : std::nullopt;
}

std::optional<int> ImageEvidence::NumberOf(const Adapter& adapter) const {
  int number = 0;
  for (const Adapter& other : image_.before.adapters) {
    if (!other.ipEnabled) continue;
    if (other.index == adapter.index) return number;
    ++number;
  }
  return std::nullopt;
}

std::string ImageEvidence::SectionOf(const Adapter& adapter) const {
  const auto number = NumberOf(adapter);
  return number && HasSection(*number) ? sys::SectionName(*number) : std::string();
}

bool ImageEvidence::WasRead(const std::string& section) const {
  return wasRead_ && base::KindOfSection(section) == base::SectionKind::kAdapter;
}

const Change* ImageEvidence::WriteOf(std::string_view section, std::string_view key) const {
  return FindLast(image_.capture.changes, "file.write", [&](const Change& change) {
    return change["section"] == section && change["key"] == key;
  });
}

const Change* ImageEvidence::LastRestoring(const char* call, const Match& matches) const {
  return FindLast(restoring_, call, matches);
}

std::string ImageEvidence::RestoreFailure() const {
  for (const Delivery& delivery : image_.restore.deliveries) {
    if (!delivery.Succeeded()) return "Configure failed: " + delivery.Failure();
  }
  const bool restarts = image_.restore.deliveries.back().Result() == "Reboot";
  return restarts ? "Configure still asks for a restart" : "";
}

std::string ImageEvidence::WhyNotRecorded(const Adapter& adapter) const {
  const auto number = NumberOf(adapter);
  const bool wasWritten =
      WriteOf(NameOf(base::SectionKind::kGlobal), NameOf(Key::kRebootAfterConfig)) != nullptr;
  if (!wasWritten && !image_.capture.Succeeded()) {
    return "nothing was recorded, for PrepForImage failed: " + CaptureFailure(image_);
  }
  if (!number) return "not recorded, for the adapter is not IP-enabled";
  if (!IsPci(adapter)) {
    return "not recorded, for the adapter is not on PCI (" + adapter.pnpDeviceId + ")";
  }
  const auto* const write = WriteOf(sys::SectionName(*number), NameOf(Key::kDhcp));
  return write == nullptr ? "not recorded, for PrepForImage did not see the adapter"
                          : "recording it was refused: " + RefusalOf(write);
}

std::string ImageEvidence::WhyNotRead(const Adapter& adapter) const {
  if (std::string failure = RestoreFailure(); !wasRead_ && !failure.empty()) return failure;
  std::string reason = "section [" + SectionOf(adapter) + "] is not read back";
  if (NumberOf(adapter).value_or(0) != 0 && !HasSection(0)) {
    const auto& all = image_.before.adapters;
    const auto first =
        std::find_if(all.begin(), all.end(), [](const Adapter& one) { return one.ipEnabled; });
    reason += "; adapter " + std::to_string(first->index) + ", which is not recorded, used up [" +
              sys::SectionName(0) + "]";
  }
  return reason;
}

bool ImageEvidence::HasSection(int number) const {
  const std::string section = sys::SectionName(number);
  return FindLast(image_.capture.changes, "file.write", [&](const Change& change) {
           return change["section"] == section && RefusalOf(&change).empty();
         }) != nullptr;
}

std::string RefusalOf(const Change* change) {
  return change == nullptr ? std::string() : Describe(*change).refusal;
}

std::string CaptureFailure(const ImageRestore& image) {
  std::string failure = image.capture.Failure();
  if (failure.find("Name Resolution") == std::string::npos) return failure;
  for (const Adapter& adapter : image.before.adapters) {
    if (const auto name = UnknownHost(image.before, adapter)) {
      return failure + "; " + *name + " of adapter " + std::to_string(adapter.index) +
             " is no IPv4 address and no known host";
    }
  }
  return failure;
}

}  // namespace tool
