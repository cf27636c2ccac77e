// Ostra/Frame/Text.h: UTF-16 literals as the wide text of the interface.
#pragma once

// The text of a u"..." literal; the pointer is kept.
inline const unsigned short* qcuz_Text(const char16_t* qcuz_Literal)
{
    return reinterpret_cast<const unsigned short*>(qcuz_Literal);
}
