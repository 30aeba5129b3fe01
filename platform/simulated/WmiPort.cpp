// Windows Management Instrumentation over the simulated computer.
#include <algorithm>
#include <memory>
#include <utility>

#include "base/LetterCase.h"
#include "base/Pieces.h"
#include "platform/IWmi.h"
#include "platform/simulated/Codes.h"
#include "platform/simulated/Ipv4.h"
#include "platform/simulated/SimulatedPlatform.h"
#include "platform/simulated/Simulation.h"
#include "platform/simulated/WmiClasses.h"

namespace simulated {
namespace {

using platform::HResult;
using platform::IWmiObject;
using platform::IWmiRows;
using platform::IWmiServices;
using platform::Variant;

constexpr std::string_view kNameSpace = R"(root\cimv2)";

struct Content {
  Properties properties;
  /// Names of the parameters that are declared, put or not.
  std::string_view parameters = {};
  /// For a class: its name.
  std::string className = {};
};

/// A row, a class, or the parameters of a method.
class Object final : public ComObject<IWmiObject> {
 public:
  Object(Simulation& simulation, Content content)
      : ComObject(simulation), content_(std::move(content)) {}

  HResult Get(const std::string& property, Variant* value) override {
    if (const auto failure = simulation_.RefuseCom({.name = "wmi.get", .item = property})) {
      return *failure;
    }
    if (const Variant* found = FindProperty(content_.properties, property)) {
      *value = *found;
      return platform::kOk;
    }
    if (!IsParameter(property)) return kWmiNotFound;
    *value = platform::Null{};
    return platform::kOk;
  }

  HResult Put(const std::string& property, const Variant& value) override {
    if (const auto failure = simulation_.RefuseCom({.name = "wmi.put", .item = property})) {
      return *failure;
    }
    const auto same = [&](const auto& entry) { return base::SameText(entry.first, property); };
    if (std::erase_if(content_.properties, same) == 0 && !IsParameter(property))
      return kWmiNotFound;
    Variant& put = content_.properties.emplace_back(property, value).second;
    if (auto* const texts = std::get_if<platform::TextArray>(&put)) {
      for (std::string& text : texts->items) text = WithUnknown(text);
    }
    return platform::kOk;
  }

  HResult GetMethod(const std::string& name, std::unique_ptr<IWmiObject>* definition) override {
    if (const auto failure = simulation_.RefuseCom({.name = "wmi.definition", .method = name})) {
      return *failure;
    }
    const WmiMethod* method = FindMethod(content_.className, name);
    if (method == nullptr) return kWmiNotFound;
    definition->reset();
    if (method->parameters.empty()) return platform::kOk;
    *definition = std::make_unique<Object>(simulation_, Content{{}, method->parameters});
    return platform::kOk;
  }

  HResult SpawnInstance(std::unique_ptr<IWmiObject>* instance) override {
    if (const auto failure = simulation_.RefuseCom({"wmi.spawn"})) return *failure;
    if (content_.parameters.empty()) return kWmiInvalidOperation;
    *instance = std::make_unique<Object>(simulation_, Content{{}, content_.parameters});
    return platform::kOk;
  }

  const Properties& Values() const { return content_.properties; }

 private:
  bool IsParameter(std::string_view name) const {
    const std::vector<std::string> names = base::Split(content_.parameters, " ");
    return std::any_of(names.begin(), names.end(),
                       [&](const std::string& known) { return base::SameText(known, name); });
  }
  Content content_;
};

class Rows final : public ComObject<IWmiRows> {
 public:
  Rows(Simulation& simulation, WmiRows rows) : ComObject(simulation), rows_(std::move(rows)) {}

  HResult Next(std::int32_t, std::unique_ptr<IWmiObject>* row, std::uint32_t* returned) override {
    if (const auto failure = simulation_.RefuseCom({"wmi.next"})) return *failure;
    if (next_ == rows_.size()) {
      *returned = 0;
      return platform::kNoMoreRows;
    }
    *row = std::make_unique<Object>(simulation_, Content{std::move(rows_[next_++])});
    *returned = 1;
    return platform::kOk;
  }

 private:
  WmiRows rows_;
  std::size_t next_ = 0;
};

class Services final : public ComObject<IWmiServices> {
 public:
  using ComObject::ComObject;

  HResult SecureProxy() override {
    return simulation_.RefuseCom({"wmi.secure_proxy"}).value_or(platform::kOk);
  }

