// The flag that networking was switched off for an image, in the registry.
#pragma once

/// Sets the flag. Throws sys::RegistryError.
void SetNetworkDisabledFlag();

/// Reads and clears the flag. False when it is not there or cannot be taken.
bool TakeNetworkDisabledFlag();
