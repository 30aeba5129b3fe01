#include "tool/roundtrip/RestoredSettings.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>

#include "base/ConfigKeys.h"
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

const Change* FindLast(const std::vector<Change>& changes, const char* call, const auto& matches) {
  const auto found = std::find_if(changes.rbegin(), changes.rend(), [&](const Change& change) {
    return change.call == call && matches(change);
  });
  return found == changes.rend() ? nullptr : &*found;
}

/// Why the machine refused the change; empty when it did it, or when there is none.
std::string RefusalOf(const Change* change) {
  return change == nullptr ? std::string() : Describe(*change).refusal;
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

  /// The adapter's position among those that the capture looks at.
  std::optional<int> NumberOf(const Adapter& adapter) const {
    const auto& all = image_.before.adapters;
    const auto own = std::find_if(all.begin(), all.end(),
                                  [&](const Adapter& one) { return one.index == adapter.index; });
    if (!adapter.ipEnabled) return std::nullopt;
    return static_cast<int>(
        std::count_if(all.begin(), own, [](const Adapter& one) { return one.ipEnabled; }));
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

 private:
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
  if (field.mate == nullptr) return base::Split(values[0], ",");
  return {values.size() > 1 ? values[0] + "/" + values[1] : values[0]};
}

/// A setting before the capture, on the fresh image, and after the restore.
struct States {
  Texts before;
  Texts cleared;
  Texts after;
};

Outcome OutcomeOf(const States& states) {
  const auto& [before, cleared, after] = states;
  if (after == before) return before == cleared ? Outcome::kStayed : Outcome::kRestored;
  return after == cleared && !before.empty() ? Outcome::kLost : Outcome::kChanged;
}

// ---- Reasons ------------------------------------------------------------------------------------

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
    const Texts wanted = ValueOf(before_, field_);
    if (section_.empty()) return evidence_.WhyNotRecorded(before_);
    if (keys_.empty()) return "not recorded";
    const Change* write = evidence_.WriteOf(section_, keys_.front());
    const std::string refusal = RefusalOf(write);
    if (!refusal.empty()) return "recording it was refused: " + refusal;
    if (values_.empty() && wanted.empty()) return {};
    if (values_.empty()) {
      return field_.record.keys.front() == Key::kDnsServer && !before_.staticDns
                 ? "not recorded, for they are not set by hand"
                 : "not recorded";
    }
    if (write == nullptr) return Recorded() + " was left in the file by an earlier record";
    const Texts items = RecordedTexts(field_, values_);
    if (items == wanted) return {};
    if (wanted.size() > 1 && items == Texts{wanted.front()}) {
      return "only the first is recorded (" + Recorded() + ")";
    }
    if (wanted.size() > 1 && items == Texts{base::Join(wanted, "")}) {
      return "recorded run together (" + Recorded() + ")";
    }
    return "recorded as " + Recorded();
  }

  /// What was made of the record, where that is not what was to be expected.
  std::string SettingReason(bool recordIsRight) {
    const bool wasRead = evidence_.WasRead(section_);
    if (const Change* call = LastCall()) {
      const std::string refusal = RefusalOf(call);
      if (!refusal.empty()) return "setting it was refused: " + refusal;
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
    std::string failure = evidence_.RestoreFailure();
    if (!failure.empty()) return failure;
    return "section [" + section_ + "] was not applied to this adapter";
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

std::string ServiceReason(const Evidence& evidence, const std::string& service) {
  const auto isIts = [&](const Change& change) {
    return base::SameText(change["service"].Text(), service);
  };
  const Change* change = evidence.LastRestoring("service.start_type", isIts);
  if (change == nullptr) {
    std::string failure = evidence.RestoreFailure();
    if (!failure.empty()) return failure;
    return "Configure did not find the flag NetworkDisabled";
  }
  const std::string refusal = RefusalOf(change);
  if (!refusal.empty()) return "setting it was refused: " + refusal;
  const std::string startRefusal = RefusalOf(evidence.LastRestoring("service.start", isIts));
  return startRefusal.empty()
             ? "Configure makes it " + (*change)["start"].Text() + ", whatever it was"
             : "starting it was refused: " + startRefusal;
}

std::string RouteReason(const Evidence& evidence, const simulated::PersistentRoute& route) {
  const std::string refusal =
      RefusalOf(evidence.LastRestoring("process.run", [&](const Change& change) {
        return change["command"].Text().find(" " + route.destination + " ") != std::string::npos;
      }));
  return refusal.empty() ? "routes are not recorded" : "setting it was refused: " + refusal;
}

// ---- The list -----------------------------------------------------------------------------------

Texts RouteValue(const Machine& machine, const std::string& route) {
  for (const simulated::PersistentRoute& candidate : machine.persistentRoutes) {
    if (RouteText(candidate) == route) return {"metric " + std::to_string(candidate.metric)};
  }
  return {};
}

Texts FlagValue(const Machine& machine) {
  for (const simulated::RegistryValue& value : machine.registry) {
    if (base::SameText(value.name, sys::kNetworkDisabledValue) &&
        base::SameText(value.key, std::string(R"(HKEY_LOCAL_MACHINE\)") + sys::kClientServiceKey)) {
      return {"set"};
    }
  }
  return {};
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

class Listing {
 public:
  explicit Listing(const ImageRestore& image) : image_(image), evidence_(image) {}

  std::vector<RestoredSetting> All() {
    AddComputer();
    // No message adds or removes an adapter or a service, so all states have them in one order.
    for (std::size_t i = 0; i < image_.before.adapters.size(); ++i) AddAdapter(i);
    AddRoutes();
    for (std::size_t i = 0; i < image_.before.services.size(); ++i) AddService(i);
    AddFlag();
    return std::move(settings_);
  }

 private:
  /// Null when the machine has the setting neither before nor after. A value that is `given` by
  /// DHCP is none of its settings. `reason` is asked only when one is needed.
  RestoredSetting* Add(const std::string& subject, const std::string& setting, States states,
                       bool given, const auto& reason) {
    if (states.before.empty() && (states.after.empty() || given)) return nullptr;
    RestoredSetting& added = settings_.emplace_back();
    added.subject = subject;
    added.setting = setting;
    added.outcome = given ? Outcome::kGiven : OutcomeOf(states);
    if (!added.IsAsBefore()) added.reason = reason();
    added.before = std::move(states.before);
    added.after = std::move(states.after);
    return &added;
  }

  /// A setting of the machine as a whole.
  void Add(const std::string& subject, const std::string& setting, const auto& valueOn,
           const auto& reason) {
    Add(subject, setting, {valueOn(image_.before), valueOn(image_.cleared), valueOn(image_.after)},
        /*given=*/false, reason);
  }

  void AddComputer() {
    const auto foreign = [] { return "set by a section that was in the file already"; };
    Add(
        "computer", "name",
        [](const Machine& machine) {
          return Texts{machine.pendingComputerName.value_or(machine.computerName)};
        },
        foreign);
    Add(
        "computer", "member of",
        [](const Machine& machine) { return Texts{MembershipText(machine.membership)}; },
        [&] {
          const std::string config =
              evidence_.Value(NameOf(base::SectionKind::kGlobal), NameOf(Key::kConfig))
                  .value_or("");
          return base::SameText(config, base::kRestoreAfterCreate)
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
      RestoredSetting* added =
          Add(AdapterName(before), field.word,
              {ValueOf(before, field), ValueOf(image_.cleared.adapters[position], field),
               ValueOf(after, field)},
              field.isGiven != nullptr && field.isGiven(before) && field.isGiven(after),
              [&] { return explanation.Reason(); });
      if (added == nullptr) continue;
      added->adapter = before.index;
      added->recorded = explanation.Recorded();
    }
  }

  void AddRoutes() {
    Texts seen;
    for (const Machine* machine : {&image_.before, &image_.after}) {
      for (const simulated::PersistentRoute& route : machine->persistentRoutes) {
        const std::string text = RouteText(route);
        if (std::find(seen.begin(), seen.end(), text) != seen.end()) continue;
        seen.push_back(text);
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

  void AddFlag() {
    Add("registry", sys::kNetworkDisabledValue, FlagValue, [&] {
      return FlagValue(image_.after).empty() ? "Configure took it" : "Configure did not take it";
    });
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
