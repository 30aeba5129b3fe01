// The agent's message object as this library calls it. A layout, not a design: the agent is built
// with another compiler, so every slot of its virtual table is declared in slot order, nothing is
// overloaded, and there is no virtual destructor (its slots differ between compilers).
#pragma once

#include <cstdint>

/// All texts are NUL-terminated. Texts returned stay owned by the message.
class IAgentMessage {
 public:
  virtual void Reserved0() = 0;
  virtual void Reserved1() = 0;
  virtual void Reserved2() = 0;
  virtual void Reserved3() = 0;
  /// Sets one named integer value.
  virtual void SetIntValue(const char* key, std::int32_t value) = 0;
  /// Adds a key/value pair.
  virtual void AddValue(const char* key, const char* value) = 0;
  /// Sets one named value.
  virtual void SetValue(const char* key, const char* value) = 0;
  virtual void SetTypeAndName(const char* type, const char* name) = 0;
  virtual void Reserved8() = 0;
  /// For example "Internal".
  virtual const char* GetType() = 0;
  /// For example "Configure".
  virtual const char* GetName() = 0;
  /// Null when the key is absent.
  virtual const char* GetValue(const char* key) = 0;
  virtual void Reserved12() = 0;
  virtual void Reserved13() = 0;
  virtual void Reserved14() = 0;
  virtual void Reserved15() = 0;
  /// Leaves `*value` unchanged when the key is absent.
  virtual void GetIntValue(const char* key, std::uint32_t* value) = 0;
  virtual void Reserved17() = 0;
  virtual void Reserved18() = 0;
  virtual void Reserved19() = 0;
  virtual void Reserved20() = 0;
  virtual void Reserved21() = 0;
  virtual void Reserved22() = 0;
  virtual void Reserved23() = 0;
  virtual void Reserved24() = 0;
  virtual void Reserved25() = 0;
  /// Destroys a message made by `IAgentHost::CreateMessage`.
  virtual void Release() = 0;

 protected:
  ~IAgentMessage() = default;
};
