// tests/Faults/BoxInPlace.h: what stands in the place of the services that show a box.
#pragma once

#include "Faults/Services.h"

#include <cstddef>

// While it lives no box is shown. Each is answered at once, and what the last one held is here. It
// asks the heap for nothing. One lives at a time.
class BoxInPlace
{
public:
    // A button that the library makes nothing of.
    static constexpr int BUTTON = IDIGNORE;

    BoxInPlace()
    {
        shown = 0;
        title[0] = text[0] = 0;
        service::MessageBoxWService::place.replacement = AnswerWide;
        service::MessageBoxAService::place.replacement = AnswerNarrow;
    }
    BoxInPlace(const BoxInPlace&) = delete;
    BoxInPlace& operator=(const BoxInPlace&) = delete;
    ~BoxInPlace()
    {
        service::MessageBoxWService::place.replacement = nullptr;
        service::MessageBoxAService::place.replacement = nullptr;
    }

    static inline unsigned shown;
    static inline char title[100];
    static inline char text[1000];

private:
    template <std::size_t ROOM, class Unit>
    static void Copy(char (&to)[ROOM], const Unit* from)
    {
        std::size_t length = 0;
        for (; from[length] && length < ROOM - 1; ++length)
            to[length] = static_cast<char>(from[length]);
        to[length] = 0;
    }
    template <class Unit>
    static int Answer(const Unit* box_text, const Unit* box_title)
    {
        ++shown;
        Copy(title, box_title);
        Copy(text, box_text);
        return BUTTON;
    }
    static int WINAPI AnswerWide(HWND, LPCWSTR box_text, LPCWSTR box_title, UINT)
    {
        return Answer(box_text, box_title);
    }
    static int WINAPI AnswerNarrow(HWND, LPCSTR box_text, LPCSTR box_title, UINT)
    {
        return Answer(box_text, box_title);
    }
};
