#include "tool/roundtrip/RestoredSettings.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <set>
#include <utility>

#include "base/ConfigKeys.h"
#include "base/FindIn.h"
#include "base/LetterCase.h"
#include "base/Pieces.h"
#include "common/sys/NicInfoWriter.h"
#include "common/sys/NicText.h"
#include "common/sys/Registry.h"
#include "handlers/internal/ConfigFile.h"
#include "tool/machine/ChangeText.h"
#include "tool/machine/MachineDifference.h"

namespace tool {
namespace {

using base::Key;
using simulated::Adapter;
using simulated::AdapterField;
using simulated::Change;
using simulated::Machine;
using simulated::OnImage;
using Texts = std::vector<std::string>;

// ---- Evidence -----------------------------------------------------------------------------------

/// Why the machine refused the change; empty when it did it, or when there is none.
std::string RefusalOf(const Change* change) {
  return change == nullptr ? std::string() : Describe(*change).refusal;
}

/// The reason that `refusal` is; empty without one.
std::string Refused(const char* action, const std::string& refusal) {
  return refusal.empty() ? refusal : action + (" was refused: " + refusal);
}

/// What the library recorded, read back, and did: the captured file and the journal of its
/// messages.
class Evidence {
 public:
  explicit Evidence(const ImageRestore& image) : image_(image) {
    if (image.captured) file_.Parse(image.captured->text, /*merge=*/false);
    for (const Delivery& delivery : image.restore.deliveries) {
      restoring_.insert(restoring_.end(), delivery.changes.begin(), delivery.changes.end());
      if (delivery.Result() == "Success" || delivery.Result() == "Reboot") wasRead_ = true;
    }
    if (LastRestoring("wmi.method", [](const Change& /*change*/) { return true; })) wasRead_ = true;
  }

  /// An entry of the captured file.
  std::optional<std::string> Value(std::string_view section, std::string_view key) {
    return std::optional<std::string>(file_.FindValue(section, key));
  }

  /// The adapter's position among those that the capture looks at; nothing for any other.
  std::optional<int> NumberOf(const Adapter& adapter) const {
    int number = 0;
    for (const Adapter& one : image_.before.adapters) {
      if (one.index == adapter.index) break;
      if (one.ipEnabled) ++number;
    }
    return adapter.ipEnabled ? std::optional(number) : std::nullopt;
  }

  /// The section that the capture wrote of the adapter; empty when there is none.
  std::string SectionOf(const Adapter& adapter) const {
    const auto number = NumberOf(adapter);
    return number && HasSection(*number) ? sys::SectionName(*number) : std::string();
  }

  /// Configure took the section for one of an adapter.
  bool WasRead(const std::string& section) const {
    return wasRead_ && base::KindOfSection(section) == base::SectionKind::kAdapter;
  }

  /// The capture's last attempt to write the key; null when there was none.
  const Change* WriteOf(std::string_view section, std::string_view key) const {
    return FindLast(image_.capture.changes, "file.write", [&](const Change& change) {
      return change["section"] == section && change["key"] == key;
    });
  }

  /// Configure's last change of that kind that matches; null when there was none.
  const Change* LastRestoring(const char* call, const auto& matches) const {
    return FindLast(restoring_, call, matches);
  }

  /// What ended the restore early; empty when all that was asked for was done.
  std::string RestoreFailure() const {
    for (const Delivery& delivery : image_.restore.deliveries) {
      if (!delivery.Succeeded()) return "Configure failed: " + delivery.Failure();
    }
    const bool restarts = image_.restore.deliveries.back().Result() == "Reboot";
    return restarts ? "Configure still asks for a restart" : "";
  }
  std::string RestoreFailureOr(const std::string& reason) const {
    const std::string failure = RestoreFailure();
    return failure.empty() ? reason : failure;
  }

  /// Why the adapter has no section of its own.
  std::string WhyNotRecorded(const Adapter& adapter) const {
    const auto number = NumberOf(adapter);
    const bool wasWritten =
        WriteOf(NameOf(base::SectionKind::kGlobal), NameOf(Key::kRebootAfterConfig)) != nullptr;
    if (!wasWritten && !image_.capture.Succeeded()) {
      return "nothing was recorded, for PrepForImage failed: " + CaptureFailure(image_);
    }
    if (!number) return "not recorded, for the adapter is not IP-enabled";
    if (!sys::ParsePnpDeviceId(adapter.pnpDeviceId).isPci) {
      return "not recorded, for the adapter is not on PCI (" + adapter.pnpDeviceId + ")";
    }
    const auto* const write = WriteOf(sys::SectionName(*number), NameOf(Key::kDhcp));
    return write == nullptr ? "not recorded, for PrepForImage did not see the adapter"
                            : "recording it was refused: " + RefusalOf(write);
  }

