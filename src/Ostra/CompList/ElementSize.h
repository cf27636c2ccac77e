// Ostra/CompList/ElementSize.h: from an element's size to its type. Internal.
#pragma once

// Calls f_Each with a value of the type whose elements have that many bytes; f_Other where there is
// none: the head of a foreign list may tell any size.
template <class t_Each, class t_Other>
inline auto o_ForElement(unsigned n_ElementSize, t_Each f_Each, t_Other f_Other)
{
    switch (n_ElementSize) {
    case 1:
        return f_Each(static_cast<unsigned char>(0));
    case 2:
        return f_Each(static_cast<unsigned short>(0));
    case 4:
        return f_Each(0u);
    }
    return f_Other();
}

// The same where an unknown size counts as 4.
template <class t_Each>
inline auto o_ForElement(unsigned n_ElementSize, t_Each f_Each)
{
    return o_ForElement(n_ElementSize, f_Each, [&] { return f_Each(0u); });
}
