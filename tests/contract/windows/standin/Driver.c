// Stands in for the driver behind a service: loads, does nothing, and can be unloaded.
#include <ddk/wdm.h>

static void __stdcall Unload(DRIVER_OBJECT* driver) { (void)driver; }

NTSTATUS __stdcall DriverEntry(DRIVER_OBJECT* driver, UNICODE_STRING* registryPath) {
  (void)registryPath;
  driver->DriverUnload = Unload;
  return STATUS_SUCCESS;
}
