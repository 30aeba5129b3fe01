#include "tool/machine/LiveMachine.h"

#include <algorithm>
#include <concepts>
#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <utility>
#include <variant>

#include "base/FindIn.h"
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
#include "tool/io/CodePage.h"
#include "tool/io/Text.h"

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

  /// The property as a member holds it; what is of another type counts as no value.
  template <typename Type>
  Type Get(const std::string& property) const {
    Variant value = platform::Null{};
    object_.Get(property, &value);
    if constexpr (std::same_as<Type, bool>) {
      return value == Variant(platform::kVariantTrue);
    } else if constexpr (std::same_as<Type, NullableText>) {
      const auto* const text = std::get_if<std::string>(&value);
      return text != nullptr ? NullableText(*text) : std::nullopt;
    } else if constexpr (std::same_as<Type, std::vector<std::string>>) {
      const auto* const list = std::get_if<platform::TextArray>(&value);
      return list != nullptr ? list->items : Type();
    } else if constexpr (std::same_as<Type, std::string>) {
      return Get<NullableText>(property).value_or("");
    } else {
      const auto* const number = std::get_if<std::int32_t>(&value);
      return number != nullptr ? static_cast<Type>(*number) : Type();
    }
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

/// Reads from a key of this computer; false when it, or what is read, is not there.
bool FromRegistry(const std::string& subkey, const std::function<void(sys::Registry&)>& read) {
  try {
    sys::Registry registry;
    registry.SetSubkey(subkey);
    registry.OpenForReading(/*view64=*/false);
    read(registry);
    return true;
  } catch (const sys::RegistryError&) {
    return false;
  }
}

/// A text below `kRoot`; none when it is not there.
NullableText RegistryText(const std::string& key, const std::string& name) {
  std::string text;
  const bool isThere = FromRegistry(
      key.substr(kRoot.size()), [&](sys::Registry& registry) { registry.ReadString(name, &text); });
  return isThere ? NullableText(text) : std::nullopt;
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

// A registry value as the member that it belongs to; a flag is set by any text.
void Assign(NullableText& member, const NullableText& value) { member = value; }
void Assign(bool& member, const NullableText& value) { member = !value.value_or("").empty(); }

void ReadFields(Home home, const Record& record, Adapter& adapter) {
  simulated::ForEachAdapterField([&]<class Type>(const AdapterField& field, Type Adapter::*member) {
    if (field.home != home && field.home != Home::kBoth) return;
    adapter.*member = record.Get<Type>(field.property);
  });
}

void ReadRegistry(Adapter& adapter) {
  simulated::ForEachAdapterField([&]<class Type>(const AdapterField& field, Type member) {
    if constexpr (requires { Assign(adapter.*member, NullableText()); }) {
      const bool isDevice = field.home == Home::kDeviceKey;
      if (!isDevice && field.home != Home::kInterfaceKey) return;
      const std::string key = isDevice ? std::string(simulated::kDeviceKeys) + adapter.pnpDeviceId
                                       : std::string(simulated::kInterfaceKeys) + adapter.settingId;
      Assign(adapter.*member, RegistryText(key, field.property));
    }
  });
}

void ReadAdapters(Machine& machine) {
  Adapter blank;
  simulated::ForEachAdapterField([&](const AdapterField&, auto member) { blank.*member = {}; });
  std::map<std::int32_t, Adapter> hardware;
  ForEachInstance("Win32_NetworkAdapter", [&](const Record& record) {
    ReadFields(Home::kHardware, record,
               hardware.try_emplace(record.Get<std::int32_t>("Index"), blank).first->second);
  });
  ForEachInstance("Win32_NetworkAdapterConfiguration", [&](const Record& record) {
    Adapter& adapter = machine.adapters.emplace_back(
        hardware.try_emplace(record.Get<std::int32_t>("Index"), blank).first->second);
    ReadFields(Home::kConfiguration, record, adapter);
    ReadRegistry(adapter);
  });
}

void ReadRoutes(Machine& machine) {
  ForEachInstance("Win32_IP4PersistedRouteTable", [&](const Record& record) {
    machine.persistentRoutes.push_back(
        {record.Get<std::string>("Destination"), record.Get<std::string>("Mask"),
         record.Get<std::string>("NextHop"), record.Get<std::int32_t>("Metric1")});
  });
}

void ReadServices(Machine& machine) {
  const auto add = [&machine](const Record& record) {
    const std::string name = record.Get<std::string>("Name");
    const auto isNamed = [&](const auto& known) { return base::SameText(name, known.name); };
    if (base::FindIn(base::kNetworkServices, isNamed) == nullptr) return;
    const std::string mode = record.Get<std::string>("StartMode");
    const auto* type =
        base::FindIn(base::kStartTypes, [&](const auto& row) { return row.mode == mode; });
    machine.services.push_back({name,
                                type != nullptr ? type->value : platform::ServiceStart::kDisabled,
                                record.Get<std::string>("State") == "Running"});
  };
  ForEachInstance("Win32_Service", add);
  ForEachInstance("Win32_SystemDriver", add);
}

void ReadFlag(Machine& machine) {
  std::uint32_t flag = 0;
  const auto read = [&](sys::Registry& registry) {
    registry.ReadDWord(sys::kNetworkDisabledValue, &flag);
  };
  if (!FromRegistry(sys::kClientServiceKey, read)) return;  // networking was not disabled
  machine.registry.emplace_back().data = flag;
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
  captured.machine.hostsUnknown = true;
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

void TellGaps(const CapturedMachine& captured, const char* teller, const Streams& streams) {
  for (const std::string& gap : captured.gaps) {
    streams.err << "orvanta-config: " << teller << ": " << Printable(ToUtf8(gap)) << '\n';
  }
}

}  // namespace tool
