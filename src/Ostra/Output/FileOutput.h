// Ostra/Output/FileOutput.h: a file as an output.
#pragma once

#include <Ostra/File/File.h>
#include <Ostra/Frame/Export.h>
#include <Ostra/Output/Output.h>

#include <cstddef>

// A file that takes the bytes, one write for each append.
//
// Owns:    the file object, if it was made here; that it is open, if it was opened here.
// Reports: what the file reports, with its own place; code 6 of the system without a file. The last
//          close of an object isn't asked for its failure: pco_GiveFile tells.
// Caller:  sets an output anew whose file has been given away, before it appends.
class OSTRA_API CT_FileOutput : public CT_Output
{
public:
    // Makes the file, which begins empty.
    explicit CT_FileOutput(const CT_String* pco_Name);
    // An open file is written to at its end and stays open; a closed one is opened, loses its
    // content and is closed again.
    explicit CT_FileOutput(CT_File* pco_File);
    ~CT_FileOutput() override;
    // The same on an object that is there, which is done with its file first.
    void v_Set(const CT_String* pco_Name);
    void v_Set(CT_File* pco_File);

    static void* operator new(std::size_t n_Size) noexcept;
    static void* operator new(std::size_t, void* pv_Place) noexcept { return pv_Place; }
    static void operator delete(void* pv_Object);

    void vv_Append(unsigned char c_Byte, unsigned n_Count) override;
    void vv_Append(const void* qcv_Data, unsigned n_Size) override;
    // Joins the other file to this one by name. Both are open afterwards, at their ends, whatever
    // failed on the way. A file can't be joined to itself: code 32 of the system. Kept: they are
    // opened for writing what exists, which empties a CT_StdFile; use CT_WinFile here.
    void vv_Append(CT_FileOutput& co_Output) override;
    void vv_Append(const CT_MemoryOutput& co_Output) override;
    // The file stands at its end afterwards. The offset has 31 bits.
    void vv_Replace(const void* qcv_Data, unsigned n_Size, unsigned n_Offset) override;
    unsigned vn_GetSize() const override;

    const CT_File* pcco_GetFile() const { return pco_File; }
    // Closes the file, whoever has opened it, and hands it over.
    CT_File* pco_GiveFile();

private:
    friend class CT_MemoryOutput; // reads the file of another output

    void v_Init(const CT_String* pco_Name);
    void v_Init(CT_File* pco_NewFile);
    void v_Exit();
    int b_IsUsable(unsigned n_Line = __builtin_LINE()) const;
    void v_OpenEmpty();
    void v_OpenAtEnd();

    // The order of the members is part of the interface.
    int b_OwnFile;     // the object was made here and goes with this one
    int b_CloseFile;   // it was opened here and is closed here
    CT_File* pco_File; // null when it has been given away
};
