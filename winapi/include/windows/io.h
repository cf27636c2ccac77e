// io.h: where the platform declares its functions over streams and files by name.
#pragma once

#include "winapi/CLibrary/Stream.h"

using namespace winapi;
