// winapi/Host/TableHost.cpp: the table of what leans on the host's large libraries.
#include "Base/Host.h"

#include "Text/ConverterHost.h"
#include "winapi/Base/Words.h"

extern "C"
{
    extern WINAPI_EXPORT const winapi::HostTable ostra_host;
    constexpr winapi::HostTable ostra_host = {
        .version = OSTRA_VERSION,
        .open_converter = winapi::OpenConverter,
        .close_converter = winapi::CloseConverter,
        .to_unit = winapi::ToUnit,
        .to_units = winapi::ToUnits,
        .from_units = winapi::FromUnits,
    };
}
