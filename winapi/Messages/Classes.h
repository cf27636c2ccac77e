// winapi/Messages/Classes.h: the classes of windows of this process.
#pragma once

#include "Messages/Windows.h"

namespace winapi
{
// Ends a service with that last error.
[[noreturn]] void Fail(DWORD code);

// What texts are compared by.
std::string FoldOfText(LPCSTR text);
// The same of a class, which may be named by its atom.
std::string FoldOfClass(LPCSTR name);

// Null stands for the program itself.
HINSTANCE InstanceOf(HINSTANCE instance);

// Ends the service where there is none.
std::shared_ptr<const WindowClass> ClassOf(LPCSTR name, HINSTANCE instance);
} // namespace winapi
