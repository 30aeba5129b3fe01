#include "tests/support/DeliveryRules.h"

#include <algorithm>
#include <set>

namespace support {
namespace {

/// Some call of that name may have failed.
bool MayFail(const simulated::Machine& machine, std::string_view call) {
  return std::any_of(machine.faults.begin(), machine.faults.end(), [&](const auto& fault) {
    return !fault.struck.empty() && (fault.call == "*" || fault.call == call);
  });
}

}  // namespace

std::string BrokenRule(const tool::Delivery& delivery, const simulated::Machine& machine) {
  if (!delivery.exception.empty()) return "an exception passed: " + delivery.exception;

  std::set<std::string> keys;
  for (const tool::MessageValue& value : delivery.reply) {
    if (!keys.insert(value.key).second) return "the reply holds " + value.key + " twice";
  }
  const std::string result = delivery.Result();
  const bool failed = result == "Failure";
  if (!result.empty() && result != "Success" && result != "Reboot" && !failed) {
    return "no result of a reply: " + result;
  }
  for (const char* key : {"Status-Module", "Status-Code"}) {
    if (keys.contains(key) != failed) return std::string("a reply with and without ") + key;
  }
  if (delivery.status < 0 || delivery.status > 2) return "no status of a message";
  if (delivery.status == 0 && !result.empty() && !failed) return "success and no status";
  if (delivery.status == 1 && result.empty() && delivery.posted.empty()) return "no answer";
  const bool told = std::any_of(delivery.log.begin(), delivery.log.end(),
                                [](const tool::LogLine& line) { return line.level == 0; });
  if ((failed || delivery.status == 0) && !told) return "a failure that the log does not tell";

  if (delivery.unreleasedMessages != 0) return "a message was not released";
  simulated::Usage left = delivery.stillInUse;
  // A key that cannot be closed stays open; the policy does when there is no workgroup to be had.
  if (MayFail(machine, "registry.close")) left.registryKeys = 0;
  if (MayFail(machine, "lsa.workgroup")) left.policies = 0;
  if (left != simulated::Usage{}) return "something was not given back";
  return {};
}

}  // namespace support
