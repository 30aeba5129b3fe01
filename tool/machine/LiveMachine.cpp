#include "tool/machine/LiveMachine.h"

#include <algorithm>
#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <stdexcept>
#include <utility>
#include <variant>

#include "base/LetterCase.h"
#include "base/OperatingSystem.h"
#include "base/Services.h"
#include "common/sys/Domain.h"
#include "common/sys/OsVersion.h"
#include "common/sys/Registry.h"
#include "common/sys/Wmi.h"
#include "common/util/FileUtils.h"
#include "platform/IWmi.h"
#include "platform/simulated/AdapterFields.h"

namespace tool {
namespace {

using platform::Variant;
using simulated::Adapter;
using simulated::AdapterField;
using simulated::Home;
using simulated::Machine;
using simulated::NullableText;

constexpr std::string_view kRoot = R"(HKEY_LOCAL_MACHINE\)";
constexpr char kNames[] = R"(HKEY_LOCAL_MACHINE\SYSTEM\CurrentControlSet\Control\ComputerName\)";

constexpr const char* kAgentFiles[] = {"tarvo.cfg", "restore.cfg"};

/// One instance of a management class. A property that is not there counts as one without a value.
class Record {
 public:
  explicit Record(platform::IWmiObject& object) : object_(object) {}

  /// None when it is of another type.
  template <typename Type>
  std::optional<Type> Get(const std::string& property) const {
    Variant value = platform::Null{};
    object_.Get(property, &value);
    const auto* const found = std::get_if<Type>(&value);
    return found != nullptr ? std::optional<Type>(*found) : std::nullopt;
  }
  NullableText Text(const std::string& property) const { return Get<std::string>(property); }
  std::int32_t Number(const std::string& property) const {
    return Get<std::int32_t>(property).value_or(0);
  }
  bool Flag(const std::string& property) const {
    return Get<platform::RawBool>(property) == platform::kVariantTrue;
  }
  std::vector<std::string> List(const std::string& property) const {
    return Get<platform::TextArray>(property).value_or(platform::TextArray()).items;
  }

