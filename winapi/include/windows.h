// windows.h: the Windows services that the library calls, under their published names, types and
// numbers, for systems that lack them. What a service does is told in the header of its group; what
// is told nowhere is as the platform's published documentation says.
#pragma once

#include "winapi/Types.h"

#include "winapi/CodePage.h"
#include "winapi/Environment.h"
#include "winapi/Errors.h"
#include "winapi/File.h"
#include "winapi/FileMap.h"
#include "winapi/FileSearch.h"
#include "winapi/Module.h"
#include "winapi/Path.h"
#include "winapi/Print.h"
#include "winapi/System.h"
#include "winapi/Thread.h"

using namespace winapi;
