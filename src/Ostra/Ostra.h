// Ostra/Ostra.h: the whole library.
#pragma once

#include <Database/RecordManager/RecordManager.h>
#include <Ostra/ARRAY/Array.h>
#include <Ostra/ARRAY/VoidArray.h>
#include <Ostra/Buffer/Buffer.h>
#include <Ostra/CompList/CompList.h>
#include <Ostra/File/File.h>
#include <Ostra/File/FileSystem.h>
#include <Ostra/File/FindFile.h>
#include <Ostra/File/WinFile.h>
#include <Ostra/Frame/Counter.h>
#include <Ostra/Frame/DatabaseError.h>
#include <Ostra/Frame/ErrorManager.h>
#include <Ostra/Frame/Exit.h>
#include <Ostra/Frame/Init.h>
#include <Ostra/Frame/OstraDLLMain.h>
#include <Ostra/Frame/Shared.h>
#include <Ostra/Frame/Text.h>
#include <Ostra/Frame/Type.h>
#include <Ostra/SortedArray/VoidSortedArray.h>
#include <Ostra/String/CString.h>
#include <Ostra/String/String.h>
#include <Ostra/String/UString.h>
#include <System/OS/OS.h>
#include <System/String/StringConvert.h>
#include <System/String/UTF.h>
