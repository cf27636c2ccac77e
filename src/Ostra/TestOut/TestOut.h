// Ostra/TestOut/TestOut.h: labelled diagnostic text on a stream.
#pragma once

#include <Ostra/Frame/Export.h>

#include <cstdarg>
#include <cstdio>

// Writes messages to a stream of the standard library or to a file, each with a label in front that
// may be absent.
//
//     CT_TestOut out("trace.txt", "reader: "); // in the temporary directory
//     out.v_Out("%u records\n", records);
//
// A condition that doesn't hold, such as a null argument, is told on the standard error stream as
// "ASSERT failed", and work goes on: a null file name counts as one that can't be opened, and a
// null stream takes no messages.
//
// Units:   formats are the platform's: %s takes text of the format's own width, %S of the other.
// Owns:    its copy of the label, and the stream if it has opened it.
// Reports: nothing; CT_ErrorManager isn't used, and failures of writing aren't looked at.
// Threads: one thread at a time.
class OSTRA_API CT_TestOut
{
public:
    // The standard output stream, without a label.
    CT_TestOut();
    // A file, as v_Open opens it. Kept: the stream counts as opened here even where that fell back
    // on the standard output, so closing the object closes the standard output.
    CT_TestOut(const char* qccz_File, const char* qccz_Label);
    // A stream of the caller's, which stays open.
    CT_TestOut(std::FILE* pso_NewOutput, const char* qccz_Label);
    CT_TestOut(const CT_TestOut&) = delete;
    CT_TestOut& operator=(const CT_TestOut&) = delete;
    ~CT_TestOut();

    // As if made anew. Neither argument may be null. Both may be the object's own: a stream that it
    // has opened then stays open, and its own.
    void v_Set(const char* qccz_File, const char* qccz_Label);
    void v_Set(std::FILE* pso_NewOutput, const char* qccz_Label);

    // Closes what is open and empties or makes the file, in the temporary directory if the name
    // has no directory. One that can't be opened is told on the standard error stream, and the
    // standard output stands in for it.
    void v_Open(const char* qccz_File);
    // Closes the stream if it was opened here; there is none then. Another stays in place.
    void v_Close();

    // Writes the label and the message, and flushes the stream. Nothing stands between them, and no
    // line end behind. Wide messages are written in UTF-8, a lone surrogate as U+FFFD.
    void v_Out(const char* qccz_Format, ...);
    void v_Out(const unsigned short* qcuz_Format, ...);

    // Null when the stream was closed.
    std::FILE* pso_GetOutput() const { return pso_Output; }
    // Null without a label.
    char* qcz_GetLabel() const { return qcz_Label; }

private:
    void v_Null();
    void v_Init(const char* qccz_File, const char* qccz_Label);
    void v_Init(std::FILE* pso_NewOutput, const char* qccz_Label);
    void v_Exit();
    void v_SetLabel(const char* qccz_Label);
    template <typename T_Char>
    void v_Write(const T_Char* qcz_Format, va_list args);

    int b_Own;
    char* qcz_Label;
    std::FILE* pso_Output;
};