  HResult ExecQuery(const std::string& query, std::int32_t,
                    std::unique_ptr<IWmiRows>* rows) override {
    if (const auto failure = simulation_.RefuseCom({"wmi.query", query})) {
      return *failure;
    }
    WmiRows found;
    const HResult outcome = RunQuery(simulation_, query, &found);
    return Deliver(outcome, std::move(found), rows);
  }

  HResult CreateInstanceEnum(const std::string& className,
                             std::unique_ptr<IWmiRows>* rows) override {
    if (const auto failure = simulation_.RefuseCom({"wmi.instances", className})) {
      return *failure;
    }
    WmiRows found;
    const HResult outcome = ListInstances(simulation_, className, &found);
    return Deliver(outcome, std::move(found), rows);
  }

  HResult FetchClass(const std::string& className, std::unique_ptr<IWmiObject>* object) override {
    if (const auto failure = simulation_.RefuseCom({"wmi.class", className})) {
      return *failure;
    }
    if (!IsWmiClass(className)) return kWmiNotFound;
    *object = std::make_unique<Object>(simulation_, Content{{}, "", className});
    return platform::kOk;
  }

  HResult ExecMethod(const std::string& path, const std::string& method, IWmiObject* parameters,
                     std::unique_ptr<IWmiObject>* result) override {
    // Every object that can be handed in was made here.
    const auto* given = static_cast<const Object*>(parameters);
    const Properties* arguments = given == nullptr ? nullptr : &given->Values();
    const Fault* fault = simulation_.Strike({.name = "wmi.method", .text = path, .method = method});

    std::int32_t returnValue = 0;
    HResult outcome = platform::kOk;
    bool ran = true;
    if (fault == nullptr) {
      outcome = RunMethod(simulation_, path, method, arguments, &returnValue);
      ran = !platform::Failed(outcome);
    } else if (OnlyChoosesResult(*fault)) {
      returnValue = *fault->result;
    } else {
      outcome = ToHResult(*fault);
      ran = false;
    }

    Fields told;
    if (arguments != nullptr) {
      for (const auto& [name, value] : *arguments) told.emplace_back(name, ToValue(value));
    }
    Change& change = simulation_.Journal(
        "wmi.method", {{"path", path}, {"method", method}, {"arguments", std::move(told)}});
    if (ran) {
      change.fields.emplace_back("result", returnValue);
      *result = std::make_unique<Object>(simulation_, Content{{{"ReturnValue", returnValue}}});
    } else {
      change.fields.emplace_back("hresult", HResultText(outcome));
    }
    return outcome;
  }

 private:
  HResult Deliver(HResult outcome, WmiRows found, std::unique_ptr<IWmiRows>* rows) {
    if (!platform::Failed(outcome)) *rows = std::make_unique<Rows>(simulation_, std::move(found));
    return outcome;
  }
};

class Locator final : public ComObject<platform::IWmiLocator> {
 public:
  using ComObject::ComObject;

  HResult ConnectServer(const std::string& nameSpace,
                        std::unique_ptr<IWmiServices>* services) override {
    if (const auto failure = simulation_.RefuseCom({"wmi.connect", nameSpace})) {
      return *failure;
    }
    if (!base::SameText(nameSpace, kNameSpace)) return kWmiInvalidNamespace;
    *services = std::make_unique<Services>(simulation_);
    return platform::kOk;
  }
};

class WmiPort final : public Port<platform::IWmi> {
 public:
  using Port::Port;

  platform::HResult EnterApartment() override {
    return simulation_.EnterApartment({"wmi.enter"}, ApartmentKind::kMultithreaded);
  }

  void LeaveApartment() override { simulation_.LeaveApartment({"wmi.leave"}); }

  platform::HResult SecureProcess() override { return simulation_.SecureProcess(); }

  platform::HResult MakeLocator(std::unique_ptr<platform::IWmiLocator>* locator) override {
    if (const auto failure = simulation_.RefuseCom({"wmi.locator"})) return *failure;
    if (!simulation_.InApartment()) return kNotInApartment;
    *locator = std::make_unique<Locator>(simulation_);
    return platform::kOk;
  }
};

}  // namespace

platform::IWmi& SimulatedPlatform::Wmi() { return Made<WmiPort>(&wmi_); }

}  // namespace simulated
