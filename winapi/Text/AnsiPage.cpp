// winapi/Text/AnsiPage.cpp
#include "Text/AnsiPage.h"

#include "Base/ProcessLocale.h"
#include "winapi/Text/CodePage.h"

namespace winapi
{
namespace
{
constexpr UINT WESTERN_MAC = 10000;

// A number that is a word means that the locale has no such page.
UINT PageOr(WORD page, UINT other)
{
    return page > CP_MACCP ? page : other;
}
} // namespace

UINT GetACP()
{
    return winapi_ProgramAnsiPage ? winapi_ProgramAnsiPage()
                                  : PageOr(ProcessLocale().ansiPage, CP_UTF8);
}

UINT GetOEMCP()
{
    return PageOr(ProcessLocale().oemPage, CP_UTF8);
}

UINT PageOf(UINT page)
{
    switch (page) {
    case CP_ACP:
    case CP_THREAD_ACP:
        return GetACP();
    case CP_OEMCP:
        return GetOEMCP();
    case CP_MACCP:
        return PageOr(ProcessLocale().macPage, WESTERN_MAC);
    default:
        return page;
    }
}
} // namespace winapi
