// Windows Management Instrumentation over the simulated computer.
#include <algorithm>
#include <memory>
#include <utility>

#include "base/LetterCase.h"
#include "platform/IWmi.h"
#include "platform/simulated/Codes.h"
#include "platform/simulated/Ports.h"
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

/// A row, a class, or the parameters of a method.
class Object final : public IWmiObject {
 public:
  explicit Object(Simulation& simulation) : simulation_(simulation), live_(simulation.usage) {}

  HResult Get(const std::string& property, Variant* value) override {
    if (const auto failure = simulation_.RefuseCom({.name = "wmi.get", .item = property})) {
      return *failure;
    }
    if (const Variant* found = FindProperty(properties, property)) {
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
    if (!IsParameter(property) && FindProperty(properties, property) == nullptr) {
      return kWmiNotFound;
    }
    std::erase_if(properties, same);
    properties.emplace_back(property, value);
    return platform::kOk;
  }

  HResult GetMethod(const std::string& name, std::unique_ptr<IWmiObject>* definition) override {
    if (const auto failure = simulation_.RefuseCom({.name = "wmi.definition", .method = name})) {
      return *failure;
    }
    const WmiMethod* method = FindMethod(className, name);
    if (method == nullptr) return kWmiNotFound;
    definition->reset();
    if (method->parameters.empty()) return platform::kOk;
    auto made = std::make_unique<Object>(simulation_);
    made->parameters = method->parameters;
    *definition = std::move(made);
    return platform::kOk;
  }

  HResult SpawnInstance(std::unique_ptr<IWmiObject>* instance) override {
    if (const auto failure = simulation_.RefuseCom({.name = "wmi.spawn"})) return *failure;
    if (parameters.empty()) return kWmiInvalidOperation;
    auto made = std::make_unique<Object>(simulation_);
    made->parameters = parameters;
    *instance = std::move(made);
    return platform::kOk;
  }

  Properties properties;
  /// Names of the parameters that are declared, put or not.
  std::span<const std::string_view> parameters;
  /// For a class: its name.
  std::string className;

 private:
  bool IsParameter(std::string_view name) const {
    return std::any_of(parameters.begin(), parameters.end(),
                       [&](std::string_view parameter) { return base::SameText(parameter, name); });
  }

  Simulation& simulation_;
  LiveObject live_;
};

class Rows final : public IWmiRows {
 public:
  Rows(Simulation& simulation, std::vector<Properties> rows)
      : simulation_(simulation), live_(simulation.usage), rows_(std::move(rows)) {}

  HResult Next(std::int32_t, std::unique_ptr<IWmiObject>* row, std::uint32_t* returned) override {
    if (const auto failure = simulation_.RefuseCom({.name = "wmi.next"})) return *failure;
    if (next_ == rows_.size()) {
      *returned = 0;
      return platform::kNoMoreRows;
    }
    auto object = std::make_unique<Object>(simulation_);
    object->properties = std::move(rows_[next_++]);
    *row = std::move(object);
    *returned = 1;
    return platform::kOk;
  }

 private:
  Simulation& simulation_;
  LiveObject live_;
  std::vector<Properties> rows_;
  std::size_t next_ = 0;
};

class Services final : public IWmiServices {
 public:
  explicit Services(Simulation& simulation) : simulation_(simulation), live_(simulation.usage) {}

  HResult SecureProxy() override {
    return simulation_.RefuseCom({.name = "wmi.secure_proxy"}).value_or(platform::kOk);
  }

  HResult ExecQuery(const std::string& query, std::int32_t,
                    std::unique_ptr<IWmiRows>* rows) override {
    if (const auto failure = simulation_.RefuseCom({.name = "wmi.query", .text = query})) {
      return *failure;
    }
    std::vector<Properties> found;
    const HResult outcome = RunQuery(simulation_, query, &found);
    return Deliver(outcome, std::move(found), rows);
  }

  HResult CreateInstanceEnum(const std::string& className,
                             std::unique_ptr<IWmiRows>* rows) override {
    if (const auto failure = simulation_.RefuseCom({.name = "wmi.instances", .text = className})) {
      return *failure;
    }
    std::vector<Properties> found;
    const HResult outcome = ListInstances(simulation_, className, &found);
    return Deliver(outcome, std::move(found), rows);
  }

  HResult FetchClass(const std::string& className, std::unique_ptr<IWmiObject>* object) override {
    if (const auto failure = simulation_.RefuseCom({.name = "wmi.class", .text = className})) {
      return *failure;
    }
    if (!IsWmiClass(className)) return kWmiNotFound;
    auto made = std::make_unique<Object>(simulation_);
    made->className = className;
    *object = std::move(made);
    return platform::kOk;
  }

  HResult ExecMethod(const std::string& path, const std::string& method, IWmiObject* parameters,
                     std::unique_ptr<IWmiObject>* result) override {
    // Every object that can be handed in was made here.
    const auto* given = static_cast<const Object*>(parameters);
    const Properties* arguments = given == nullptr ? nullptr : &given->properties;
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
    Change& change = simulation_.machine.journal.emplace_back(Change{
        "wmi.method", Fields{{"path", path}, {"method", method}, {"arguments", std::move(told)}}});
    if (ran) {
      change.fields.emplace_back("result", returnValue);
      auto answer = std::make_unique<Object>(simulation_);
      answer->properties.emplace_back("ReturnValue", returnValue);
      *result = std::move(answer);
    } else {
      change.fields.emplace_back("hresult", HResultText(outcome));
    }
    return outcome;
  }

 private:
  HResult Deliver(HResult outcome, std::vector<Properties> found, std::unique_ptr<IWmiRows>* rows) {
    if (!platform::Failed(outcome)) *rows = std::make_unique<Rows>(simulation_, std::move(found));
    return outcome;
  }

  Simulation& simulation_;
  LiveObject live_;
};

class Locator final : public platform::IWmiLocator {
 public:
  explicit Locator(Simulation& simulation) : simulation_(simulation), live_(simulation.usage) {}

  HResult ConnectServer(const std::string& nameSpace,
                        std::unique_ptr<IWmiServices>* services) override {
    if (const auto failure = simulation_.RefuseCom({.name = "wmi.connect", .text = nameSpace})) {
      return *failure;
    }
    if (!base::SameText(nameSpace, kNameSpace)) return kWmiInvalidNamespace;
    *services = std::make_unique<Services>(simulation_);
    return platform::kOk;
  }

 private:
  Simulation& simulation_;
  LiveObject live_;
};

class WmiPort final : public platform::IWmi {
 public:
  explicit WmiPort(Simulation& simulation) : simulation_(simulation) {}

  platform::HResult EnterApartment() override {
    return simulation_.EnterApartment({.name = "wmi.enter"}, ApartmentKind::kMultithreaded);
  }

  void LeaveApartment() override { simulation_.LeaveApartment({.name = "wmi.leave"}); }

  platform::HResult SecureProcess() override { return simulation_.SecureProcess(); }

  platform::HResult MakeLocator(std::unique_ptr<platform::IWmiLocator>* locator) override {
    if (const auto failure = simulation_.RefuseCom({.name = "wmi.locator"})) return *failure;
    if (!simulation_.InApartment()) return kNotInApartment;
    *locator = std::make_unique<Locator>(simulation_);
    return platform::kOk;
  }

 private:
  Simulation& simulation_;
};

}  // namespace

std::unique_ptr<platform::IWmi> MakeWmi(Simulation& simulation) {
  return std::make_unique<WmiPort>(simulation);
}

}  // namespace simulated
