// winapi/Host/TableHost.cpp: the table of what leans on the host's large libraries.
#include "Base/Host.h"

#include "Base/DatabaseHost.h"
#include "Fonts/FaceHost.h"
#include "Locale/LocaleTextsHost.h"
#include "winapi/Base/Words.h"

extern "C"
{
    extern WINAPI_EXPORT const winapi::HostTable ostra_host;
    constexpr winapi::HostTable ostra_host = {
        .version = OSTRA_VERSION,
        .locale = &winapi::localeHost,
        .database = &winapi::databaseTable,
        .fonts = &winapi::fontTable,
    };
}