  /// Why the adapter's section was not read.
  std::string WhyNotRead(const Adapter& adapter) const {
    if (std::string failure = RestoreFailure(); !wasRead_ && !failure.empty()) return failure;
    const std::string reason = "section [" + SectionOf(adapter) + "] is not read back";
    if (NumberOf(adapter) == 0 || HasSection(0)) return reason;
    const auto* first =
        base::FindIn(image_.before.adapters, [](const Adapter& one) { return one.ipEnabled; });
    return reason + "; adapter " + std::to_string(first->index) +
           ", which is not recorded, used up [" + sys::SectionName(0) + "]";
  }

 private:
  static const Change* FindLast(const std::vector<Change>& changes, const char* call,
                                const auto& matches) {
    const auto found = std::find_if(changes.rbegin(), changes.rend(), [&](const Change& change) {
      return change.call == call && matches(change);
    });
    return found == changes.rend() ? nullptr : &*found;
  }

  bool HasSection(int number) const {
    const std::string section = sys::SectionName(number);
    return FindLast(image_.capture.changes, "file.write", [&](const Change& change) {
             return change["section"] == section && RefusalOf(&change).empty();
           }) != nullptr;
  }

  const ImageRestore& image_;
  ConfigFile file_{/*caseSensitive=*/false};
  std::vector<Change> restoring_;
  /// Configure came to apply the file's sections.
  bool wasRead_ = false;
};

// ---- The settings of an adapter -----------------------------------------------------------------

Texts ValueOf(const Adapter& adapter, const AdapterField& field) {
  Texts texts = FieldTexts(adapter, field);
  // Link-local addresses come of themselves.
  if (field.mate != nullptr) {
    std::erase_if(texts, [](const auto& text) { return base::StartsWith(text, "fe80:"); });
  }
  return texts;
}

/// What the recorded values mean, in the same form.
Texts RecordedTexts(const AdapterField& field, const Texts& values) {
  if (std::holds_alternative<simulated::AdapterMember<bool>>(field.member)) {
    return {base::SameText(values[0], "True") ? field.set : field.unset};
  }
  return field.mate == nullptr ? base::Split(values[0], ",") : Texts{base::Join(values, "/")};
}

/// Explains one setting of one adapter.
class Explanation {
 public:
  Explanation(Evidence& evidence, const AdapterField& field, const Adapter& before)
      : evidence_(evidence), field_(field), before_(before), section_(evidence.SectionOf(before)) {
    if (section_.empty()) return;
    for (const std::optional<Key>& key : field.record.keys) {
      if (!key) continue;
      const auto number = static_cast<std::size_t>(*evidence.NumberOf(before));
      keys_.push_back(RowOf(*key).isNumbered ? NameOf(*key, number) : std::string(NameOf(*key)));
      const auto value = evidence.Value(section_, keys_.back());
      if (!value) continue;
      values_.push_back(*value);
      entries_.push_back(keys_.back() + "=" + *value);
    }
  }

  /// "Address=10.0.0.5, Netmask=255.0.0.0"; empty when the file does not have the keys.
  std::string Recorded() const { return base::Join(entries_, ", "); }

  std::string Reason() {
    const std::string record = RecordReason();
    Texts parts{record, SettingReason(/*recordIsRight=*/record.empty())};
    std::erase(parts, "");
    return base::Join(parts, "; ");
  }

 private:
  /// How the record differs from the setting.
  std::string RecordReason() const {
    if (section_.empty()) return evidence_.WhyNotRecorded(before_);
    if (keys_.empty()) return "not recorded";
    const Texts wanted = ValueOf(before_, field_);
    const Change* write = evidence_.WriteOf(section_, keys_.front());
    if (auto reason = Refused("recording it", RefusalOf(write)); !reason.empty()) return reason;
    if (values_.empty() && wanted.empty()) return {};
    if (values_.empty()) {
      return field_.record.keys.front() == Key::kDnsServer && !before_.staticDns
                 ? "not recorded, for they are not set by hand"
                 : "not recorded";
    }
    if (write == nullptr) return Recorded() + " was left in the file by an earlier record";
    const Texts items = RecordedTexts(field_, values_);
    if (items == wanted) return {};
    const auto isOnly = [&](const std::string& text) {
      return wanted.size() > 1 && items == Texts{text};
    };
    if (wanted.empty() || !isOnly(wanted.front())) {
      return isOnly(base::Join(wanted, "")) ? "recorded run together (" + Recorded() + ")"
                                            : "recorded as " + Recorded();
    }
    return "only the first is recorded (" + Recorded() + ")";
  }

