#include <nlohmann/json.hpp>

#include "platform/simulated/MachineFile.h"
#include "tool/io/JsonText.h"
#include "tool/plan/PlanOutput.h"
#include "tool/plan/PlanText.h"

namespace tool {
namespace {

using simulated::Json;
/// By their numbers.
constexpr const char* kBoundBy[] = {"none", "pci", "mac", "next"};
constexpr const char* kOutcomes[] = {"nothing", "success", "restart", "failure"};
constexpr const char* kEndings[] = {"settled", "failed", "loops", "limit"};

Json OrNull(const std::string& text) { return text.empty() ? Json() : Json(text); }

Json ToJson(const QueuePlan& plan, const std::vector<PlannedCommand>& commands, bool verbose) {
  const bool dropped = &commands == &plan.dropped;
  Json list = Json::array();
  for (const PlannedCommand& command : commands) {
    Json& json = list.emplace_back(Json::object());
    json["class"] = command.className;
    json["description"] = command.description;
    if (command.binding) {
      const PlannedBinding& binding = *command.binding;
      json["index"] = binding.index ? Json(*binding.index) : Json(-1);
      json["bound_by"] = kBoundBy[static_cast<std::size_t>(binding.by)];
      if (verbose) {
        json["pci_location"] = OrNull(binding.pciLocation);
        json["mac_address"] = OrNull(binding.macAddress);
      }
    }
    if (!dropped) {
      const Course& course = command.course;
      json["needed"] = command.needed;
      json["reached"] = course.reached;
      Json& failure = json["will_fail"] = Json();
      if (course.willFail) {
        failure = {{"answer", course.willFail->answer},
                   {"meaning", course.willFail->meaning},
                   {"code", OrNull(plan.causeCode)}};
      }
      if (!course.unknown.empty()) json["unknown"] = course.unknown;
    }
    if (command.current) json["current"] = *command.current;
    if (command.wanted) json["wanted"] = *command.wanted;
    if (verbose) json["events"] = command.events;
    if (command.binding) json["commands"] = ToJson(plan, command.commands, verbose);
  }
  return list;
}

Json ToJson(const PlanError& error) {
  return {{"class", error.className}, {"source", error.source},
          {"line", error.line},       {"message", error.message},
          {"value", error.value},     {"system_error", error.systemError}};
}

Json ToJson(const PlannedEvent& event) {
  return {{"kind", event.kind},
          {"opens", event.opens},
          {"value", ShownValue(event)},
          {"section", event.section},
          {"key", event.key},
          {"line", event.line},
          {"came_to_nothing", OrNull(event.cameToNothing)}};
}

Json ToJson(const QueuePlan& plan, const PlannedAdapter& adapter) {
  Json sections = Json::array();
  for (const std::size_t taker : adapter.takers) {
    sections.push_back(plan.events[plan.commands[taker].events.front()].section);
  }
  return {{"index", adapter.index},
          {"pci_location", OrNull(adapter.pciLocation)},
          {"mac_address", OrNull(adapter.macAddress)},
          {"not_eligible", OrNull(adapter.refused)},
          {"taken_by", std::move(sections)}};
}

Json ToJson(const NotTrue& wish) {
  return {{"section", wish.section},
          {"lines", wish.lines},
          {"what", wish.what},
          {"description", wish.description},
          {"current", wish.current ? Json(*wish.current) : Json()},
          {"wanted", wish.wanted ? Json(*wish.wanted) : Json()},
          {"reason", wish.reason}};
}

}  // namespace

Json ToJson(const QueuePlan& plan, bool verbose) {
  Json json;
  json["schema"] = 1;
  json["commands"] = ToJson(plan, plan.commands, verbose);
  json["dropped"] = ToJson(plan, plan.dropped, verbose);
  json["runs_now"] = plan.RunsNow();
  json["error"] = plan.error ? ToJson(*plan.error) : Json();
  json["outcome"] = kOutcomes[static_cast<std::size_t>(plan.outcome)];
  json["changes"] = plan.changes;
  json["pause_ms"] = plan.pauseMs;
  if (!verbose) return json;
  json["restored"] = plan.restored;
  json["restart_forbidden"] = plan.restartForbidden;
  const PauseForecast pauses = ForecastPauses(plan);
  json["pauses"] = {{"now_ms", pauses.nowMs}, {"later_ms", pauses.laterMs}};
  Json& adapters = json["adapters"] = Json::array();
  for (const PlannedAdapter& adapter : plan.adapters) adapters.push_back(ToJson(plan, adapter));
  Json& events = json["events"] = Json::array();
  for (const PlannedEvent& event : plan.events) events.push_back(ToJson(event));
  return json;
}

std::string PrintedJson(const QueuePlan& plan, bool verbose) {
  return PrintedJson(ToJson(plan, verbose));
}

std::string PrintedJson(const RestartChain& chain, bool verbose) {
  Json json = ToJson(chain.steps.front().plan, verbose);
  json["restarts"] = chain.restarts;
  json["ending"] = kEndings[static_cast<std::size_t>(chain.ending)];
  json["loops_to"] = chain.ending == ChainEnding::kLoops ? Json(chain.loopsTo) : Json();
  Json& steps = json["steps"] = Json::array();
  for (const ChainStep& step : chain.steps) {
    steps.push_back({{"plan", ToJson(step.plan, verbose)},
                     {"result", step.delivery.Result()},
                     {"status", step.delivery.status},
                     {"changes", step.delivery.changes}});
  }
  Json& notTrue = json["not_true"] = Json::array();
  for (const NotTrue& wish : chain.notTrue) notTrue.push_back(ToJson(wish));
  return PrintedJson(json);
}

}  // namespace tool
