// A dialog with a drop list, one with an edit field, a list box and a plain field, and ears for what they
// report.
#ifndef TESTS_WIN_LISTFIXTURE_H
#define TESTS_WIN_LISTFIXTURE_H

#include "controlfixture.h"
#include "win/utf8.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

using Door = testdoor::DialogBox;
enum { CHOICE = 10, COMBO = 11, BOX = 12, FIELD = 13 };

inline ResCONTROL BoxLine(unsigned style = 0)
{
    return Placed(Line(RES_LIST, BOX, "", style), 2, 100, 80, 60);
}

class Lists : public Controls
{
public:
    using Controls::dialog;
    /// A drop list, one with an edit field, a list box and a plain field, all but the field with these entries.
    Door OpenWith(const std::vector<const char *> &entries, unsigned style = 0)
    {
        Make({Line(RES_CHOICE, CHOICE, "", style), Line(RES_COMBO, COMBO, "", style), BoxLine(style),
              Line(RES_EDIT, FIELD)});
        choice = new TComboBox(dialog.get(), CHOICE);
        combo = new TComboBox(dialog.get(), COMBO);
        box = new TListBox(dialog.get(), BOX);
        dialog->onMessage = [this](const TDialogMessage &message) { Hear(message); };
        Door door = Open();
        for (const char *entry : entries) {
            std::string text = FromUtf8(entry);
            choice->AddString(text.c_str());
            combo->AddString(text.c_str());
            box->AddString(text.c_str());
        }
        return door;
    }

    Door OpenMany(int count)
    {
        Door door = OpenWith({});
        for (int i = 0; i < count; ++i) {
            std::string text = "Eintrag " + std::to_string(i);
            choice->AddString(text.c_str());
            combo->AddString(text.c_str());
            box->AddString(text.c_str());
        }
        return door;
    }

    /// What a control has reported since, as codes with a blank between.
    std::string Codes(int id)
    {
        std::string codes;
        for (const TDialogMessage &message : std::exchange(heard, {}))
            if (message.kind == TDialogMessage::COMMAND && message.control != NULL && message.id == id)
                codes += (codes.empty() ? "" : " ") + std::to_string(message.code);
        return codes;
    }
    void Forget()
    {
        diary.Read();
        heard.clear();
    }
    void Hear(const TDialogMessage &message)
    {
        heard.push_back(message);
        if (onHeard && message.control != NULL)
            onHeard(message.code);
    }

    TComboBox *Drop(int id) { return id == CHOICE ? choice : combo; }
    void Turn(int id, int notches)
    {
        TComboBox *list = Drop(id);
        testdoor::Wheel(*list, {2, 2}, notches);
    }

    std::vector<TDialogMessage> heard;
    std::function<void(int code)> onHeard; // at each notification
    TComboBox *choice = NULL;              // the dialog's, all three
    TComboBox *combo = NULL;
    TListBox *box = NULL;
};

inline const std::vector<const char *> materials = {"Aluminium", "Beton", "Birke", "Kork", "Ziegel"};

#endif
