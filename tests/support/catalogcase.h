// What tests of catalogues share: a catalogue folder of their own, the program's messages in boxes, and scripts
// for these boxes and for the dialogs.
#ifndef TESTS_SUPPORT_CATALOGCASE_H
#define TESTS_SUPPORT_CATALOGCASE_H

#include "support/folder.h"
#include "support/testapp.h"
#include "support/testcatalog.h"
#include "usr/edcutils.h"
#include "win/boxes.h"
#include "win/testdialog.h"
#include "win/testdoor.h"

#include <gtest/gtest.h>

#include <deque>
#include <functional>

enum {
    TEXT_TAKE_BACKUP = 22100,
    TEXT_NO_FOLDER = 22101,
    TEXT_NOT_SAVED = 22102,
    TEXT_MAKE_NEW = 22103,
    TEXT_NOTHING_TO_PICK = 22104,
    TEXT_REMOVE_GROUP = 22105,
    TEXT_REMOVE_FULL_GROUP = 22106,
    TEXT_REMOVE_ITEM = 22107,
    TEXT_GROUP_CLASH = 22108,
    TEXT_NAME_CLASH = 22109
};

/// The code that is pending, taken off.
inline XCODE TakeFailure()
{
    XCODE code = xCode;
    xCode = XNULL;
    return code;
}

class CatalogCase : public testing::Test
{
protected:
    CatalogCase()
    {
        TEdcCtlgList::SetCatalogDirectory(folder.Name("Katalogy").c_str(), "zec");
        SetFailureHook(EdcFailureHook);
        testdoor::PendingScripts();
        testdoor::UnexpectedBoxes();
    }
    ~CatalogCase() override
    {
        SetFailureHook(NULL);
        EXPECT_EQ(testdoor::PendingScripts(), 0) << "a script waited for a box that never came";
        EXPECT_EQ(testdoor::UnexpectedBoxes(), 0);
    }

    using SCRIPT = std::function<void(testdoor::ModalBox &)>;
    using ACT = std::function<void(testdoor::DialogBox &)>;

    /// The next box but those that have scripts already.
    void Script(const SCRIPT &script)
    {
        scripts.push_back(script);
        AwaitBox();
    }
    /// The very next box: a test says first what the dialog asks, then what happens in the dialog.
    void ScriptFirst(const SCRIPT &script)
    {
        scripts.push_front(script);
        AwaitBox();
    }
    /// The next box is this message, with these buttons.
    void Answer(int textId, int answer, const char *buttons)
    {
        Script([=](testdoor::ModalBox &box) {
            EXPECT_EQ(box.Kind(), "message");
            EXPECT_EQ(box.Caption(), "Zulerion");
            EXPECT_EQ(box.Text(), GetResString(textId));
            EXPECT_STRNE(GetResString(textId), "");
            EXPECT_EQ(box.Buttons(), buttons);
            box.Answer(answer);
        });
    }
    void AnswerYes(int textId) { Answer(textId, WIN_ID_YES, "Ja Nein"); }
    void AnswerNo(int textId) { Answer(textId, WIN_ID_NO, "Ja Nein"); }
    void AnswerOk(int textId) { Answer(textId, WIN_ID_OK, "OK"); }
    void AnswerRetry() { Answer(TEXT_NOT_SAVED, WIN_ID_RETRY, "Abbrechen Wiederholen"); }
    void AnswerCancel() { Answer(TEXT_NOT_SAVED, WIN_ID_CANCEL, "Abbrechen Wiederholen"); }

    /// The next box is a dialog, and this happens in it.
    void InDialog(const ACT &act) { Script(Acting(act)); }
    void InDialogFirst(const ACT &act) { ScriptFirst(Acting(act)); }
    void Click(int id)
    {
        InDialog([id](testdoor::DialogBox &dialog) { dialog.Click(id); });
    }

    /// Files in the catalogue folder.
    std::string Path(const std::string &file) const { return folder.Path("Katalogy/" + file); }
    void PutFile(const std::string &file, const std::string &bytes)
    {
        std::filesystem::create_directories(folder.Path("Katalogy"));
        folder.Put("Katalogy/" + file, bytes);
    }
    std::string GetFile(const std::string &file) const { return folder.Get("Katalogy/" + file); }
    std::set<std::string> Files() const
    {
        std::set<std::string> names;
        if (std::filesystem::exists(folder.Path("Katalogy")))
            for (const auto &entry : std::filesystem::directory_iterator(folder.Path("Katalogy")))
                names.insert(entry.path().filename().string());
        return names;
    }

    static SCRIPT Acting(const ACT &act)
    {
        return [act](testdoor::ModalBox &box) {
            EXPECT_EQ(box.Kind(), "dialog");
            testdoor::DialogBox dialog(box);
            act(dialog);
        };
    }
    void AwaitBox()
    {
        testdoor::Script([this](testdoor::ModalBox &box) {
            SCRIPT script = scripts.front();
            scripts.pop_front();
            script(box);
        });
    }

    TestServices services;
    CatalogTables tables;
    FOLDER folder;
    std::deque<SCRIPT> scripts;
};

#endif
