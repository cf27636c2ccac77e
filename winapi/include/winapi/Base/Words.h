// winapi/Base/Words.h: words that stand in declarations.
#pragma once

#define WINAPI_EXPORT __attribute__((visibility("default")))
#define WINAPI
#define APIENTRY
#define CALLBACK