  /// What was made of the record, where that is not what was to be expected.
  std::string SettingReason(bool recordIsRight) {
    const bool wasRead = evidence_.WasRead(section_);
    if (const Change* call = LastCall()) {
      if (auto reason = Refused("setting it", RefusalOf(call)); !reason.empty()) return reason;
      if (!wasRead) return "set by another section of the file";
      return recordIsRight ? "Configure set it otherwise" : "";
    }
    if (values_.empty()) return {};
    if (!wasRead) return evidence_.WhyNotRead(before_);
    if (field_.record.methods.front() == nullptr) return keys_.front() + " is not read back";
    const auto& [key, value] = field_.record.condition;
    if (key && !base::SameText(evidence_.Value(section_, NameOf(*key)).value_or(""), value)) {
      return "not read back without " + std::string(NameOf(*key)) + "=" + value;
    }
    return evidence_.RestoreFailureOr("section [" + section_ + "] was not applied to this adapter");
  }

  /// The last call of one of the setting's methods for this adapter, or for all adapters.
  const Change* LastCall() const {
    const std::string own = ".Index=" + std::to_string(before_.index);
    return evidence_.LastRestoring("wmi.method", [&](const Change& change) {
      const std::string& path = change["path"].Text();
      if (path.find('.') != std::string::npos && !path.ends_with(own)) return false;
      return std::any_of(
          field_.record.methods.begin(), field_.record.methods.end(),
          [&](const char* method) { return method != nullptr && change["method"] == method; });
    });
  }

  Evidence& evidence_;
  const AdapterField& field_;
  const Adapter& before_;
  std::string section_;
  Texts keys_;
  /// The values of those keys that the file has, and the same as "key=value".
  Texts values_;
  Texts entries_;
};

// ---- Other settings -----------------------------------------------------------------------------

std::string ServiceReason(const Evidence& evidence, const std::string& service) {
  const auto isIts = [&](const Change& change) {
    return base::SameText(change["service"].Text(), service);
  };
  const Change* change = evidence.LastRestoring("service.start_type", isIts);
  if (change == nullptr) {
    return evidence.RestoreFailureOr("Configure did not find the flag NetworkDisabled");
  }
  if (auto reason = Refused("setting it", RefusalOf(change)); !reason.empty()) return reason;
  auto reason = Refused("starting it", RefusalOf(evidence.LastRestoring("service.start", isIts)));
  return reason.empty() ? "Configure makes it " + (*change)["start"].Text() + ", whatever it was"
                        : reason;
}

std::string RouteReason(const Evidence& evidence, const simulated::PersistentRoute& route) {
  const auto* call = evidence.LastRestoring("process.run", [&](const Change& change) {
    return change["command"].Text().find(" " + route.destination + " ") != std::string::npos;
  });
  const std::string reason = Refused("setting it", RefusalOf(call));
  return reason.empty() ? "routes are not recorded" : reason;
}

Texts RouteValue(const Machine& machine, const std::string& route) {
  const auto* found = base::FindIn(machine.persistentRoutes, [&](const auto& candidate) {
    return RouteText(candidate) == route;
  });
  return found == nullptr ? Texts() : Texts{"metric " + std::to_string(found->metric)};
}

Texts FlagValue(const Machine& machine) {
  const std::string key = std::string(R"(HKEY_LOCAL_MACHINE\)") + sys::kClientServiceKey;
  const bool isSet =
      std::any_of(machine.registry.begin(), machine.registry.end(), [&](const auto& value) {
        return base::SameText(value.name, sys::kNetworkDisabledValue) &&
               base::SameText(value.key, key);
      });
  return isSet ? Texts{"set"} : Texts();
}

bool WasTouched(const ImageRestore& image, const std::string& service) {
  const auto touches = [&](const Delivery& delivery) {
    return std::any_of(delivery.changes.begin(), delivery.changes.end(), [&](const Change& change) {
      return base::SameText(change["service"].Text(), service);
    });
  };
  const auto& restoring = image.restore.deliveries;
  return touches(image.capture) || std::any_of(restoring.begin(), restoring.end(), touches);
}

// ---- The list -----------------------------------------------------------------------------------

class Listing {
 public:
  explicit Listing(const ImageRestore& image) : image_(image), evidence_(image) {}

