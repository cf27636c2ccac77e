// examples/cookbook/constructing.cpp: the constructors of the two strings, side by side.
#include <Ostra/Ostra.h>

#include <cstdio>

static void Show(const char* title, const CT_String& text)
{
    std::printf("%-28s %u characters, \"%s\"\n", title, text.vn_GetLength(),
                CT_CString(&text, 1252).qccz_Get());
}

int main()
{
    // One number: a code page for bytes, a length to make room for with units.
    Show("CT_CString(1252)", CT_CString(1252));
    Show("CT_UString(1252)", CT_UString(1252));

    // A text of bytes, a count, a page: the page is kept by bytes and converted from by units.
    Show("CT_CString(bytes, 3, 1252)", CT_CString("Street", 3, 1252));
    Show("CT_UString(bytes, 3, 1252)", CT_UString("Street", 3, 1252));

    // A text of units and a count; bytes are made in a page.
    Show("CT_CString(units, 3, 1252)", CT_CString(u"Street", 3, 1252));
    Show("CT_UString(units, 3)", CT_UString(u"Street", 3));

    // Another string: the number is a page again, for units that become bytes. Those of a
    // CT_CString stay as they are, and so does its page.
    const CT_UString units(u"Street");
    const CT_CString bytes("Street", 0xFFFFFFFF, 1252);
    Show("CT_CString(&units, 1252)", CT_CString(&units, 1252));
    Show("CT_UString(&units)", CT_UString(&units)); // shares the block
    Show("CT_CString(&bytes)", CT_CString(&bytes)); // the same
    Show("CT_UString(&bytes)", CT_UString(&bytes)); // by the page of the bytes
    return CT_ErrorManager::spco_Get()->b_IsSetError();
}
