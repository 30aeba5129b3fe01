// The agent's host and message objects as the agent's own compiler lays them out. MsvcAgent.cpp is
// built for that compiler's ABI and keeps nothing: what its objects are told and asked goes to the
// functions that the test implements. Only C and fixed-width types cross between the two.
#pragma once

#include <stdarg.h>
#include <stdint.h>

class IAgentHost;
class IAgentMessage;
struct ToolboxApi;

extern "C" {

/// The test's memory of one host and of one message; only the test looks inside.
struct HostBook;
struct MessageBook;

/// Makes an object that works on `book`, which it borrows.
IAgentHost* NewMsvcHost(HostBook* book);
IAgentMessage* NewMsvcMessage(MessageBook* book);
/// Ends a host or a message through slot 0, as the agent does.
void DeleteMsvcObject(void* object);

/// Calls the table's entries from the agent's side.
uint64_t MsvcInterfaceRevision(const ToolboxApi* table);
void MsvcGetVersion(const ToolboxApi* table, uint32_t* major, uint32_t* minor, uint32_t* build);
int32_t MsvcDoMagic(const ToolboxApi* table, IAgentMessage* message, IAgentHost* host);

// Implemented by the test.

void OnSendTo(HostBook* book, const char* target, MessageBook* message);
int32_t OnPost(HostBook* book, MessageBook* message);
void OnLog(HostBook* book, uint32_t level, const char* format, va_list arguments);
/// Answers the book of a new message.
MessageBook* OnCreateMessage(HostBook* book);

void OnSetIntValue(MessageBook* book, const char* key, int32_t value);
/// `how` is "Add" or "Set".
void OnWrite(MessageBook* book, const char* how, const char* key, const char* value);
void OnSetTypeAndName(MessageBook* book, const char* type, const char* name);
const char* OnGetType(MessageBook* book);
const char* OnGetName(MessageBook* book);
/// Null when the key is absent.
const char* OnGetValue(MessageBook* book, const char* key);
void OnGetIntValue(MessageBook* book, const char* key, uint32_t* value);
/// The last call for a message, from its destructor.
void OnMessageEnd(MessageBook* book);

/// A slot was called that the library has no business with.
void OnForbiddenSlot(const char* object, int32_t slot);
}
