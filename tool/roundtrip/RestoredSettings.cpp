#include "tool/roundtrip/RestoredSettings.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>

#include "base/ConfigKeys.h"
#include "base/LetterCase.h"
#include "base/Pieces.h"
#include "common/sys/Registry.h"
#include "tool/machine/MachineDifference.h"
#include "tool/roundtrip/ImageEvidence.h"

namespace tool {
namespace {

using base::Key;
using simulated::Adapter;
using simulated::AdapterField;
using simulated::Change;
using simulated::Machine;
using simulated::OnImage;
using Texts = std::vector<std::string>;

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
  Explanation(ImageEvidence& evidence, const AdapterField& field, const Adapter& before)
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

  ImageEvidence& evidence_;
  const AdapterField& field_;
  const Adapter& before_;
  std::string section_;
  Texts keys_;
  /// The values of those keys that the file has, and the same as "key=value".
  Texts values_;
  Texts entries_;
};

std::string ServiceReason(const ImageEvidence& evidence, const std::string& service) {
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

std::string RouteReason(const ImageEvidence& evidence, const simulated::PersistentRoute& route) {
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
  ImageEvidence evidence_;
  std::vector<RestoredSetting> settings_;
};

}  // namespace

std::string_view OutcomeName(Outcome outcome) {
  switch (outcome) {
    case Outcome::kStayed:
      return "stayed";
    case Outcome::kRestored:
      return "restored";
    case Outcome::kGiven:
      return "given";
    case Outcome::kLost:
      return "lost";
    case Outcome::kChanged:
      return "changed";
  }
  return "";
}

std::vector<RestoredSetting> RestoredSettings(const ImageRestore& image) {
  return Listing(image).All();
}

}  // namespace tool
