// Ostra/Frame/SystemText.h: wide text of the library as the system's wide text. Internal.
#pragma once

#include <windows.h>

inline LPCWSTR qcuz_System(const unsigned short* qcuz_Text)
{
    return reinterpret_cast<LPCWSTR>(qcuz_Text);
}

inline LPWSTR qcuz_System(unsigned short* qcuz_Text)
{
    return reinterpret_cast<LPWSTR>(qcuz_Text);
}
