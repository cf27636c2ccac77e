// tests/Support/MessageBox.h: boxes that the library shows, answered without a screen.
#pragma once

#include <string>

// While it lives no box is shown: each gets the answer at once, and what the last one held is here.
// One lives at a time. On Windows the library's imports are replaced meanwhile.
class AnsweredBoxes
{
public:
    explicit AnsweredBoxes(int answer);
    AnsweredBoxes(const AnsweredBoxes&) = delete;
    AnsweredBoxes& operator=(const AnsweredBoxes&) = delete;
    ~AnsweredBoxes();

    int count = 0;
    std::u16string title;
    std::u16string text;
    unsigned type = 0;
    bool narrow = false; // it came by the 8-bit call; known on Windows alone

    int Show(const char16_t* box_title, const char16_t* box_text, unsigned box_type);

private:
    const int answer;
};
