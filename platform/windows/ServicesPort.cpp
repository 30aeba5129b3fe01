#include "platform/IServices.h"
#include "platform/windows/Handles.h"
#include "platform/windows/WindowsHeader.h"
#include "platform/windows/WindowsPlatform.h"

namespace platform::windows {
namespace {

class ServicesPort final : public IServices {
 public:
  ServiceHandle OpenManager() override {
    return ToSeam<ServiceHandle>(::OpenSCManagerA(nullptr, nullptr, SC_MANAGER_ALL_ACCESS));
  }

  ServiceHandle OpenService(ServiceHandle manager, const std::string& name) override {
    return ToSeam<ServiceHandle>(
        ::OpenServiceA(ToSystem<SC_HANDLE>(manager), name.c_str(), SERVICE_ALL_ACCESS));
  }

  bool SetStartType(ServiceHandle service, ServiceStart start) override {
    return ::ChangeServiceConfigA(ToSystem<SC_HANDLE>(service), SERVICE_NO_CHANGE,
                                  static_cast<DWORD>(start), SERVICE_NO_CHANGE, nullptr, nullptr,
                                  nullptr, nullptr, nullptr, nullptr, nullptr) != FALSE;
  }

  bool Start(ServiceHandle service) override {
    return ::StartServiceA(ToSystem<SC_HANDLE>(service), 0, nullptr) != FALSE;
  }

  void Close(ServiceHandle handle) override {
    const LastErrorKeeper keeper;
    ::CloseServiceHandle(ToSystem<SC_HANDLE>(handle));
  }
};

}  // namespace

IServices& WindowsPlatform::Services() {
  static ServicesPort port;
  return port;
}

}  // namespace platform::windows
