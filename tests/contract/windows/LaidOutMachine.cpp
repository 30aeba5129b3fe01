#include "tests/contract/windows/LaidOutMachine.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <sstream>
#include <variant>

#include "platform/IRegistry.h"
#include "platform/simulated/SimulatedPlatform.h"

namespace contract {
namespace {

using std::filesystem::path;

constexpr char kDevices[] = R"(SYSTEM\CurrentControlSet\Enum\)";
constexpr char kInterfaces[] = R"(SYSTEM\CurrentControlSet\Services\Tcpip\Parameters\Interfaces\)";
constexpr std::string_view kRoot = R"(HKEY_LOCAL_MACHINE\)";

/// The ones whose program is a driver; Windows starts the others as processes.
constexpr std::string_view kDrivers[] = {"NetBT", "NwlnkNb"};

std::string ReadBack(const path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

std::vector<path> FilesIn(const path& folder) {
  std::vector<path> files;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.is_regular_file()) files.push_back(entry.path());
  }
  return files;
}

/// The file's lines without what the profile writer of Windows changes on its way: line ends, empty
/// lines, and blanks around "=" and at the ends.
std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) {
    line = std::regex_replace(line, std::regex(R"(^\s+|\s+$)"), "");
    const std::size_t sign = line.find('=');
    if (sign != std::string::npos) {
      line = std::regex_replace(line, std::regex(R"(^([^=]*?)\s*=\s*)"), "$1=");
    }
    if (!line.empty()) lines.push_back(line);
  }
  return lines;
}

