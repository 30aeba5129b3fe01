// Windows Management Instrumentation: one object per COM interface, one operation per COM call.
// Destroying an object releases its interface. No operation decides anything.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/Types.h"
#include "platform/Variant.h"

namespace platform {

/// A class, an instance, or a set of method parameters (`IWbemClassObject`).
/// On failure the outputs keep their values.
class IWmiObject {
 public:
  virtual ~IWmiObject() = default;
  virtual HResult Get(const std::string& property, Variant* value) = 0;
  virtual HResult Put(const std::string& property, const Variant& value) = 0;
  /// The definition of a method's in-parameters; null when the method takes none.
  virtual HResult GetMethod(const std::string& method, std::unique_ptr<IWmiObject>* definition) = 0;
  virtual HResult SpawnInstance(std::unique_ptr<IWmiObject>* instance) = 0;
};

/// The rows of a query or the instances of a class (`IEnumWbemClassObject`).
class IWmiRows {
 public:
  virtual ~IWmiRows() = default;
  /// Fetches one row, waiting `timeoutMs` (`kForever`: without limit). `kNoMoreRows` and
  /// `*returned` 0 at the end.
  virtual HResult Next(std::int32_t timeoutMs, std::unique_ptr<IWmiObject>* row,
                       std::uint32_t* returned) = 0;
};

/// A connected namespace (`IWbemServices`). On failure the outputs keep their values.
class IWmiServices {
 public:
  virtual ~IWmiServices() = default;
  /// `CoSetProxyBlanket` with call authentication and impersonation.
  virtual HResult SecureProxy() = 0;
  /// Runs a query in the language "WQL".
  virtual HResult ExecQuery(const std::string& query, std::int32_t flags,
                            std::unique_ptr<IWmiRows>* rows) = 0;
  /// Enumerates the instances of a class, synchronously.
  virtual HResult CreateInstanceEnum(const std::string& className,
                                     std::unique_ptr<IWmiRows>* rows) = 0;
  /// `GetObject` of a class.
  virtual HResult FetchClass(const std::string& className, std::unique_ptr<IWmiObject>* object) = 0;
  /// `parameters` is null for a method that takes none.
  virtual HResult ExecMethod(const std::string& path, const std::string& method,
                             IWmiObject* parameters, std::unique_ptr<IWmiObject>* result) = 0;
};

/// `IWbemLocator`.
class IWmiLocator {
 public:
  virtual ~IWmiLocator() = default;
  /// Connects to a local namespace as the process's own user.
  virtual HResult ConnectServer(const std::string& nameSpace,
                                std::unique_ptr<IWmiServices>* services) = 0;
};

/// The process's side of COM, in the order in which a connection needs it.
class IWmi {
 public:
  virtual ~IWmi() = default;
  /// `CoInitializeEx` for the multithreaded apartment. 1 when the thread is in it already.
  virtual HResult EnterApartment() = 0;
  /// `CoUninitialize`.
  virtual void LeaveApartment() = 0;
  /// `CoInitializeSecurity` with connect authentication and impersonation.
  virtual HResult SecureProcess() = 0;
  /// `CoCreateInstance` of the locator.
  virtual HResult MakeLocator(std::unique_ptr<IWmiLocator>* locator) = 0;
};

}  // namespace platform
