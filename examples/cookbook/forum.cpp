// examples/cookbook/forum.cpp: a document that tells its views, and asks them before it closes.
#include <Ostra/Ostra.h>

#include <cstdio>

enum Message : unsigned
{
    RENAMED = 1, // with the new name, a text of bytes
    MAY_CLOSE    // a view that has an objection answers with a number of its own
};

class View : public CT_Forum
{
public:
    View(const char* name, unsigned objection) : title(name), answer(objection) {}

    void vv_Listen(CT_Forum*, unsigned message, va_list arguments) override
    {
        if (message == RENAMED)
            std::printf("%s: now called %s\n", title, va_arg(arguments, const char*));
        else if (message == UPDATE)
            std::printf("%s: drawn anew\n", title);
    }

    unsigned vn_Listen(CT_Forum*, unsigned message, va_list) override
    {
        return message == MAY_CLOSE ? answer : 0;
    }

private:
    const char* title;
    unsigned answer;
};

int main()
{
    View text("text", 0), table("table", 17);
    CT_Forum document;
    document.v_AddListener(&text);
    document.v_AddListener(&table);

    document.v_Speak(nullptr, RENAMED, "letter"); // to all, in the order in which they came
    document.vv_Update(&table, 0);                // to one
    std::printf("objection: %u\n", document.n_Speak(nullptr, MAY_CLOSE));

    // A view is removed before it goes.
    document.v_RemoveListener(&table);
    std::printf("objection: %u\n", document.n_Speak(nullptr, MAY_CLOSE));
    return CT_ErrorManager::spco_Get()->b_IsSetError();
}
