// Ostra/Frame/Counts.h: what a count, an offset or a code page means that is no number. Internal.
#pragma once

inline constexpr unsigned ALL = 0xFFFFFFFF;           // as a count: all that there is
inline constexpr unsigned NONE = 0xFFFFFFFF;          // as an offset or index: not found
inline constexpr unsigned NO_HANDLE = 0xFFFFFFFF;     // as a handle: the key isn't there
inline constexpr unsigned OWN_CODE_PAGE = 0xFFFFFFFE; // as a code page: that of the string
// As a code page of bytes that a CT_UString takes: that of the system.
inline constexpr unsigned SYSTEM_CODE_PAGE = 0xFFFFFFFF;
