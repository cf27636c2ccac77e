// winapi/Messages/Exchange.h: what two programs say in a conversation by messages.
//
// Posted to another process, messages of a conversation take the contents of their block along: who
// receives one has a block of its own. Where the sender says that the receiver frees the block
// (fRelease), it is free on the sender's side when the message is posted. A copy that the receiver
// doesn't own is free when it acknowledges the message, ends the conversation or destroys its window.
// The acknowledgement of a command hands the sender its own block back.
#pragma once

#include "winapi/Messages/Message.h"

struct DDEACK
{
    unsigned short bAppReturnCode : 8, reserved : 6, fBusy : 1, fAck : 1;
};

struct DDEDATA
{
    unsigned short unused : 12, fResponse : 1, fRelease : 1, reserved : 1, fAckReq : 1;
    short cfFormat;
    BYTE Value[1];
};

struct DDEPOKE
{
    unsigned short unused : 13, fRelease : 1, fReserved : 2;
    short cfFormat;
    BYTE Value[1];
};

namespace winapi
{
constexpr UINT WM_DDE_FIRST = 0x03E0;
constexpr UINT WM_DDE_INITIATE = 0x03E0;
constexpr UINT WM_DDE_TERMINATE = 0x03E1;
constexpr UINT WM_DDE_ADVISE = 0x03E2;
constexpr UINT WM_DDE_UNADVISE = 0x03E3;
constexpr UINT WM_DDE_ACK = 0x03E4;
constexpr UINT WM_DDE_DATA = 0x03E5;
constexpr UINT WM_DDE_REQUEST = 0x03E6;
constexpr UINT WM_DDE_POKE = 0x03E7;
constexpr UINT WM_DDE_EXECUTE = 0x03E8;
constexpr UINT WM_DDE_LAST = 0x03E8;

constexpr UINT CF_TEXT = 1;

// The second number of a message: a record of both parts for WM_DDE_ACK, ADVISE, DATA and POKE, the
// handle itself for WM_DDE_EXECUTE, else two words. 0 without memory.
WINAPI_EXPORT LPARAM PackDDElParam(UINT msg, UINT_PTR uiLo, UINT_PTR uiHi);
// Takes it apart. FALSE, and both parts 0, for a record that isn't there.
WINAPI_EXPORT BOOL UnpackDDElParam(UINT msg, LPARAM lParam, UINT_PTR* puiLo, UINT_PTR* puiHi);
// Frees the record, if the message has one.
WINAPI_EXPORT BOOL FreeDDElParam(UINT msg, LPARAM lParam);
} // namespace winapi
