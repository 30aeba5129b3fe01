// The one door to the system's headers, in the order they need, without the macros of theirs that
// would rename an operation of a port.
#pragma once

#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef SECURITY_WIN32
#define SECURITY_WIN32  // <security.h> asks for it
#endif
#ifndef _WINSOCK_DEPRECATED_NO_WARNINGS
#define _WINSOCK_DEPRECATED_NO_WARNINGS  // `gethostbyname` and `inet_addr` are what is meant
#endif

// clang-format off
#include <winsock2.h>
#include <windows.h>
#include <ole2.h>
#include <activeds.h>
#include <lm.h>
#include <ntsecapi.h>
#include <security.h>
#include <userenv.h>
#include <wbemidl.h>
// clang-format on

#undef OpenService  // IServices::OpenService
