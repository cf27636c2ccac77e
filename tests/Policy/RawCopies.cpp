// tests/Policy/RawCopies.cpp: what a program is warned of, read by raw_copies.py: the lines marked so,
// and no others.
#include <Ostra/Ostra.h>

#include <vector>

// ---- What shares --------------------------------------------------------------------------------

CT_UString Made(const CT_UString* text)
{
    return CT_UString(text);
}

void Share(CT_Buffer& buffer, CT_CString& bytes, CT_UString& units, CT_Forum& forum,
           CT_WinFile& file)
{
    CT_Buffer buffer2(&buffer);
    buffer2.v_Set(&buffer);
    CT_CString bytes2(&bytes);
    bytes2.v_Set(&bytes);
    CT_UString units2(&units);
    units2.v_Set(&units);
    CT_Forum forum2(&forum);
    forum2.v_Set(&forum);
    CT_WinFile file2(&file);
    file2.vv_Set(&file);
    const CT_UString made = Made(&units2);
    const std::vector<CT_UString> many(3);
    const CT_UString& reference = many[0];
    (void)reference;
}

// ---- What doesn't -------------------------------------------------------------------------------

#ifdef COPIES
template <class Object>
void Use(const Object&)
{}

void Buffer(CT_Buffer& left, CT_Buffer& right)
{
    CT_Buffer copy(right); // warns
    left = right;          // warns
}

void CString(CT_CString& left, CT_CString& right)
{
    CT_CString copy(right); // warns
    left = right;           // warns
}

void UString(CT_UString& left, CT_UString& right)
{
    CT_UString copy(right); // warns
    left = right;           // warns
}

void IniFile(CT_IniFile& left, CT_IniFile& right)
{
    CT_IniFile copy(right); // warns
    left = right;           // warns
}

void ModuleVersion(CT_ModuleVersion& left, CT_ModuleVersion& right)
{
    CT_ModuleVersion copy(right); // warns
    left = right;                 // warns
}

void DDEServer(CT_DDEServer& left, CT_DDEServer& right)
{
    CT_DDEServer copy(right); // warns
    left = right;             // warns
}

void Forum(CT_Forum& left, CT_Forum& right)
{
    CT_Forum copy(right); // warns
    left = right;         // warns
}

void WinFile(CT_WinFile& left, CT_WinFile& right)
{
    CT_WinFile copy(right); // warns
    left = right;           // warns
}

void StdFile(CT_StdFile& left, CT_StdFile& right)
{
    CT_StdFile copy(right); // warns
    left = right;           // warns
}

void FindFile(CT_FindFile& left, CT_FindFile& right)
{
    CT_FindFile copy(right); // warns
    left = right;            // warns
}

void Type(CT_Type& left, CT_Type& right)
{
    CT_Type copy(right); // warns
    left = right;        // warns
}

// Abstract classes are copied by derived ones.
struct File : CT_File
{
    File(const File& right) : CT_File(right) // warns
    {}
    File& operator=(const File& right)
    {
        CT_File::operator=(right); // warns
        return *this;
    }
};

struct String : CT_String
{
    String(const String& right) : CT_String(right) // warns
    {}
    String& operator=(const String& right)
    {
        CT_String::operator=(right); // warns
        return *this;
    }
};

// What comes with the language: arguments, results, elements, lists.
void Take(CT_UString);
CT_UString Named()
{
    CT_UString text;
    return text; // warns
}
void Pass(CT_UString& text)
{
    Take(text);                        // warns
    CT_UString pair[2] = {text, text}; // warns
    Use(pair);
    auto copy = text;     // warns
    auto taken = [text] { // warns
        return &text;
    };
    Use(taken);
    for (auto each : pair) // warns
        Use(each);
}
#endif

// Elements that a container copies.
#ifdef VECTOR
void Append(std::vector<CT_UString>& texts, CT_UString& text)
{
    texts.push_back(text);
}
#endif
