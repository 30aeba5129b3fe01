#include "tool/plan/QueuePlan.h"

#include <algorithm>
#include <iterator>
#include <unordered_map>
#include <utility>
#include <variant>

#include "base/FindIn.h"
#include "base/LetterCase.h"
#include "common/config/ConfigError.h"
#include "common/config/analyzer/Analysis.h"
#include "common/config/command/SetDnsSuffix.h"
#include "common/logging/NullLogSink.h"
#include "common/proc/ChildProcess.h"
#include "common/sys/DllProxy.h"
#include "common/sys/Domain.h"
#include "common/sys/NicText.h"
#include "common/sys/OsVersion.h"
#include "common/sys/Registry.h"
#include "common/util/ClassName.h"
#include "common/util/FileUtils.h"
#include "handlers/internal/ConfigurePlan.h"
#include "platform/ScopedPlatform.h"
#include "platform/simulated/Ipv4.h"
#include "platform/simulated/SimulatedPlatform.h"
#include "tool/agent/AgentHost.h"
#include "tool/agent/AgentMessage.h"
#include "tool/check/Document.h"
#include "tool/io/CodePage.h"
#include "tool/io/ToolError.h"
#include "tool/machine/MachineDifference.h"
#include "tool/plan/Rehearsal.h"
#include "tool/plan/UnusedKeys.h"

namespace tool {
namespace {

using check::Document;
using config::EventKind;
using config::analyzer::Analysis;
using config::command::Comparison;
using config::command::ConfigureNic;
using config::command::IConfigureCommand;

/// A kind without a name does not compile: the switch has no default.
const char* NameOf(EventKind kind) {
  // clang-format off
#define NAMED(name) case EventKind::name: return #name;
  switch (kind) {
    NAMED(COMPUTER_NAME) NAMED(WORKGROUP) NAMED(DOMAIN) NAMED(DOMAIN_USER) NAMED(DOMAIN_PASSWORD)
    NAMED(DOMAIN_OU) NAMED(NIC) NAMED(DHCP) NAMED(STATIC) NAMED(IP_INTERFACE) NAMED(IP_ADDRESS)
    NAMED(SUBNET_MASK) NAMED(GATEWAY) NAMED(DNS_SERVER) NAMED(DNS_SUFFIX) NAMED(DNS_DHCP)
    NAMED(STATIC_ROUTE) NAMED(ROUTE_GATEWAY) NAMED(ROUTE_FOURTH_FIELD) NAMED(ROUTE_METRIC)
    NAMED(NOOP) NAMED(NIC_MAC_ADDRESS) NAMED(NIC_PCI_BUS) NAMED(NIC_PCI_DEVICE)
    NAMED(NIC_PCI_FUNCTION) NAMED(ENABLE_NETWORKING)
  }
#undef NAMED
  // clang-format on
  return "";
}

/// Why the builder makes no command of an event that it accepts.
const char* WhyNothing(EventKind kind) {
  return kind == EventKind::DOMAIN       ? "the computer belongs to this domain already"
         : kind == EventKind::DNS_SERVER ? "0.0.0.0 is no server"
                                         : "no command takes it";
}

bool IsAccount(EventKind kind) {
  return kind == EventKind::DOMAIN_USER || kind == EventKind::DOMAIN_PASSWORD;
}

/// Keeps the events and which command took each.
class Recorder final : public IEventListener {
 public:
  void Sending(const SourcedEvent& event) override {
    ends_ = event.phase == config::Event::END;
    if (ends_) {
      pending_ = open_.back();
      open_.pop_back();
      return;
    }
    pending_ = events.size();
    if (event.phase == config::Event::BEGIN) open_.push_back(events.size());
    kind_ = event.kind;
    PlannedEvent& planned = events.emplace_back();
    planned.kind = NameOf(event.kind);
    planned.opens = event.phase == config::Event::BEGIN;
    planned.value = IsAccount(event.kind) ? "***" : ToUtf8(event.value);
    planned.section = ToUtf8(event.section);
    planned.key = ToUtf8(event.key);
  }

