#include "handlers/internal/NetworkDisabledFlag.h"

#include "common/sys/Registry.h"

void SetNetworkDisabledFlag() {
  sys::Registry key;
  key.SetSubkey(sys::kClientServiceKey);
  key.Open(/*create=*/true, /*readOnly=*/false, /*view64=*/false);
  key.WriteBool(sys::kNetworkDisabledValue, true);
}

bool TakeNetworkDisabledFlag() {
  try {
    sys::Registry key;
    key.SetSubkey(sys::kClientServiceKey);
    key.Open(/*create=*/false, /*readOnly=*/false, /*view64=*/false);
    bool disabled = false;
    key.ReadBool(sys::kNetworkDisabledValue, &disabled);
    key.DeleteValue(sys::kNetworkDisabledValue);
    return disabled;
  } catch (const sys::RegistryError&) {
    return false;
  }
}
