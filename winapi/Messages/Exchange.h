// winapi/Messages/Exchange.h: what messages of conversations hold, on their way between processes.
#pragma once

#include "Messages/Wire.h"
#include "winapi/Messages/Exchange.h"

namespace winapi
{
// Whether what a message posts is more than two numbers.
bool HasParts(UINT message);

// Puts the parts of a message into a letter: its second number, as the sender has it. Result: 0 or
// the code of the failure.
DWORD Export(UINT message, LPARAM parameter, Letter& letter);
// Ends the sender's hold on what was posted to another process.
void AfterExport(HWND to, HWND from, UINT message, LPARAM parameter);

// Makes the second number of a message that came for a window. False for what is no such message.
bool Import(const Letter& letter, LPARAM& parameter);
// Frees what an imported message holds that nobody has taken.
void Discard(UINT message, LPARAM parameter);
// Frees the copies that a window was lent; those that a partner which is gone has lent it.
void FreeLent(HWND window);
void FreeLentBy(HWND partner, HWND window);

// Over a fork, behind windowsMutex. A child forgets the copies, which are lent to windows of its
// parent; the blocks stay, as whoever forks may be reading one.
void LockLent();
void UnlockLent();
void ForgetLent();
} // namespace winapi
