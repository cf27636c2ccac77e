// winapi/Base/Session.h: what the processes of a user share while they run: a folder and a database
// in it, for windows and global atoms.
//
// A process enters at its first window or atom and never earlier. It leaves a mark: a file, locked
// as long as the process lives, whose name is the beginning of the names of all its other files and
// stands in its rows. So what a dead process has left is told from what is in use, whatever ended it.
#pragma once

#include "Base/Database.h"

namespace winapi
{
// Enters, unless that is done. Result: 0 or the code of the failure; everything below asks for
// success. ERROR_ACCESS_DENIED (5) for a folder of another user, or one that others may look into.
DWORD EnterSession();

// Tables: win(hwnd, fold, title, mark, socket), atom(id, fold, name), hold(atom, mark, refs).
extern Database session;

// The folder; ostra-winapi in $XDG_RUNTIME_DIR, or else ostra-winapi-<user> in /tmp. The variable is
// looked at when the process enters for the first time.
const std::string& SessionFolder();
// The name of this process's mark.
const std::string& SessionMark();

// Whether the process of that mark lives.
bool IsAlive(const std::string& mark);
// Removes what dead processes have left; what they held of atoms that others hold stays, without a
// mark.
void SweepSession();
// The same within a transaction.
void Sweep(Transaction& transaction);
} // namespace winapi
