// tests/Support/MessageBox.cpp
#include "Support/MessageBox.h"

#include <windows.h>

#ifdef _WIN32
#include <gtest/gtest.h>

#include <cstring>
#include <vector>
#endif

namespace
{
AnsweredBoxes* answered;
}

int AnsweredBoxes::Show(const char16_t* box_title, const char16_t* box_text, unsigned box_type)
{
    ++count;
    title = box_title;
    text = box_text;
    type = box_type;
    return answer;
}

#ifndef _WIN32

AnsweredBoxes::AnsweredBoxes(int the_answer) : answer(the_answer)
{
    answered = this;
}

AnsweredBoxes::~AnsweredBoxes()
{
    answered = nullptr;
}

extern "C" BOOL winapi_TestMessageBox(LPCWSTR text, LPCWSTR title, UINT type, int* answer)
{
    if (!answered)
        return FALSE;
    *answer = answered->Show(reinterpret_cast<const char16_t*>(title),
                             reinterpret_cast<const char16_t*>(text), type);
    return TRUE;
}

#else

namespace
{
int WINAPI ShowWide(HWND, LPCWSTR text, LPCWSTR title, UINT type)
{
    return answered->Show(reinterpret_cast<const char16_t*>(title),
                          reinterpret_cast<const char16_t*>(text), type);
}

std::wstring Widened(LPCSTR text)
{
    std::wstring wide(std::strlen(text) + 1, L'\0');
    wide.resize(
        MultiByteToWideChar(CP_ACP, 0, text, -1, wide.data(), static_cast<int>(wide.size())) - 1);
    return wide;
}

int WINAPI ShowNarrow(HWND, LPCSTR text, LPCSTR title, UINT type)
{
    answered->narrow = true;
    return ShowWide(nullptr, Widened(text).c_str(), Widened(title).c_str(), type);
}

// Where a module keeps the address of a function that it imports; null for one that it doesn't.
void** Import(HMODULE module, const char* function)
{
    char* const base = reinterpret_cast<char*>(module);
    const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    const auto* nt = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
    const auto& directory = nt->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    if (!directory.VirtualAddress)
        return nullptr;
    const auto* from =
        reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + directory.VirtualAddress);
    for (; from->Name; ++from) {
        const auto* name =
            reinterpret_cast<const IMAGE_THUNK_DATA*>(base + from->OriginalFirstThunk);
        auto* place = reinterpret_cast<IMAGE_THUNK_DATA*>(base + from->FirstThunk);
        for (; name->u1.AddressOfData; ++name, ++place) {
            if (IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal))
                continue;
            const auto* told =
                reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + name->u1.AddressOfData);
            if (!std::strcmp(reinterpret_cast<const char*>(told->Name), function))
                return reinterpret_cast<void**>(&place->u1.Function);
        }
    }
    return nullptr;
}

void Put(void** place, void* function)
{
    DWORD old;
    VirtualProtect(place, sizeof function, PAGE_READWRITE, &old);
    *place = function;
    VirtualProtect(place, sizeof function, old, &old);
}

struct Replaced
{
    void** place;
    void* old;
};
std::vector<Replaced> replaced;

void Replace(const char* function, void* own)
{
    // The library, or a program that holds its objects.
    for (const char* name : {"ostra.dll", static_cast<const char*>(nullptr)}) {
        const HMODULE module = GetModuleHandleA(name);
        void** const place = module ? Import(module, function) : nullptr;
        if (place) {
            replaced.push_back({place, *place});
            Put(place, own);
        }
    }
}
} // namespace

AnsweredBoxes::AnsweredBoxes(int the_answer) : answer(the_answer)
{
    answered = this;
    Replace("MessageBoxW", reinterpret_cast<void*>(ShowWide));
    Replace("MessageBoxA", reinterpret_cast<void*>(ShowNarrow));
    EXPECT_EQ(replaced.size() % 2, 0U);
    EXPECT_NE(replaced.size(), 0U);
}

AnsweredBoxes::~AnsweredBoxes()
{
    for (const Replaced& one : replaced)
        Put(one.place, one.old);
    replaced.clear();
    answered = nullptr;
}

#endif
