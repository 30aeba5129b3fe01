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
template <class Value>
Json OrNull(const std::optional<Value>& value) {
  return value ? Json(*value) : Json();
}

/// The items' documents, in order.
template <class Item, class Writer>
Json ListOf(const std::vector<Item>& items, Writer write) {
  Json list = Json::array();
  for (const Item& item : items) list.push_back(write(item));
  return list;
}

Json ToJson(const QueuePlan& plan, const PlannedCommand& command, bool dropped, bool verbose) {
  Json json{{"class", command.className}, {"description", command.description}};
  if (const auto& binding = command.binding) {
    json["index"] = binding->index ? Json(*binding->index) : Json(-1);
    json["bound_by"] = kBoundBy[static_cast<std::size_t>(binding->by)];
    if (verbose) json["pci_location"] = OrNull(binding->pciLocation);
    if (verbose) json["mac_address"] = OrNull(binding->macAddress);
  }
  if (!dropped) {
    const auto& [reached, willFail, unknown, notes] = command.course;
    json["needed"] = command.needed;
    json["reached"] = reached;
    json["will_fail"] = Json();
    if (willFail) {
      json["will_fail"] = {{"answer", willFail->answer},
                           {"meaning", willFail->meaning},
                           {"code", OrNull(plan.causeCode)}};
    }
    if (!unknown.empty()) json["unknown"] = unknown;
  }
  if (command.current) json["current"] = *command.current;
  if (command.wanted) json["wanted"] = *command.wanted;
  if (verbose) json["events"] = command.events;
  if (command.binding) {
    json["commands"] = ListOf(command.commands, [&](const PlannedCommand& inner) {
      return ToJson(plan, inner, dropped, verbose);
    });
  }
  return json;
}

Json ToJson(const PlanError& error) {
  return {{"class", error.className},    {"source", error.record.file},
          {"line", error.record.line},   {"message", error.record.message},
          {"value", error.record.Value}, {"system_error", error.record.SystemError}};
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
  return {{"index", adapter.index},
          {"pci_location", OrNull(adapter.pciLocation)},
          {"mac_address", OrNull(adapter.macAddress)},
          {"not_eligible", OrNull(adapter.refused)},
          {"taken_by", ListOf(adapter.takers, [&](std::size_t taker) {
             return plan.events[plan.commands[taker].events.front()].section;
           })}};
}

Json ToJson(const NotTrue& wish) {
  return {{"section", wish.section},
          {"lines", wish.lines},
          {"what", wish.what},
          {"description", wish.description},
          {"current", OrNull(wish.current)},
          {"wanted", OrNull(wish.wanted)},
          {"reason", wish.reason}};
}

}  // namespace

Json ToJson(const QueuePlan& plan, bool verbose) {
  const auto commandsJson = [&](const std::vector<PlannedCommand>& commands) {
    return ListOf(commands, [&](const PlannedCommand& command) {
      return ToJson(plan, command, &commands == &plan.dropped, verbose);
    });
  };
  Json json{{"schema", 1},
            {"commands", commandsJson(plan.commands)},
            {"dropped", commandsJson(plan.dropped)},
            {"runs_now", plan.RunsNow()},
            {"error", plan.error ? ToJson(*plan.error) : Json()},
            {"outcome", kOutcomes[static_cast<std::size_t>(plan.outcome)]},
            {"changes", plan.changes},
            {"pause_ms", plan.pauseMs}};
  if (!verbose) return json;
  const auto [nowMs, laterMs] = ForecastPauses(plan);
  json["restored"] = plan.restored;
  json["restart_forbidden"] = plan.restartForbidden;
  json["pauses"] = {{"now_ms", nowMs}, {"later_ms", laterMs}};
  json["adapters"] =
      ListOf(plan.adapters, [&](const PlannedAdapter& adapter) { return ToJson(plan, adapter); });
  json["events"] = ListOf(plan.events, [](const PlannedEvent& event) { return ToJson(event); });
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
  json["steps"] = ListOf(chain.steps, [&](const ChainStep& step) {
    return Json{{"plan", ToJson(step.plan, verbose)},
                {"result", step.delivery.Result()},
                {"status", step.delivery.status},
                {"changes", step.delivery.changes}};
  });
  json["not_true"] = ListOf(chain.notTrue, [](const NotTrue& wish) { return ToJson(wish); });
  return PrintedJson(json);
}

}  // namespace tool
