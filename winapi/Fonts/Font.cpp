// winapi/Fonts/Font.cpp: fonts as objects.
#include "Fonts/Font.h"

#include "Errors/Failure.h"
#include "Fonts/CharacterSet.h"
#include "winapi/Text/CodePage.h"

#include <cstring>
#include <new>

namespace winapi
{
namespace
{
constexpr LONG BOLD = 700;
constexpr LONG REGULAR = 400;

LOGFONTA WithEnd(LOGFONTA request)
{
    request.lfFaceName[LF_FACESIZE - 1] = 0;
    return request;
}

HANDLE MakeFont(const LOGFONTA& request, bool stock)
{
    std::unique_ptr<Object> font(new (std::nothrow) Font(request, stock));
    if (font)
        return MakeHandle(std::move(font));
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return nullptr;
}

// The system font: bold, without serifs.
HANDLE MakeSystemFont()
{
    LOGFONTA request = {};
    request.lfHeight = 16;
    request.lfWeight = BOLD;
    request.lfCharSet = ANY_SET;
    StoreText(request.lfFaceName, LF_FACESIZE, "sans-serif");
    return MakeFont(request, true);
}
} // namespace

Font::Font(const LOGFONTA& asked, bool isStock)
    : Object(KIND),
      request(WithEnd(asked)),
      stock(isStock)
{}

const FaceSize* Font::GetSize() const
{
    if (const FaceSize* const found = size.load())
        return found;
    const FaceSize* const made = Guarded<const FaceSize*>(nullptr, [this] {
        return FindFace(request.lfFaceName, IsBold(request), request.lfItalic != 0)
            ->GetSize(request.lfHeight);
    });
    size.store(made);
    return made;
}

BYTE Font::GetCharacterSet() const
{
    const FaceSize* const found = GetSize();
    const BYTE wanted =
        request.lfCharSet == ANY_SET ? CharacterSetOfPage(GetACP()) : request.lfCharSet;
    const CharacterSet* const set = FindCharacterSet(wanted);
    return set && found && found->face.GetFacts().codePages[0] >> set->bit & 1 ? wanted : ANSI_SET;
}

void Font::GetMetrics(TEXTMETRICA& metrics) const
{
    metrics = {};
    if (const FaceSize* const found = GetSize()) {
        found->GetMetrics(metrics);
        metrics.tmWeight = found->face.bold ? BOLD : REGULAR;
        metrics.tmItalic = found->face.italic ? 255 : 0;
    }
    metrics.tmUnderlined = request.lfUnderline;
    metrics.tmStruckOut = request.lfStrikeOut;
    metrics.tmCharSet = GetCharacterSet();
}

HFONT CreateFontIndirectA(const LOGFONTA* lplf)
{
    return lplf ? static_cast<HFONT>(MakeFont(*lplf, false)) : nullptr;
}

HGDIOBJ GetStockObject(int i)
{
    // Once it is made it is never closed.
    static constinit std::atomic<HANDLE> system;
    if (i != SYSTEM_FONT)
        return nullptr;
    if (const HANDLE found = system.load())
        return found;
    const HANDLE made = MakeSystemFont();
    HANDLE expected = nullptr;
    if (!made || system.compare_exchange_strong(expected, made))
        return made;
    ReleaseHandle(made, false);
    return expected;
}

BOOL DeleteObject(HGDIOBJ ho)
{
    const Reference<Font> font(ho);
    if (!font)
        return FALSE;
    return font->stock || ReleaseHandle(ho, false);
}
} // namespace winapi
