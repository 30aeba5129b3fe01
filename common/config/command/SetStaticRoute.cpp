#include "common/config/command/SetStaticRoute.h"

#include <algorithm>
#include <iterator>

#include "common/config/ConfigError.h"
#include "common/logging/NullLogSink.h"
#include "common/proc/ChildProcess.h"

namespace config::command {
namespace {

constexpr char kSource[] = "SetStaticRoute";
constexpr err::Site kDeleteFailed{kSource, "Failed to delete static route", 149};
constexpr err::Site kAddFailed{kSource, "Failed to add static route", 151};
constexpr std::uint16_t kShowNormal = 1;

void RunRouteTool(const std::string& commandLine, const err::Site& failure) {
  logging::NullLogSink log;
  proc::CChildProcess child(log, proc::CChildProcess::kWithoutLimit);
  const std::int32_t result =
      child.ExecuteCmd(/*applicationName=*/nullptr, commandLine, /*user=*/"", /*credential=*/"",
                       /*wait=*/true, kShowNormal, /*relay=*/nullptr);
  if (result != 0) throw ConfigError{failure, /*value=*/5, static_cast<std::uint32_t>(result)};
}

bool IsDefaultRoute(const sys::RouteRecord& route) {
  return route.destination == ipc::IPv4Address() && route.mask == ipc::IPv4Address();
}

/// Puts the routes in order, each of them once.
void SortAndUnite(std::vector<sys::RouteRecord>& routes) {
  std::sort(routes.begin(), routes.end());
  routes.erase(std::unique(routes.begin(), routes.end()), routes.end());
}

/// The routes of `from`, in order, that `without` does not hold.
std::vector<sys::RouteRecord> Difference(const std::vector<sys::RouteRecord>& from,
                                         const std::vector<sys::RouteRecord>& without) {
  std::vector<sys::RouteRecord> rest;
  std::ranges::set_difference(from, without, std::back_inserter(rest));
  return rest;
}

/// "10.1.0.0/255.255.0.0 via 10.0.0.1 metric 1", with commas between routes.
std::string ToText(const std::vector<sys::RouteRecord>& routes) {
  std::string text;
  for (const sys::RouteRecord& route : routes) {
    if (!text.empty()) text += ",";
    text += route.destination.ToString() + "/" + route.mask.ToString() + " via " +
            route.gateway.ToString() + " metric " + std::to_string(route.metric);
  }
  return text;
}

}  // namespace

void SetStaticRoute::Plan() {
  if (planned_) return;
  std::vector<sys::RouteRecord> existing;
  sys::Wmi::GetStaticRoutes(&existing);
  // Deliberate: the first default route only; a second one is deleted like any other.
  const auto defaultRoute = std::find_if(existing.begin(), existing.end(), IsDefaultRoute);
  if (defaultRoute != existing.end()) existing.erase(defaultRoute);
  SortAndUnite(existing);
  SortAndUnite(wanted_);
  toDelete_ = Difference(existing, wanted_);
  toAdd_ = Difference(wanted_, existing);
  planned_ = true;
}

bool SetStaticRoute::Differs(Comparison* comparison) {
  Plan();
  if (comparison != nullptr) {
    const std::vector<sys::RouteRecord> stays = Difference(wanted_, toAdd_);
    std::vector<sys::RouteRecord> existing;
    std::ranges::merge(stays, toDelete_, std::back_inserter(existing));
    comparison->Set(ToText(existing), ToText(wanted_));
  }
  return !toAdd_.empty() || !toDelete_.empty();
}

std::string SetStaticRoute::Describe() {
  Plan();
  return {};
}

void SetStaticRoute::Execute() {
  Plan();
  // Deleting names the destination only and takes every route to it, so all deletions come first.
  for (const sys::RouteRecord& route : toDelete_) {
    RunRouteTool("route DELETE " + route.destination.ToString(), kDeleteFailed);
  }
  for (const sys::RouteRecord& route : toAdd_) {
    RunRouteTool("route -p ADD " + route.destination.ToString() + " mask " + route.mask.ToString() +
                     " " + route.gateway.ToString() + " METRIC " +
                     std::to_string(static_cast<std::int32_t>(route.metric)),
                 kAddFailed);
  }
}

}  // namespace config::command