  std::vector<RestoredSetting> All() {
    AddComputer();
    // No message adds or removes an adapter or a service, so all states have them in one order.
    for (std::size_t i = 0; i < image_.before.adapters.size(); ++i) AddAdapter(i);
    AddRoutes();
    for (std::size_t i = 0; i < image_.before.services.size(); ++i) AddService(i);
    Add("registry", sys::kNetworkDisabledValue, FlagValue, [&] {
      return FlagValue(image_.after).empty() ? "Configure took it" : "Configure did not take it";
    });
    return std::move(settings_);
  }

 private:
  /// Null when the machine has the setting neither before nor after. A value that is `given` by
  /// DHCP is none of its settings. `reason` is asked only when one is needed.
  RestoredSetting* Add(const std::string& subject, const std::string& setting, const auto& valueOn,
                       const auto& reason, bool given = false) {
    const Texts before = valueOn(image_.before);
    const Texts cleared = valueOn(image_.cleared);
    const Texts after = valueOn(image_.after);
    if (before.empty() && (after.empty() || given)) return nullptr;
    const Outcome outcome = given                                  ? Outcome::kGiven
                            : after == before && before == cleared ? Outcome::kStayed
                            : after == before                      ? Outcome::kRestored
                            : after == cleared && !before.empty()  ? Outcome::kLost
                                                                   : Outcome::kChanged;
    settings_.push_back({subject, std::nullopt, setting, before, after, outcome});
    RestoredSetting& added = settings_.back();
    if (!added.IsAsBefore()) added.reason = reason();
    return &added;
  }

  void AddComputer() {
    const auto nameOn = [](const Machine& machine) {
      return Texts{machine.pendingComputerName.value_or(machine.computerName)};
    };
    const auto membershipOn = [](const Machine& machine) {
      return Texts{MembershipText(machine.membership)};
    };
    const auto foreign = [] { return "set by a section that was in the file already"; };
    Add("computer", "name", nameOn, foreign);
    Add("computer", "member of", membershipOn, [&] {
      const auto config = evidence_.Value(NameOf(base::SectionKind::kGlobal), NameOf(Key::kConfig));
      return base::SameText(config.value_or(""), base::kRestoreAfterCreate)
                 ? foreign()
                 : "the file does not say Config=RestoreAfterCreate";
    });
  }

  void AddAdapter(std::size_t position) {
    const Adapter& before = image_.before.adapters[position];
    const Adapter& after = image_.after.adapters[position];
    for (const AdapterField& field : simulated::kAdapterFields) {
      if (field.onImage == OnImage::kStays || field.onImage == OnImage::kFollows) continue;
      Explanation explanation(evidence_, field, before);
      RestoredSetting* added = Add(
          AdapterName(before), field.word,
          [&](const Machine& machine) { return ValueOf(machine.adapters[position], field); },
          [&] { return explanation.Reason(); },
          field.isGiven != nullptr && field.isGiven(before) && field.isGiven(after));
      if (added == nullptr) continue;
      added->adapter = before.index;
      added->recorded = explanation.Recorded();
    }
  }

  void AddRoutes() {
    std::set<std::string> seen;
    for (const Machine* machine : {&image_.before, &image_.after}) {
      for (const simulated::PersistentRoute& route : machine->persistentRoutes) {
        const std::string text = RouteText(route);
        if (!seen.insert(text).second) continue;
        Add(
            "persistent routes", text,
            [&](const Machine& state) { return RouteValue(state, text); },
            [&] { return RouteReason(evidence_, route); });
      }
    }
  }

  void AddService(std::size_t position) {
    const std::string& name = image_.before.services[position].name;
    if (!WasTouched(image_, name)) return;
    Add(
        "services", name,
        [&](const Machine& machine) { return Texts{ServiceText(machine.services[position])}; },
        [&] { return ServiceReason(evidence_, name); });
  }

  const ImageRestore& image_;
  Evidence evidence_;
  std::vector<RestoredSetting> settings_;
};

}  // namespace

std::string CaptureFailure(const ImageRestore& image) {
  std::string failure = image.capture.Failure();
  if (failure.find("Name Resolution") == std::string::npos) return failure;
  if (const auto unknown = FindUnknownHost(image.before)) {
    failure += "; " + unknown->text + " of adapter " + std::to_string(unknown->adapter) +
               " is no IPv4 address and no known host";
  }
  return failure;
}

std::string_view OutcomeName(Outcome outcome) {
  constexpr std::string_view kNames[] = {"stayed", "restored", "given", "lost", "changed"};
  return kNames[static_cast<std::size_t>(outcome)];
}

std::vector<RestoredSetting> RestoredSettings(const ImageRestore& image) {
  return Listing(image).All();
}

}  // namespace tool
