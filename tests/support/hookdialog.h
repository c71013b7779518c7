// A dialog that writes down what its hooks are told, and a quick way to the lines of a dialog's resource.
#ifndef TESTS_SUPPORT_HOOKDIALOG_H
#define TESTS_SUPPORT_HOOKDIALOG_H

#include "lib/restable.h"
#include "usr/edcdlg.h"

#include <functional>
#include <string>

/// A line without a place: the test's tables stack such lines.
inline ResCONTROL Line(ResCONTROLKIND kind, int id, const char *text = "", unsigned style = 0)
{
    return {kind, id, text, 0, 0, 0, 0, 0, style};
}

/// Notes each call as a word and a number: "opened", "changed 100", "double 100", "button 1", "cancel".
class HookDialog : public TEdcDialog
{
public:
    explicit HookDialog(int aResId, void *aRecord = NULL, bool aCloses = true)
        : TEdcDialog(aResId, aRecord), closes(aCloses)
    {
    }

    void Cancel() override
    {
        Note("cancel");
        if (closes)
            TEdcDialog::Cancel();
    }
    void Button(int id) override
    {
        Note("button " + std::to_string(id));
        if (closes)
            TEdcDialog::Button(id);
    }
    void Changed(HWND control) override { Note(control == NULL ? "opened" : "changed " + Name(control)); }
    void Double(HWND control) override { Note("double " + Name(control)); }

    void Note(const std::string &call)
    {
        log += (log.empty() ? "" : ", ") + call;
        if (behind)
            behind(call);
    }
    std::string Take()
    {
        std::string taken;
        taken.swap(log);
        return taken;
    }

    std::string log;
    std::function<void(const std::string &call)> behind; // runs in each hook, behind the note

private:
    std::string Name(HWND control) const
    {
        return control == GetHandle() ? "itself" : std::to_string(WindowId(control));
    }
    bool closes; // whether OK, cancel and the window's button close it
};

#endif
