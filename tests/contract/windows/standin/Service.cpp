// Stands in for the program of any service: runs until it is stopped.
#include <windows.h>

namespace {

SERVICE_STATUS_HANDLE status = nullptr;

void Report(DWORD state) {
  SERVICE_STATUS now{};
  now.dwServiceType = SERVICE_WIN32_OWN_PROCESS;
  now.dwCurrentState = state;
  now.dwControlsAccepted = SERVICE_ACCEPT_STOP;
  SetServiceStatus(status, &now);
}

void WINAPI Control(DWORD code) {
  if (code == SERVICE_CONTROL_STOP) Report(SERVICE_STOPPED);
}

void WINAPI Run(DWORD, LPSTR*) {
  char anyName[] = "";
  status = RegisterServiceCtrlHandlerA(anyName, Control);
  Report(SERVICE_RUNNING);
}

}  // namespace

int main() {
  char anyName[] = "";
  const SERVICE_TABLE_ENTRYA table[] = {{anyName, Run}, {nullptr, nullptr}};
  return StartServiceCtrlDispatcherA(table) ? 0 : 1;
}
