// Built with clang++ --target=x86_64-pc-windows-msvc -ffreestanding -fno-rtti -fno-exceptions.
#include "tests/contract/windows/MsvcAgent.h"

extern "C" void* malloc(decltype(sizeof 0) size);
extern "C" void free(void* memory);

namespace {

// Deliberate: declared from the agent's documentation alone and not from this library's headers,
// with a virtual destructor first, which takes one slot here.
class Object {
 public:
  virtual ~Object() {}
  static void* operator new(decltype(sizeof 0) size) { return malloc(size); }
  static void operator delete(void* memory) { free(memory); }
};

class Message : public Object {
 public:
  explicit Message(MessageBook* newBook) : book(newBook) {}
  ~Message() override { OnMessageEnd(book); }

  virtual void Slot1() { Forbid(1); }
  virtual void Slot2() { Forbid(2); }
  virtual void Slot3() { Forbid(3); }
  virtual void SetIntValue(const char* key, int value) { OnSetIntValue(book, key, value); }
  virtual void AddValue(const char* key, const char* value) { OnWrite(book, "Add", key, value); }
  virtual void SetValue(const char* key, const char* value) { OnWrite(book, "Set", key, value); }
  virtual void SetTypeAndName(const char* type, const char* name) {
    OnSetTypeAndName(book, type, name);
  }
  virtual void Slot8() { Forbid(8); }
  virtual const char* GetType() { return OnGetType(book); }
  virtual const char* GetName() { return OnGetName(book); }
  virtual const char* GetValue(const char* key) { return OnGetValue(book, key); }
  virtual void Slot12() { Forbid(12); }
  virtual void Slot13() { Forbid(13); }
  virtual void Slot14() { Forbid(14); }
  virtual void Slot15() { Forbid(15); }
  virtual void GetIntValue(const char* key, unsigned* value) { OnGetIntValue(book, key, value); }
  virtual void Slot17() { Forbid(17); }
  virtual void Slot18() { Forbid(18); }
  virtual void Slot19() { Forbid(19); }
  virtual void Slot20() { Forbid(20); }
  virtual void Slot21() { Forbid(21); }
  virtual void Slot22() { Forbid(22); }
  virtual void Slot23() { Forbid(23); }
  virtual void Slot24() { Forbid(24); }
  virtual void Slot25() { Forbid(25); }
  virtual void Release() { delete this; }

  MessageBook* const book;

 private:
  static void Forbid(int slot) { OnForbiddenSlot("message", slot); }
};

class Host : public Object {
 public:
  explicit Host(HostBook* book) : book_(book) {}

  virtual void SendTo(const char* target, Message* message) {
    OnSendTo(book_, target, message->book);
  }
  virtual int Post(Message* message) { return OnPost(book_, message->book); }
  virtual void Log(unsigned level, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    OnLog(book_, level, format, arguments);
    va_end(arguments);
  }
  virtual Message* CreateMessage() { return new Message(OnCreateMessage(book_)); }

 private:
  HostBook* const book_;
};

struct Table {
  uint64_t interfaceRevision;
  void (*getVersion)(unsigned* major, unsigned* minor, unsigned* build);
  int (*doMagic)(Message* message, Host* host);
};

const Table& AsTable(const ToolboxApi* table) { return *reinterpret_cast<const Table*>(table); }

}  // namespace

extern "C" {

IAgentHost* NewMsvcHost(HostBook* book) { return reinterpret_cast<IAgentHost*>(new Host(book)); }

IAgentMessage* NewMsvcMessage(MessageBook* book) {
  return reinterpret_cast<IAgentMessage*>(new Message(book));
}

void DeleteMsvcObject(void* object) { delete static_cast<Object*>(object); }

uint64_t MsvcInterfaceRevision(const ToolboxApi* table) { return AsTable(table).interfaceRevision; }

void MsvcGetVersion(const ToolboxApi* table, uint32_t* major, uint32_t* minor, uint32_t* build) {
  AsTable(table).getVersion(major, minor, build);
}

int32_t MsvcDoMagic(const ToolboxApi* table, IAgentMessage* message, IAgentHost* host) {
  return AsTable(table).doMagic(reinterpret_cast<Message*>(message), reinterpret_cast<Host*>(host));
}
}