/// "key|name|type|data" in lower case but for the data.
std::string Shown(std::string key, std::string name, std::uint32_t type, const std::string& data) {
  for (std::string* text : {&key, &name}) {
    for (char& c : *text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  }
  return key + "|" + name + "|" + std::to_string(type) + "|" + data;
}

void AddValues(HKEY key, const std::string& name, std::set<std::string>* values) {
  std::array<char, 1024> text;
  for (DWORD i = 0;; ++i) {
    DWORD length = text.size();
    DWORD type = 0;
    std::array<BYTE, 4096> data{};
    DWORD size = data.size();
    const LSTATUS result =
        RegEnumValueA(key, i, text.data(), &length, nullptr, &type, data.data(), &size);
    if (result == ERROR_NO_MORE_ITEMS) break;
    EXPECT_EQ(result, ERROR_SUCCESS) << name;
    if (result != ERROR_SUCCESS) break;
    std::string shown(reinterpret_cast<const char*>(data.data()), size);
    if (type == REG_DWORD) {
      DWORD number = 0;
      std::copy_n(data.data(), sizeof number, reinterpret_cast<BYTE*>(&number));
      shown = std::to_string(number);
    } else if (shown.ends_with('\0')) {
      shown.pop_back();
    }
    values->insert(Shown(name, text.data(), type, shown));
  }
  for (DWORD i = 0;; ++i) {
    DWORD length = text.size();
    if (RegEnumKeyExA(key, i, text.data(), &length, nullptr, nullptr, nullptr, nullptr) != 0) break;
    HKEY inner = nullptr;
    EXPECT_EQ(RegOpenKeyExA(key, text.data(), 0, KEY_READ, &inner), ERROR_SUCCESS);
    AddValues(inner, name.empty() ? text.data() : name + "\\" + text.data(), values);
    RegCloseKey(inner);
  }
}

/// Closes a handle of the service control manager.
class ServiceOwner {
 public:
  explicit ServiceOwner(SC_HANDLE handle) : handle_(handle) {}
  ~ServiceOwner() {
    if (handle_ != nullptr) CloseServiceHandle(handle_);
  }
  ServiceOwner(const ServiceOwner&) = delete;
  ServiceOwner& operator=(const ServiceOwner&) = delete;
  SC_HANDLE Get() const { return handle_; }

 private:
  SC_HANDLE handle_;
};

SC_HANDLE OpenManager() { return OpenSCManagerA(nullptr, nullptr, SC_MANAGER_ALL_ACCESS); }

/// Waits until the service has come to `state`.
void AwaitState(SC_HANDLE service, DWORD state) {
  SERVICE_STATUS status{};
  for (int tries = 0; tries < 500; ++tries) {
    QueryServiceStatus(service, &status);
    if (status.dwCurrentState == state) return;
    Sleep(10);
  }
  ADD_FAILURE() << "a service stays in state " << status.dwCurrentState;
}

/// Stops a service, if it runs, and waits for its process: the manager does not start a service of
/// the same name while the old process is ending.
void StopService(SC_HANDLE service) {
  SERVICE_STATUS_PROCESS running{};
  DWORD needed = 0;
  QueryServiceStatusEx(service, SC_STATUS_PROCESS_INFO, reinterpret_cast<BYTE*>(&running),
                       sizeof running, &needed);
  SERVICE_STATUS status{};
  const bool isProcess = running.dwServiceType == SERVICE_WIN32_OWN_PROCESS;
  const HANDLE process = isProcess ? OpenProcess(SYNCHRONIZE, FALSE, running.dwProcessId) : nullptr;
  if (ControlService(service, SERVICE_CONTROL_STOP, &status)) AwaitState(service, SERVICE_STOPPED);
  if (process == nullptr) return;
  EXPECT_EQ(WaitForSingleObject(process, 10'000), WAIT_OBJECT_0);
  CloseHandle(process);
}

/// False when there was no such service.
bool EndService(SC_HANDLE manager, const std::string& name) {
  const ServiceOwner service(OpenServiceA(manager, name.c_str(), SERVICE_ALL_ACCESS));
  if (service.Get() == nullptr) return false;
  StopService(service.Get());
  EXPECT_TRUE(DeleteService(service.Get())) << name << ": " << GetLastError();
  return true;
}

}  // namespace

BOOL StartLaidOutService(SC_HANDLE service) {
  for (int tries = 0; tries < 20; ++tries) {
    if (StartServiceA(service, 0, nullptr)) return TRUE;
    if (GetLastError() != ERROR_INTERNAL_ERROR) return FALSE;
    Sleep(100);
  }
  return FALSE;
}

LaidOutMachine::LaidOutMachine(simulated::Machine& machine)
    : machine_(machine),
      scratchKey_("Software\\Orvanta Laid Out " + std::to_string(GetCurrentProcessId())) {
  WriteFiles();
  WriteRegistry();
}

LaidOutMachine::~LaidOutMachine() {
  RemoveServices();
  RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
  RegCloseKey(localMachine_);
  RegDeleteTreeA(HKEY_CURRENT_USER, scratchKey_.c_str());
  std::error_code ignored;
  for (const path& folder : folders_) {
    for (const path& file : FilesIn(folder)) {
      if (std::find(foreign_.begin(), foreign_.end(), file) == foreign_.end()) {
        EXPECT_TRUE(std::filesystem::remove(file, ignored)) << file;
      }
    }
  }
  for (auto folder = made_.rbegin(); folder != made_.rend(); ++folder) {
    std::filesystem::remove(*folder, ignored);
  }
}

void LaidOutMachine::WriteFiles() {
  std::vector<path> folders{path(machine_.agentFolder)};
  const auto drive = machine_.operatingSystem.find("SystemDrive");
  if (drive != machine_.operatingSystem.end() && !drive->second.Text().empty()) {
    folders.emplace_back(drive->second.Text() + "\\");
  }
  for (const simulated::File& file : machine_.files) {
    folders.push_back(path(file.path).parent_path());
  }
  for (const path& folder : folders) {
    path part;
    for (const path& name : folder) {
      part /= name;
      std::error_code error;
      if (std::filesystem::create_directory(part, error)) made_.push_back(part);
    }
    if (!std::filesystem::is_directory(folder)) {
      ADD_FAILURE() << "cannot make " << folder;
    } else if (std::find(folders_.begin(), folders_.end(), folder) == folders_.end()) {
      folders_.push_back(folder);
      const std::vector<path> files = FilesIn(folder);
      foreign_.insert(foreign_.end(), files.begin(), files.end());
    }
  }
  for (const simulated::File& file : machine_.files) {
    EXPECT_FALSE(std::filesystem::exists(file.path)) << file.path << " is in the way";
    std::ofstream stream(path(file.path), std::ios::binary);
    stream << file.text;
    EXPECT_TRUE(stream.flush()) << file.path;
  }
}

void LaidOutMachine::WriteRegistry() {
  EXPECT_EQ(RegCreateKeyA(HKEY_CURRENT_USER, scratchKey_.c_str(), &localMachine_), ERROR_SUCCESS);
  EXPECT_EQ(RegOverridePredefKey(HKEY_LOCAL_MACHINE, localMachine_), ERROR_SUCCESS);
  for (const simulated::RegistryValue& value : machine_.registry) {
    ASSERT_TRUE(value.key.starts_with(kRoot)) << value.key;
    const std::string key = value.key.substr(kRoot.size());
    const auto* number = std::get_if<std::uint32_t>(&value.data);
    const auto* text = std::get_if<std::string>(&value.data);
    const void* const data = number != nullptr ? static_cast<const void*>(number)
                                               : static_cast<const void*>(text->c_str());
    const std::size_t size = number != nullptr ? sizeof *number : text->size() + 1;
    EXPECT_EQ(RegSetKeyValueA(localMachine_, key.c_str(), value.name.c_str(), value.type, data,
                              static_cast<DWORD>(size)),
              ERROR_SUCCESS)
        << value.key;
  }
  WriteAdapters();
}

void LaidOutMachine::WriteAdapters() {
  simulated::Machine copy = machine_;
  copy.faults.clear();
  simulated::SimulatedPlatform model(copy);
  platform::IRegistry& registry = model.Registry();
  const auto write = [&](const std::string& key, const char* name) {
    platform::RegistryKey opened{};
    if (registry.Open(platform::kLocalMachine, key, KEY_READ, &opened) != 0) return;
    std::uint32_t type = 0;
    std::array<char, 4096> data;
    std::uint32_t size = data.size();
    if (registry.Query(opened, name, &type, data.data(), &size) == 0) {
      EXPECT_EQ(RegSetKeyValueA(localMachine_, key.c_str(), name, type, data.data(), size),
                ERROR_SUCCESS);
    }
    registry.Close(opened);
  };
  for (const simulated::Adapter& adapter : machine_.adapters) {
    write(kDevices + adapter.pnpDeviceId, "LocationInformation");
    write(kInterfaces + adapter.settingId, "NameServer");
  }
}

void LaidOutMachine::NeedServices() {
  if (servicesNeeded_) return;
  servicesNeeded_ = true;
  const ServiceOwner manager(OpenManager());
  const path here = path(CONFIG_STAND_INS);
  for (const simulated::Service& service : machine_.services) {
    const bool isDriver =
        std::find(std::begin(kDrivers), std::end(kDrivers), service.name) != std::end(kDrivers);
    // A run that was ended may have left one.
    EndService(manager.Get(), service.name);
    const ServiceOwner made(CreateServiceA(
        manager.Get(), service.name.c_str(), service.name.c_str(), SERVICE_ALL_ACCESS,
        isDriver ? SERVICE_KERNEL_DRIVER : SERVICE_WIN32_OWN_PROCESS, SERVICE_DEMAND_START,
        SERVICE_ERROR_NORMAL, (here / (isDriver ? "driver.sys" : "service.exe")).string().c_str(),
        nullptr, nullptr, nullptr, nullptr, nullptr));
    ASSERT_NE(made.Get(), nullptr) << service.name << ": " << GetLastError();
    services_.push_back(service.name);
    if (service.running) {
      EXPECT_TRUE(StartLaidOutService(made.Get())) << service.name << ": " << GetLastError();
      AwaitState(made.Get(), SERVICE_RUNNING);
    }
    EXPECT_TRUE(ChangeServiceConfigA(made.Get(), SERVICE_NO_CHANGE,
                                     static_cast<DWORD>(service.start), SERVICE_NO_CHANGE, nullptr,
                                     nullptr, nullptr, nullptr, nullptr, nullptr, nullptr))
        << service.name << ": " << GetLastError();
  }
}

void LaidOutMachine::RemoveServices() {
  const ServiceOwner manager(OpenManager());
  for (const std::string& name : services_) EXPECT_TRUE(EndService(manager.Get(), name)) << name;
}

void LaidOutMachine::ExpectEqual() {
  std::size_t found = 0;
  for (const path& folder : folders_) {
    for (const path& file : FilesIn(folder)) {
      if (std::find(foreign_.begin(), foreign_.end(), file) != foreign_.end()) continue;
      ++found;
      const simulated::File* expected = machine_.FindFile(file.string());
      if (expected == nullptr) {
        ADD_FAILURE() << file << " is not on the machine";
      } else if (const std::string text = ReadBack(file); text != expected->text) {
        EXPECT_EQ(Lines(text), Lines(expected->text)) << file;
      }
    }
  }
  EXPECT_EQ(found, machine_.files.size()) << "files of the machine are missing";

  std::set<std::string> values;
  AddValues(localMachine_, "", &values);
  std::erase_if(values, [](const std::string& value) {
    return value.find("|locationinformation|") != std::string::npos ||
           value.find("|nameserver|") != std::string::npos;
  });
  std::set<std::string> expectedValues;
  for (const simulated::RegistryValue& value : machine_.registry) {
    const auto* number = std::get_if<std::uint32_t>(&value.data);
    expectedValues.insert(
        Shown(value.key.substr(kRoot.size()), value.name, value.type,
              number != nullptr ? std::to_string(*number) : std::get<std::string>(value.data)));
  }
  EXPECT_EQ(values, expectedValues);

  if (!servicesNeeded_) return;
  const ServiceOwner manager(OpenManager());
  for (const simulated::Service& expected : machine_.services) {
    SCOPED_TRACE(expected.name);
    const ServiceOwner service(
        OpenServiceA(manager.Get(), expected.name.c_str(), SERVICE_ALL_ACCESS));
    AwaitState(service.Get(), expected.running ? SERVICE_RUNNING : SERVICE_STOPPED);
    alignas(QUERY_SERVICE_CONFIGA) std::array<BYTE, 8192> buffer;
    DWORD needed = 0;
    auto* const config = reinterpret_cast<QUERY_SERVICE_CONFIGA*>(buffer.data());
    EXPECT_TRUE(QueryServiceConfigA(service.Get(), config, buffer.size(), &needed));
    EXPECT_EQ(config->dwStartType, static_cast<DWORD>(expected.start));
  }
}

}  // namespace contract
