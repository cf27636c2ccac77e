// winapi/Text/ConverterHost.h: the functions behind Text/Converter.h.
#pragma once

#include "Text/Converter.h"

namespace winapi
{
void* OpenConverter(const char* name);
void CloseConverter(void* converter);
WCHAR ToUnit(void* converter, const char* bytes, int count);
void ToUnits(void* converter, BYTE lead, WCHAR* units);
bool FromUnits(void* converter, void* place, Converter::Apply apply);
} // namespace winapi
