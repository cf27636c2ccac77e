// winapi/Fonts/Enumerate.cpp: the families of the machine and their styles.
#include "Errors/Failure.h"
#include "Fonts/CharacterSet.h"
#include "Fonts/Font.h"

#include <algorithm>
#include <cstring>

namespace winapi
{
namespace
{
constexpr DWORD ITALIC = 0x01;
constexpr DWORD BOLD = 0x20;
constexpr DWORD REGULAR = 0x40;

// Who is called, until an answer is 0.
class Caller
{
public:
    Caller(FONTENUMPROCA function, LPARAM what) : procedure(function), parameter(what) {}

    int GetAnswer() const { return answer; }

    // For each character set of a face; false when the caller has enough.
    bool Tell(const Face& face)
    {
        const FaceFacts& facts = face.GetFacts();
        bool any = false;
        for (const CharacterSet& set : characterSets)
            if (facts.codePages[0] >> set.bit & 1) {
                any = true;
                if (!Tell(face, facts, set.number))
                    return false;
            }
        return any || Tell(face, facts, ANSI_SET);
    }

private:
    bool Tell(const Face& face, const FaceFacts& facts, BYTE set)
    {
        ENUMLOGFONTA font = {};
        NEWTEXTMETRICA metrics = {};
        // An em of as many dots as the face has units.
        if (const FaceSize* const size = face.GetSize(-facts.unitsPerEm)) {
            TEXTMETRICA own;
            size->GetMetrics(own);
            std::memcpy(&metrics, &own, offsetof(TEXTMETRICA, tmCharSet));
        }
        metrics.tmWeight = face.bold ? 700 : 400;
        metrics.tmItalic = face.italic ? 255 : 0;
        metrics.tmCharSet = set;
        metrics.ntmFlags = (face.italic ? ITALIC : 0) | (face.bold ? BOLD : 0);
        if (!metrics.ntmFlags)
            metrics.ntmFlags = REGULAR;
        metrics.ntmSizeEM = static_cast<UINT>(facts.unitsPerEm);
        metrics.ntmCellHeight = static_cast<UINT>(facts.winAscent + facts.winDescent);
        metrics.ntmAvgWidth = static_cast<UINT>(facts.averageWidth);
        font.elfLogFont.lfHeight = metrics.tmHeight;
        font.elfLogFont.lfWidth = metrics.tmAveCharWidth;
        font.elfLogFont.lfWeight = metrics.tmWeight;
        font.elfLogFont.lfItalic = metrics.tmItalic;
        font.elfLogFont.lfCharSet = set;
        font.elfLogFont.lfPitchAndFamily =
            static_cast<BYTE>((metrics.tmPitchAndFamily & 0xF0) | (facts.fixed ? 1 : 2));
        StoreText(font.elfLogFont.lfFaceName, LF_FACESIZE, face.family);
        StoreText(font.elfStyle, sizeof font.elfStyle, face.style);
        StoreText(font.elfFullName, sizeof font.elfFullName, face.fullName);
        answer = procedure(&font.elfLogFont, reinterpret_cast<const TEXTMETRICA*>(&metrics),
                           TRUETYPE_FONTTYPE, parameter);
        return answer != 0;
    }

    FONTENUMPROCA procedure;
    LPARAM parameter;
    int answer = 1;
};

// For the face of each family that comes first.
void TellFamilies(Caller& caller)
{
    const Face* last = nullptr;
    for (const Face* const face : AllFaces()) {
        if (last && last->family == face->family)
            continue;
        last = face;
        if (!caller.Tell(*face))
            return;
    }
}

void TellStyles(Caller& caller, const char* family)
{
    for (const Face* const face : AllFaces())
        if (IsSameFamily(face->family.c_str(), family) && !caller.Tell(*face))
            return;
}
} // namespace

int EnumFontFamiliesA(HDC hdc, LPCSTR lpLogfont, FONTENUMPROCA lpProc, LPARAM lParam)
{
    const Reference<DeviceContext> context(hdc);
    if (!context || !lpProc)
        return 0;
    // Read apart from the calls back, which may do as they like.
    if (!Guarded(false, [] { return AllFaces(), true; }))
        return 0;
    Caller caller(lpProc, lParam);
    if (lpLogfont)
        TellStyles(caller, lpLogfont);
    else
        TellFamilies(caller);
    return caller.GetAnswer();
}
} // namespace winapi
