// winapi/Profile/Profile.h: private profile files, of sections with keys and values.
//
// A section begins with a line "[name]", a key is a line "key=value". Names ignore case and blanks
// around them, and the first of a name counts. One pair of equal quotes around a value is taken
// off. What stands before the first section belongs to the section "". A line without "=" is a key
// without a value, which is never found; ";" begins no comment, but a key of that name.
//
// A file begins with the mark of UTF-16 (either order of bytes) or UTF-8, or it is of the ANSI code
// page. A name without a separator lies in the Windows directory, "ostra-winapi/windows" below the
// user's data directory; a null one is "win.ini" there.
#pragma once

#include "winapi/Base/Constants.h"

namespace winapi
{
// Reads a value, or with a null key the names of a section's keys that have one, or with a null
// section those of all sections; in lists a zero stands behind each name and one more at the end.
// What isn't found gives the default, without its blanks at the end and its quotes. The result is
// the length of what was stored: no more than the size less 1, less 2 for a list; text of several
// bytes a character is cut before one that has no room. Size 0 stores nothing. Last error: 0; or
// ERROR_FILE_NOT_FOUND (2), ERROR_PATH_NOT_FOUND (3), ERROR_ACCESS_DENIED (5) for what is no file,
// ERROR_NOT_ENOUGH_MEMORY (8) for more than 256 MB, ERROR_SHARING_VIOLATION (32) and the like, with
// the default for an answer.
WINAPI_EXPORT DWORD GetPrivateProfileStringW(LPCWSTR lpAppName, LPCWSTR lpKeyName,
                                             LPCWSTR lpDefault, LPWSTR lpReturnedString,
                                             DWORD nSize, LPCWSTR lpFileName);
WINAPI_EXPORT DWORD GetPrivateProfileStringA(LPCSTR lpAppName, LPCSTR lpKeyName, LPCSTR lpDefault,
                                             LPSTR lpReturnedString, DWORD nSize,
                                             LPCSTR lpFileName);

// Sets a value; with a null value removes the key, with a null key the section. New keys go to the
// end of their section, new sections to the end of the file. The file is made if it isn't there;
// the mark of its text, its owner, its mode and a symbolic link stay. It is replaced as a whole, so
// that readers see the old text or the new one, and writers take turns: a writer that waits for
// more than a minute fails with ERROR_SHARING_VIOLATION. What a change doesn't concern is laid
// out anew: blanks around names and values and empty lines go, lines end in CR LF. A change that
// changes nothing leaves the file untouched. On failure, too: ERROR_PATH_NOT_FOUND,
// ERROR_ACCESS_DENIED also for a read-only file, ERROR_DISK_FULL (112). A null section fails with
// ERROR_FILE_NOT_FOUND.
WINAPI_EXPORT BOOL WritePrivateProfileStringW(LPCWSTR lpAppName, LPCWSTR lpKeyName,
                                              LPCWSTR lpString, LPCWSTR lpFileName);
WINAPI_EXPORT BOOL WritePrivateProfileStringA(LPCSTR lpAppName, LPCSTR lpKeyName, LPCSTR lpString,
                                              LPCSTR lpFileName);
} // namespace winapi
