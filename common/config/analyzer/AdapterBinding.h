// Which live adapter each ConfigureNic of the queue is to change.
#pragma once

#include <memory>

#include "common/config/command/IConfigureCommand.h"
#include "common/sys/NicList.h"

namespace config::analyzer {

/// Gives every ConfigureNic the index of an adapter: the one at its PCI location, otherwise the one
/// with its MAC address, otherwise the first PCI adapter that is still free, otherwise none. A
/// match by location or address is taken even when it was given away before. Returns the adapters
/// as they were read; without a ConfigureNic nothing is read and the result is null. Throws what
/// reading the adapters throws.
std::unique_ptr<sys::NicList> BindAdapters(command::CommandList& commands);

}  // namespace config::analyzer
