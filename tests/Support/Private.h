// tests/Support/Private.h: reaches a private member that no public operation leads to.
//
//     OSTRA_PRIVATE(Strip, void (CT_ErrorManager::*)(unsigned short*), &CT_ErrorManager::v_StripSystemError);
//     (Errors().*Private(Strip()))(text);
#pragma once

template <typename T_Tag, auto p_Member>
struct PrivateMember
{
    friend auto Private(T_Tag) { return static_cast<typename T_Tag::type>(p_Member); }
};

#define OSTRA_PRIVATE(name, member_type, member)                                                   \
    struct name                                                                                    \
    {                                                                                              \
        using type = member_type;                                                                  \
        friend auto Private(name);                                                                 \
    };                                                                                             \
    template struct PrivateMember<name, static_cast<member_type>(member)>
