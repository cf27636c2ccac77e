// System/String/Sources.h: what the classes with several sources report as their place. Internal.
#pragma once

inline constexpr char qccz_StringConvertSource[] = "System/String/StringConvert";
