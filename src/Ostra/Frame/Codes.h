// Ostra/Frame/Codes.h: the codes that the library reports, by name. Internal.
#pragma once

inline constexpr unsigned CORRUPT_DATA = 31005;
inline constexpr unsigned INVALID_FORMAT = 31050;
inline constexpr unsigned INVALID_REFERENCE = 31051;
inline constexpr unsigned TOO_MANY_RESOURCES = 31052;
inline constexpr unsigned RESOURCE_NOT_FOUND = 31053;
inline constexpr unsigned RESOURCE_EXISTS = 31054;

inline constexpr unsigned FILE_ERROR = 60003;
inline constexpr unsigned OUT_OF_MEMORY = 60006;
inline constexpr unsigned SEMANTIC_ERROR = 60012;
inline constexpr unsigned LIMITS_VIOLATED = 60021;
