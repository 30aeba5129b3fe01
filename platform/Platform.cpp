#include "platform/IPlatform.h"
#include "platform/ScopedPlatform.h"

namespace platform {
namespace {

IPlatform* current = nullptr;

}  // namespace

IPlatform& Current() { return current != nullptr ? *current : Default(); }

ScopedPlatform::ScopedPlatform(IPlatform& machine) : previous_(current) { current = &machine; }

ScopedPlatform::~ScopedPlatform() { current = previous_; }

}  // namespace platform