  void Taken(const IConfigureCommand* taker) override {
    pending_.reset();
    if (ends_) return;
    if (taker != nullptr) {
      takers[taker].push_back(events.size() - 1);
    } else if (!events.back().opens) {
      events.back().cameToNothing = WhyNothing(kind_);
    }
  }

  /// The event that was sent and not taken; for the end of a scope the one that began it.
  std::optional<std::size_t> Refused() const { return pending_; }

  std::vector<PlannedEvent> events;
  std::unordered_map<const IConfigureCommand*, std::vector<std::size_t>> takers;

 private:
  EventKind kind_{};
  bool ends_ = false;
  std::optional<std::size_t> pending_;
  /// The scopes that have not ended, as positions in `events`.
  std::vector<std::size_t> open_;
};

// ---- Errors -------------------------------------------------------------------------------------

/// The error being handled, as the first of the given classes that it is.
template <typename Error, typename... Others>
PlanError Caught() {
  try {
    throw;
  } catch (const Error& error) {
    return {util::ClassName(typeid(Error)).substr(sizeof "class"), error};
  } catch (...) {
    if constexpr (sizeof...(Others) > 0) return Caught<Others...>();
    throw;
  }
}

PlanError CaughtByTheLibrary() {
  return Caught<config::ConfigError, ipc::CIPAddressError, sys::CWmiError, sys::DomainError,
                sys::RegistryError, sys::OsVersionError, sys::CDllProxyError, util::CFileIOError,
                proc::ChildProcessError, err::CGeneralError>();
}

[[noreturn]] void ThrowUnloaded(const Document& document, bool isEmpty,
                                const std::string& shownPath) {
  const auto* header = base::FindIn(document.Lines(), [](const Document::Line& line) {
    return line.kind == Document::Line::Kind::kOpenHeader;
  });
  if (header != nullptr) {
    const auto line = static_cast<std::uint32_t>(header - document.Lines().data());
    const check::Place place = document.PlaceOf(document.ItemOf(line).span);
    throw ToolError(
        shownPath + ":" + std::to_string(place.line) + ":" + std::to_string(place.column),
        "section header without \"]\"", "close it, as in [Networking]");
  }
  if (isEmpty) throw ToolError(shownPath, "is empty", "name a configuration file with settings");
  throw ToolError(shownPath, "cannot be read on the simulated machine",
                  "look at the faults in the machine file");
}

// ---- From the engine's objects to plain data ----------------------------------------------------

std::string LocationText(const sys::PciLocation& location) {
  if (!location.IsKnown()) return {};
  return std::to_string(location.bus) + "/" + std::to_string(location.device) + "/" +
         std::to_string(location.function);
}

PlannedCommand Describe(IConfigureCommand& command, const Comparison& comparison,
                        const Recorder& recorder) {
  PlannedCommand planned;
  const auto text = [&](const std::string& bytes) {
    const std::string shown = simulated::WithUnknown(bytes);
    if (shown != bytes) planned.course.unknown = "hosts";
    return ToUtf8(shown);
  };
  planned.className = util::ClassName(typeid(command)).substr(sizeof "class");
  planned.description = text(command.Describe());
  planned.needed = comparison.needed;
  if (comparison.current) planned.current = text(*comparison.current);
  if (comparison.wanted) planned.wanted = text(*comparison.wanted);
  planned.pauseMs = command.PauseMs();
  const auto events = recorder.takers.find(&command);
  if (events != recorder.takers.end()) planned.events = events->second;
  return planned;
}

/// What the command's own texts depend on stays unknown.
void SetCourse(PlannedCommand& planned, Course course) {
  if (course.unknown.empty()) course.unknown = planned.course.unknown;
  planned.course = std::move(course);
}

PlannedBinding DescribeBinding(const ConfigureNic& nic) {
  return {nic.Index() != ConfigureNic::kUnset ? std::optional(nic.Index()) : std::nullopt,
          std::nullopt, nic.HowBound(), LocationText(nic.Location()), ToUtf8(nic.MacAddress())};
}

/// The commands of an adapter, each compared after the ones before it were executed in the
/// rehearsal.
void DescribeNic(ConfigureNic& nic, const Recorder& recorder, Rehearsal& rehearsal,
                 PlannedCommand& planned) {
  planned.binding = DescribeBinding(nic);
  planned.course = rehearsal.Bind(nic);
  planned.pauseMs = 0;
  for (const auto& command : nic.Commands()) {
    Comparison comparison;
    const Course course = planned.LacksAdapter() ? Course{.reached = false}
                                                 : rehearsal.Execute(nic, *command, &comparison);
    PlannedCommand& inner = planned.commands.emplace_back(Describe(*command, comparison, recorder));
    SetCourse(inner, course);
    if (course.reached) planned.pauseMs += inner.pauseMs;
  }
}

void DescribeAdapters(const simulated::Machine& machine, const sys::NicList& known,
                      QueuePlan& plan) {
  std::unordered_map<std::uint32_t, const sys::NicAdapter*> byIndex;
  for (const sys::NicAdapter* adapter : known.Adapters()) byIndex[adapter->Index()] = adapter;
  std::unordered_map<std::uint32_t, std::size_t> positions;
  for (const simulated::Adapter& adapter : machine.adapters) {
    positions[adapter.index] = plan.adapters.size();
    PlannedAdapter& planned = plan.adapters.emplace_back();
    planned.index = adapter.index;
    planned.name = ToUtf8(AdapterName(adapter));
    planned.macAddress = ToUtf8(adapter.macAddress.value_or(""));
    if (sys::ParsePnpDeviceId(adapter.pnpDeviceId).isPci) {
      planned.pciLocation =
          LocationText(sys::ParseLocationInformation(adapter.locationInformation.value_or("")));
    }
    const auto found = byIndex.find(adapter.index);
    if (found == byIndex.end()) {
      planned.refused = "not IP-enabled";
    } else if (!found->second->IsPci()) {
      planned.refused = "not on the PCI bus";
    }
  }
  for (std::size_t i = 0; i < plan.commands.size(); ++i) {
    auto& binding = plan.commands[i].binding;
    if (!binding || !binding->index) continue;
    binding->adapter = positions.at(*binding->index);
    plan.adapters[*binding->adapter].takers.push_back(i);
  }
}

/// Of a section and a key, whatever their letter case.
std::string PlaceOf(std::string_view section, std::string_view key) {
  return base::Folded(section) + "\n" + base::Folded(key);
}

/// Finds where each event stands: at its key, else at its section's first header.
void FindLines(const Document& document, std::vector<PlannedEvent>& events) {
  std::unordered_map<std::string, std::size_t> lines;
  const auto note = [&](const check::Section& section, std::string_view key, check::Span span) {
    lines.emplace(PlaceOf(ToUtf8(section.name), ToUtf8(key)), document.PlaceOf(span).line);
  };
  for (const check::Section& section : document.Sections()) {
    if (!section.headers.empty()) note(section, "", document.ItemOf(section.headers.front()).span);
    for (const check::PlacedEntry& entry : section.entries) {
      if (entry.isFound && !entry.isComment) note(section, entry.key, document.KeySpan(entry));
    }
  }
  for (PlannedEvent& event : events) {
    if (event.section.empty() && event.key.empty()) continue;
    auto line = lines.find(PlaceOf(event.section, event.key));
    if (line == lines.end()) {
      event.key.clear();
      line = lines.find(PlaceOf(event.section, event.key));
    }
    if (line != lines.end()) event.line = line->second;
  }
}

void DescribeQueue(const config::ConfigBuilder& builder, const Analysis& analysis,
                   const Recorder& recorder, Rehearsal& rehearsal, QueuePlan& plan) {
  const auto describe = [&](IConfigureCommand& command) {
    const auto compared = analysis.comparisons.find(&command);
    const bool wasCompared = compared != analysis.comparisons.end();
    return Describe(command, wasCompared ? compared->second : Comparison(), recorder);
  };
  for (const auto& command : builder.Commands()) {
    PlannedCommand& planned = plan.commands.emplace_back(describe(*command));
    if (auto* nic = dynamic_cast<ConfigureNic*>(command.get())) {
      DescribeNic(*nic, recorder, rehearsal, planned);
    } else {
      SetCourse(planned, planned.Is("Reboot") ? rehearsal.Restart() : rehearsal.Execute(*command));
    }
  }
  for (const auto& command : analysis.dropped) plan.dropped.push_back(describe(*command));
}

/// Plans one "Configure" message. Returns the path of the file to be planned instead when a restore
/// file took the place of this one.
std::optional<std::string> PlanMessage(simulated::Machine& machine, const std::string& path,
                                       const std::string& shownPath, Comparing comparing,
                                       QueuePlan& plan) {
  AgentMessage message("Internal", "Configure", {{"Filename", path}});
  AgentHost host;
  logging::NullLogSink log;
  Recorder recorder;
  ConfigurePlan configure(log, host, recorder);
  // Before a call can fail, since the text is needed all the same.
  const simulated::File* const file = machine.FindFile(path);
  plan.text = file != nullptr ? file->text : "";
  const Document document(plan.text);
  try {
    const std::size_t start = machine.journal.size();
    const ConfigurePlan::Opening opening = configure.Open(message);
    if (!host.Posted().empty()) {
      return host.Posted().back().values.front().text;
    }
    // The value that says that networking is disabled is taken away, also before an error.
    plan.changes += static_cast<std::size_t>(std::count_if(
        machine.journal.begin() + static_cast<std::ptrdiff_t>(start), machine.journal.end(),
        [](const auto& change) { return !IsRefused(change); }));
    if (opening != ConfigurePlan::Opening::kLoaded) {
      ThrowUnloaded(document, file != nullptr && plan.text.empty(), shownPath);
    }
    plan.restartForbidden = configure.Global().noReboot;
    configure.Build();
    for (const SentMessage& sent : host.Sent()) plan.agentSettings += sent.values.size();
    Analysis analysis;
    configure.Analyze(&analysis);
    Rehearsal rehearsal(machine, comparing, plan);
    DescribeQueue(configure.Builder(), analysis, recorder, rehearsal, plan);
    rehearsal.Conclude(configure);
    if (analysis.adapters != nullptr) {
      DescribeAdapters(machine, *analysis.adapters, plan);
    }
  } catch (const err::CGeneralError&) {
    plan.error = CaughtByTheLibrary();
    plan.error->event = recorder.Refused();
    plan.commands.clear();
    plan.dropped.clear();
  }
  plan.events = std::move(recorder.events);
  FindLines(document, plan.events);
  if (!plan.error) plan.unused = FindUnusedKeys(document, plan.events);
  return std::nullopt;
}

}  // namespace

std::string PlannedCommand::ShortName() const {
  const std::size_t colon = className.rfind(':');
  return colon == std::string::npos ? className : className.substr(colon + 1);
}

std::size_t QueuePlan::RunsNow() const {
  const auto restart =
      std::find_if(commands.begin(), commands.end(),
                   [](const PlannedCommand& command) { return command.Is("Reboot"); });
  return static_cast<std::size_t>(restart - commands.begin());
}

const PlannedCommand* QueuePlan::Failing() const {
  for (const PlannedCommand& command : commands) {
    if (command.course.willFail) return &command;
    for (const PlannedCommand& inner : command.commands) {
      if (inner.course.willFail) return &inner;
    }
  }
  return nullptr;
}

QueuePlan MakePlan(const simulated::Machine& given, const std::string& path,
                   const std::string& shownPath, Comparing comparing) {
  simulated::Machine machine = given;
  machine.assumesUnknown = machine.assumesUnknown || comparing == Comparing::kInTurn;
  simulated::SimulatedPlatform platform(machine);
  const platform::ScopedPlatform scope(platform);
  QueuePlan plan;
  if (const auto restore = PlanMessage(machine, BytesOf(path, path), shownPath, comparing, plan)) {
    plan.restored = true;
    // The file is gone from where it was, so there is nothing to hand over a second time.
    PlanMessage(machine, *restore, "the restore file on the machine", comparing, plan);
  }
  if (comparing == Comparing::kInTurn) NameCause(given, plan);
  return plan;
}

}  // namespace tool
