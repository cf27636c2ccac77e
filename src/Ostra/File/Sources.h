// Ostra/File/Sources.h: what the classes with several sources report as their place. Internal.
#pragma once

inline constexpr char qccz_FileSource[] = "Ostra/File/File";
inline constexpr char qccz_WinFileSource[] = "Ostra/File/WinFile";