 private:
  platform::IWmiObject& object_;
};

platform::IWmiServices& Connect(sys::ScopedWmiComInit& connection) {
  connection.Connect();
  if (connection.Services() == nullptr) throw std::runtime_error("there is no connection");
  return *connection.Services();
}

void ForEachInstance(const std::string& className,
                     const std::function<void(const Record&)>& visit) {
  const auto unlisted = [&] {
    return std::runtime_error("the class " + className + " cannot be listed");
  };
  sys::ScopedWmiComInit connection;
  platform::IWmiServices& services = Connect(connection);
  std::unique_ptr<platform::IWmiRows> rows;
  if (platform::Failed(services.CreateInstanceEnum(className, &rows)) || !rows) throw unlisted();
  for (;;) {
    std::unique_ptr<platform::IWmiObject> object;
    std::uint32_t count = 0;
    if (platform::Failed(rows->Next(platform::kForever, &object, &count))) throw unlisted();
    if (!object) return;
    visit(Record(*object));
  }
}

/// A text below `kRoot`; none when it is not there.
NullableText RegistryText(const std::string& key, const std::string& name) {
  try {
    sys::Registry registry;
    registry.SetSubkey(key.substr(kRoot.size()));
    registry.OpenForReading(/*view64=*/false);
    std::string text;
    registry.ReadString(name, &text);
    return text;
  } catch (const sys::RegistryError&) {
    return std::nullopt;
  }
}

void ReadNames(Machine& machine) {
  sys::Wmi::GetComputerName(&machine.computerName);
  const NullableText next = RegistryText(std::string(kNames) + "ComputerName", "ComputerName");
  const NullableText now = RegistryText(std::string(kNames) + "ActiveComputerName", "ComputerName");
  if (next && now && *next != *now) machine.pendingComputerName = next;
}

void ReadMembership(Machine& machine) {
  sys::Domain& domain = sys::Domain::Instance();
  if (!domain.IsDomainMember()) {
    machine.membership = simulated::WorkgroupMembership{domain.GetWorkgroup()};
    return;
  }
  machine.membership =
      simulated::DomainMembership{domain.GetDnsDomainName(), domain.GetDomainName(), true};
}

void ReadOperatingSystem(Machine& machine) {
  sys::ScopedWmiComInit connection;
  const auto record = sys::Wmi::GetWbemClassObject(Connect(connection), "Win32_OperatingSystem");
  machine.operatingSystem.clear();
  for (const std::string_view property : base::kSystemProperties) {
    const std::string name(property);
    Variant value;
    if (!platform::Failed(record->Get(name, &value)))
      machine.operatingSystem[name] = simulated::ToValue(value);
  }
}

// A property as the member that it belongs to.
void Assign(std::uint32_t& member, const Record& record, const char* property) {
  member = static_cast<std::uint32_t>(record.Number(property));
}
void Assign(bool& member, const Record& record, const char* property) {
  member = record.Flag(property);
}
void Assign(std::string& member, const Record& record, const char* property) {
  member = record.Text(property).value_or("");
}
void Assign(NullableText& member, const Record& record, const char* property) {
  member = record.Text(property);
}
void Assign(std::vector<std::string>& member, const Record& record, const char* property) {
  member = record.List(property);
}

// The same of a registry value; a flag is set by any text.
void Assign(NullableText& member, const NullableText& value) { member = value; }
void Assign(bool& member, const NullableText& value) { member = !value.value_or("").empty(); }

void ReadFields(Home home, const Record& record, Adapter& adapter) {
  simulated::ForEachAdapterField([&](const AdapterField& field, auto member) {
    if (field.home == home || field.home == Home::kBoth) {
      Assign(adapter.*member, record, field.property);
    }
  });
}

void ReadRegistry(Adapter& adapter) {
  simulated::ForEachAdapterField([&]<class Type>(const AdapterField& field, Type member) {
    if constexpr (requires { Assign(adapter.*member, NullableText()); }) {
      if (field.home == Home::kDeviceKey) {
        Assign(adapter.*member,
               RegistryText(std::string(simulated::kDeviceKeys) + adapter.pnpDeviceId,
                            field.property));
      } else if (field.home == Home::kInterfaceKey) {
        Assign(adapter.*member,
               RegistryText(std::string(simulated::kInterfaceKeys) + adapter.settingId,
                            field.property));
      }
    }
  });
}

void ReadAdapters(Machine& machine) {
  Adapter blank;
  simulated::ForEachAdapterField([&](const AdapterField&, auto member) { blank.*member = {}; });
  std::map<std::int32_t, Adapter> hardware;
  ForEachInstance("Win32_NetworkAdapter", [&](const Record& record) {
    ReadFields(Home::kHardware, record,
               hardware.try_emplace(record.Number("Index"), blank).first->second);
  });
  ForEachInstance("Win32_NetworkAdapterConfiguration", [&](const Record& record) {
    Adapter& adapter = machine.adapters.emplace_back(
        hardware.try_emplace(record.Number("Index"), blank).first->second);
    ReadFields(Home::kConfiguration, record, adapter);
    ReadRegistry(adapter);
  });
}

void ReadRoutes(Machine& machine) {
  ForEachInstance("Win32_IP4PersistedRouteTable", [&](const Record& record) {
    machine.persistentRoutes.push_back(
        {record.Text("Destination").value_or(""), record.Text("Mask").value_or(""),
         record.Text("NextHop").value_or(""), record.Number("Metric1")});
  });
}

void ReadServices(Machine& machine) {
  const auto add = [&machine](const Record& record) {
    const std::string name = record.Text("Name").value_or("");
    const bool isSwitched =
        std::any_of(std::begin(base::kNetworkServices), std::end(base::kNetworkServices),
                    [&](const auto& known) { return base::SameText(name, known.name); });
    if (!isSwitched) return;
    const std::string mode = record.Text("StartMode").value_or("");
    const auto* const type =
        std::find_if(std::begin(base::kStartTypes), std::end(base::kStartTypes),
                     [&](const auto& row) { return row.mode == mode; });
    machine.services.push_back(
        {name,
         type != std::end(base::kStartTypes) ? type->value : platform::ServiceStart::kDisabled,
         record.Text("State") == "Running"});
  };
  ForEachInstance("Win32_Service", add);
  ForEachInstance("Win32_SystemDriver", add);
}

void ReadFlag(Machine& machine) {
  std::uint32_t flag = 0;
  try {
    sys::Registry registry;
    registry.SetSubkey(sys::kClientServiceKey);
    registry.OpenForReading(/*view64=*/false);
    registry.ReadDWord(sys::kNetworkDisabledValue, &flag);
  } catch (const sys::RegistryError&) {
    return;  // networking was not disabled
  }
  simulated::RegistryValue value;
  value.data = flag;
  machine.registry = {value};
}

void ReadFiles(Machine& machine) {
  sys::OsVersion system;
  system.Query();
  for (const char* name : kAgentFiles) {
    simulated::File file{system.SystemFolder() + name, ""};
    if (!util::FileExists(file.path)) continue;
    if (!util::ReadWholeFile(file.path, &file.text)) {
      throw std::runtime_error(file.path + " cannot be read");
    }
    machine.files.push_back(std::move(file));
  }
}

constexpr struct {
  const char* name;
  void (*read)(Machine& machine);
} kParts[] = {
    {"computer name", ReadNames},
    {"membership", ReadMembership},
    {"operating system", ReadOperatingSystem},
    {"adapters", ReadAdapters},
    {"persistent routes", ReadRoutes},
    {"services", ReadServices},
    {"networking flag", ReadFlag},
    {"agent's files", ReadFiles},
};

}  // namespace

CapturedMachine CaptureMachine() {
  CapturedMachine captured;
  for (const auto& part : kParts) {
    try {
      part.read(captured.machine);
    } catch (const err::CGeneralError& error) {
      captured.gaps.push_back(std::string(part.name) + ": " + error.message + " (error " +
                              std::to_string(error.SystemError) + ")");
    } catch (const std::exception& error) {
      captured.gaps.push_back(std::string(part.name) + ": " + error.what());
    }
  }
  return captured;
}

}  // namespace tool
