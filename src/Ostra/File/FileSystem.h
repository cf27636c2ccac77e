// Ostra/File/FileSystem.h: operations on paths and directories.
#pragma once

#include <Ostra/Frame/Export.h>

class CT_String;

// Static operations on paths and directories: the rules of file names in the whole library.
//
// Units:   paths are strings of either class; results come in the class of the string that takes
//          them.
// Reports: sv_GetCurrentPath and sv_FullPath; every other operation tells by its result alone, and
//          the system's reason is dropped.
// Caller:  keeps in mind that the current directory belongs to the whole process.
// Threads: any.
class OSTRA_API CT_FileSystem
{
public:
    // True if the path names a file or a directory.
    static int sb_IsExistent(const CT_String* pco_Path);

    // The current directory of a drive: 0 for the current drive, 1 for drive A and so on. A drive
    // that isn't there is reported with code 13, a directory of 260 characters or more with code
    // 34; the path is then empty.
    static void sv_GetCurrentPath(CT_String* pco_Path, unsigned n_Drive);

    // Splits a path into drive (with its colon), directory (with its last separator), name and
    // extension (with its point); each output may be null. Directory, name and extension are cut to
    // 255 characters.
    static void sv_SplitPath(const CT_String* pco_Path, CT_String* pco_Drive,
                             CT_String* pco_Directory, CT_String* pco_Name,
                             CT_String* pco_Extension);

    // Joins the parts; each may be null. A directory without a separator at its end gets a "\", an
    // extension without its point gets one, and of the drive only the first character counts.
    static void sv_MakePath(CT_String* pco_Path, const CT_String* pco_Drive,
                            const CT_String* pco_Directory, const CT_String* pco_Name,
                            const CT_String* pco_Extension);

    // Makes the path absolute; an empty one becomes the current directory. A path that the system
    // refuses, or whose result has 260 characters or more, is reported with code 60012 and stays as
    // it was.
    static void sv_FullPath(CT_String* pco_Path);

    // Replaces leading directories by "..." so that the path has at most n_MaxLength characters, if
    // that is possible.
    static void sv_MakeDisplayString(CT_String* pco_Path, unsigned n_MaxLength);

    // A name in the temporary directory that isn't in use; nothing reserves it. Empty where the
    // heap doesn't hold it. The last argument isn't looked at.
    static void sv_MakeTemporaryName(CT_String* pco_Path, const CT_String* pco_Prefix,
                                     const CT_String* pco_Extension, const CT_String*);

    // Enters a directory; makes one, its parent being there; removes an empty one. True on success.
    static int sb_ChangePath(const CT_String* pco_Path);
    static int sb_MakePath(const CT_String* pco_Path);
    static int sb_RemovePath(const CT_String* pco_Path);
};
