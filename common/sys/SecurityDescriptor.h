// The security descriptor of a window station or a desktop.
#pragma once

#include <cstdint>

#include "common/sys/Dacl.h"
#include "common/sys/HeapBlock.h"
#include "platform/ISecurity.h"

namespace sys {

/// Its operations throw CImpersonationError, and `Size` a bare number.
class CSecurityDescriptor {
 public:
  /// An empty descriptor.
  CSecurityDescriptor();
  /// The access list of an object.
  explicit CSecurityDescriptor(platform::UserObject object);

  /// The access list, which lives as long as the descriptor; null when there is none, which lets
  /// everyone in.
  const platform::Acl* GetDACL() const;

  /// Bytes of the descriptor with its parts. Throws the system's error number, a plain
  /// std::int32_t, when it is not a descriptor.
  std::uint32_t Size() const;

  /// Becomes an empty descriptor.
  void Create();

  /// Refers to a list, which must live as long as the descriptor is used. Only for a descriptor
  /// that was created empty.
  void SetDACL(const CDACL& list);

  /// Gives an object the access list of this descriptor.
  void SetUserObjectSecurity(platform::UserObject object) const;

 private:
  HeapBlock<platform::Descriptor> descriptor_;
};

}  // namespace sys
