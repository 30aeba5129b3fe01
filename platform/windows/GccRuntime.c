/* For the plug-in alone: gives back what GCC's run-time library keeps when it is unloaded, an index of
   thread-local storage, taken at the first throw, and the memory set aside for throwing without. */
#include <windows.h>

/* Each thread's copy of the section .tls comes and goes with the plug-in. It is found by hand: the linker
   adds the load address to the offsets that _Thread_local needs. */
extern ULONG _tls_index;
extern char _tls_start;

struct ExceptionState {
  void* caught;
  unsigned uncaught;
};

static struct ExceptionState state __attribute__((section(".tls$")));

/* These two take the places of the library's own. */
struct ExceptionState* __cxa_get_globals(void) {
  enum { kThreadLocalStorage = 11 }; /* the place in the thread's block, in pointers */
  char** const copies = ((char***)NtCurrentTeb())[kThreadLocalStorage];
  return (struct ExceptionState*)(copies[_tls_index] + ((char*)&state - &_tls_start));
}

struct ExceptionState* __cxa_get_globals_fast(void) { return __cxa_get_globals(); }

void FreeEmergencyMemory(void) __asm__("_ZN9__gnu_cxx9__freeresEv");

__attribute__((destructor)) static void AtUnload(void) { FreeEmergencyMemory(); }
