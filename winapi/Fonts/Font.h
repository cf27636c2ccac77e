// winapi/Fonts/Font.h: what the handles of fonts and device contexts stand for.
#pragma once

#include "Base/Handles.h"
#include "Fonts/Face.h"
#include "winapi/Fonts/Font.h"

namespace winapi
{
// A request and the face that was found for it.
class Font : public Object
{
public:
    static constexpr Kind KIND = Kind::FONT;
    Font(const LOGFONTA& request, bool isStock);

    const LOGFONTA request; // with a name that ends
    const bool stock;

    // Found at the first call; null without memory.
    const FaceSize* GetSize() const;
    // The one asked for if the face has it.
    BYTE GetCharacterSet() const;
    void GetMetrics(TEXTMETRICA& metrics) const;

private:
    mutable std::atomic<const FaceSize*> size = nullptr;
};

class DeviceContext : public Object
{
public:
    static constexpr Kind KIND = Kind::DEVICE_CONTEXT;
    explicit DeviceContext(HANDLE selected) : Object(KIND), handle(selected), font(selected) {}

    HANDLE handle;        // of the font that is selected
    Reference<Font> font; // which it keeps alive
};

// As much of a text as there is room for, and zeros behind it.
template <class Character>
void StoreText(Character* place, std::size_t room, const std::string& text)
{
    const std::size_t length = text.size() < room ? text.size() : room - 1;
    for (std::size_t i = 0; i < room; ++i)
        place[i] = i < length ? static_cast<Character>(text[i]) : 0;
}

// Whether a font with such a request is bold.
constexpr bool IsBold(const LOGFONTA& request)
{
    return request.lfWeight > 550;
}
} // namespace winapi
