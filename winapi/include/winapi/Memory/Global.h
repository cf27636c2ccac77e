// winapi/Memory/Global.h: blocks of memory that go from hand to hand.
#pragma once

#include "winapi/Base/Constants.h"

namespace winapi
{
constexpr UINT GMEM_FIXED = 0x0000;
constexpr UINT GMEM_MOVEABLE = 0x0002;
constexpr UINT GMEM_ZEROINIT = 0x0040;
constexpr UINT GMEM_DDESHARE = 0x2000;
constexpr UINT GHND = GMEM_MOVEABLE | GMEM_ZEROINIT;
constexpr UINT GPTR = GMEM_FIXED | GMEM_ZEROINIT;

// A block of this process. With GMEM_MOVEABLE the result is a handle, which is no address, and stays
// unlike all other handles of the process when the block is gone; without, it is the block's
// address, aligned for any type. GMEM_ZEROINIT clears it; other flags are ignored. Blocks don't move.
// Null with ERROR_NOT_ENOUGH_MEMORY (8).
WINAPI_EXPORT HGLOBAL GlobalAlloc(UINT uFlags, SIZE_T dwBytes);

// The block's address, which counts one lock, up to 255; a fixed block has no count. Null with
// ERROR_DISCARDED (157) for a movable block of no bytes, with ERROR_INVALID_HANDLE (6) for what is
// no block, and with the last error left alone for null.
WINAPI_EXPORT LPVOID GlobalLock(HGLOBAL hMem);

// Takes one lock back. Result: whether the block is still locked, which a fixed one always is. FALSE
// with last error 0 for the last lock, ERROR_NOT_LOCKED (158) for a block that has none,
// ERROR_INVALID_HANDLE for what is no block.
WINAPI_EXPORT BOOL GlobalUnlock(HGLOBAL hMem);

// The size as it was asked for; 0 with ERROR_INVALID_HANDLE for what is no block.
WINAPI_EXPORT SIZE_T GlobalSize(HGLOBAL hMem);

// Frees a block, locked or not; null is allowed. Result: null; the handle itself with
// ERROR_INVALID_HANDLE for what is no block.
WINAPI_EXPORT HGLOBAL GlobalFree(HGLOBAL hMem);
} // namespace winapi
