// windows.h: the Windows services that the library calls, under their published names, types and
// numbers, for systems that lack them. What a service does is told in the header of its group; what
// is told nowhere is as the platform's published documentation says.
#pragma once

#include "winapi/Base/Constants.h"
#include "winapi/CLibrary/Print.h"
#include "winapi/CLibrary/SplitPath.h"
#include "winapi/CLibrary/Time.h"
#include "winapi/Dialogs/MessageBox.h"
#include "winapi/CLibrary/Stream.h"
#include "winapi/Errors/FormatMessage.h"
#include "winapi/Errors/LastError.h"
#include "winapi/Files/File.h"
#include "winapi/Files/FileMap.h"
#include "winapi/Files/FileSearch.h"
#include "winapi/Files/Path.h"
#include "winapi/Memory/Global.h"
#include "winapi/Locale/Calendar.h"
#include "winapi/Locale/DateFormat.h"
#include "winapi/Locale/LocalTime.h"
#include "winapi/Locale/Locale.h"
#include "winapi/Locale/LocaleInfo.h"
#include "winapi/Locale/NumberFormat.h"
#include "winapi/Fonts/Font.h"
#include "winapi/Process/Clock.h"
#include "winapi/Process/Debug.h"
#include "winapi/Process/Environment.h"
#include "winapi/Process/Module.h"
#include "winapi/Process/System.h"
#include "winapi/Process/Thread.h"
#include "winapi/Profile/Profile.h"
#include "winapi/Registry/Registry.h"
#include "winapi/Text/CodePage.h"
#include "winapi/Text/TextTest.h"
#include "winapi/Version/Version.h"

using namespace winapi;
